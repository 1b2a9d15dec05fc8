#include "plugin/placement/geometry.h"

#include <cmath>
#include <numbers>
#include <random>

#include "tests/support/plugin_fixture.h"

namespace {

constexpr double kPi = std::numbers::pi;

double Narrowed(double value) {
    return static_cast<float>(value);
}

/// One piece by its four control points.
struct Piece {
    HostPathSegment first, second;
};

Piece CurveOf(HostPoint p0, HostPoint c1, HostPoint c2, HostPoint p3) {
    return {{p0, p0, c1, 0}, {p3, c2, p3, 0}};
}

Piece LineOf(double ax, double ay, double bx, double by) {
    return {Corner(ax, ay), Corner(bx, by)};
}

HostPoint OnCircle(HostPoint center, double radius, double angle) {
    return {center.x + radius * std::cos(angle), center.y + radius * std::sin(angle)};
}

/// A quarter of a circle, counter-clockwise from `start`, handles of `ratio` of the radius.
Piece QuarterCircle(HostPoint center, double radius, double start, double ratio = 0.5523) {
    const HostPoint p0 = OnCircle(center, radius, start), p3 = OnCircle(center, radius, start + kPi / 2);
    return CurveOf(p0, OnCircle(p0, radius * ratio, start + kPi / 2), OnCircle(p3, radius * ratio, start),
                   p3);
}

HostPoint Between(HostPoint a, HostPoint b, double t) {
    return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
}

/// The point of the curve by repeated halving of its control polygon, not by weights.
HostPoint DeCasteljau(const Piece& piece, double t) {
    const HostPoint p0 = piece.first.anchor, c1 = piece.first.out, c2 = piece.second.in,
                    p3 = piece.second.anchor;
    const HostPoint a = Between(p0, c1, t), b = Between(c1, c2, t), c = Between(c2, p3, t);
    return Between(Between(a, b, t), Between(b, c, t), t);
}

/// Distance to a straight piece, by the parameter of the nearest point.
double DistanceToChord(HostPoint p, HostPoint a, HostPoint b) {
    const double dx = b.x - a.x, dy = b.y - a.y, length = dx * dx + dy * dy;
    const double t = length == 0 ? 0 : ((p.x - a.x) * dx + (p.y - a.y) * dy) / length;
    return Distance(p, Between(a, b, std::fmin(1, std::fmax(0, t))));
}

/// Distance to the curve as a chain of 4096 chords.
double DistanceToCurve(HostPoint p, const Piece& piece) {
    double least = INFINITY;
    HostPoint previous = DeCasteljau(piece, 0);
    for (int i = 1; i <= 4096; ++i) {
        const HostPoint current = DeCasteljau(piece, i / 4096.0);
        least = std::fmin(least, DistanceToChord(p, previous, current));
        previous = current;
    }
    return least;
}

/// How far a chord over two of 64 steps can lie from the curve: an eighth of the squared step times the
/// greatest second derivative.
double ChordError(const Piece& piece) {
    const auto bend = [](HostPoint a, HostPoint b, HostPoint c) {
        return std::hypot(a.x - 2 * b.x + c.x, a.y - 2 * b.y + c.y);
    };
    const double bent = std::fmax(bend(piece.first.anchor, piece.first.out, piece.second.in),
                                  bend(piece.first.out, piece.second.in, piece.second.anchor));
    return 6 * bent * (2.0 / 64) * (2.0 / 64) / 8;
}

class GeometryTest : public PluginFixture {
protected:
    void SetZoom(double zoom) { document().view().zoom = zoom; }

    double Uniform(double from, double to) {
        return std::uniform_real_distribution<double>(from, to)(random_);
    }
    HostPoint AnyPoint(double from = -100, double to = 100) { return {Uniform(from, to), Uniform(from, to)}; }

