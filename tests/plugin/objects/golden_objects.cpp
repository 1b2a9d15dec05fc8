#include "tests/plugin/objects/golden_objects.h"

namespace {

void FillHeader(AidbObjectHeader& header) {
    header.blendMode = 0x00000203;
    header.opacity = 0x00008000;
    header.isolated = 0x0001;
    header.knockout = 0x0002;
    header.alphaIsShape = 0x0104;
}
constexpr std::string_view kStoredBlendFields =
    "00000203 00008000 "   // blending mode, opacity 0.5
    "0001 0002 0104 0000"; // isolated, knockout, alpha is shape, reserved

void FillSegment(AidbSegment& segment) {
    segment.anchor = {0x00010002, -2};
    segment.in = {0x01020304, 0x05060708};
    segment.out = {0x090A0B0C, 0x0D0E0F10};
    segment.corner = 1;
    segment.gap = 0xA2A1; // lies as A1 A2 in memory, and on disk
}
constexpr std::string_view kStoredSegment =
    "00010002 FFFFFFFE " // anchor
    "01020304 05060708 " // in handle
    "090A0B0C 0D0E0F10 " // out handle
    "0001 A1A2";         // corner, gap

} // namespace

void FillStyle(AidbStyle& style) {
    style.fillFlag = 1;
    style.strokeFlag = 0x0102;
    style.fill.kind = kStoredGradient;
    style.fill.reference = 0x0364;
    std::memset(style.fill.u.bytes, 0xB0, sizeof style.fill.u.bytes); // 4 bytes stay: no gradient uses them
    style.fill.u.gradient = {0x11121314,
                             {0x21222324, 0x25262728},
                             0x31323334,
                             0x35363738,
                             {0x41000001, 0x41000002, 0x41000003, 0x41000004, 0x41000005, 0x41000006},
                             0x51000001,
                             0x51000002,
                             {kAbsentFixed, kAbsentFixed}};
    style.fillOverprint = 0x0103;
    style.gap1 = 0xA2A1;
    style.stroke.kind = kStoredPattern;
    style.stroke.reference = 0;
    style.stroke.u.pattern = {7,
                              0x61000001,
                              0x61000002,
                              {0x61000003, 0x61000004},
                              0x61000005,
                              0x0105,
                              0xA2A1,
                              0x61000006,
                              0x61000007,
                              0x61000008,
                              {0x71000001, 0x71000002, 0x71000003, 0x71000004, 0x71000005, 0x71000006}};
    style.strokeOverprint = 0x0106;
    style.gap2 = 0xA2A1;
    style.lineWidth = 0x00018000;
    style.dashCount = 0x0006;
    style.gap3 = 0xA2A1;
    style.dashOffset = 0x12000001;
    for (int i = 0; i < kMaxDashes; ++i) style.dashes[i] = 0x13000001 + i;
    style.lineCap = 0x0107;
    style.lineJoin = 0x0108;
    style.miterLimit = 0x00040000;
    style.clip = 0x0109;
    style.lockClip = 0x010A;
    style.evenOdd = 0x010B;
    style.gap4 = 0xA2A1;
    style.resolution = 0x03200000;
}

Bytes StoredStyle() {
    return StoredBytes()
        .Hex("0001 0102")                                             // fill and stroke flag
        .Hex("0004 0364")                                             // fill: gradient, custom reference
        .Hex("11121314 21222324 25262728 31323334 35363738")          // number, origin, angle, length
        .Hex("41000001 41000002 41000003 41000004 41000005 41000006") // matrix
        .Hex("51000001 51000002 80000000 80000000") // highlight angle and length, no translation
        .Hex("B0B0B0B0")                            // beyond the fields of a gradient
        .Hex("0103 A1A2")                           // fill overprint, gap
        .Hex("0002 0000")                           // stroke: pattern, no reference
        .Hex("00000007 61000001 61000002 61000003 61000004 61000005") // number, shift, scale, rotation
        .Hex("0105 A1A2")                                             // reflect, gap
        .Hex("61000006 61000007 61000008")                            // reflect angle, shear angle and axis
        .Hex("71000001 71000002 71000003 71000004 71000005 71000006") // matrix
        .Hex("0106 A1A2 00018000")                                    // stroke overprint, gap, line width
        .Hex("0006 A1A2 12000001")                                    // dash count, gap, dash offset
        .Hex("13000001 13000002 13000003 13000004 13000005 13000006") // dashes
        .Hex("0107 0108 00040000")                                    // cap, join, miter limit
        .Hex("0109 010A 010B A1A2 03200000") // clip, lock clip, even-odd, gap, resolution
        .bytes();
}

