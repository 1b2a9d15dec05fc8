/// The stored structures of a record's object stream: the one definition of their fields and places.
///
/// A record in memory holds these structures in host order, a record on disk the same structures with
/// every number big-endian (byte_order.h converts whole records).  Everything is packed and has an
/// alignment of 1, because objects lie one behind the other at any address.  Texts and font names are
/// bytes in the platform's code page.  Reserved fields and gaps hold 0; no swap touches a gap.
///
/// Offsets in the comments are bytes from the start of the structure.  A flag counts as set when it is
/// not 0.  Coordinates are points relative to the lower left corner of the record's art.
#pragma once

#include <cstddef>
#include <cstdint>

/// A signed number with 16 fractional bits: 1.0 is 0x00010000.
using Fixed = int32_t;

/// Stands in both coordinates of a gradient's stored translation where there is none.  No conversion of a
/// number ever gives it.
constexpr Fixed kAbsentFixed = INT32_MIN;

enum ObjectType : uint32_t {
    kPathObject = 2,
    kTextObject = 4,
    kNoteObject = 7,
    kRasterObject = 9,
    kMeshObject = 11,
};

enum StoredColorKind : uint16_t {
    kStoredGray = 0,
    kStoredFour = 1, ///< cyan, magenta, yellow, black
    kStoredPattern = 2,
    kStoredCustom = 3, ///< without values: only where a custom colour has no process equivalent
    kStoredGradient = 4,
    kStoredThree = 5, ///< red, green, blue
};

constexpr int kMaxStops = 32;
constexpr int kMaxDashes = 6;
constexpr uint16_t kFiveChannelSpace = 18; ///< colour space of rasters with five bytes a pixel
constexpr uint32_t kTileEdge = 32;         ///< pixels
constexpr uint32_t kRunTextBytes = 256;    ///< of a text run, the ending NUL included
constexpr uint32_t kNoteFrameBytes = 28;   ///< a note's size less its content: header and four bytes of 0

#pragma pack(push, 1)

struct FixedPoint {
    Fixed x, y;
};
struct FixedRect {
    Fixed left, top, right, bottom;
};
struct FixedMatrix {
    Fixed a, b, c, d, tx, ty;
};

/// Starts every object.  A note fills type and size only.
struct AidbObjectHeader {
    uint32_t type;         // 0, ObjectType; any other object is skipped by its size
    uint32_t size;         // 4, bytes of the whole object, this header included
    uint32_t blendMode;    // 8, the host's number
    Fixed opacity;         // 12
    uint16_t isolated;     // 16
    uint16_t knockout;     // 18
    uint16_t alphaIsShape; // 20
    uint16_t reserved;     // 22
};

struct AidbFourColor {
    Fixed cyan, magenta, yellow, black; // each 0.0 to 1.0
};
struct AidbThreeColor {
    Fixed red, green, blue;
};
struct AidbPatternUse {
    uint32_t number;     // 0, within the record, from 1
    Fixed shiftDistance; // 4
    Fixed shiftAngle;    // 8
    FixedPoint scale;    // 12
    Fixed rotation;      // 20
    uint16_t reflect;    // 24
    uint16_t gap;        // 26
    Fixed reflectAngle;  // 28
    Fixed shearAngle;    // 32
    Fixed shearAxis;     // 36
    FixedMatrix matrix;  // 40
};
struct AidbGradientUse {
    uint32_t number;        // 0, always 0 on disk: the stops lie in the gradient block
    FixedPoint origin;      // 4
    Fixed angle;            // 12
    Fixed length;           // 16
    FixedMatrix matrix;     // 20
    Fixed highlightAngle;   // 44
    Fixed highlightLength;  // 48
    FixedPoint translation; // 52, kAbsentFixed in both where there is none
};

/// One paint.  Bytes that the kind doesn't use have no meaning, and no swap touches them.
struct AidbColor {
    uint16_t kind;      // 0, StoredColorKind
    uint16_t reference; // 2, 0 for none; else 1-based row of the custom colours x 256 + tint x 200
    union {
        Fixed gray;
        AidbFourColor four;
        AidbThreeColor three;
        AidbPatternUse pattern;
        AidbGradientUse gradient;
        uint8_t bytes[64];
    } u; // 4
};

