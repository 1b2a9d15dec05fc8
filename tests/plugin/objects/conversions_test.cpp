#include "plugin/objects/conversions.h"

#include <cfloat>
#include <cmath>
#include <limits>
#include <random>

#include "tests/plugin/objects/object_bytes.h"

namespace {

class ConversionsTest : public ObjectsTest {
protected:
    double Real(double range = 30000.0) {
        return std::uniform_real_distribution<double>(-range, range)(random_);
    }
    HostPoint Point() { return {Real(), Real()}; }
    HostMatrix Matrix() { return {Real(), Real(), Real(), Real(), Real(), Real()}; }
    int32_t Small() { return std::uniform_int_distribution<int32_t>(-32768, 32767)(random_); }

    HostColor Color(int32_t kind) {
        HostColor color = {};
        color.kind = kind;
        switch (kind) {
            case kColorGray:
                color.u.gray.gray = Real(1);
                break;
            case kColorFour:
                color.u.four = {Real(1), Real(1), Real(1), Real(1)};
                break;
            case kColorThree:
                color.u.three = {Real(1), Real(1), Real(1)};
                break;
            case kColorPattern:
                color.u.pattern = {reinterpret_cast<PatternHandle>(uintptr_t{17}),
                                   Real(),
                                   Real(),
                                   Point(),
                                   Real(),
                                   1,
                                   Real(),
                                   Real(),
                                   Real(),
                                   Matrix()};
                break;
            case kColorGradient:
                color.u.gradient = {nullptr, Point(), Real(), Real(), Matrix(), Real(), Real()};
                break;
        }
        return color;
    }

private:
    std::mt19937 random_{65536};
};

/// What narrowing to a float, truncating to 1/65536 and narrowing again can lose.
void ExpectNear(double stored, double given) {
    EXPECT_NEAR(stored, given, 1.0 / 65536 + std::fabs(given) * std::ldexp(1.0, -23));
}
void ExpectNear(const HostPoint& stored, const HostPoint& given) {
    ExpectNear(stored.x, given.x);
    ExpectNear(stored.y, given.y);
}
void ExpectNear(const HostMatrix& stored, const HostMatrix& given) {
    ExpectNear(stored.a, given.a);
    ExpectNear(stored.b, given.b);
    ExpectNear(stored.c, given.c);
    ExpectNear(stored.d, given.d);
    ExpectNear(stored.tx, given.tx);
    ExpectNear(stored.ty, given.ty);
}
void ExpectNear(const HostColor& stored, const HostColor& given) {
    ASSERT_EQ(stored.kind, given.kind);
    switch (given.kind) {
        case kColorGray:
            return ExpectNear(stored.u.gray.gray, given.u.gray.gray);
        case kColorFour:
            ExpectNear(stored.u.four.cyan, given.u.four.cyan);
            ExpectNear(stored.u.four.magenta, given.u.four.magenta);
            ExpectNear(stored.u.four.yellow, given.u.four.yellow);
            return ExpectNear(stored.u.four.black, given.u.four.black);
        case kColorThree:
            ExpectNear(stored.u.three.red, given.u.three.red);
            ExpectNear(stored.u.three.green, given.u.three.green);
            return ExpectNear(stored.u.three.blue, given.u.three.blue);
        case kColorPattern: {
            const HostPatternUse &a = stored.u.pattern, &b = given.u.pattern;
            EXPECT_EQ(a.pattern, b.pattern);
            EXPECT_EQ(a.reflect, b.reflect);
            const double left[] = {a.shiftDistance, a.shiftAngle, a.rotation,
                                   a.reflectAngle,  a.shearAngle, a.shearAxis};
            const double right[] = {b.shiftDistance, b.shiftAngle, b.rotation,
                                    b.reflectAngle,  b.shearAngle, b.shearAxis};
            for (size_t i = 0; i < std::size(left); ++i) ExpectNear(left[i], right[i]);
            ExpectNear(a.scale, b.scale);
            return ExpectNear(a.matrix, b.matrix);
        }
        case kColorGradient: {
            const HostGradientUse &a = stored.u.gradient, &b = given.u.gradient;
            EXPECT_EQ(a.gradient, b.gradient);
            const double left[] = {a.angle, a.length, a.highlightAngle, a.highlightLength};
            const double right[] = {b.angle, b.length, b.highlightAngle, b.highlightLength};
            for (size_t i = 0; i < std::size(left); ++i) ExpectNear(left[i], right[i]);
            ExpectNear(a.origin, b.origin);
            return ExpectNear(a.matrix, b.matrix);
        }
    }
}

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

TEST_F(ConversionsTest, FixedNumbersOfSmallMagnitudeComeBackExactly) {
    for (Fixed value = -0x00FFFFFF; value < 0x01000000; value += 65521)
        EXPECT_EQ(RealToFixed(FixedToReal(value)), value);
}

TEST_F(ConversionsTest, GeometryComesBackWithinTheNarrowing) {
    for (int i = 0; i < 500; ++i) {
        const HostPathSegment segment = {Point(), Point(), Point(), i % 2};
        AidbSegment storedSegment = {};
        HostPathSegment segmentBack = {};
        SegmentToRecord(segment, &storedSegment);
        SegmentFromRecord(storedSegment, &segmentBack);
        ExpectNear(segmentBack.anchor, segment.anchor);
        ExpectNear(segmentBack.in, segment.in);
        ExpectNear(segmentBack.out, segment.out);
        EXPECT_EQ(segmentBack.corner, segment.corner);

        const HostRect rect = {Real(), Real(), Real(), Real()};
        FixedRect storedRect = {};
        HostRect rectBack = {};
        RectToRecord(rect, &storedRect);
        RectFromRecord(storedRect, &rectBack);
        ExpectNear(rectBack.left, rect.left);
        ExpectNear(rectBack.top, rect.top);
        ExpectNear(rectBack.right, rect.right);
        ExpectNear(rectBack.bottom, rect.bottom);

        const HostMatrix matrix = Matrix();
        FixedMatrix storedMatrix = {};
        HostMatrix matrixBack = {};
        MatrixToRecord(matrix, &storedMatrix);
        MatrixFromRecord(storedMatrix, &matrixBack);
        ExpectNear(matrixBack, matrix);
    }
}

TEST_F(ConversionsTest, ColorsComeBackWithinTheNarrowing) {
    for (int i = 0; i < 600; ++i) {
        const int32_t kind = i % 6;
        if (kind == kColorCustom) continue;
        SCOPED_TRACE(kind);
        const HostColor color = Color(kind);
        AidbColor stored = {};
        HostColor back = {};
        ColorToRecord(color, &stored);
        ColorFromRecord(stored, &back);
        ExpectNear(back, color);
    }
}

TEST_F(ConversionsTest, StylesComeBackWithinTheNarrowing) {
    for (int i = 0; i < 200; ++i) {
        HostPathStyle style = {};
        style.fillPaint = Small();
        style.strokePaint = Small();
        style.fill = Color(kColorPattern);
        style.fillOverprint = Small();
        style.stroke = Color(kColorFour);
        style.strokeOverprint = Small();
        style.lineWidth = Real();
        style.dash = {i % 7, Real(), {Real(), Real(), Real(), Real(), Real(), Real()}};
        style.lineCap = Small();
        style.lineJoin = Small();
        style.miterLimit = Real();
        style.clip = Small();
        style.lockClip = Small();
        style.evenOdd = Small();
        style.resolution = Real();
        AidbStyle stored = {};
        HostPathStyle back = {};
        PathStyleToRecord(style, &stored);
        PathStyleFromRecord(stored, &back);

        ExpectNear(back.fill, style.fill);
        ExpectNear(back.stroke, style.stroke);
        const int32_t left[] = {back.fillPaint,  back.strokePaint, back.fillOverprint, back.strokeOverprint,
                                back.dash.count, back.lineCap,     back.lineJoin,      back.clip,
                                back.lockClip,   back.evenOdd};
        const int32_t right[] = {
            style.fillPaint, style.strokePaint, style.fillOverprint, style.strokeOverprint, style.dash.count,
            style.lineCap,   style.lineJoin,    style.clip,          style.lockClip,        style.evenOdd};
        for (size_t k = 0; k < std::size(left); ++k) EXPECT_EQ(left[k], right[k]) << k;
        ExpectNear(back.lineWidth, style.lineWidth);
        ExpectNear(back.dash.offset, style.dash.offset);
        for (int k = 0; k < 6; ++k) ExpectNear(back.dash.lengths[k], style.dash.lengths[k]);
        ExpectNear(back.miterLimit, style.miterLimit);
        ExpectNear(back.resolution, style.resolution);
    }
}

// The fields by their places: a style whose conversion swapped two fields in both directions would come
// back all the same.
TEST_F(ConversionsTest, StyleFieldsLieWhereTheirNamesSay) {
    HostPathStyle style = {};
    style.fillPaint = 1;
    style.fill = Color(kColorGray);
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
    style.fill = Color(kColorGradient);
    style.stroke = Color(kColorGradient);
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

TEST_F(ConversionsTest, StopsKeepAllButTheirOpacity) {
    for (int i = 0; i < 100; ++i) {
        const HostGradientStop stop = {std::fabs(Real(100)), std::fabs(Real(100)), Color(kColorThree), 0.3};
        AidbGradientStop stored = {};
        HostGradientStop back = {};
        GradientStopToRecord(stop, &stored);
        GradientStopFromRecord(stored, &back);
        ExpectNear(back.midpoint, stop.midpoint);
        ExpectNear(back.location, stop.location);
        ExpectNear(back.color, stop.color);
        EXPECT_EQ(back.opacity, 1.0);
    }
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

// ---- References to custom colours, as a load resolves them ----

class ReferenceTest : public ConversionsTest {
protected:
    static CustomColorHandle Ink(uintptr_t n) { return reinterpret_cast<CustomColorHandle>(0x10000 + n); }
    static AidbColor Gray(uint16_t reference) {
        AidbColor stored = {};
        stored.kind = kStoredGray;
        stored.reference = reference;
        stored.u.gray = 0x00008000;
        return stored;
    }
};

TEST_F(ReferenceTest, RowWithAHostColorComesBackAsThatColor) {
    globals->customCount = 3;
    globals->customHandles[2] = Ink(3);
    HostColor color = {};
    ColorFromRecord(Gray(0x0364), &color);
    EXPECT_EQ(color.kind, kColorCustom);
    EXPECT_EQ(color.u.custom.color, Ink(3));
    EXPECT_EQ(color.u.custom.tint, 0.5);
}

TEST_F(ReferenceTest, UnresolvedReferenceFallsBackToTheProcessColor) {
    globals->customCount = 3;
    globals->customHandles[0] = Ink(1);
    globals->customHandles[3] = Ink(4); // left from an earlier record
    for (const uint16_t reference : {0x0364, 0x0464, 0xFFC8, 0x0064}) {
        SCOPED_TRACE(reference);
        HostColor color = {};
        ColorFromRecord(Gray(reference), &color);
        EXPECT_EQ(color.kind, kColorGray);
        EXPECT_EQ(color.u.gray.gray, 0.5);
    }
}

TEST_F(ReferenceTest, CustomKindWithoutAReferenceNamesNoHandle) {
    AidbColor stored = Gray(0);
    stored.kind = kStoredCustom;
    HostColor color;
    std::memset(&color, 0xAA, sizeof color);
    ColorFromRecord(stored, &color);
    EXPECT_EQ(color.kind, kColorCustom);
    EXPECT_EQ(color.u.custom.color, nullptr);
}

} // namespace
