#include "plugin/placement/snap.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <random>
#include <utility>

#include "plugin/placement/geometry.h"
#include "plugin/placement/snap_index.h"
#include "tests/plugin/placement/plain_snap.h"
#include "tests/support/plugin_fixture.h"

using workbench::Art;
using workbench::PathData;

namespace {

HostPathSegment Corner(double x, double y) {
    return {{x, y}, {x, y}, {x, y}, 1};
}

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

TEST_F(SnapTest, CornersAreNoIntersectionsAndGapsNoPieces) {
    PathData& path = AddPath(document().LayerAt(0).root, {Corner(0, 0), Corner(50, 0), Corner(50, 40)});
    const Result corner = Try(SnapToIntersection, {49, 1});
    EXPECT_EQ(corner.kind, kSnapNone);
    EXPECT_EQ(corner.point.x, 50); // on the anchor, from where the path search finds the first piece
    EXPECT_EQ(Try(SnapToPath, corner.point).kind, kSnapPath);
    ExpectMiss(SnapToPath, {25, 20});
    path.closed = true; // the closing piece has a slope above 0.5, so x moves
    ExpectSnap(SnapToPath, {26, 20}, kSnapPath, {25, 20});
    // Away from the corner the closing piece and the first one cross, being no successive numbers.
    EXPECT_EQ(Try(SnapToIntersection, {1, 1}).kind, kSnapIntersection);
}

TEST_F(SnapTest, OnlyTheFirstTwoPiecesCount) {
    AddLine({0, 10}, {40, 10});
    AddLine({0, 10.5}, {40, 10.5}); // parallel to the first
    AddLine({20, 0}, {20, 40});
    const Result result = Try(SnapToIntersection, {20, 10});
    EXPECT_EQ(result.kind, kSnapNone);
    EXPECT_EQ(result.point.y, 10.5);
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

// Random art in a small place, where pieces of all kinds lie within each other's reach.
class Scribbler {
public:
    explicit Scribbler(unsigned seed) : random_(seed) {}

    int Below(int bound) { return std::uniform_int_distribution<>(0, bound - 1)(random_); }
    double Uniform(double from, double to) {
        return std::uniform_real_distribution<double>(from, to)(random_);
    }
    bool Often(int percent) { return Below(100) < percent; }
    double Number() { return Often(60) ? Below(kSide) : Uniform(0, kSide); }
    HostPoint Point() { return {Number(), Number()}; }
    HostPoint Beside(HostPoint point, double reach) {
        return {point.x + Uniform(-reach, reach), point.y + Uniform(-reach, reach)};
    }

    void Fill(workbench::Document& document, Art* container, int members, int depth) {
        for (int i = 0; i < members; ++i) {
            if (depth > 0 && Often(20)) {
                const int32_t kind = Often(40) ? kArtCompoundPath : Often(80) ? kArtGroup : kArtPlugin;
                Fill(document, document.AppendArt(kind, container), 2, depth - 1);
            } else if (Often(3)) {
                document.AppendArt(kArtMesh, container);
            } else {
                Draw(*document.AppendArt(kArtPath, container)->path());
            }
        }
    }

private:
    static constexpr int kSide = 24;

    void Draw(PathData& path) {
        if (Often(35)) {
            DrawCircle(path);
        } else {
            for (int i = Below(4) + (Often(90) ? 1 : 0); i > 0; --i) path.segments.push_back(Segment(path));
            path.closed = Often(50);
        }
    }

    HostPathSegment Segment(const PathData& path) {
        HostPoint anchor = Point();
        if (!path.segments.empty() && Often(40)) { // straight up or across
            const HostPoint last = path.segments.back().anchor;
            (Often(60) ? anchor.x : anchor.y) = Often(60) ? last.x : last.y;
        }
        HostPathSegment segment{anchor, anchor, anchor, 1};
        if (Often(30)) segment.out = Beside(anchor, 12);
        if (Often(30)) segment.in = Beside(anchor, 12);
        return segment;
    }

    /// Quarters of a circle, whole or open, sometimes turned; centres and radii often agree.
    void DrawCircle(PathData& path) {
        const HostPoint center{10.0 + Below(3) * (Often(50) ? 1 : 4), 10.0 + Below(3)};
        const double radius = Often(50) ? 4 + Below(4) : Uniform(2, 9);
        const double turn = Often(50) ? 0 : Uniform(0, 7);
        const double handle = radius * (Often(90) ? 0.5523 : -0.5523);
        const int quarters = 2 + Below(4);
        for (int i = 0; i < quarters; ++i) {
            const double angle = turn + i * 1.5707963267948966;
            const double c = std::round(std::cos(angle) * 1e9) / 1e9;
            const double s = std::round(std::sin(angle) * 1e9) / 1e9;
            const HostPoint anchor{center.x + radius * c, center.y + radius * s};
            path.segments.push_back({anchor,
                                     {anchor.x + handle * s, anchor.y - handle * c},
                                     {anchor.x - handle * s, anchor.y + handle * c},
                                     0});
        }
        path.closed = quarters == 4;
    }

    std::mt19937 random_;
};

class SnapDifference : public SnapTest {
protected:
    void DrawDocument(unsigned seed) {
        OpenEmptyDocument();
        Scribbler scribbler(seed);
        constexpr double zooms[] = {1, 1, 4, 0.7, -1, 25};
        SetZoom(zooms[seed % 6]);
        scribbler.Fill(document(), document().LayerAt(0).root, 3 + scribbler.Below(12), 3);
        if (seed % 3) return;
        workbench::Layer& above = document().InsertLayer(0, "above");
        above.visible = seed % 2 == 0;
        above.locked = true;
        scribbler.Fill(document(), above.root, 3, 1);
    }

    std::vector<HostPoint> Anchors() {
        std::vector<HostPoint> anchors;
        for (size_t i = 0; i < document().LayerCount(); ++i) {
            workbench::ForEachArt(*document().LayerAt(i).root, [&](const Art& art) {
                if (!art.path()) return;
                for (const HostPathSegment& segment : art.path()->segments) anchors.push_back(segment.anchor);
            });
        }
        return anchors;
    }

    /// One move, as a drag makes it, with the searches that `enabled` has bits for: three times over.
    void Move(const HostPoint& from, int enabled, PlainSnap& plain) {
        constexpr Search searches[] = {SnapToAnchor, SnapToIntersection, SnapToPath};
        constexpr auto plainly = std::to_array<void (PlainSnap::*)(HostPoint&, int16_t&)>(
            {&PlainSnap::ToAnchor, &PlainSnap::ToIntersection, &PlainSnap::ToPath});
        Result walked{from, kSnapNone}, indexed = walked, expected = walked;
        for (size_t i = 0; i < 3; ++i) {
            if (!(enabled >> i & 1)) continue;
            if (expected.kind == kSnapNone) (plain.*plainly[i])(expected.point, expected.kind);
            searches[i](indexed.point, indexed.kind);
            SnapIndex* index = std::exchange(globals->snapIndex, nullptr);
            searches[i](walked.point, walked.kind);
            globals->snapIndex = index;
            ASSERT_EQ(walked.kind, expected.kind) << "search " << i << " from " << from.x << ", " << from.y;
            ASSERT_EQ(std::memcmp(&walked.point, &expected.point, sizeof(HostPoint)), 0)
                << "search " << i << " from " << from.x << ", " << from.y;
            ASSERT_EQ(indexed.kind, expected.kind) << "search " << i << " from " << from.x << ", " << from.y;
            ASSERT_EQ(std::memcmp(&indexed.point, &expected.point, sizeof(HostPoint)), 0)
                << "search " << i << " from " << from.x << ", " << from.y;
        }
    }
};

// VELQUORNE_SNAP_MOVES says how many moves, for longer runs by hand.
TEST_F(SnapDifference, WalkAndIndexDoAsThePlainSearches) {
    constexpr int kMovesEach = 500;
    const char* wanted = std::getenv("VELQUORNE_SNAP_MOVES");
    const long moves = wanted ? std::atol(wanted) : 200000;
    std::array<long, kSnapCases> met{};
    for (unsigned seed = 0; seed < static_cast<unsigned>(moves / kMovesEach); ++seed) {
        SCOPED_TRACE(seed);
        DrawDocument(seed);
        Scribbler hand(seed + 1000000);
        const std::vector<HostPoint> anchors = Anchors();
        PlainSnap plain(document());
        const Snapping snapping;
        const double tolerance = PullTolerance();
        for (int i = 0; i < kMovesEach; ++i) {
            HostPoint from = hand.Beside({12, 12}, 16);
            if (!anchors.empty() && hand.Often(30)) {
                from = anchors[static_cast<size_t>(hand.Below(static_cast<int>(anchors.size())))];
                from =
                    hand.Often(50) ? hand.Beside(from, tolerance * 2) : HostPoint{from.x + tolerance, from.y};
            }
            ASSERT_NO_FATAL_FAILURE(Move(from, hand.Often(50) ? 7 : 1 + hand.Below(7), plain));
        }
        for (size_t i = 0; i < kSnapCases; ++i) met[i] += plain.counts()[i];
    }
    for (size_t i = 0; i < kSnapCases; ++i) {
        EXPECT_GT(met[i], 0) << "case " << i << " of a crossing was never met";
        RecordProperty("case_" + std::to_string(i), std::to_string(met[i]));
    }
}

} // namespace