/// The paint of a path, of a text run and of an art style's block.
struct AidbStyle {
    uint16_t fillFlag;        // 0
    uint16_t strokeFlag;      // 2
    AidbColor fill;           // 4, the stops of a gradient are in the AidbGradientBlock that follows
    uint16_t fillOverprint;   // 72
    uint16_t gap1;            // 74
    AidbColor stroke;         // 76
    uint16_t strokeOverprint; // 144
    uint16_t gap2;            // 146
    Fixed lineWidth;          // 148, points
    uint16_t dashCount;       // 152, at most kMaxDashes
    uint16_t gap3;            // 154
    Fixed dashOffset;         // 156, points
    Fixed dashes[kMaxDashes]; // 160, points
    uint16_t lineCap;         // 184, the host's number
    uint16_t lineJoin;        // 186, the host's number
    Fixed miterLimit;         // 188
    uint16_t clip;            // 192
    uint16_t lockClip;        // 194
    uint16_t evenOdd;         // 196
    uint16_t gap4;            // 198
    Fixed resolution;         // 200
};

struct AidbGradientStop {
    Fixed midpoint;  // 0
    Fixed location;  // 4
    AidbColor color; // 8, gray, four or three, with a reference where it was a custom colour
};

struct AidbGradientRamp {
    uint16_t type;                     // 0, the host's number; 0 where the fill is no gradient
    uint16_t stopCount;                // 2, at most kMaxStops
    AidbGradientStop stops[kMaxStops]; // 4, unused ones are 0
};

/// The stops of the fill's gradient.  The first half is 0 in every record and is swapped all the same.
struct AidbGradientBlock {
    AidbGradientRamp reserved; // 0
    AidbGradientRamp ramp;     // 2436
};

/// One anchor point of a path with its two Bezier handles.
struct AidbSegment {
    FixedPoint anchor; // 0
    FixedPoint in;     // 8
    FixedPoint out;    // 16
    uint16_t corner;   // 24
    uint16_t gap;      // 26
};

/// `segmentCount` segments follow.
struct AidbPathObject {
    AidbObjectHeader header; // 0
    AidbStyle style;         // 24
    AidbGradientBlock block; // 228
    uint16_t closed;         // 5100
    int16_t segmentCount;    // 5102
};
constexpr uint32_t kPathBaseBytes = 5104;

/// The paint that an art style gives to a placed image; stands behind a note's text.
struct AidbNoteStyle {
    char marker[4];          // 0, kStyleMarker
    Fixed opacity;           // 4
    AidbStyle style;         // 8
    AidbGradientBlock block; // 212, all 0 and never swapped
};

/// The paint that an art style gives to a colourized raster; stands behind the raster's tiles.
struct AidbRasterStyle {
    char marker[4];          // 0, kStyleMarker
    AidbStyle style;         // 4
    AidbGradientBlock block; // 208, all 0, and swapped
};
constexpr char kStyleMarker[5] = "rsop";

/// The content of a note that stands for plug-in art.  Its numbers stay as the writing machine had them:
/// no swap touches them.
struct AidbPluginNote {
    char text[32];      // 0, kPluginNoteText, zero-padded
    char groupName[64]; // 32, ended by a 0 byte
    uint32_t major;     // 96
    uint32_t minor;     // 100
    uint32_t dataBytes; // 104, at most 255
    uint8_t data[256];  // 108
};
constexpr char kPluginNoteText[] = "PluginArt /";

struct AidbRasterInfo {
    uint16_t flags;              // 0, as the host has them
    uint16_t gap;                // 2, 0, and swapped all the same
    int16_t left;                // 4, pixel bounds
    int16_t top;                 // 6
    int16_t right;               // 8
    int16_t bottom;              // 10
    uint32_t byteWidth;          // 12
    uint16_t colorSpace;         // 16, the host's number
    uint16_t bitsPerPixel;       // 18
    uint16_t originalColorSpace; // 20
    uint16_t reserved;           // 22
};

