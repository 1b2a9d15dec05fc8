/// The plain types that the host and the plug-in exchange: handles, points, paints, error codes.
///
/// Everything here has C layout, so that host and plug-in may come from different compilers.  Coordinates
/// are points (1/72 inch) in art units, y growing upward.  Handles are opaque: only the host can look
/// into them, and none of its values lies between 0 and 0xFFFF but "none", which is the null pointer.
#pragma once

#include <stdint.h>

extern "C" {

typedef int32_t HostError;

/* Codes that the contract itself names.  A host may give others; a plug-in passes them on. */
enum : HostError {
    kHostNoError = 0,
    kHostSilent = 1,                 /* a failure that the user knows of already: no alert */
    kHostSuiteNotFound = 0x53214664, /* 'S!Fd': no suite of that name and version */
    kHostStopped = 0x53544F50,       /* 'STOP': the user stopped it, no alert */
    kHostOutOfMemory = 0x4D454D21,   /* 'MEM!' */
    kHostBadParameter = 0x5041524D,  /* 'PARM': a value out of range or a missing pointer */
    kHostBadHandle = 0x42485221,     /* 'BHR!': a stale handle, or none where one is needed */
    kHostBadArt = 0x42415221,        /* 'BAR!': art of another kind than the operation takes */
    kHostBadPlace = 0x42504C21,      /* 'BPL!': art can't be made or moved there */
    kHostNotFound = 0x4E464E44,      /* 'NFND': no such name, tag, style, file */
    kHostRefused = 0x52465553,       /* 'RFUS': the host would not do it */
};

typedef struct HostArtTag* ArtHandle;
typedef struct HostLayerTag* LayerHandle;
typedef struct HostGradientTag* GradientHandle;
typedef struct HostPatternTag* PatternHandle;
typedef struct HostCustomColorTag* CustomColorHandle;
typedef struct HostArtStyleTag* ArtStyleHandle;
typedef struct HostSwatchTag* SwatchHandle;
typedef struct HostSwatchListTag* SwatchListHandle;
typedef struct HostDocumentTag* DocumentHandle;
typedef struct HostViewTag* ViewHandle;
typedef struct HostPluginTag* PluginHandle;
typedef struct HostPluginGroupTag* PluginGroupHandle;
typedef struct HostUnicodeStringTag* UnicodeStringHandle;
typedef struct HostFilePathTag* FilePathHandle;
typedef struct HostPortTag* PortHandle;
typedef struct HostMenuItemTag* MenuItemHandle;
typedef struct HostTimerTag* TimerHandle;
typedef struct HostPanelTag* PanelHandle;
typedef struct HostFlyoutTag* FlyoutHandle;
typedef struct HostAccessTag* AccessHandle;
typedef struct HostMenuGroupTag* MenuGroupHandle;
typedef struct HostNotifierTag* NotifierHandle;
typedef struct HostParameterTypesTag* ParameterTypesHandle;
typedef struct HostParametersTag* ParametersHandle;

typedef struct HostPoint {
    double x, y;
} HostPoint;

/* top is the greater y. */
typedef struct HostRect {
    double left, top, right, bottom;
} HostRect;

/* x' = a x + c y + tx,  y' = b x + d y + ty. */
typedef struct HostMatrix {
    double a, b, c, d, tx, ty;
} HostMatrix;

/* One anchor of a path.  A curve runs from an anchor over its out handle and the next anchor's in handle;
   a handle that equals its anchor makes a straight end. */
typedef struct HostPathSegment {
    HostPoint anchor, in, out;
    int32_t corner; /* flag */
} HostPathSegment;

/* Art kinds, as GetArtKind reports and NewArt takes them. */
enum : int32_t {
    kArtGroup = 1,
    kArtPath = 2,
    kArtCompoundPath = 3,
    kArtPlaced = 7,
    kArtRaster = 9,
    kArtPlugin = 10,
    kArtMesh = 11,
    kArtTextFrame = 12,
};

/* Paint orders: where new or moved art goes. */
enum : int32_t {
    kPlaceAbove = 1,       /* beside the prep art, above it */
    kPlaceBelow = 2,       /* beside the prep art, below it */
    kPlaceInsideOnTop = 3, /* inside the prep art, on top */
    kPlaceInsideAtBottom = 4,
    kPlaceAboveAll = 5, /* on top of all art of the current layer, no prep art */
};

/* Art attributes, as bits of GetArtAttributes. */
enum : int32_t { kArtSelected = 1, kArtLocked = 2, kArtHidden = 4 };

enum : int32_t {
    kColorGray = 0,
    kColorFour = 1, /* cyan, magenta, yellow, black */
    kColorPattern = 2,
    kColorCustom = 3,
    kColorGradient = 4,
    kColorThree = 5, /* red, green, blue */
};

typedef struct HostPatternUse {
    PatternHandle pattern;
    double shiftDistance, shiftAngle; /* points, degrees */
    HostPoint scale;
    double rotation; /* degrees */
    int32_t reflect; /* flag */
    double reflectAngle, shearAngle, shearAxis;
    HostMatrix matrix;
} HostPatternUse;

typedef struct HostGradientUse {
    GradientHandle gradient;
    HostPoint origin; /* in the space of `matrix` */
    double angle;     /* degrees */
    double length;
    HostMatrix matrix;
    double highlightAngle, highlightLength; /* radial gradients: degrees, share of the radius */
} HostGradientUse;

/* All values 0 to 1.  Gray is an amount of ink: 0 is white, 1 is black. */
typedef struct HostColor {
    int32_t kind;
    union {
        struct {
            double gray;
        } gray;
        struct {
            double cyan, magenta, yellow, black;
        } four;
        struct {
            double red, green, blue;
        } three;
        struct {
            CustomColorHandle color;
            double tint; /* 0 is the full colour, 1 is none of it */
        } custom;
        HostPatternUse pattern;
        HostGradientUse gradient;
    } u;
} HostColor;

typedef struct HostDash {
    int32_t count; /* at most 6 */
    double offset;
    double lengths[6];
} HostDash;

/* The paint of a path. */
typedef struct HostPathStyle {
    int32_t fillPaint, strokePaint; /* flags: is the path filled, is it stroked */
    HostColor fill;
    int32_t fillOverprint;
    HostColor stroke;
    int32_t strokeOverprint;
    double lineWidth;
    HostDash dash;
    int32_t lineCap;  /* 0 butt, 1 round, 2 projecting */
    int32_t lineJoin; /* 0 miter, 1 round, 2 bevel */
    double miterLimit;
    int32_t clip;     /* flag: the path clips the members of its group */
    int32_t lockClip; /* flag */
    int32_t evenOdd;  /* flag: even-odd fill rule, else non-zero winding */
    double resolution;
} HostPathStyle;

enum : int32_t { kGradientLinear = 0, kGradientRadial = 1 };

typedef struct HostGradientStop {
    double midpoint; /* 0 to 100: where the two colours are equal, between this stop and the next */
    double location; /* 0 to 100 */
    HostColor color; /* gray, four, three or custom */
    double opacity;  /* 0 to 1 */
} HostGradientStop;

enum : int32_t { kCustomFour = 0, kCustomThree = 1, kCustomLab = 2, kCustomOne = 3 };

typedef struct HostCustomColor {
    int32_t kind;
    double values[4]; /* channels 0 to 1; Lab: L 0 to 100, a and b -128 to 127 */
    int32_t flags;
} HostCustomColor;

/* An image: pixel bounds with y growing downward, and the form of its pixels.  Flags and colour spaces are
   the host's numbers; colour space 18 has five channels. */
typedef struct HostRasterRecord {
    uint32_t flags;
    int32_t left, top, right, bottom;
    uint32_t byteWidth; /* bytes of a row */
    int32_t colorSpace, bitsPerPixel, originalColorSpace;
} HostRasterRecord;

/* Text encodings of the host's Unicode strings. */
enum : int32_t { kEncodingPlatform = 0, kEncodingUtf8 = 3, kEncodingCp932 = 17 };

} /* extern "C" */