void FillBlock(AidbGradientBlock& block) {
    for (AidbGradientRamp* ramp : {&block.reserved, &block.ramp}) {
        ramp->type = 0x0001;
        ramp->stopCount = 0x0020;
        AidbGradientStop& first = ramp->stops[0];
        first.midpoint = 0x00320000;
        first.location = 0x00000100;
        first.color.kind = kStoredFour;
        first.color.u.four = {0x00010000, 0x00008000, 0x00004000, 0x00002000};
        AidbGradientStop& last = ramp->stops[kMaxStops - 1];
        last.midpoint = 0x00330000;
        last.location = 0x00640000;
        last.color.kind = kStoredThree;
        last.color.reference = 0x01C8;
        std::memset(last.color.u.bytes, 0xC1, sizeof last.color.u.bytes);
        last.color.u.three = {0x00000123, 0x00000456, 0x00000789};
    }
}

Bytes StoredBlock() {
    StoredBytes bytes;
    for (int half = 0; half < 2; ++half) {
        bytes.Hex("0001 0020"); // type, stop count
        bytes.Hex("00320000 00000100 0001 0000 00010000 00008000 00004000 00002000").Fill(48);
        bytes.Fill(30 * 76);
        bytes.Hex("00330000 00640000 0005 01C8 00000123 00000456 00000789").Fill(52, 0xC1);
    }
    return bytes.bytes();
}

Bytes HostPath() {
    HostObject object;
    auto& path = object.Add<AidbPathObject>();
    FillHeader(path.header);
    FillStyle(path.style);
    FillBlock(path.block);
    path.closed = 0x0001;
    path.segmentCount = 2;
    FillSegment(object.Add<AidbSegment>());
    FillSegment(object.Add<AidbSegment>());
    return object.Finish(kPathObject);
}

Bytes StoredPath() {
    return StoredBytes()
        .Hex("00000002 00001428") // a path object of 5160 bytes
        .Hex(kStoredBlendFields)
        .Add(StoredStyle())
        .Add(StoredBlock())
        .Hex("0001 0002") // closed, two segments
        .Hex(kStoredSegment)
        .Hex(kStoredSegment)
        .bytes();
}

namespace {

void FillPara(AidbTextPara& para) {
    para.reserved1 = 0x01000000;
    for (int i = 0; i < 3; ++i) para.wordSpacing[i] = 0x02000001 + i;
    for (int i = 0; i < 3; ++i) para.letterSpacing[i] = 0x03000001 + i;
    para.firstLineIndent = 0x04000001;
    para.startIndent = 0x04000002;
    para.endIndent = 0x04000003;
    para.justification = 0x0005;
    para.burasagari = 0x0106;
    para.kinsoku = 0x0107;
    para.gap1 = 0xA2A1;
    para.autoHyphenation = 0x0108;
    para.reserved2 = 0x0109;
    para.hyphenBefore = 0x010A;
    para.hyphenAfter = 0x010B;
    para.hyphenLimit = 0x010C;
    para.gap2 = 0xA2A1;
    para.constant25 = 0x00190000;
    para.repeatedCharacters = 0x010D;
    para.gap3 = 0xA2A1;
    para.kinsokuKind = 0x0001;
    para.constant1 = 0x0001;
    para.bunriKinshi = 0x010E;
    para.constant2 = 0x0001;
    para.burasagariForced = 0x010F;
    para.gap4 = 0xA2A1;
}
constexpr std::string_view kStoredPara =
    "01000000 "
    "02000001 02000002 02000003 03000001 03000002 03000003 " // word and letter spacing
    "04000001 04000002 04000003 "                            // indents
    "0005 0106 0107 A1A2 "                                   // justification, burasagari, kinsoku, gap
    "0108 0109 010A 010B 010C A1A2 "                         // hyphenation, gap
    "00190000 "                                              // 25.0
    "010D A1A2 "                                             // repeated characters, gap
    "0001 0001 010E 0001 010F A1A2"; // kinsoku kind, 1, bunri-kinshi, 1, forced burasagari, gap

void FillFont(AidbFontRef& font) {
    font.nameLength = 9;
    std::memcpy(font.name, "Ryumin-KL", 9);
    for (uint16_t i = 0; i < 3; ++i) font.classFirst[i] = static_cast<uint16_t>(0x0201 + i);
    font.reserved[1] = 0x0301;
    for (uint16_t i = 0; i < 9; ++i) font.classRest[i] = static_cast<uint16_t>(0x0401 + i);
}
Bytes StoredFont() {
    return StoredBytes()
        .Hex("09")
        .Text("Ryumin-KL", 255)
        .Hex("0201 0202 0203 0000 0301") // classes 1 to 3, reserved
        .Hex("0401 0402 0403 0404 0405 0406 0407 0408 0409")
        .bytes();
}

void FillCharacter(AidbCharacter& character) {
    character.fontSize = 0x000C0000;
    character.baselineShift = -0x00010000;
    character.leading = 0x05000001;
    character.tracking = 0x05000002;
    character.reserved1 = 0x0501;
    character.gap1 = 0xA2A1;
    character.horizontalScale = 0x00640000;
    character.verticalScale = 0x00650000;
    for (uint16_t i = 0; i < 3; ++i) character.reserved2[i] = static_cast<uint16_t>(0x0502 + i);
    character.gap2 = 0xA2A1;
    character.reserved3[0] = 0x05000003;
    character.reserved3[1] = 0x05000004;
    character.reserved4 = 0x0505;
    character.gap3 = 0xA2A1;
    character.reserved5 = 0x05000005;
    character.hasAlternateForm = 0x0001;
    character.gap4 = 0xA2A1;
    character.alternateForm = 3;
}
constexpr std::string_view kStoredCharacter =
    "000C0000 FFFF0000 05000001 05000002 " // size, baseline shift, leading, tracking
    "0501 A1A2 00640000 00650000 "         // reserved, gap, scales
    "0502 0503 0504 A1A2 05000003 05000004 0505 A1A2 05000005 "
    "0001 A1A2 00000003"; // has an alternate form, gap, which

void FillRun(AidbTextRun& run) {
    FillStyle(run.style);
    FillPara(run.para);
    FillFont(run.font);
    FillCharacter(run.character);
    run.tabs.reserved[0] = 0x06000001;
    run.tabs.reserved[1] = 0x06000002;
    for (AidbTabStop& tab : run.tabs.stops) tab = {0x0601, 0xA2A1, 0x06000003};
    run.kerning = 0x07000001;
    FillBlock(run.block);
    std::memcpy(run.text, "\x93\xFA\x96\x7B\r", 5); // two double-byte characters and a paragraph's end
}
Bytes StoredRun() {
    StoredBytes bytes;
    bytes.Add(StoredStyle()).Hex(kStoredPara).Add(StoredFont()).Hex(kStoredCharacter);
    bytes.Hex("06000001 06000002");
    for (int i = 0; i < 15; ++i) bytes.Hex("0601 A1A2 06000003");
    return bytes.Hex("07000001").Add(StoredBlock()).Text("\x93\xFA\x96\x7B\r", 256).bytes();
}

void FillTextPath(AidbTextPath& path, uint16_t segments) {
    path.matrix = {0x00010000, 0x08000001, 0x08000002, 0x00010000, 0x08000003, 0x08000004};
    path.closed = 0x0001;
    path.segmentCount = segments;
}
constexpr std::string_view kStoredTextMatrix = "00010000 08000001 08000002 00010000 08000003 08000004";

} // namespace