/// `tileCount` tiles follow, row after row of tiles, the 32 rows of a tile in sequence.
struct AidbRasterObject {
    AidbObjectHeader header; // 0
    AidbRasterInfo info;     // 24
    FixedMatrix matrix;      // 48
    FixedRect bounds;        // 72
    uint32_t tileCount;      // 88
};
constexpr uint32_t kRasterBaseBytes = 92;

/// `vertexCount` vertices follow, each as long as its own size word says.
struct AidbMeshObject {
    AidbObjectHeader header; // 0
    uint32_t meshType;       // 24, the host's number
    uint32_t gridI;          // 28
    uint32_t gridJ;          // 32
    uint32_t vertexCount;    // 36
};
constexpr uint32_t kMeshBaseBytes = 40;

/// `edgeCount` edges follow.
struct AidbMeshVertex {
    uint32_t size;       // 0, bytes of the vertex with its edges
    AidbColor color;     // 4
    FixedPoint position; // 72
    uint32_t edgeCount;  // 80
};

/// `firstCount` points of the first list and `secondCount` of the second follow.
struct AidbMeshEdge {
    uint32_t size;        // 0, 24 + 8 x (firstCount + secondCount)
    FixedPoint tangent;   // 4, the point that the host's vertex gives for this edge
    uint16_t flag;        // 12
    uint16_t reserved;    // 14
    uint32_t firstCount;  // 16
    uint32_t secondCount; // 20
};

/// Runs follow, then, at `pathsOffset`, the text paths.
struct AidbTextObject {
    AidbObjectHeader header; // 0
    uint16_t frameKind;      // 24, 0 point text, 1 in an area, 2 on a path
    uint16_t orientation;    // 26, the host's number
    uint32_t pathsOffset;    // 28, bytes from the object's start: 40 + 5888 x runCount
    uint32_t pathsSize;      // 32, bytes of all text paths
    uint16_t pathCount;      // 36
    uint16_t runCount;       // 38
};
constexpr uint32_t kTextBaseBytes = 40;

/// Spacings are percentages.
struct AidbTextPara {
    uint32_t reserved1;          // 0
    Fixed wordSpacing[3];        // 4, minimum, desired, maximum
    Fixed letterSpacing[3];      // 16, likewise
    Fixed firstLineIndent;       // 28, points
    Fixed startIndent;           // 32, points
    Fixed endIndent;             // 36, points
    uint16_t justification;      // 40, 1 left, 2 centre, 3 right, 4 last line left, 5 other justified
    uint16_t burasagari;         // 42, flag
    uint16_t kinsoku;            // 44, flag
    uint16_t gap1;               // 46
    uint16_t autoHyphenation;    // 48, flag
    uint16_t reserved2;          // 50
    uint16_t hyphenBefore;       // 52, characters
    uint16_t hyphenAfter;        // 54, characters
    uint16_t hyphenLimit;        // 56, consecutive lines
    uint16_t gap2;               // 58
    Fixed constant25;            // 60, 25.0
    uint16_t repeatedCharacters; // 64, flag
    uint16_t gap3;               // 66
    uint16_t kinsokuKind;        // 68, 0 "Soft", 1 "Hard"
    uint16_t constant1;          // 70, 1
    uint16_t bunriKinshi;        // 72, flag
    uint16_t constant2;          // 74, 1
    uint16_t burasagariForced;   // 76, flag
    uint16_t gap4;               // 78
};

struct AidbFontRef {
    uint8_t nameLength;     // 0
    char name[255];         // 1, also ended by a 0 byte
    uint16_t classFirst[3]; // 256, font class numbers 1 to 3
    uint16_t reserved[2];   // 262
    uint16_t classRest[9];  // 266, font class numbers 4 to 12
};

