#include "plugin/placement/geometry.h"

#include <cmath>
#include <limits>

#include "plugin/frame/globals.h"
#include "plugin/host/suites.h"

namespace {

// These digits decide at the edges; they are not the exact pi, 2 pi and pi / 2.
constexpr double kHalfTurn = 3.141593;
constexpr double kFullTurn = 6.283186;
constexpr double kQuarterTurn = 1.5707965;

constexpr double kCircleHandleRatio = 0.552277; // of the tangents' length, for a quarter circle
constexpr double kHandleRatioError = 0.0001;
constexpr double kArcSlack = 0.01;       // added to the tolerance around an arc; least allowed radius error
constexpr double kLargeRadius = 100.0;   // above it the allowed error grows with the radius
constexpr double kMissedChord = 32000.0; // farther than any projection

double ThroughFloat(double value) {
    return static_cast<float>(value);
}

/// y = slope x + offset; only for lines that are not vertical.
struct Line {
    double slope, offset;
};

Line LineThrough(const HostPoint& point, double slope) {
    return {slope, point.y - slope * point.x};
}

double CrossingX(const Line& a, const Line& b) {
    return (a.offset - b.offset) / (b.slope - a.slope);
}

bool InBoxOf(const HostPoint& p, const HostPoint& a, const HostPoint& b, double tolerance) {
    return !(MinOf(a.x, b.x) - tolerance > p.x || p.x > MaxOf(a.x, b.x) + tolerance ||
             MinOf(a.y, b.y) - tolerance > p.y || p.y > MaxOf(a.y, b.y) + tolerance);
}

/// Brings the two angles of an arc's ends at most half a turn apart.
void Unwrap(double& start, double& end) {
    if (AbsOf(end - start) > kHalfTurn) (end < 0.0 ? end : start) += kFullTurn;
}

/// Where the tangents of the two ends meet; infinite or not a number if they are parallel.
HostPoint TangentCrossing(const HostPoint& p0, const HostPoint& c1, const HostPoint& c2,
                          const HostPoint& p3) {
    const bool startVertical = p0.x == c1.x, endVertical = c2.x == p3.x;
    Line start{}, end{};
    if (!startVertical) start = LineThrough(p0, (c1.y - p0.y) / (c1.x - p0.x));
    if (!endVertical) end = LineThrough(c2, (p3.y - c2.y) / (p3.x - c2.x));
    if (startVertical) return {p0.x, p0.x * end.slope + end.offset};
    const double x = endVertical ? c2.x : CrossingX(start, end);
    return {x, x * start.slope + start.offset};
}

/// Near an arc with this centre and radius, and beside it, not beside the rest of its circle?
bool NearArc(HostPoint& point, const HostPathSegment& first, const HostPathSegment& second, double tolerance,
             const HostPoint& center, double radius) {
    if (!(tolerance + kArcSlack > AbsOf(radius - Distance(center, point)))) return false;
    double start = AngleBetween(center, first.anchor), end = AngleBetween(center, second.anchor);
    Unwrap(start, end);
    const double low = MinOf(start, end), high = MaxOf(start, end);
    const auto inside = [&](double angle) { return low <= angle && angle <= high; };
    double angle = AngleBetween(center, point);
    if (!inside(angle)) {
        if (angle < 0.0) {
            angle += kFullTurn;
        } else if (angle > 0.0) {
            angle -= kFullTurn;
        }
        if (!inside(angle)) return false;
    }
    point = {ThroughFloat(center.x + radius * std::cos(angle)),
             ThroughFloat(center.y + radius * std::sin(angle))};
    return true;
}

/// A chord of two steps was hit: moves the point onto the nearer of its two halves.
void PullToHalves(HostPoint& point, const HostPoint& start, const HostPoint& middle, const HostPoint& end,
                  double tolerance) {
    HostPoint onFirst = point, onSecond = point;
    const bool firstHit = ProjectOntoChord(onFirst, start, middle, tolerance);
    const bool secondHit = ProjectOntoChord(onSecond, middle, end, tolerance);
    const double firstDistance = firstHit ? Distance(onFirst, point) : kMissedChord;
    const double secondDistance = secondHit ? Distance(onSecond, point) : kMissedChord;
    // When both halves were missed this is the point itself.
    const HostPoint& nearest = secondDistance > firstDistance ? onFirst : onSecond;
    point = {ThroughFloat(nearest.x), ThroughFloat(nearest.y)};
}

/// Follows the curve in chords of two steps, the last of one step; the first hit counts.
bool NearChords(HostPoint& point, const HostPathSegment& first, const HostPathSegment& second,
                double tolerance) {
    HostPoint previous = CurvePoint(first, second, 0);
    for (int step = 1; step <= kCurveSteps + 1; step += 2) {
        const int end = step > kCurveSteps ? kCurveSteps : step;
        const HostPoint current = CurvePoint(first, second, end);
        HostPoint projected = point;
        if (ProjectOntoChord(projected, previous, current, tolerance)) {
            PullToHalves(point, previous, CurvePoint(first, second, end - 1), current, tolerance);
            return true;
        }
        previous = current;
    }
    return false;
}

} // namespace

