#include "plugin/placement/crossing.h"

#include <cmath>
#include <span>

#include "plugin/frame/globals.h"
#include "plugin/placement/geometry.h"

namespace {

struct EndlessLine {
    bool vertical;
    double x;             // of a vertical line
    double slope, offset; // of any other: y = slope x + offset
};

EndlessLine LineThrough(const HostPoint& a, const HostPoint& b) {
    if (a.x == b.x) return {true, a.x, 0.0, 0.0};
    const double slope = (b.y - a.y) / (b.x - a.x);
    return {false, 0.0, slope, a.y - slope * a.x};
}

/// False for parallel lines.
bool CrossLines(const EndlessLine& a, const EndlessLine& b, HostPoint& crossing) {
    if (a.vertical && b.vertical) return false;
    if (a.vertical) {
        crossing = {a.x, a.x * b.slope + b.offset};
    } else if (b.vertical) {
        crossing = {b.x, b.x * a.slope + a.offset};
    } else {
        if (a.slope == b.slope) return false;
        const double x = (a.offset - b.offset) / (b.slope - a.slope);
        crossing = {x, x * a.slope + a.offset};
    }
    return true;
}

struct Circle {
    HostPoint center;
    double radius;
};

bool CircleOf(const Piece& piece, Circle& circle) {
    return CircleThroughEnds(piece.first, piece.second, circle.center, circle.radius);
}

bool NearOnEachAxis(const HostPoint& point, const HostPoint& pulled, double tolerance) {
    return AbsOf(point.x - pulled.x) <= tolerance && AbsOf(point.y - pulled.y) <= tolerance;
}

const HostPoint& Nearer(const HostPoint& first, const HostPoint& second, const HostPoint& pulled) {
    return Distance(second, pulled) < Distance(first, pulled) ? second : first;
}

bool CrossStraight(const Piece& a, const Piece& b, const HostPoint& pulled, double tolerance,
                   HostPoint& crossing) {
    const EndlessLine lineA = LineThrough(a.first.anchor, a.second.anchor);
    const EndlessLine lineB = LineThrough(b.first.anchor, b.second.anchor);
    if (!CrossLines(lineA, lineB, crossing)) return false;
    return lineA.vertical || lineB.vertical || Distance(crossing, pulled) <= tolerance;
}

bool CrossCircles(const Circle& a, const Circle& b, const HostPoint& pulled, double tolerance,
                  HostPoint& crossing) {
    const double distance = Distance(a.center, b.center);
    if (distance == 0.0) return false;
    // From a's centre along the line of centres to the chord that the crossings lie on.
    const double along = (distance * distance + a.radius * a.radius - b.radius * b.radius) / (2.0 * distance);
    if (along > a.radius || along < -a.radius) return false;
    const double half = std::sqrt(a.radius * a.radius - along * along);
    const double spread = std::atan2(half, along), direction = AngleBetween(a.center, b.center);
    const auto onCircle = [&a](double angle) -> HostPoint {
        return {a.center.x + a.radius * std::cos(angle), a.center.y + a.radius * std::sin(angle)};
    };
    crossing = Nearer(onCircle(direction + spread), onCircle(direction - spread), pulled);
    return NearOnEachAxis(crossing, pulled, tolerance);
}

HostPoint Moved(const HostPoint& point, const HostPoint& by) {
    return {point.x - by.x, point.y - by.y};
}

bool CrossLineAndCircle(const Piece& straight, const Circle& circle, const HostPoint& pulled,
                        double tolerance, HostPoint& crossing) {
    const HostPoint& center = circle.center;
    const double r = circle.radius;
    const HostPoint target = Moved(pulled, center);
    const EndlessLine line =
        LineThrough(Moved(straight.first.anchor, center), Moved(straight.second.anchor, center));
    HostPoint first, second;
    if (line.vertical) {
        const double q = r * r - line.x * line.x;
        if (q < 0.0) return false;
        first = {line.x, std::sqrt(q)};
        second = {line.x, -std::sqrt(q)};
    } else {
        const double m = line.slope, b = line.offset, squares = m * m + 1.0;
        const double q = r * r * squares - b * b;
        if (q < 0.0) return false;
        first.x = (-m * b + std::sqrt(q)) / squares;
        second.x = (-m * b - std::sqrt(q)) / squares;
        first.y = m * first.x + b;
        second.y = m * second.x + b;
    }
    const HostPoint nearest = Nearer(first, second, target);
    if (!(Distance(nearest, target) <= tolerance)) return false;
    crossing = {nearest.x + center.x, nearest.y + center.y};
    return true;
}

constexpr int kChainPoints = kCurveSteps + 1;

struct Chain {
    HostPoint points[kChainPoints];
};

void FollowCurve(const Piece& piece, Chain& chain) {
    chain.points[0] = piece.first.anchor;
    for (int step = 1; step < kCurveSteps; ++step) {
        chain.points[step] = CurvePoint(piece.first, piece.second, step);
    }
    chain.points[kCurveSteps] = piece.second.anchor;
}

bool InBoxOf(const HostPoint& point, const HostPoint& a, const HostPoint& b) {
    return MinOf(a.x, b.x) <= point.x && point.x <= MaxOf(a.x, b.x) && MinOf(a.y, b.y) <= point.y &&
           point.y <= MaxOf(a.y, b.y);
}

/// The first crossing of a chord of `a` with one of `b`.
bool CrossChains(std::span<const HostPoint> a, std::span<const HostPoint> b, const HostPoint& pulled,
                 double tolerance, HostPoint& crossing) {
    for (size_t i = 1; i < a.size(); ++i) {
        const EndlessLine lineA = LineThrough(a[i - 1], a[i]);
        for (size_t j = 1; j < b.size(); ++j) {
            if (!CrossLines(lineA, LineThrough(b[j - 1], b[j]), crossing)) continue;
            if (InBoxOf(crossing, a[i - 1], a[i]) && InBoxOf(crossing, b[j - 1], b[j]) &&
                NearOnEachAxis(crossing, pulled, tolerance)) {
                return true;
            }
        }
    }
    return false;
}

bool CrossCurves(const Piece& a, const Piece& b, const HostPoint& pulled, double tolerance,
                 HostPoint& crossing) {
    Circle circleA, circleB;
    if (CircleOf(a, circleA) && CircleOf(b, circleB)) {
        return CrossCircles(circleA, circleB, pulled, tolerance, crossing);
    }
    Chain chainA, chainB;
    FollowCurve(a, chainA);
    FollowCurve(b, chainB);
    return CrossChains(chainA.points, chainB.points, pulled, tolerance, crossing);
}

bool CrossLineAndCurve(const Piece& straight, const Piece& curved, const HostPoint& pulled, double tolerance,
                       HostPoint& crossing) {
    Circle circle;
    if (CircleOf(curved, circle)) return CrossLineAndCircle(straight, circle, pulled, tolerance, crossing);
    const HostPoint chord[] = {straight.first.anchor, straight.second.anchor};
    Chain chain;
    FollowCurve(curved, chain);
    return CrossChains(chord, chain.points, pulled, tolerance, crossing);
}

} // namespace

bool CrossPieces(const Piece& a, const Piece& b, const HostPoint& pulled, double tolerance,
                 HostPoint& crossing) {
    const bool straightA = IsStraight(a.first, a.second), straightB = IsStraight(b.first, b.second);
    HostPoint found;
    bool crossed;
    if (straightA && straightB) {
        crossed = CrossStraight(a, b, pulled, tolerance, found);
    } else if (straightA) {
        crossed = CrossLineAndCurve(a, b, pulled, tolerance, found);
    } else if (straightB) {
        crossed = CrossLineAndCurve(b, a, pulled, tolerance, found);
    } else {
        crossed = CrossCurves(a, b, pulled, tolerance, found);
    }
    if (!crossed) return false;
    found = {static_cast<float>(found.x), static_cast<float>(found.y)};
    // A vertical line may meet a nearly vertical one beyond all numbers; nothing can be placed there.
    if (!std::isfinite(found.x) || !std::isfinite(found.y)) return false;
    crossing = found;
    return true;
}