struct AidbCharacter {
    Fixed fontSize;            // 0, points
    Fixed baselineShift;       // 4, points
    Fixed leading;             // 8, points
    Fixed tracking;            // 12, the host's integer as Fixed
    uint16_t reserved1;        // 16
    uint16_t gap1;             // 18
    Fixed horizontalScale;     // 20, percent
    Fixed verticalScale;       // 24, percent
    uint16_t reserved2[3];     // 28
    uint16_t gap2;             // 34
    uint32_t reserved3[2];     // 36
    uint16_t reserved4;        // 44
    uint16_t gap3;             // 46
    uint32_t reserved5;        // 48
    uint16_t hasAlternateForm; // 52, flag
    uint16_t gap4;             // 54
    uint32_t alternateForm;    // 56, the host's forms 1, 2, 3, 4 as 3, 2, 1, 0
};

struct AidbTabStop {
    uint16_t kind;     // 0
    uint16_t gap;      // 2
    uint32_t position; // 4
};

/// All 0 in every record; swapped by its shape.
struct AidbTabStops {
    uint32_t reserved[2];  // 0
    AidbTabStop stops[15]; // 8
};

/// A stretch of characters that share all attributes.
struct AidbTextRun {
    AidbStyle style;          // 0
    AidbTextPara para;        // 204
    AidbFontRef font;         // 284
    AidbCharacter character;  // 568
    AidbTabStops tabs;        // 628
    uint32_t kerning;         // 756, at the start of the run; 0 for none
    AidbGradientBlock block;  // 760, all 0
    char text[kRunTextBytes]; // 5632, ended by a 0 byte; a carriage return ends a paragraph
};

/// `segmentCount` segments follow.
struct AidbTextPath {
    FixedMatrix matrix;    // 0, of the text frame
    uint16_t closed;       // 24
    uint16_t segmentCount; // 26
};

#pragma pack(pop)

static_assert(sizeof(FixedPoint) == 8 && sizeof(FixedRect) == 16 && sizeof(FixedMatrix) == 24);

static_assert(sizeof(AidbObjectHeader) == 24 && alignof(AidbObjectHeader) == 1);
static_assert(offsetof(AidbObjectHeader, size) == 4 && offsetof(AidbObjectHeader, blendMode) == 8 &&
              offsetof(AidbObjectHeader, opacity) == 12 && offsetof(AidbObjectHeader, isolated) == 16 &&
              offsetof(AidbObjectHeader, knockout) == 18 && offsetof(AidbObjectHeader, alphaIsShape) == 20 &&
              offsetof(AidbObjectHeader, reserved) == 22);

static_assert(sizeof(AidbFourColor) == 16 && sizeof(AidbThreeColor) == 12);
static_assert(sizeof(AidbPatternUse) == 64 && offsetof(AidbPatternUse, shiftDistance) == 4 &&
              offsetof(AidbPatternUse, shiftAngle) == 8 && offsetof(AidbPatternUse, scale) == 12 &&
              offsetof(AidbPatternUse, rotation) == 20 && offsetof(AidbPatternUse, reflect) == 24 &&
              offsetof(AidbPatternUse, reflectAngle) == 28 && offsetof(AidbPatternUse, shearAngle) == 32 &&
              offsetof(AidbPatternUse, shearAxis) == 36 && offsetof(AidbPatternUse, matrix) == 40);
static_assert(sizeof(AidbGradientUse) == 60 && offsetof(AidbGradientUse, origin) == 4 &&
              offsetof(AidbGradientUse, angle) == 12 && offsetof(AidbGradientUse, length) == 16 &&
              offsetof(AidbGradientUse, matrix) == 20 && offsetof(AidbGradientUse, highlightAngle) == 44 &&
              offsetof(AidbGradientUse, highlightLength) == 48 &&
              offsetof(AidbGradientUse, translation) == 52);
static_assert(sizeof(AidbColor) == 68 && alignof(AidbColor) == 1 && offsetof(AidbColor, reference) == 2 &&
              offsetof(AidbColor, u) == 4);

