#include "plugin/objects/conversions.h"

#include <cfloat>
#include <cmath>
#include <limits>

#include "tests/plugin/objects/object_bytes.h"

namespace {

using ConversionsTest = ObjectsTest;

TEST_F(ConversionsTest, FixedTruncatesTowardZero) {
    EXPECT_EQ(RealToFixed(1.0f), 0x00010000);
    EXPECT_EQ(RealToFixed(0.1f), 0x00001999);
    EXPECT_EQ(RealToFixed(-0.1f), -6553);
    EXPECT_EQ(RealToFixed(-32767.5f), -2147450880);
    EXPECT_EQ(FixedToReal(0x00018000), 1.5f);
    EXPECT_EQ(FixedToReal(-1), -1.0f / 65536);
}

// A float beyond 512 has fewer than 16 bits behind the point: the nearest one counts, not the double.
TEST_F(ConversionsTest, HostRealsPassThroughA32BitFloat) {
    EXPECT_EQ(HostRealToFixed(16000.0007), RealToFixed(16000.001f));
    EXPECT_EQ(HostRealToFixed(16000.0007), 0x3E800040);
}

// The lowest Fixed marks an absent translation, so no number may become it.
TEST_F(ConversionsTest, FixedSaturatesAndNeverGivesTheMark) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    for (const float large : {32768.0f, 1e30f, FLT_MAX, kInfinity}) {
        EXPECT_EQ(RealToFixed(large), 0x7FFFFFFF);
        EXPECT_EQ(RealToFixed(-large), -0x7FFFFFFF);
    }
    EXPECT_EQ(RealToFixed(std::nanf("")), 0);
    EXPECT_EQ(HostRealToFixed(DBL_MAX), 0x7FFFFFFF);
    EXPECT_EQ(HostRealToFixed(-1e300), -0x7FFFFFFF);
    EXPECT_EQ(HostRealToFixed(std::nan("")), 0);
}

// The fields by their places: a style whose conversion swapped two fields in both directions would come
// back all the same.
TEST_F(ConversionsTest, StyleFieldsLieWhereTheirNamesSay) {
    HostPathStyle style = {};
    style.fillPaint = 1;
    style.fill.u.gray.gray = 0.5;
    style.stroke.kind = kColorThree;
    style.stroke.u.three = {0.25, 0.5, 0.75};
    style.lineWidth = 2;
    style.dash = {2, 3, {4, 5, 0, 0, 0, 0}};
    style.lineCap = 1;
    style.lineJoin = 2;
    style.miterLimit = 10;
    style.evenOdd = 1;
    style.resolution = 800;
    AidbStyle stored = {};
    PathStyleToRecord(style, &stored);
    const Bytes bytes(reinterpret_cast<uint8_t*>(&stored),
                      reinterpret_cast<uint8_t*>(&stored) + sizeof stored);
    EXPECT_EQ(bytes, StoredBytes()
                         .Hex("0100 0000 0000 0000 00800000")
                         .Fill(60) // filled, not stroked, gray 0.5
                         .Hex("0000 0000")
                         .Hex("0500 0000 00400000 00800000 00C00000")
                         .Fill(52)
                         .Hex("0000 0000 00000200 0200 0000 00000300")
                         .Hex("00000400 00000500")
                         .Fill(16)
                         .Hex("0100 0200 00000A00 0000 0000 0100 0000 00002003")
                         .bytes());
}

TEST_F(ConversionsTest, DamagedDashCountStaysWithinTheHostsArray) {
    AidbStyle stored = {};
    HostPathStyle style = {};
    stored.dashCount = 7;
    PathStyleFromRecord(stored, &style);
    EXPECT_EQ(style.dash.count, 6);
    stored.dashCount = 0xFFFF;
    PathStyleFromRecord(stored, &style);
    EXPECT_EQ(style.dash.count, 0);
}