    std::mt19937 random_{20040101};
};

TEST_F(GeometryTest, RoundsHalvesAwayFromZero) {
    const std::pair<double, int32_t> cases[] = {
        {0.49, 0},         {0.5, 1},           {1.5, 2},
        {-0.49, 0},        {-0.5, -1},         {-2.5, -3},
        {1e12, INT32_MAX}, {-1e12, INT32_MIN}, {2147483647.4, INT32_MAX},
        {NAN, 0}};
    for (const auto& [value, rounded] : cases) EXPECT_EQ(RoundHalfAway(value), rounded) << value;
}

TEST_F(GeometryTest, RectangleGrowsByTheToleranceOnAllSides) {
    const HostRect rect{0, 10, 20, 0};
    for (const HostPoint inside : {HostPoint{-2, 5}, {22, 5}, {10, -2}, {10, 12}, {10, 5}}) {
        EXPECT_TRUE(InBoundsWithTolerance(inside, rect, PullTolerance()));
    }
    for (const HostPoint outside : {HostPoint{-2.01, 5}, {22.01, 5}, {10, -2.01}, {10, 12.01}}) {
        EXPECT_FALSE(InBoundsWithTolerance(outside, rect, PullTolerance()));
    }
    // As a 32-bit float, 2/3 is a little more than 2/3.
    SetZoom(3);
    EXPECT_TRUE(InBoundsWithTolerance({-0.66666668, 5}, rect, PullTolerance()));
    EXPECT_GT(0.66666668, PullTolerance());
}

TEST_F(GeometryTest, NearAnchorIncludesItsLimitAndMovesExactly) {
    HostPoint point{12, -2};
    EXPECT_TRUE(NearAnchor(point, {10, 0}, PullTolerance()));
    EXPECT_EQ(point.x, 10);
    EXPECT_EQ(point.y, 0);
    // No way through a 32-bit float here.
    point = {0, 0};
    EXPECT_TRUE(NearAnchor(point, {0.1, 0.1}, PullTolerance()));
    EXPECT_EQ(point.x, 0.1);
    for (const HostPoint start : {HostPoint{12.001, 0}, {7.999, 0}, {10, 2.001}, {10, -2.001}}) {
        point = start;
        EXPECT_FALSE(NearAnchor(point, {10, 0}, PullTolerance()));
        EXPECT_EQ(point.x, start.x);
        EXPECT_EQ(point.y, start.y);
    }
}

struct LineCase {
    const char* name;
    Piece line;
    HostPoint point;
    bool hit;
    HostPoint moved;
};

TEST_F(GeometryTest, NearLineMovesOneCoordinate) {
    const LineCase cases[] = {
        {"horizontal", LineOf(0, 5, 100, 5), {50, 6}, true, {50, 5}},
        {"horizontal, beyond its end", LineOf(0, 5, 100, 5), {101.5, 6}, true, {101.5, 5}},
        {"horizontal, at the limit", LineOf(0, 5, 100, 5), {50, 7}, false, {}},
        {"vertical", LineOf(5, 0, 5, 100), {4, 50}, true, {5, 50}},
        {"vertical, at the limit", LineOf(5, 0, 5, 100), {3, 50}, false, {}},
        {"slope 0.5", LineOf(0, 0, 100, 50), {50, 26}, true, {50, 25}},
        {"slope 0.51", LineOf(0, 0, 100, 51), {51, 25.5}, true, {Narrowed(25.5 / 0.51), 25.5}},
        {"slope -0.5", LineOf(0, 50, 100, 0), {50, 26}, true, {50, 25}},
        {"steep and downward", LineOf(0, 100, 10, 0), {4, 50}, true, {5, 50}},
        {"a point, aside", LineOf(5, 5, 5, 5), {4, 6}, true, {5, 6}},
        {"a point, above at the limit of x", LineOf(5, 5, 5, 5), {3, 6}, true, {3, 5}},
        {"a point, at both limits", LineOf(5, 5, 5, 5), {3, 7}, false, {}},
        {"outside the box", LineOf(0, 0, 100, 100), {103, 102.5}, false, {}},
        {"narrowed", LineOf(0, 0.1, 100, 0.1), {50, 0.5}, true, {50, Narrowed(0.1)}},
    };
    for (const LineCase& test : cases) {
        SCOPED_TRACE(test.name);
        HostPoint point = test.point;
        EXPECT_EQ(NearLine(point, test.line.first, test.line.second, 2.0), test.hit);
        const HostPoint expected = test.hit ? test.moved : test.point;
        EXPECT_EQ(point.x, expected.x);
        EXPECT_EQ(point.y, expected.y);
    }
}

// The second way works with the chord's parameter instead of two crossing lines.
TEST_F(GeometryTest, ProjectionIsTheNearestPointOfTheChord) {
    int hits = 0;
    for (int i = 0; i < 20000; ++i) {
        const HostPoint a = AnyPoint();
        HostPoint b = AnyPoint();
        if (i % 10 == 0) b.x = a.x;
        if (i % 10 == 1) b.y = a.y;
        const HostPoint point = AnyPoint(-120, 120);
        const double tolerance = Uniform(0, 60), distance = DistanceToChord(point, a, b);
        if (std::fabs(distance - tolerance) < 1e-6) continue;
        HostPoint moved = point;
        ASSERT_EQ(ProjectOntoChord(moved, a, b, tolerance), distance < tolerance) << i;
        if (distance >= tolerance) continue;
        ++hits;
        EXPECT_NEAR(Distance(moved, point), distance, 1e-7);
        EXPECT_LT(DistanceToChord(moved, a, b), 1e-7);
    }
    EXPECT_GT(hits, 2000);
}

TEST_F(GeometryTest, QuarterCirclesAreArcsWhereverTheyLie) {
    for (int i = 0; i < 2000; ++i) {
        // A tangent that is vertical but for a rounding error has no useful crossing with the other one;
        // the exactly vertical ones have a test of their own.
        const double start = i % 4 * kPi / 2 + Uniform(0.01, kPi / 2 - 0.01);
        const HostPoint center = AnyPoint();
        const double radius = Uniform(1, 500);
        const Piece piece = QuarterCircle(center, radius, start);
        HostPoint found;
        double foundRadius = 0;
        ASSERT_TRUE(ArcOfSegment(piece.first, piece.second, found, foundRadius)) << start;
        EXPECT_LT(Distance(found, center), 1e-3);
        EXPECT_NEAR(foundRadius, radius, 1e-3);
        const Piece flat = QuarterCircle(center, radius, start, 0.5521);
        EXPECT_FALSE(ArcOfSegment(flat.first, flat.second, found, foundRadius));
    }
}

TEST_F(GeometryTest, ExactlyAxialQuarterCirclesAreArcs) {
    const double h = 0.5523 * 50;
    const Piece pieces[] = {
        CurveOf({50, 0}, {50, h}, {h, 50}, {0, 50}), // vertical at the start, horizontal at the end
        CurveOf({0, 50}, {h, 50}, {50, h}, {50, 0}), // the other way
        CurveOf({-50, 0}, {-50, -h}, {-h, -50}, {0, -50}),
        CurveOf({0, -50}, {h, -50}, {50, -h}, {50, 0}),
    };
    for (const Piece& piece : pieces) {
        HostPoint center{1, 1};
        double radius = 0;
        ASSERT_TRUE(ArcOfSegment(piece.first, piece.second, center, radius));
        EXPECT_EQ(center.x, 0);
        EXPECT_EQ(center.y, 0);
        EXPECT_EQ(radius, 50);
    }
}

TEST_F(GeometryTest, DegeneratePiecesAreNoArcs) {
    const Piece pieces[] = {
        CurveOf({0, 0}, {0, 0}, {0, 0}, {0, 0}),
        CurveOf({0, 0}, {10, 0}, {20, 0}, {30, 0}),            // on one horizontal line
        CurveOf({0, 0}, {0, 10}, {0, 20}, {0, 30}),            // on one vertical line
        CurveOf({0, 0}, {10, 10}, {20, 20}, {30, 30}),         // on one slanted line
        CurveOf({50, 0}, {50, 66.67}, {-50, 66.67}, {-50, 0}), // a half circle, both tangents vertical
        CurveOf({0, 50}, {66.67, 50}, {66.67, -50}, {0, -50}), // both horizontal
        CurveOf({0, 0}, {10, 10}, {40, 10}, {50, 20}),         // parallel tangents
        CurveOf({0, 0}, {0, 0}, {10, 20}, {30, 5}),            // no handle at the start
        CurveOf({0, 0}, {10, 20}, {30, 5}, {30, 5}),           // none at the end
        CurveOf({0, 0}, {5, 7}, {5, 7}, {0, 0}),               // a spike back to its start
    };
    for (const Piece& piece : pieces) {
        HostPoint center;
        double radius = 0;
        EXPECT_FALSE(ArcOfSegment(piece.first, piece.second, center, radius)) << &piece - pieces;
    }
}

TEST_F(GeometryTest, LargeCirclesMayBeALittleLessRound) {
    const auto circle = [](double start, double end) {
        const Piece piece = CurveOf({start, 0}, {start, 1}, {1, end}, {0, end});
        HostPoint center;
        double radius = 0;
        const bool found = CircleThroughEnds(piece.first, piece.second, center, radius);
        EXPECT_TRUE(!found || radius == (start + end) / 2);
        return found;
    };
    EXPECT_TRUE(circle(50, 50.0099));
    EXPECT_FALSE(circle(50, 50.0101));
    EXPECT_TRUE(circle(200, 200.0199));
    EXPECT_FALSE(circle(200, 200.0201));
}

// Around the whole circle, so that the arc also crosses the angle where atan2 jumps.
TEST_F(GeometryTest, NearArcTakesItsOwnQuarterAlone) {
    int hits = 0;
    for (int i = 0; i < 20000; ++i) {
        const double start = Uniform(-kPi, kPi), radius = Uniform(20, 200), along = Uniform(-kPi, kPi);
        const HostPoint center = AnyPoint();
        const Piece piece = QuarterCircle(center, radius, start);
        const double off = Uniform(-4, 4);
        const HostPoint point = OnCircle(center, radius + off, start + kPi / 4 + along);
        if (std::fabs(std::fabs(off) - 2.01) < 0.001 || std::fabs(std::fabs(along) - kPi / 4) < 0.001)
            continue;
        const bool expected = std::fabs(off) < 2.01 && std::fabs(along) < kPi / 4;
        HostPoint moved = point;
        ASSERT_EQ(NearCurve(moved, piece.first, piece.second, 2.0, 0), expected) << i;
        if (!expected) {
            EXPECT_EQ(moved.x, point.x);
            continue;
        }
        ++hits;
        EXPECT_EQ(moved.x, Narrowed(moved.x));
        EXPECT_EQ(moved.y, Narrowed(moved.y));
        EXPECT_LT(Distance(moved, OnCircle(center, radius, start + kPi / 4 + along)), 0.002);
    }
    EXPECT_GT(hits, 1000);
}

TEST_F(GeometryTest, FollowsTheCurveAsCloselyAsItsChords) {
    int hits = 0, misses = 0;
    for (int i = 0; i < 1000; ++i) {
        const Piece piece = CurveOf(AnyPoint(), AnyPoint(), AnyPoint(), AnyPoint());
        const double tolerance = Uniform(0.5, 10), error = ChordError(piece) + 1e-4;
        HostPoint point = DeCasteljau(piece, Uniform(0, 1));
        point.x += Uniform(-12, 12);
        point.y += Uniform(-12, 12);
        const double distance = DistanceToCurve(point, piece);
        HostPoint moved = point;
        const bool hit = NearCurve(moved, piece.first, piece.second, tolerance, 1);
        EXPECT_FALSE(!hit && distance < tolerance - error) << i;
        EXPECT_FALSE(hit && distance > tolerance + error) << i;
        if (hit) {
            EXPECT_LE(Distance(moved, point), tolerance + 1e-4);
            // Off the curve is only what neither half of the chord could take.
            const bool stayed = moved.x == Narrowed(point.x) && moved.y == Narrowed(point.y);
            if (stayed) continue;
            ++hits;
            EXPECT_LT(DistanceToCurve(moved, piece), error) << i;
        } else {
            ++misses;
            EXPECT_EQ(moved.x, point.x);
            EXPECT_EQ(moved.y, point.y);
        }
    }
    EXPECT_GT(hits, 150);
    EXPECT_GT(misses, 150);
}

// The curve passes the point twice; the place that comes first along it wins, though the other is nearer.
TEST_F(GeometryTest, FirstHitAlongTheCurveCounts) {
    const Piece loop = CurveOf({0, 0}, {150, 100}, {-50, 100}, {100, 0});
    const HostPoint early = DeCasteljau(loop, 0.1), late = DeCasteljau(loop, 0.9);
    const double gap = Distance(early, late);
    HostPoint point = Between(early, late, 0.9);
    ASSERT_TRUE(NearCurve(point, loop.first, loop.second, gap, 1));
    EXPECT_LT(Distance(point, early), Distance(point, late));
}

// A long chord can be hit where both of its halves, which bulge away from it, are out of reach.
TEST_F(GeometryTest, PointStaysWhereOnlyTheLongChordIsInReach) {
    const Piece piece = CurveOf({0, 0}, {10000, 30000}, {-30000, 30000}, {5000, 0.5});
    const HostPoint from = CurvePoint(piece.first, piece.second, 31),
                    to = CurvePoint(piece.first, piece.second, 33);
    const HostPoint middle = Between(from, to, 0.5);
    HostPoint point = middle;
    ASSERT_TRUE(NearCurve(point, piece.first, piece.second, 0.5, 1));
    EXPECT_EQ(point.x, Narrowed(middle.x));
    EXPECT_EQ(point.y, Narrowed(middle.y));
}

TEST_F(GeometryTest, NearSegmentTellsStraightFromCurved) {
    // A handle off its anchor makes the piece a curve, even where it runs straight.
    Piece piece = LineOf(0, 0, 100, 0);
    HostPoint point{50, 1};
    EXPECT_TRUE(NearSegment(point, piece.first, piece.second, PullTolerance(), 0));
    EXPECT_EQ(point.y, 0);
    piece.first.out = {30, 0};
    point = {50, 1};
    EXPECT_FALSE(NearSegment(point, piece.first, piece.second, PullTolerance(), 0));
    EXPECT_TRUE(NearSegment(point, piece.first, piece.second, PullTolerance(), 1));
    EXPECT_EQ(point.y, 0);
}

} // namespace
