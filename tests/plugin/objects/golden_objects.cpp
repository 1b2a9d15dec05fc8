#include "tests/plugin/objects/golden_objects.h"

#include <algorithm>

namespace {

constexpr std::string_view kStoredBlendFields =
    "00000203 00008000 "   // blending mode, opacity 0.5
    "0001 0002 0104 0000"; // isolated, knockout, alpha is shape, reserved

constexpr std::string_view kStoredSegment =
    "00010002 FFFFFFFE " // anchor
    "01020304 05060708 " // in handle
    "090A0B0C 0D0E0F10 " // out handle
    "0001 'A1A2";        // corner, gap

Golden GoldenStyle() {
    return Golden()
        .Hex("0001 0102")                                             // fill and stroke flag
        .Hex("0004 0364")                                             // fill: gradient, custom reference
        .Hex("11121314 21222324 25262728 31323334 35363738")          // number, origin, angle, length
        .Hex("41000001 41000002 41000003 41000004 41000005 41000006") // matrix
        .Hex("51000001 51000002 80000000 80000000") // highlight angle and length, no translation
        .Hex("'B0B0B0B0")                           // beyond the fields of a gradient
        .Hex("0103 'A1A2")                          // fill overprint, gap
        .Hex("0002 0000")                           // stroke: pattern, no reference
        .Hex("00000007 61000001 61000002 61000003 61000004 61000005") // number, shift, scale, rotation
        .Hex("0105 'A1A2")                                            // reflect, gap
        .Hex("61000006 61000007 61000008")                            // reflect angle, shear angle and axis
        .Hex("71000001 71000002 71000003 71000004 71000005 71000006") // matrix
        .Hex("0106 'A1A2 00018000")                                   // stroke overprint, gap, line width
        .Hex("0006 'A1A2 12000001")                                   // dash count, gap, dash offset
        .Hex("13000001 13000002 13000003 13000004 13000005 13000006") // dashes
        .Hex("0107 0108 00040000")                                    // cap, join, miter limit
        .Hex("0109 010A 010B 'A1A2 03200000"); // clip, lock clip, even-odd, gap, resolution
}

Golden GoldenBlock() {
    Golden bytes;
    for (int half = 0; half < 2; ++half) {
        bytes.Hex("0001 0020"); // type, stop count
        bytes.Hex("00320000 00000100 0001 0000 00010000 00008000 00004000 00002000").Fill(48);
        bytes.Fill(30 * 76);
        bytes.Hex("00330000 00640000 0005 01C8 00000123 00000456 00000789").Fill(52, 0xC1);
    }
    return bytes;
}

constexpr std::string_view kStoredPara =
    "01000000 "
    "02000001 02000002 02000003 03000001 03000002 03000003 " // word and letter spacing
    "04000001 04000002 04000003 "                            // indents
    "0005 0106 0107 'A1A2 "                                  // justification, burasagari, kinsoku, gap
    "0108 0109 010A 010B 010C 'A1A2 "                        // hyphenation, gap
    "00190000 "                                              // 25.0
    "010D 'A1A2 "                                            // repeated characters, gap
    "0001 0001 010E 0001 010F 'A1A2"; // kinsoku kind, 1, bunri-kinshi, 1, forced burasagari, gap

Golden GoldenFont() {
    return Golden()
        .Hex("'09")
        .Text("Ryumin-KL", 255)
        .Hex("0201 0202 0203 0000 0301") // classes 1 to 3, reserved
        .Hex("0401 0402 0403 0404 0405 0406 0407 0408 0409");
}

constexpr std::string_view kStoredCharacter =
    "000C0000 FFFF0000 05000001 05000002 " // size, baseline shift, leading, tracking
    "0501 'A1A2 00640000 00650000 "        // reserved, gap, scales
    "0502 0503 0504 'A1A2 05000003 05000004 0505 'A1A2 05000005 "
    "0001 'A1A2 00000003"; // has an alternate form, gap, which

Golden GoldenRun() {
    Golden bytes;
    bytes.Add(GoldenStyle()).Hex(kStoredPara).Add(GoldenFont()).Hex(kStoredCharacter);
    bytes.Hex("06000001 06000002");
    for (int i = 0; i < 15; ++i) bytes.Hex("0601 'A1A2 06000003");
    return bytes.Hex("07000001").Add(GoldenBlock()).Text("\x93\xFA\x96\x7B\r", 256);
}

constexpr std::string_view kStoredTextMatrix = "00010000 08000001 08000002 00010000 08000003 08000004";

} // namespace