TEST_F(ConversionsTest, GradientKeepsItsTranslationOnlyIfOneIsGiven) {
    HostPathStyle style = {};
    style.fill.kind = style.stroke.kind = kColorGradient;
    AidbStyle stored = {};
    HostPathStyle back = {};
    const HostPoint spot = {12.5, -3.25};
    HostPoint read = {};
    PathStyleToRecord(style, &stored, &spot);
    EXPECT_EQ(stored.fill.u.gradient.translation.x + 0, 0x000C8000);
    EXPECT_EQ(stored.fill.u.gradient.translation.y + 0, -0x00034000);
    EXPECT_EQ(stored.stroke.u.gradient.translation.x + 0, kAbsentFixed);
    PathStyleFromRecord(stored, &back, &read);
    EXPECT_EQ(read.x, 12.5);
    EXPECT_EQ(read.y, -3.25);

    for (const HostPoint absent : {HostPoint{DBL_MAX, 0}, HostPoint{0, DBL_MAX}}) {
        PathStyleToRecord(style, &stored, &absent);
        EXPECT_EQ(stored.fill.u.gradient.translation.x + 0, kAbsentFixed);
        EXPECT_EQ(stored.fill.u.gradient.translation.y + 0, kAbsentFixed);
        PathStyleFromRecord(stored, &back, &read);
        EXPECT_EQ(read.x, DBL_MAX);
        EXPECT_EQ(read.y, DBL_MAX);
    }
    stored.fill.u.gradient.translation = {5, kAbsentFixed}; // one word is enough to mean absent
    PathStyleFromRecord(stored, &back, &read);
    EXPECT_EQ(read.x, DBL_MAX);
}

TEST_F(ConversionsTest, UnknownColorKindIsKeptWithoutValues) {
    HostColor color = {};
    color.kind = 6;
    AidbColor stored;
    std::memset(&stored, 0xAA, sizeof stored);
    ColorToRecord(color, &stored);
    EXPECT_EQ(stored.kind + 0, 6);
    EXPECT_EQ(stored.reference + 0, 0);
    EXPECT_EQ(stored.u.bytes[0], 0xAA); // bytes that the kind doesn't use stay
    ColorFromRecord(stored, &color);
    EXPECT_EQ(color.kind, 6);
    EXPECT_EQ(color.u.gray.gray, 0.0);
}

TEST_F(ConversionsTest, RasterBoundsAreCutTo16BitsAndComeBackSigned) {
    const HostRasterRecord raster = {0x00010203, -1, 0x18000, 40000, 300, 0x01020304, 18, 32, 0x10011};
    AidbRasterInfo stored = {};
    HostRasterRecord back = {};
    RasterInfoToRecord(raster, &stored);
    RasterInfoFromRecord(stored, &back);
    EXPECT_EQ(back.flags, 0x0203u);
    EXPECT_EQ(back.left, -1);
    EXPECT_EQ(back.top, -0x8000);
    EXPECT_EQ(back.right, 40000 - 65536);
    EXPECT_EQ(back.bottom, 300);
    EXPECT_EQ(back.byteWidth, 0x01020304u);
    EXPECT_EQ(back.colorSpace, 18);
    EXPECT_EQ(back.bitsPerPixel, 32);
    EXPECT_EQ(back.originalColorSpace, 0x11);
}

TEST_F(ConversionsTest, UnresolvedReferenceFallsBackToTheProcessColor) {
    AidbColor stored = {};
    stored.kind = kStoredGray;
    stored.u.gray = 0x00008000;
    globals->customCount = 3;
    globals->customHandles[0] = reinterpret_cast<CustomColorHandle>(0x10001);
    globals->customHandles[3] = reinterpret_cast<CustomColorHandle>(0x10004); // left from an earlier record
    for (const uint16_t reference : {0x0364, 0x0464, 0xFFC8, 0x0064}) {
        HostColor color = {};
        stored.reference = reference;
        ColorFromRecord(stored, &color);
        EXPECT_EQ(color.kind, kColorGray) << reference;
        EXPECT_EQ(color.u.gray.gray, 0.5) << reference;
    }
}

} // namespace