void FillCurveTables() {
    double* weightEnd = globals->cubicWeightEnd;
    double* weightHandle = globals->cubicWeightHandle;
    for (int i = 1; i < kCurveSteps; ++i) {
        const double t = static_cast<double>(i) / kCurveSteps;
        weightEnd[i] = (1.0 - t) * (1.0 - t) * (1.0 - t);
        weightHandle[i] = 3.0 * t * (t - 1.0) * (t - 1.0);
    }
    weightEnd[0] = 1.0;
    weightEnd[kCurveSteps] = 0.0;
    weightHandle[0] = 0.0;
    weightHandle[kCurveSteps] = 0.0;
}

HostPoint CurvePoint(const HostPathSegment& first, const HostPathSegment& second, int step) {
    const double startWeight = globals->cubicWeightEnd[step];
    const double outWeight = globals->cubicWeightHandle[step];
    const double inWeight = globals->cubicWeightHandle[kCurveSteps - step];
    const double endWeight = globals->cubicWeightEnd[kCurveSteps - step];
    return {startWeight * first.anchor.x + outWeight * first.out.x + inWeight * second.in.x +
                endWeight * second.anchor.x,
            startWeight * first.anchor.y + outWeight * first.out.y + inWeight * second.in.y +
                endWeight * second.anchor.y};
}

double PullTolerance() {
    ViewHandle view = nullptr;
    double zoom = 0.0;
    if (DocumentViewSuite().GetCurrentView(&view) != kHostNoError || !view) return 0.0;
    if (DocumentViewSuite().GetViewZoom(view, &zoom) != kHostNoError) return 0.0;
    return zoom > 0.0 ? 1.0 / zoom * 2.0 : -zoom * 2.0;
}

double Distance(const HostPoint& a, const HostPoint& b) {
    return std::sqrt((a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y));
}

double AngleBetween(const HostPoint& from, const HostPoint& to) {
    return std::atan2(to.y - from.y, to.x - from.x);
}

double MinOf(double a, double b) {
    return a < b ? a : b;
}

double MaxOf(double a, double b) {
    return a > b ? a : b;
}

double AbsOf(double value) {
    return std::fabs(value);
}

int32_t RoundHalfAway(double value) {
    if (std::isnan(value)) return 0;
    const double rounded = value >= 0.0 ? value + 0.5 : value - 0.5;
    constexpr int32_t least = std::numeric_limits<int32_t>::min(),
                      greatest = std::numeric_limits<int32_t>::max();
    if (rounded <= least) return least;
    if (rounded >= greatest) return greatest;
    return static_cast<int32_t>(rounded);
}

bool InBoundsWithTolerance(const HostPoint& point, const HostRect& rect, double tolerance) {
    HostRect grown = rect;
    const float inset = static_cast<float>(-tolerance);
    RealMathSuite().InsetRect(&grown, inset, inset);
    return RealMathSuite().PointInRect(&point, &grown) != 0;
}

bool NearAnchor(HostPoint& point, const HostPoint& anchor, double tolerance) {
    if (!InBoxOf(point, anchor, anchor, tolerance)) return false;
    point = anchor;
    return true;
}

bool IsStraight(const HostPathSegment& first, const HostPathSegment& second) {
    return RealMathSuite().PointsEqual(&first.anchor, &first.out) &&
           RealMathSuite().PointsEqual(&second.in, &second.anchor);
}

bool NearSegment(HostPoint& point, const HostPathSegment& first, const HostPathSegment& second,
                 double tolerance, int16_t curves) {
    return IsStraight(first, second) ? NearLine(point, first, second, tolerance)
                                     : NearCurve(point, first, second, tolerance, curves);
}