Bytes HostText() {
    HostObject object;
    auto& text = object.Add<AidbTextObject>();
    FillHeader(text.header);
    text.frameKind = 2;
    text.orientation = 0x0102;
    text.pathsOffset = 40 + 2 * 5888;
    text.pathsSize = 28 + 28 + 2 * 28;
    text.pathCount = 2;
    text.runCount = 2;
    FillRun(object.Add<AidbTextRun>());
    FillRun(object.Add<AidbTextRun>());
    FillTextPath(object.Add<AidbTextPath>(), 2);
    FillSegment(object.Add<AidbSegment>());
    FillSegment(object.Add<AidbSegment>());
    FillTextPath(object.Add<AidbTextPath>(), 0);
    return object.Finish(kTextObject);
}

Bytes StoredText() {
    return StoredBytes()
        .Hex("00000004 00002E98") // a text object of 40 + 2 x 5888 + 2 x 28 + 2 x 28 = 11928 bytes
        .Hex(kStoredBlendFields)
        .Hex("0002 0102")                   // on a path, orientation
        .Hex("00002E28 00000070 0002 0002") // paths at 11816, 112 bytes, two paths, two runs
        .Add(StoredRun())
        .Add(StoredRun())
        .Hex(kStoredTextMatrix)
        .Hex("0001 0002") // closed, two segments
        .Hex(kStoredSegment)
        .Hex(kStoredSegment)
        .Hex(kStoredTextMatrix)
        .Hex("0001 0000")
        .bytes();
}

Bytes HostNote() {
    HostObject object;
    object.Add<AidbObjectHeader>();
    object.AddBytes(StoredBytes().Text("PlacedFile = \"a.tif\"\r", 22).bytes());
    auto& note = object.Add<AidbNoteStyle>();
    std::memcpy(note.marker, kStyleMarker, 4);
    note.opacity = 0x0000C000;
    FillStyle(note.style);
    note.block.reserved.type = 0xA2A1; // nothing of a note's block is swapped
    object.AddBytes(Bytes(4));
    return object.Finish(kNoteObject);
}