static_assert(sizeof(AidbStyle) == 204 && alignof(AidbStyle) == 1);
static_assert(offsetof(AidbStyle, strokeFlag) == 2 && offsetof(AidbStyle, fill) == 4 &&
              offsetof(AidbStyle, fillOverprint) == 72 && offsetof(AidbStyle, stroke) == 76 &&
              offsetof(AidbStyle, strokeOverprint) == 144 && offsetof(AidbStyle, lineWidth) == 148 &&
              offsetof(AidbStyle, dashCount) == 152 && offsetof(AidbStyle, dashOffset) == 156 &&
              offsetof(AidbStyle, dashes) == 160 && offsetof(AidbStyle, lineCap) == 184 &&
              offsetof(AidbStyle, lineJoin) == 186 && offsetof(AidbStyle, miterLimit) == 188 &&
              offsetof(AidbStyle, clip) == 192 && offsetof(AidbStyle, lockClip) == 194 &&
              offsetof(AidbStyle, evenOdd) == 196 && offsetof(AidbStyle, resolution) == 200);

static_assert(sizeof(AidbGradientStop) == 76 && offsetof(AidbGradientStop, location) == 4 &&
              offsetof(AidbGradientStop, color) == 8);
static_assert(sizeof(AidbGradientRamp) == 2436 && offsetof(AidbGradientRamp, stopCount) == 2 &&
              offsetof(AidbGradientRamp, stops) == 4);
static_assert(sizeof(AidbGradientBlock) == 4872 && offsetof(AidbGradientBlock, ramp) == 2436);

static_assert(sizeof(AidbSegment) == 28 && alignof(AidbSegment) == 1 && offsetof(AidbSegment, in) == 8 &&
              offsetof(AidbSegment, out) == 16 && offsetof(AidbSegment, corner) == 24);
static_assert(sizeof(AidbPathObject) == kPathBaseBytes && alignof(AidbPathObject) == 1 &&
              offsetof(AidbPathObject, style) == 24 && offsetof(AidbPathObject, block) == 228 &&
              offsetof(AidbPathObject, closed) == 5100 && offsetof(AidbPathObject, segmentCount) == 5102);

static_assert(sizeof(AidbNoteStyle) == 5084 && offsetof(AidbNoteStyle, opacity) == 4 &&
              offsetof(AidbNoteStyle, style) == 8 && offsetof(AidbNoteStyle, block) == 212);
static_assert(sizeof(AidbRasterStyle) == 5080 && offsetof(AidbRasterStyle, style) == 4 &&
              offsetof(AidbRasterStyle, block) == 208);
static_assert(sizeof(AidbPluginNote) == 364 && offsetof(AidbPluginNote, groupName) == 32 &&
              offsetof(AidbPluginNote, major) == 96 && offsetof(AidbPluginNote, minor) == 100 &&
              offsetof(AidbPluginNote, dataBytes) == 104 && offsetof(AidbPluginNote, data) == 108);

static_assert(sizeof(AidbRasterInfo) == 24 && offsetof(AidbRasterInfo, left) == 4 &&
              offsetof(AidbRasterInfo, top) == 6 && offsetof(AidbRasterInfo, right) == 8 &&
              offsetof(AidbRasterInfo, bottom) == 10 && offsetof(AidbRasterInfo, byteWidth) == 12 &&
              offsetof(AidbRasterInfo, colorSpace) == 16 && offsetof(AidbRasterInfo, bitsPerPixel) == 18 &&
              offsetof(AidbRasterInfo, originalColorSpace) == 20 && offsetof(AidbRasterInfo, reserved) == 22);
static_assert(sizeof(AidbRasterObject) == kRasterBaseBytes && offsetof(AidbRasterObject, info) == 24 &&
              offsetof(AidbRasterObject, matrix) == 48 && offsetof(AidbRasterObject, bounds) == 72 &&
              offsetof(AidbRasterObject, tileCount) == 88);

static_assert(sizeof(AidbMeshObject) == kMeshBaseBytes && offsetof(AidbMeshObject, meshType) == 24 &&
              offsetof(AidbMeshObject, gridI) == 28 && offsetof(AidbMeshObject, gridJ) == 32 &&
              offsetof(AidbMeshObject, vertexCount) == 36);
static_assert(sizeof(AidbMeshVertex) == 84 && offsetof(AidbMeshVertex, color) == 4 &&
              offsetof(AidbMeshVertex, position) == 72 && offsetof(AidbMeshVertex, edgeCount) == 80);