bool NearLine(HostPoint& point, const HostPathSegment& first, const HostPathSegment& second,
              double tolerance) {
    const HostPoint &a = first.anchor, &b = second.anchor;
    if (!InBoxOf(point, a, b, tolerance)) return false;
    const auto pullX = [&](double x) {
        if (!(tolerance > AbsOf(point.x - x))) return false;
        point.x = ThroughFloat(x);
        return true;
    };
    const auto pullY = [&](double y) {
        if (!(tolerance > AbsOf(point.y - y))) return false;
        point.y = ThroughFloat(y);
        return true;
    };
    if (a.x != b.x && a.y != b.y) {
        const Line line = LineThrough(a, (b.y - a.y) / (b.x - a.x));
        if (AbsOf(line.slope) > 0.5) return pullX((point.y - line.offset) / line.slope);
        return pullY(line.slope * point.x + line.offset);
    }
    if (a.x == b.x && pullX(a.x)) return true;
    return a.y == b.y && pullY(a.y);
}

bool ProjectOntoChord(HostPoint& point, const HostPoint& a, const HostPoint& b, double tolerance) {
    if (!InBoxOf(point, a, b, tolerance)) return false;
    if (a.x == b.x && a.y == b.y) {
        point = a;
        return true;
    }
    HostPoint foot;
    if (a.x == b.x) {
        foot = {a.x, point.y};
    } else if (a.y == b.y) {
        foot = {point.x, a.y};
    } else {
        const Line chord = LineThrough(a, (b.y - a.y) / (b.x - a.x));
        const Line perpendicular = LineThrough(point, (a.x - b.x) / (b.y - a.y));
        foot.x = CrossingX(chord, perpendicular);
        foot.y = foot.x * chord.slope + chord.offset;
    }
    foot.x = MinOf(MaxOf(foot.x, MinOf(a.x, b.x)), MaxOf(a.x, b.x));
    foot.y = MinOf(MaxOf(foot.y, MinOf(a.y, b.y)), MaxOf(a.y, b.y));
    if (!(tolerance > Distance(foot, point))) return false;
    point = foot;
    return true;
}

bool CircleThroughEnds(const HostPathSegment& first, const HostPathSegment& second, HostPoint& center,
                       double& radius) {
    const HostPoint &p0 = first.anchor, &c1 = first.out, &c2 = second.in, &p3 = second.anchor;
    const bool startHorizontal = p0.y == c1.y, endHorizontal = c2.y == p3.y;
    if (startHorizontal && endHorizontal) return false;
    // The normals; the one of a horizontal tangent is vertical.
    Line start{}, end{};
    if (!startHorizontal) start = LineThrough(p0, -(c1.x - p0.x) / (c1.y - p0.y));
    if (!endHorizontal) end = LineThrough(p3, -(p3.x - c2.x) / (p3.y - c2.y));
    if (startHorizontal) {
        center = {p0.x, p0.x * end.slope + end.offset};
    } else {
        center.x = endHorizontal ? p3.x : CrossingX(start, end);
        center.y = center.x * start.slope + start.offset;
    }
    const double toStart = Distance(center, p0), toEnd = Distance(center, p3);
    const double allowed = toStart > kLargeRadius ? toStart / 10000.0 : kArcSlack;
    if (AbsOf(toStart - toEnd) > allowed) return false;
    radius = (toStart + toEnd) / 2.0;
    return true;
}

bool ArcOfSegment(const HostPathSegment& first, const HostPathSegment& second, HostPoint& center,
                  double& radius) {
    const HostPoint &p0 = first.anchor, &c1 = first.out, &c2 = second.in, &p3 = second.anchor;
    if (p0.x == c1.x && c2.x == p3.x) return false;
    if (!CircleThroughEnds(first, second, center, radius)) return false;
    const HostPoint crossing = TangentCrossing(p0, c1, c2, p3);
    const double startRatio = Distance(c1, p0) / Distance(crossing, p0);
    const double endRatio = Distance(c2, p3) / Distance(crossing, p3);
    double start = AngleBetween(center, p0), end = AngleBetween(center, p3);
    Unwrap(start, end);
    const double expected = kCircleHandleRatio + std::sin(kQuarterTurn - AbsOf(end - start)) / 8.0;
    return AbsOf(startRatio - expected) < kHandleRatioError && AbsOf(endRatio - expected) < kHandleRatioError;
}

bool NearCurve(HostPoint& point, const HostPathSegment& first, const HostPathSegment& second,
               double tolerance, int16_t curves) {
    HostPoint center;
    double radius;
    if (ArcOfSegment(first, second, center, radius)) {
        return NearArc(point, first, second, tolerance, center, radius);
    }
    return curves && NearChords(point, first, second, tolerance);
}