Bytes StoredNote() {
    return StoredBytes()
        .Hex("00000007 0000140E") // a note of 24 + 22 + 5084 + 4 = 5134 bytes
        .Fill(16)
        .Text("PlacedFile = \"a.tif\"\r", 22)
        .Text("rsop", 4)
        .Hex("0000C000")
        .Add(StoredStyle())
        .Hex("A1A2")
        .Fill(4870)
        .Fill(4)
        .bytes();
}

Bytes HostRaster(uint16_t colorSpace) {
    HostObject object;
    auto& raster = object.Add<AidbRasterObject>();
    FillHeader(raster.header);
    raster.info = {0x0102, 0, 1, -2, 0x0020, 0x0104, 0x00000080, colorSpace, 0x0020, 0x0105, 0};
    raster.matrix = {0x00010000, 0x09000001, 0x09000002, -0x00010000, 0x09000003, 0x09000004};
    raster.bounds = {0x09000005, 0x09000006, 0x09000007, 0x09000008};
    raster.tileCount = 1;
    Bytes tile(TileBytes(colorSpace));
    for (size_t i = 0; i < tile.size(); ++i) tile[i] = static_cast<uint8_t>(i * 7);
    object.AddBytes(tile);
    auto& paint = object.Add<AidbRasterStyle>();
    std::memcpy(paint.marker, kStyleMarker, 4);
    FillStyle(paint.style);
    FillBlock(paint.block);
    return object.Finish(kRasterObject);
}

Bytes StoredRaster(uint16_t colorSpace) {
    const bool five = colorSpace == 18;
    StoredBytes bytes;
    bytes.Hex("00000009").Hex(five ? "00002834" : "00002434"); // 92 + 5120 or 4096 + 5080 bytes
    bytes.Hex(kStoredBlendFields);
    bytes.Hex("0102 0000 0001 FFFE 0020 0104 00000080");     // flags, gap, bounds, byte width
    bytes.Hex(five ? "0012" : "0011").Hex("0020 0105 0000"); // colour space, bits, original space, reserved
    bytes.Hex("00010000 09000001 09000002 FFFF0000 09000003 09000004"); // matrix
    bytes.Hex("09000005 09000006 09000007 09000008 00000001");          // bounds, tile count
    Bytes tile(five ? 5120 : 4096);
    for (size_t i = 0; i < tile.size(); ++i) tile[i] = static_cast<uint8_t>(i * 7);
    return bytes.Add(tile).Text("rsop", 4).Add(StoredStyle()).Add(StoredBlock()).bytes();
}

Bytes HostMesh() {
    HostObject object;
    auto& mesh = object.Add<AidbMeshObject>();
    FillHeader(mesh.header);
    mesh.meshType = 1;
    mesh.gridI = 0x00000102;
    mesh.gridJ = 0x00000103;
    mesh.vertexCount = 2;
    auto& vertex = object.Add<AidbMeshVertex>();
    vertex.size = 84 + 48 + 24;
    vertex.color.kind = kStoredThree;
    vertex.color.u.three = {0x00000A01, 0x00000A02, 0x00000A03};
    vertex.position = {0x00000A04, 0x00000A05};
    vertex.edgeCount = 2;
    auto& edge = object.Add<AidbMeshEdge>();
    edge = {48, {0x00000B01, 0x00000B02}, 0x0001, 0, 1, 2};
    object.Add<FixedPoint>() = {0x00000B03, 0x00000B04};
    object.Add<FixedPoint>() = {0x00000B05, 0x00000B06};
    object.Add<FixedPoint>() = {0x00000B07, 0x00000B08};
    object.Add<AidbMeshEdge>() = {24, {0x00000C01, 0x00000C02}, 0x0002, 0, 0, 0};
    auto& last = object.Add<AidbMeshVertex>();
    last.size = 84;
    last.color.u.gray = 0x00000D01;
    last.position = {0x00000D02, 0x00000D03};
    return object.Finish(kMeshObject);
}

Bytes StoredMesh() {
    return StoredBytes()
        .Hex("0000000B 00000118") // a mesh of 40 + 156 + 84 = 280 bytes
        .Hex(kStoredBlendFields)
        .Hex("00000001 00000102 00000103 00000002") // type, grid, two vertices
        .Hex("0000009C")                            // a vertex of 84 + 48 + 24 bytes
        .Hex("0005 0000 00000A01 00000A02 00000A03")
        .Fill(52)
        .Hex("00000A04 00000A05 00000002") // position, two edges
        .Hex("00000030 00000B01 00000B02 0001 0000 00000001 00000002")
        .Hex("00000B03 00000B04")                   // first list
        .Hex("00000B05 00000B06 00000B07 00000B08") // second list
        .Hex("00000018 00000C01 00000C02 0002 0000 00000000 00000000")
        .Hex("00000054 0000 0000 00000D01")
        .Fill(60)
        .Hex("00000D02 00000D03 00000000")
        .bytes();
}