static_assert(sizeof(AidbMeshEdge) == 24 && offsetof(AidbMeshEdge, tangent) == 4 &&
              offsetof(AidbMeshEdge, flag) == 12 && offsetof(AidbMeshEdge, reserved) == 14 &&
              offsetof(AidbMeshEdge, firstCount) == 16 && offsetof(AidbMeshEdge, secondCount) == 20);

static_assert(sizeof(AidbTextObject) == kTextBaseBytes && offsetof(AidbTextObject, frameKind) == 24 &&
              offsetof(AidbTextObject, orientation) == 26 && offsetof(AidbTextObject, pathsOffset) == 28 &&
              offsetof(AidbTextObject, pathsSize) == 32 && offsetof(AidbTextObject, pathCount) == 36 &&
              offsetof(AidbTextObject, runCount) == 38);
static_assert(sizeof(AidbTextPara) == 80 && offsetof(AidbTextPara, wordSpacing) == 4 &&
              offsetof(AidbTextPara, letterSpacing) == 16 && offsetof(AidbTextPara, firstLineIndent) == 28 &&
              offsetof(AidbTextPara, startIndent) == 32 && offsetof(AidbTextPara, endIndent) == 36 &&
              offsetof(AidbTextPara, justification) == 40 && offsetof(AidbTextPara, burasagari) == 42 &&
              offsetof(AidbTextPara, kinsoku) == 44 && offsetof(AidbTextPara, autoHyphenation) == 48 &&
              offsetof(AidbTextPara, reserved2) == 50 && offsetof(AidbTextPara, hyphenBefore) == 52 &&
              offsetof(AidbTextPara, hyphenAfter) == 54 && offsetof(AidbTextPara, hyphenLimit) == 56 &&
              offsetof(AidbTextPara, constant25) == 60 && offsetof(AidbTextPara, repeatedCharacters) == 64 &&
              offsetof(AidbTextPara, kinsokuKind) == 68 && offsetof(AidbTextPara, constant1) == 70 &&
              offsetof(AidbTextPara, bunriKinshi) == 72 && offsetof(AidbTextPara, constant2) == 74 &&
              offsetof(AidbTextPara, burasagariForced) == 76);
static_assert(sizeof(AidbFontRef) == 284 && offsetof(AidbFontRef, name) == 1 &&
              offsetof(AidbFontRef, classFirst) == 256 && offsetof(AidbFontRef, reserved) == 262 &&
              offsetof(AidbFontRef, classRest) == 266);
static_assert(sizeof(AidbCharacter) == 60 && offsetof(AidbCharacter, baselineShift) == 4 &&
              offsetof(AidbCharacter, leading) == 8 && offsetof(AidbCharacter, tracking) == 12 &&
              offsetof(AidbCharacter, reserved1) == 16 && offsetof(AidbCharacter, horizontalScale) == 20 &&
              offsetof(AidbCharacter, verticalScale) == 24 && offsetof(AidbCharacter, reserved2) == 28 &&
              offsetof(AidbCharacter, reserved3) == 36 && offsetof(AidbCharacter, reserved4) == 44 &&
              offsetof(AidbCharacter, reserved5) == 48 && offsetof(AidbCharacter, hasAlternateForm) == 52 &&
              offsetof(AidbCharacter, alternateForm) == 56);
static_assert(sizeof(AidbTabStop) == 8 && offsetof(AidbTabStop, position) == 4);
static_assert(sizeof(AidbTabStops) == 128 && offsetof(AidbTabStops, stops) == 8);
static_assert(sizeof(AidbTextRun) == 5888 && offsetof(AidbTextRun, para) == 204 &&
              offsetof(AidbTextRun, font) == 284 && offsetof(AidbTextRun, character) == 568 &&
              offsetof(AidbTextRun, tabs) == 628 && offsetof(AidbTextRun, kerning) == 756 &&
              offsetof(AidbTextRun, block) == 760 && offsetof(AidbTextRun, text) == 5632);
static_assert(sizeof(AidbTextPath) == 28 && offsetof(AidbTextPath, closed) == 24 &&
              offsetof(AidbTextPath, segmentCount) == 26);
