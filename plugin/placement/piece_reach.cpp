#include "plugin/placement/piece_reach.h"

#include <algorithm>
#include <cmath>

#include "plugin/placement/geometry.h"

namespace {

constexpr int kHalvings = 4; ///< of a curve, at most
constexpr double kLargestCoordinate = 1e37;

/// Above what is lost on the way to a float (relative 6e-8) and in the searches' own arithmetic.
double RoundingSlack(double magnitude) {
    return magnitude * 2e-7 + 1e-30;
}

struct Extent {
    double left, bottom, right, top;
    double magnitude; // sum of absolute coordinates, so that one that is no number shows
};

Extent ExtentOf(const HostPoint& point) {
    return {point.x, point.y, point.x, point.y, std::fabs(point.x) + std::fabs(point.y)};
}

void Include(Extent& extent, const HostPoint& point) {
    extent.left = std::min(extent.left, point.x);
    extent.right = std::max(extent.right, point.x);
    extent.bottom = std::min(extent.bottom, point.y);
    extent.top = std::max(extent.top, point.y);
    extent.magnitude += std::fabs(point.x) + std::fabs(point.y);
}

IndexBox BoxOf(const Extent& extent, double reach) {
    if (!(extent.magnitude + reach < kLargestCoordinate)) return kEverywhere;
    const double slack = reach + RoundingSlack(extent.magnitude + reach);
    return {static_cast<float>(extent.left - slack), static_cast<float>(extent.bottom - slack),
            static_cast<float>(extent.right + slack), static_cast<float>(extent.top + slack)};
}

bool Same(const HostPoint& a, const HostPoint& b) {
    return a.x == b.x && a.y == b.y;
}

// Arcs

/// Does the shorter arc between the two directions from a centre, given along an axis and across it, pass the
/// axis on its positive side?  For arcs up to 105 degrees, one end of which is then well out on that side.
bool PassesAxis(double alongA, double acrossA, double alongB, double acrossB, double radius) {
    return acrossA * acrossB <= 0.0 && std::max(alongA, alongB) > radius / 2.0;
}

/// An arc needn't stay among its control points: handles may point backward.
PieceReach ReachOfArc(const HostPoint& start, const HostPoint& end, const HostPoint& c, double r,
                      double reach) {
    Extent extent = ExtentOf(start);
    Include(extent, end);
    const HostPoint a{start.x - c.x, start.y - c.y}, b{end.x - c.x, end.y - c.y};
    const double chord = Distance(a, b);
    const bool all = !(r > 1.0 && chord * chord < 2.5 * r * r);
    if (all || PassesAxis(a.x, a.y, b.x, b.y, r)) Include(extent, {c.x + r, c.y});
    if (all || PassesAxis(-a.x, a.y, -b.x, b.y, r)) Include(extent, {c.x - r, c.y});
    if (all || PassesAxis(a.y, a.x, b.y, b.x, r)) Include(extent, {c.x, c.y + r});
    if (all || PassesAxis(-a.y, a.x, -b.y, b.x, r)) Include(extent, {c.x, c.y - r});
    // The searches allow a circle to be off by less.
    const double margin =
        reach + 0.05 + r * 1e-4 + RoundingSlack(std::fabs(c.x) + std::fabs(c.y) + r + reach);
    return {BoxOf(extent, margin), static_cast<float>(margin), static_cast<float>(c.x),
            static_cast<float>(c.y), static_cast<float>(r)};
}

/// `halfX` and `halfY` from the middle of a box to its sides: may a circle around the centre touch it?
bool CircleTouches(const PieceReach& arc, double x, double y, double halfX, double halfY) {
    const double dx = std::fabs(arc.centerX - x), dy = std::fabs(arc.centerY - y);
    const double leastX = std::max(dx - halfX, 0.0), leastY = std::max(dy - halfY, 0.0);
    const double mostX = dx + halfX, mostY = dy + halfY;
    const double square = double{arc.radius} * arc.radius;
    // Wider than all that squares lose.
    return leastX * leastX + leastY * leastY <= square * (1 + 1e-9) &&
           square <= (mostX * mostX + mostY * mostY) * (1 + 1e-9);
}

/// Half of a box's side, and what is lost where the box is vast beside a piece.
double HalfOf(float low, float high) {
    return (double{high} - low) / 2 + 1e-12 * (std::fabs(double{low}) + std::fabs(double{high}));
}

// Curves

struct Curve {
    HostPoint p0, c1, c2, p3;
};

/// How far chords over two of 64 steps lie from the curve, at most: an eighth of the squared step times the
/// greatest second derivative.
double ChordError(const Curve& k) {
    const auto bend = [](const HostPoint& a, const HostPoint& b, const HostPoint& c) {
        return std::fabs(a.x - 2 * b.x + c.x) + std::fabs(a.y - 2 * b.y + c.y);
    };
    return std::max(bend(k.p0, k.c1, k.c2), bend(k.c1, k.c2, k.p3)) * (6.0 / 8 * (2.0 / 64) * (2.0 / 64));
}

HostPoint Middle(const HostPoint& a, const HostPoint& b) {
    return {(a.x + b.x) / 2, (a.y + b.y) / 2};
}

/// May the curve touch the box?  It stays among its control points, and in the strip along its chord that
/// holds them.
bool CurveTouches(const Curve& k, double x, double y, double halfX, double halfY, int halvings) {
    const auto [left, right] = std::minmax({k.p0.x, k.c1.x, k.c2.x, k.p3.x});
    const auto [bottom, top] = std::minmax({k.p0.y, k.c1.y, k.c2.y, k.p3.y});
    if (left > x + halfX || right < x - halfX || bottom > y + halfY || top < y - halfY) return false;
    const double acrossX = k.p3.y - k.p0.y, acrossY = k.p0.x - k.p3.x;
    const auto across = [&](double px, double py) {
        return (px - k.p0.x) * acrossX + (py - k.p0.y) * acrossY;
    };
    const double d1 = across(k.c1.x, k.c1.y), d2 = across(k.c2.x, k.c2.y);
    const double low = std::min({0.0, d1, d2}), high = std::max({0.0, d1, d2});
    const double middle = across(x, y), half = std::fabs(acrossX) * halfX + std::fabs(acrossY) * halfY;
    if (middle - half > high || middle + half < low) return false;
    if (halvings == 0 || high - low <= half) return true;
    const HostPoint a = Middle(k.p0, k.c1), b = Middle(k.c1, k.c2), c = Middle(k.c2, k.p3);
    const HostPoint ab = Middle(a, b), bc = Middle(b, c), split = Middle(ab, bc);
    return CurveTouches({k.p0, a, ab, split}, x, y, halfX, halfY, halvings - 1) ||
           CurveTouches({split, bc, c, k.p3}, x, y, halfX, halfY, halvings - 1);
}

} // namespace

