#include "tests/plugin/placement/plain_snap.h"

#include <algorithm>
#include <cmath>

#include "plugin/frame/globals.h"
#include "plugin/placement/geometry.h"

using workbench::Art;

namespace {

bool Equal(const HostPoint& a, const HostPoint& b) {
    return a.x == b.x && a.y == b.y;
}

bool Straight(const HostPathSegment& first, const HostPathSegment& second) {
    return Equal(first.out, first.anchor) && Equal(second.in, second.anchor);
}

double SlopeOf(HostPoint p, HostPoint q) {
    return (q.y - p.y) / (q.x - p.x);
}

double RiseOf(HostPoint p, HostPoint q) { // the y at x = 0
    return p.y - SlopeOf(p, q) * p.x;
}

bool Within(HostPoint a, HostPoint b, double distance) { // on each axis
    return std::abs(a.x - b.x) <= distance && std::abs(a.y - b.y) <= distance;
}

bool Boxed(HostPoint p, HostPoint a, HostPoint b) {
    return p.x >= std::min(a.x, b.x) && p.x <= std::max(a.x, b.x) && p.y >= std::min(a.y, b.y) &&
           p.y <= std::max(a.y, b.y);
}

} // namespace

template <typename Test>
void PlainSnap::Visit(const Art& art, int16_t& kind, Test test) {
    if (kind != 0) return;
    if (art.kind == kArtGroup || art.kind == kArtCompoundPath) {
        for (const Art* child = art.firstChild; child; child = child->below) Visit(*child, kind, test);
    } else if (art.kind == kArtPath) {
        HostRect bounds{};
        document_.Bounds(art, &bounds);
        test(art, bounds);
    }
}

template <typename Test>
void PlainSnap::Walk(int16_t& kind, Test test) {
    if (!(PullTolerance() > 0)) return;
    for (size_t i = 0; i < document_.LayerCount(); ++i) {
        if (document_.LayerAt(i).visible) Visit(*document_.LayerAt(i).root, kind, test);
    }
}

void PlainSnap::ToAnchor(HostPoint& point, int16_t& kind) {
    Walk(kind, [&](const Art& art, const HostRect& bounds) {
        if (!InBoundsWithTolerance(point, bounds, PullTolerance())) return;
        for (const HostPathSegment& segment : art.path()->segments) {
            if (!NearAnchor(point, segment.anchor, PullTolerance())) continue;
            kind = 2;
            return;
        }
    });
}

void PlainSnap::ToPath(HostPoint& point, int16_t& kind) {
    Walk(kind, [&](const Art& art, const HostRect& bounds) {
        if (!InBoundsWithTolerance(point, bounds, PullTolerance())) return;
        const Segments& segments = art.path()->segments;
        const size_t pieces = segments.empty() ? 0 : segments.size() - (art.path()->closed ? 0 : 1);
        for (size_t i = 0; i < pieces && kind == 0; ++i) {
            if (NearSegment(point, segments[i], segments[(i + 1) % segments.size()], PullTolerance(), 1))
                kind = 4;
        }
    });
}

void PlainSnap::ToGrid(HostPoint& point, int16_t& kind) {
    if (kind != 0) return;
    const auto nearest = [](double coordinate, double spacing) {
        const double lines = std::trunc(coordinate / spacing + std::copysign(0.5, coordinate));
        // A whole number has no negative zero.
        return std::abs(lines) < 2147483648.0 ? static_cast<float>((lines + 0.0) * spacing) : coordinate;
    };
    point.x = nearest(point.x, globals->flGrWidth);
    point.y = nearest(point.y, globals->flGrHeight);
    kind = 1;
}

void PlainSnap::ToIntersection(HostPoint& point, int16_t& kind) {
    hitA_ = hitB_ = {};
    Walk(kind, [&](const Art& art, const HostRect& bounds) {
        if (hitB_.art || !InBoundsWithTolerance(point, bounds, PullTolerance())) return;
        Intersect(art, point, kind);
    });
}

