#include "plugin/placement/snap.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <utility>

#include "tests/plugin/placement/snap_moves.h"
#include "tests/support/plugin_fixture.h"

using workbench::Art;
using workbench::PathData;

namespace {

class SnapTest : public PluginFixture {
protected:
    PathData& AddPath(Art* parent, std::vector<HostPathSegment> segments, bool closed = false) {
        PathData& path = *document().AppendArt(kArtPath, parent)->path();
        path.segments = std::move(segments);
        path.closed = closed;
        return path;
    }
    PathData& AddLine(HostPoint a, HostPoint b) {
        return AddPath(document().LayerAt(0).root, {Corner(a.x, a.y), Corner(b.x, b.y)});
    }
    void SetZoom(double zoom) { document().view().zoom = zoom; }

    struct Result {
        HostPoint point;
        int16_t kind;
    };
    using Search = HostError (*)(HostPoint&, int16_t&);

    /// The same with and without an index, or the test fails.
    Result Try(Search search, HostPoint point) {
        Result walked{point, kSnapNone}, indexed = walked;
        EXPECT_EQ(search(walked.point, walked.kind), kHostNoError);
        const Snapping snapping;
        EXPECT_EQ(search(indexed.point, indexed.kind), kHostNoError);
        EXPECT_EQ(indexed.kind, walked.kind);
        EXPECT_EQ(std::memcmp(&indexed.point, &walked.point, sizeof(HostPoint)), 0);
        return walked;
    }
    void ExpectSnap(Search search, HostPoint from, int16_t kind, HostPoint to) {
        const Result result = Try(search, from);
        EXPECT_EQ(result.kind, kind) << from.x << ", " << from.y;
        EXPECT_EQ(result.point.x, to.x) << from.x << ", " << from.y;
        EXPECT_EQ(result.point.y, to.y) << from.x << ", " << from.y;
    }
    void ExpectMiss(Search search, HostPoint from) { ExpectSnap(search, from, kSnapNone, from); }
};

TEST_F(SnapTest, PullIsTwoPixelsAtAnyZoomAndTheFirstAnchorWins) {
    Art* group = document().AppendArt(kArtGroup, document().LayerAt(0).root);
    AddPath(group, {Corner(10, 10), Corner(10.5, 10)});
    AddPath(document().LayerAt(0).root, {Corner(11, 10)});
    for (const double zoom : {1.0, 4.0, 0.25}) {
        SetZoom(zoom);
        const double tolerance = 2 / zoom;
        ExpectSnap(SnapToAnchor, {10 - tolerance, 10 - tolerance}, kSnapAnchor, {10, 10});
        ExpectMiss(SnapToAnchor, {10 - tolerance * 1.0001, 10});
        ExpectMiss(SnapToAnchor, {10, 10 - tolerance * 1.0001});
    }
    SetZoom(1);
    ExpectSnap(SnapToAnchor, {11, 10}, kSnapAnchor, {10, 10}); // not the nearest
    workbench::Layer& above = document().InsertLayer(0, "above");
    AddPath(above.root, {Corner(11.5, 10)});
    document().Find(group->handle)->hidden = true;
    above.locked = true;
    ExpectSnap(SnapToAnchor, {11, 10}, kSnapAnchor, {11.5, 10});
    above.visible = false;
    ExpectSnap(SnapToAnchor, {11, 10}, kSnapAnchor, {10, 10});
}

TEST_F(SnapTest, NothingWithoutAPullOrWhenAlreadySnapped) {
    AddLine({0, 0}, {10, 10});
    for (const Search search : {SnapToAnchor, SnapToIntersection, SnapToPath}) {
        for (const double zoom :
             {0.0, std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
            SetZoom(zoom);
            ExpectMiss(search, {0, 0});
        }
        SetZoom(1);
        HostPoint point{0.5, 0};
        int16_t kind = kSnapGrid;
        EXPECT_EQ(search(point, kind), kHostNoError);
        EXPECT_EQ(kind, kSnapGrid);
        EXPECT_EQ(point.x, 0.5);
    }
    host().Close();
    for (const Search search : {SnapToAnchor, SnapToIntersection, SnapToPath}) ExpectMiss(search, {0, 0});
}

TEST_F(SnapTest, CrossingsComeOutInSinglePrecision) {
    AddLine({100.1, 0}, {100.1, 400});
    AddLine({0, 200.2}, {400, 200.2});
    ExpectSnap(SnapToIntersection, {101, 201}, kSnapIntersection, {100.1f, 200.2f});
}

// The slanted line meets the vertical one 48 points away from the pointer, beyond its own end.
TEST_F(SnapTest, VerticalLinesCrossHoweverFarOff) {
    AddLine({2, 0}, {2, 10});
    AddLine({3, 5}, {4, 55});
    ExpectSnap(SnapToIntersection, {2.5, 8}, kSnapIntersection, {2, -45});
}

TEST_F(SnapTest, LinesThatMeetBeyondAllNumbersDontCross) {
    AddLine({1, 0}, {1, 24});
    AddLine({0, 0}, {1e-40, 24});
    EXPECT_EQ(Try(SnapToIntersection, {0.5, 12}).kind, kSnapNone);
    EXPECT_EQ(Try(SnapToIntersection, {0.5, 0}).kind, kSnapNone);
}

TEST_F(SnapTest, GridRoundsHalvesAwayFromZero) {
    constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
    struct Case {
        double spacing, from, to;
    };
    const Case cases[] = {{10, 14.9, 10},
                          {10, 15, 20},
                          {10, -15, -20},
                          {10, -14.9, -10},
                          {0.1, 0.27, 0.3f},
                          {14.17323, 100, 7 * 14.17323f},
                          {0, 3.3, 3.3},
                          {-1, 3.3, 3.3},
                          {kNone, 3.3, 3.3},
                          {HUGE_VAL, 3.3, 3.3},
                          {1, kNone, kNone},
                          {1, 2147483647.5, 2147483647.5},
                          {1, 2147483647.25, 0x1p31}};
    for (const Case& each : cases) {
        globals->flGrWidth = each.spacing;
        globals->flGrHeight = 7;
        HostPoint point{each.from, 11};
        SnapToGrid(point);
        if (std::isnan(each.to))
            EXPECT_TRUE(std::isnan(point.x));
        else
            EXPECT_EQ(point.x, each.to) << each.from << " by " << each.spacing;
        EXPECT_EQ(point.y, 14);
    }
}

// VELQUORNE_SNAP_MOVES says how many moves, for longer runs by hand.
TEST_F(SnapTest, WalkAndIndexDoAsThePlainSearches) {
    constexpr int kMovesEach = 150;
    const char* wanted = std::getenv("VELQUORNE_SNAP_MOVES");
    const long moves = wanted ? std::atol(wanted) : 36000;
    std::array<long, kSnapCases> met{};
    for (unsigned seed = 0; seed < static_cast<unsigned>(moves / kMovesEach); ++seed) {
        OpenEmptyDocument();
        Scribbler(seed).Scribble(document());
        PlainSnap plain(document());
        ASSERT_EQ(MakeMoves(document(), seed, kMovesEach, plain), "") << seed;
        for (size_t i = 0; i < kSnapCases; ++i) met[i] += plain.counts()[i];
    }
    for (size_t i = 0; i < kBeyondNumbers; ++i) { // that one is rare
        EXPECT_GT(met[i], 0) << "case " << i << " of a crossing was never met";
        RecordProperty("case_" + std::to_string(i), std::to_string(met[i]));
    }
}

} // namespace