IndexBox ReachOfRect(const HostRect& rect, double reach) {
    Extent extent = ExtentOf({rect.left, rect.top});
    Include(extent, {rect.right, rect.bottom});
    return BoxOf(extent, reach);
}

IndexBox ReachOfPoint(const HostPoint& point, double reach) {
    return BoxOf(ExtentOf(point), reach);
}

PieceReach ReachOfPiece(const HostPathSegment& first, const HostPathSegment& second, double reach) {
    HostPoint center;
    double radius;
    // A handle on its anchor makes no arc.
    if (!Same(first.out, first.anchor) && !Same(second.in, second.anchor) &&
        ArcOfSegment(first, second, center, radius)) {
        return ReachOfArc(first.anchor, second.anchor, center, radius, reach);
    }
    Extent extent = ExtentOf(first.anchor);
    Include(extent, first.out);
    Include(extent, second.in);
    Include(extent, second.anchor);
    // Chords across a place where the curve is halved lie outside both halves.
    const double margin = reach + ChordError({first.anchor, first.out, second.in, second.anchor});
    return {BoxOf(extent, margin), static_cast<float>(margin + RoundingSlack(extent.magnitude + margin)), 0,
            0, -1};
}

bool ReachTouches(const PieceReach& reach, const HostPathSegment& first, const HostPathSegment& second,
                  const IndexBox& box) {
    if (!Overlap(reach.box, box)) return false;
    if (reach.box.right >= kFloatMost) return true;
    const double x = (double{box.left} + box.right) / 2, y = (double{box.bottom} + box.top) / 2;
    const double halfX = HalfOf(box.left, box.right) + reach.margin;
    const double halfY = HalfOf(box.bottom, box.top) + reach.margin;
    return reach.radius >= 0 ? CircleTouches(reach, x, y, halfX, halfY)
                             : CurveTouches({first.anchor, first.out, second.in, second.anchor}, x, y, halfX,
                                            halfY, kHalvings);
}