void PlainSnap::Intersect(const Art& art, HostPoint& point, int16_t& kind) {
    const Segments& segments = art.path()->segments;
    const size_t pieces = segments.empty() ? 0 : segments.size() - (art.path()->closed ? 0 : 1);
    for (size_t i = 0; i < pieces && kind == 0; ++i) {
        const size_t next = i + 1 == segments.size() ? 0 : i + 1;
        if (!NearSegment(point, segments[i], segments[next], PullTolerance(), 1)) continue;
        const Found found{&art, next, segments[i], segments[next]};
        if (!hitA_.art) {
            hitA_ = found;
            if (next == 0) Count(kClosingPiece);
            continue;
        }
        if (hitA_.art == &art && hitA_.index == i) {
            const bool meet = NearAnchor(point, segments[i].anchor, PullTolerance());
            Count(meet ? kNeighbourIgnored : kNeighbourCounts);
            if (meet) continue;
        }
        if (hitA_.art != &art) Count(kTwoPaths);
        if (next == 0) Count(kClosingPiece);
        hitB_ = found;
        kind = 3;
    }
    if (kind == 0) return;
    HostPoint result{};
    const bool crossed = Cross(point, result);
    result = {static_cast<float>(result.x), static_cast<float>(result.y)};
    if (crossed && std::isfinite(result.x) && std::isfinite(result.y)) {
        point = result;
    } else {
        if (crossed) Count(kBeyondNumbers);
        kind = 0;
    }
}

bool PlainSnap::Cross(HostPoint p, HostPoint& result) {
    const bool straightA = Straight(hitA_.first, hitA_.second);
    const bool straightB = Straight(hitB_.first, hitB_.second);
    if (straightA && straightB) return CrossLines(p, result);
    HostPoint c1, c2;
    double r1, r2;
    const bool circleA = !straightA && CircleThroughEnds(hitA_.first, hitA_.second, c1, r1);
    const bool circleB = !straightB && CircleThroughEnds(hitB_.first, hitB_.second, c2, r2);
    if (circleA && circleB) return CrossCircles(c1, r1, c2, r2, p, result);
    if (straightA && circleB) return CrossLineCircle(hitA_, c2, r2, p, result);
    if (straightB && circleA) return CrossLineCircle(hitB_, c1, r1, p, result);
    const auto pointsOf = [](const Found& hit, bool straight) {
        std::vector<HostPoint> points{hit.first.anchor};
        for (int i = 1; i < 64 && !straight; ++i) points.push_back(CurvePoint(hit.first, hit.second, i));
        points.push_back(hit.second.anchor);
        return points;
    };
    std::vector<HostPoint> a = pointsOf(hitA_, straightA), b = pointsOf(hitB_, straightB);
    if (straightB) std::swap(a, b);
    const bool crossed = CrossChords(a, b, p, result);
    if (straightA || straightB)
        Count(crossed ? kLineCrossesCurve : kLineMissesCurve);
    else
        Count(crossed ? kCurvesCross : kCurvesMiss);
    return crossed;
}

bool PlainSnap::CrossLines(HostPoint p, HostPoint& result) {
    const HostPoint a0 = hitA_.first.anchor, a1 = hitA_.second.anchor;
    const HostPoint b0 = hitB_.first.anchor, b1 = hitB_.second.anchor;
    if (a0.x == a1.x && b0.x == b1.x) {
        Count(kBothVertical);
        return false;
    }
    if (a0.x == a1.x) {
        Count(kFirstVertical);
        result = {a0.x, a0.x * SlopeOf(b0, b1) + RiseOf(b0, b1)};
        return true;
    }
    const double mA = SlopeOf(a0, a1), bA = RiseOf(a0, a1);
    if (b0.x == b1.x) {
        Count(kSecondVertical);
        result = {b0.x, b0.x * mA + bA};
        return true;
    }
    const double mB = SlopeOf(b0, b1), bB = RiseOf(b0, b1);
    if (mA == mB) {
        Count(kParallel);
        return false;
    }
    result.x = (bA - bB) / (mB - mA);
    result.y = result.x * mA + bA;
    const bool found = Distance(result, p) <= PullTolerance();
    Count(found ? kLinesCross : kLinesCrossFarOff);
    return found;
}