Golden& Golden::Hex(std::string_view groups) {
    for (size_t at = 0; at < groups.size();) {
        const size_t end = std::min(groups.find(' ', at), groups.size());
        const std::string_view group = groups.substr(at, end - at);
        const bool same = group.starts_with('\'');
        const Bytes bytes = StoredBytes().Hex(group.substr(same ? 1 : 0)).bytes();
        Add({same ? bytes : Bytes(bytes.rbegin(), bytes.rend()), bytes});
        at = end + 1;
    }
    return *this;
}

Golden GoldenPath() {
    return Golden()
        .Hex("00000002 00001428") // a path object of 5160 bytes
        .Hex(kStoredBlendFields)
        .Add(GoldenStyle())
        .Add(GoldenBlock())
        .Hex("0001 0002") // closed, two segments
        .Hex(kStoredSegment)
        .Hex(kStoredSegment);
}

Golden GoldenText() {
    return Golden()
        .Hex("00000004 00002E98") // a text object of 40 + 2 x 5888 + 2 x 28 + 2 x 28 = 11928 bytes
        .Hex(kStoredBlendFields)
        .Hex("0002 0102")                   // on a path, orientation
        .Hex("00002E28 00000070 0002 0002") // paths at 11816, 112 bytes, two paths, two runs
        .Add(GoldenRun())
        .Add(GoldenRun())
        .Hex(kStoredTextMatrix)
        .Hex("0001 0002") // closed, two segments
        .Hex(kStoredSegment)
        .Hex(kStoredSegment)
        .Hex(kStoredTextMatrix)
        .Hex("0001 0000");
}

Golden GoldenNote() {
    return Golden()
        .Hex("00000007 0000140E") // a note of 24 + 22 + 5084 + 4 = 5134 bytes
        .Fill(16)
        .Text("PlacedFile = \"a.tif\"\r", 22)
        .Text("rsop", 4)
        .Hex("0000C000")
        .Add(GoldenStyle())
        .Hex("'A1A2")
        .Fill(4870)
        .Fill(4);
}

Golden GoldenRaster(uint16_t colorSpace) {
    const bool five = colorSpace == 18;
    Golden bytes;
    bytes.Hex("00000009").Hex(five ? "00002834" : "00002434"); // 92 + 5120 or 4096 + 5080 bytes
    bytes.Hex(kStoredBlendFields);
    bytes.Hex("0102 0000 0001 FFFE 0020 0104 00000080");     // flags, gap, bounds, byte width
    bytes.Hex(five ? "0012" : "0011").Hex("0020 0105 0000"); // colour space, bits, original space, reserved
    bytes.Hex("00010000 09000001 09000002 FFFF0000 09000003 09000004"); // matrix
    bytes.Hex("09000005 09000006 09000007 09000008 00000001");          // bounds, tile count
    Bytes tile(five ? 5120 : 4096);
    for (size_t i = 0; i < tile.size(); ++i) tile[i] = static_cast<uint8_t>(i * 7);
    return bytes.Add({tile, tile}).Text("rsop", 4).Add(GoldenStyle()).Add(GoldenBlock());
}

Golden GoldenMesh() {
    return Golden()
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
        .Hex("00000D02 00000D03 00000000");
}
