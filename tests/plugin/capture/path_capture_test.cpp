#include "plugin/capture/path_capture.h"
#include "plugin/capture/pattern_capture.h"

#include <cstring>

#include "tests/plugin/capture/capture_fixture.h"

using ::testing::ElementsAre;
using workbench::Art;

namespace {

class PathCaptureTest : public CaptureTest {
protected:
    static HostColor PaintOf(const workbench::Gradient& gradient) {
        HostColor color{};
        color.kind = kColorGradient;
        color.u.gradient = {};
        color.u.gradient.gradient = gradient.handle;
        color.u.gradient.matrix = {1, 0, 0, 1, 0, 0};
        return color;
    }
    using CaptureTest::PaintOf;
};

// Between two paths the block that they are made in must be clean again: the second, shorter one would
// otherwise carry what the first one left.
TEST_F(PathCaptureTest, NothingOfALongPathIsLeftInTheNext) {
    const auto& gradient = document().NewGradient("");
    std::vector<HostPoint> points(7000, HostPoint{1, 2});
    Fill(AddPath(root(), points), PaintOf(gradient));
    AddPath(root(), {{0, 0}, {5, 5}});
    CaptureAll();
    EXPECT_EQ(PathAt(0).header.size, 5104u + 28 * 7000);
    EXPECT_EQ(PathAt(1).header.size, 5160u);
    EXPECT_EQ(PathAt(1).block.ramp.stopCount, 0);
    EXPECT_EQ(PathAt(1).style.fillFlag, 0);
}

// A count of more than 16 signed bits would make all segments unreadable.
TEST_F(PathCaptureTest, SegmentsBeyondTheCountsRangeAreLeftOutAndReported) {
    const Art& path = AddPath(root(), std::vector<HostPoint>(40000, HostPoint{1, 2}));
    MemoryHandle object = NewHandle(kOneSegmentPathBytes, kSmallGrain);
    const HostPoint origin{0, 0};
    EXPECT_EQ(PostArtPathProcess(path.handle, object, &origin), kHostBadParameter);
    AidbPathObject stored;
    std::memcpy(&stored, BlockBytes(object), sizeof stored);
    EXPECT_EQ(stored.segmentCount, 32767);
    EXPECT_EQ(stored.header.size, 5104u + 28 * 32767);
    FreeHandle(object);
}

TEST_F(PathCaptureTest, GradientMovesIntoTheRecordsFrame) {
    document().hardOrigin = {1000, 2000};
    auto& gradient = document().NewGradient("");
    gradient.type = kGradientRadial;
    Art& path = AddPath(root(), {{100, 50}, {200, 90}});
    HostColor fill = PaintOf(gradient);
    fill.u.gradient.origin = {60, 40};
    fill.u.gradient.angle = 30;
    fill.u.gradient.length = 25;
    fill.u.gradient.matrix = {2, 0, 0, 4, 10, 20};
    fill.u.gradient.highlightAngle = 15;
    fill.u.gradient.highlightLength = 0.5;
    Fill(path, fill);
    CaptureAll();

    const AidbPathObject stored = PathAt(0);
    ASSERT_EQ(stored.style.fill.kind, kStoredGradient);
    const AidbGradientUse& use = stored.style.fill.u.gradient;
    EXPECT_EQ(use.number, 0u);
    // The record's origin is (100, 50): less 100/2 and 50/4 in the gradient's own space.
    EXPECT_EQ(use.origin.x, Fix(10));
    EXPECT_EQ(use.origin.y, Fix(27.5));
    EXPECT_EQ(use.angle, Fix(30));
    EXPECT_EQ(use.length, Fix(25));
    EXPECT_EQ(use.matrix.a, Fix(2));
    EXPECT_EQ(use.matrix.tx, Fix(10 + 1000));
    EXPECT_EQ(use.matrix.ty, Fix(20 - 2000));
    EXPECT_EQ(use.highlightAngle, Fix(15));
    EXPECT_EQ(use.highlightLength, Fix(0.5));
    EXPECT_EQ(use.translation.x, Fix(10));
    EXPECT_EQ(use.translation.y, Fix(20));
    EXPECT_EQ(stored.block.ramp.type, kGradientRadial);
    EXPECT_EQ(stored.block.ramp.stopCount, 2);
    EXPECT_EQ(stored.block.ramp.stops[1].location, Fix(100));
    EXPECT_EQ(stored.block.ramp.stops[1].color.u.gray, Fix(1));
}

// A handle that paints nothing would make two captures of the same art differ.
TEST_F(PathCaptureTest, UnpaintedPatternsAndGradientsLeaveNoHandle) {
    Art& path = AddLine(root());
    path.path()->style.fill = PaintOf(AddPattern());
    path.path()->style.fillPaint = 0;
    path.path()->style.stroke = PaintOf(document().NewGradient(""));
    path.path()->style.strokePaint = 0;
    CaptureAll();
    EXPECT_THAT(Stream(), ElementsAre("path"));
    EXPECT_EQ(PathAt(0).style.fill.u.pattern.number, 0u);
    EXPECT_EQ(PathAt(0).style.stroke.u.gradient.number, 0u);

    Fill(path, PaintOf(document().NewPattern("without art"))); // nor has it a run
    CaptureAll();
    EXPECT_THAT(Stream(), ElementsAre("path"));
}

// Runs never lie within each other: a load that meets a run's notes takes all between them as one pattern.
TEST_F(PathCaptureTest, PatternsWithinPatternsLieFlatInTheOrderOfTheirNumbers) {
    const auto& innermost = AddPattern();
    auto& inner = AddPattern();
    Fill(*inner.art->firstChild, PaintOf(innermost));
    auto& outer = AddPattern();
    Fill(*outer.art->firstChild, PaintOf(inner));
    Stroke(*outer.art->firstChild, PaintOf(innermost));
    AddLine(*outer.art);
    Fill(AddLine(root()), PaintOf(outer));
    Fill(AddLine(root()), PaintOf(innermost));
    CaptureAll();
    EXPECT_THAT(Stream(),
                ElementsAre("path", "path", "PatternArt00001 /", "path", "path", "/ PatternArt00001",
                            "PatternArt00002 /", "path", "/ PatternArt00002", "PatternArt00003 /", "path",
                            "/ PatternArt00003", "PatternArt00004 /", "path", "/ PatternArt00004",
                            "PatternArt00005 /", "path", "/ PatternArt00005"));
    EXPECT_EQ(PathAt(2).style.fill.u.pattern.number, 2u);
    EXPECT_EQ(PathAt(2).style.stroke.u.pattern.number, 4u);
    EXPECT_EQ(PathAt(4).style.fill.u.pattern.number, 3u);
    EXPECT_EQ(PathAt(1).style.fill.u.pattern.number, 5u);
}

TEST_F(PathCaptureTest, NumbersEndAt1023) {
    const auto& pattern = AddPattern();
    for (int i = 0; i < 1030; ++i) Fill(AddLine(root()), PaintOf(pattern));
    CaptureAll();
    EXPECT_EQ(Stream().size(), 1030u + 1023 * 3);
    EXPECT_EQ(PathAt(1022).style.fill.u.pattern.number, 1023u);
    EXPECT_EQ(PathAt(1023).style.fill.u.pattern.number, 0u);
    EXPECT_EQ(PathAt(1029).style.fill.kind, kStoredPattern);
}

// It would take the stack of the host with it.
TEST_F(PathCaptureTest, APatternWithinItselfEndsAtALimit) {
    auto& pattern = AddPattern();
    Fill(*pattern.art->firstChild, PaintOf(pattern));
    Fill(AddLine(root()), PaintOf(pattern));
    CaptureAll();
    EXPECT_EQ(Stream().size(), 1u + kPatternDepth * 3);
    EXPECT_EQ(PathAt(kPatternDepth - 1).style.fill.u.pattern.number, static_cast<uint32_t>(kPatternDepth));
    EXPECT_EQ(PathAt(kPatternDepth).style.fill.u.pattern.number, 0u);
}

} // namespace