bool PlainSnap::CrossCircles(HostPoint c1, double r1, HostPoint c2, double r2, HostPoint p,
                             HostPoint& result) {
    const double d = Distance(c1, c2);
    if (d == 0) {
        Count(kConcentric);
        return false;
    }
    const double a = (d * d + r1 * r1 - r2 * r2) / (2 * d);
    if (a > r1 || a < -r1) {
        Count(a > r1 ? kCirclesApart : kCircleInCircle);
        return false;
    }
    const double phi = std::atan2(std::sqrt(r1 * r1 - a * a), a), theta = AngleBetween(c1, c2);
    const HostPoint first{c1.x + r1 * std::cos(theta + phi), c1.y + r1 * std::sin(theta + phi)};
    const HostPoint second{c1.x + r1 * std::cos(theta - phi), c1.y + r1 * std::sin(theta - phi)};
    const bool takesFirst = Distance(first, p) <= Distance(second, p);
    result = takesFirst ? first : second;
    const bool found = Within(result, p, PullTolerance());
    Count(!found ? kCirclesFarOff : takesFirst ? kCirclesFirst : kCirclesSecond);
    return found;
}

bool PlainSnap::CrossLineCircle(const Found& line, HostPoint c, double r, HostPoint p, HostPoint& result) {
    const HostPoint l0{line.first.anchor.x - c.x, line.first.anchor.y - c.y};
    const HostPoint l1{line.second.anchor.x - c.x, line.second.anchor.y - c.y};
    p = {p.x - c.x, p.y - c.y};
    const bool vertical = l0.x == l1.x;
    HostPoint first, second;
    if (vertical) {
        const double q = r * r - l0.x * l0.x;
        if (q < 0) {
            Count(kVerticalBesideCircle);
            return false;
        }
        first = {l0.x, std::sqrt(q)};
        second = {l0.x, -std::sqrt(q)};
    } else {
        const double m = SlopeOf(l0, l1), b = RiseOf(l0, l1);
        const double q = r * r * (m * m + 1) - b * b;
        if (q < 0) {
            Count(kLineBesideCircle);
            return false;
        }
        first.x = (-m * b + std::sqrt(q)) / (m * m + 1);
        second.x = (-m * b - std::sqrt(q)) / (m * m + 1);
        first.y = m * first.x + b;
        second.y = m * second.x + b;
    }
    const bool takesFirst = Distance(first, p) <= Distance(second, p);
    const HostPoint taken = takesFirst ? first : second;
    result = {taken.x + c.x, taken.y + c.y};
    if (!(Distance(taken, p) <= PullTolerance())) {
        Count(kLineCircleFarOff);
        return false;
    }
    if (vertical)
        Count(takesFirst ? kVerticalFirst : kVerticalSecond);
    else
        Count(takesFirst ? kLineFirst : kLineSecond);
    return true;
}

bool PlainSnap::CrossChords(const std::vector<HostPoint>& a, const std::vector<HostPoint>& b, HostPoint p,
                            HostPoint& result) {
    for (size_t i = 0; i + 1 < a.size(); ++i) {
        for (size_t j = 0; j + 1 < b.size(); ++j) {
            const bool verticalA = a[i].x == a[i + 1].x, verticalB = b[j].x == b[j + 1].x;
            if (verticalA && verticalB) continue;
            const double mA = SlopeOf(a[i], a[i + 1]), bA = RiseOf(a[i], a[i + 1]);
            const double mB = SlopeOf(b[j], b[j + 1]), bB = RiseOf(b[j], b[j + 1]);
            if (verticalA) {
                result = {a[i].x, a[i].x * mB + bB};
            } else if (verticalB) {
                result = {b[j].x, b[j].x * mA + bA};
            } else {
                if (mA == mB) continue;
                result.x = (bA - bB) / (mB - mA);
                result.y = result.x * mA + bA;
            }
            if (Boxed(result, a[i], a[i + 1]) && Boxed(result, b[j], b[j + 1]) &&
                Within(result, p, PullTolerance())) {
                return true;
            }
        }
    }
    return false;
}
