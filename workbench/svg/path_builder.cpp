#include <algorithm>
#include <cmath>
#include <numbers>

#include "workbench/svg/path_data.h"
#include "workbench/svg/transforms.h"

namespace workbench {
namespace {

bool AlmostEqual(HostPoint a, HostPoint b) {
    // Relative commands add up rounding errors; a real step is never this small.
    const double scale = std::max({1.0, std::abs(a.x), std::abs(a.y)});
    return std::abs(a.x - b.x) <= 1e-9 * scale && std::abs(a.y - b.y) <= 1e-9 * scale;
}

HostPoint Minus(HostPoint a, HostPoint b) {
    return {a.x - b.x, a.y - b.y};
}

/// Where a cubic Bezier coordinate has its extrema, if within (0, 1); the numbers of them.
int Extrema(double p0, double p1, double p2, double p3, double (&at)[2]) {
    const double a = -p0 + 3 * p1 - 3 * p2 + p3, b = p0 - 2 * p1 + p2, c = p1 - p0;
    int count = 0;
    const auto add = [&](double t) {
        if (t > 0 && t < 1) at[count++] = t;
    };
    if (std::abs(a) <= 1e-12 * (std::abs(b) + std::abs(c))) {
        if (b != 0) add(-c / (2 * b));
        return count;
    }
    const double root = b * b - a * c;
    if (root < 0) return 0;
    add((-b + std::sqrt(root)) / a);
    add((-b - std::sqrt(root)) / a);
    return count;
}

double CurveAt(double p0, double p1, double p2, double p3, double t) {
    const double s = 1 - t;
    return s * s * s * p0 + 3 * s * s * t * p1 + 3 * s * t * t * p2 + t * t * t * p3;
}

void AddCurve(HostPoint p0, HostPoint p1, HostPoint p2, HostPoint p3, Box* box) {
    box->Add(p3);
    double at[2];
    for (int i = Extrema(p0.x, p1.x, p2.x, p3.x, at); i-- > 0;)
        box->Add({CurveAt(p0.x, p1.x, p2.x, p3.x, at[i]), p3.y});
    for (int i = Extrema(p0.y, p1.y, p2.y, p3.y, at); i-- > 0;)
        box->Add({p3.x, CurveAt(p0.y, p1.y, p2.y, p3.y, at[i])});
}

} // namespace

bool PathBuilder::Begin() {
    if (room_ == 0) {
        overflow_ = true;
        return false;
    }
    --room_;
    if (open_.segments.empty()) open_.segments.push_back({start_, start_, start_, 1});
    return true;
}

void PathBuilder::Add(HostPoint point, HostPoint inHandle) {
    open_.segments.push_back({point, inHandle, point, 1});
    current_ = point;
}

void PathBuilder::MoveTo(HostPoint point) {
    if (open_.segments.size() > 1) done_.push_back(std::move(open_));
    open_ = {};
    start_ = current_ = point;
}

void PathBuilder::LineTo(HostPoint point) {
    if (Begin()) Add(point, point);
}

void PathBuilder::CurveTo(HostPoint firstHandle, HostPoint secondHandle, HostPoint point) {
    if (!Begin()) return;
    open_.segments.back().out = firstHandle;
    Add(point, secondHandle);
}

void PathBuilder::ArcTo(double rx, double ry, double degrees, bool large, bool sweep, HostPoint point) {
    // The conversion from end points to a centre, as in the appendix on arcs of the SVG recommendation.
    rx = std::abs(rx);
    ry = std::abs(ry);
    const HostPoint from = current_;
    if (from.x == point.x && from.y == point.y) return;
    const double turn = std::remainder(degrees, 360) * std::numbers::pi / 180;
    const double cosine = std::cos(turn), sine = std::sin(turn);
    const double halfX = (from.x - point.x) / 2, halfY = (from.y - point.y) / 2;
    const double x = cosine * halfX + sine * halfY, y = -sine * halfX + cosine * halfY;
    const double spread = rx > 0 && ry > 0 ? (x / rx) * (x / rx) + (y / ry) * (y / ry) : 0;
    if (!(spread > 0) || !std::isfinite(spread)) return LineTo(point);
    if (spread > 1) {
        rx *= std::sqrt(spread);
        ry *= std::sqrt(spread);
    }
    const double away = std::sqrt(std::max(0.0, 1 / std::min(spread, 1.0) - 1));
    const double factor = spread >= 1 ? 0 : (large == sweep ? -away : away);
    const double centreX = factor * rx * y / ry, centreY = -factor * ry * x / rx;
    const HostMatrix toUser{rx * cosine,
                            rx * sine,
                            -ry * sine,
                            ry * cosine,
                            cosine * centreX - sine * centreY + (from.x + point.x) / 2,
                            sine * centreX + cosine * centreY + (from.y + point.y) / 2};
    const double first = std::atan2((y - centreY) / ry, (x - centreX) / rx);
    double span = std::atan2((-y - centreY) / ry, (-x - centreX) / rx) - first;
    if (sweep && span <= 0) span += 2 * std::numbers::pi;
    if (!sweep && span >= 0) span -= 2 * std::numbers::pi;
    if (!std::isfinite(span)) return LineTo(point);
    const int pieces =
        std::clamp(static_cast<int>(std::ceil(std::abs(span) / (std::numbers::pi / 2) - 1e-9)), 1, 4);
    const double step = span / pieces, handle = 4.0 / 3 * std::tan(step / 4);
    for (int i = 0; i < pieces; ++i) {
        const double a = first + i * step, b = a + step;
        const HostPoint firstHandle{std::cos(a) - handle * std::sin(a), std::sin(a) + handle * std::cos(a)};
        const HostPoint secondHandle{std::cos(b) + handle * std::sin(b), std::sin(b) - handle * std::cos(b)};
        CurveTo(Apply(toUser, firstHandle), Apply(toUser, secondHandle),
                i + 1 == pieces ? point : Apply(toUser, {std::cos(b), std::sin(b)}));
    }
}

void PathBuilder::Close() {
    if (open_.segments.empty()) {
        // A start that is closed at once is a dot under round caps.
        if (!Begin()) return;
    }
    auto& segments = open_.segments;
    if (segments.size() > 1 && AlmostEqual(segments.back().anchor, segments.front().anchor)) {
        segments.front().in = segments.back().in;
        // A straight end must stay one if the two anchors differ in their last bits.
        const HostPathSegment& last = segments.back();
        if (last.in.x == last.anchor.x && last.in.y == last.anchor.y)
            segments.front().in = segments.front().anchor;
        segments.pop_back();
    }
    open_.closed = true;
    done_.push_back(std::move(open_));
    open_ = {};
    current_ = start_;
}

Subpaths PathBuilder::Finish() {
    MoveTo(start_);
    SetCornerFlags(done_);
    return std::move(done_);
}

void SetCornerFlags(Subpaths& subpaths) {
    for (Subpath& subpath : subpaths) {
        for (HostPathSegment& segment : subpath.segments) {
            const HostPoint in = Minus(segment.in, segment.anchor), out = Minus(segment.out, segment.anchor);
            const double lengths = std::hypot(in.x, in.y) * std::hypot(out.x, out.y);
            const double along = in.x * out.x + in.y * out.y, across = in.x * out.y - in.y * out.x;
            segment.corner = !(lengths > 0 && along < 0 && std::abs(across) <= 1e-3 * lengths);
        }
    }
}

void Box::Add(HostPoint point) {
    if (empty) {
        *this = {point.x, point.y, point.x, point.y, false};
        return;
    }
    left = std::min(left, point.x);
    right = std::max(right, point.x);
    top = std::min(top, point.y);
    bottom = std::max(bottom, point.y);
}

void AddExtent(const std::vector<HostPathSegment>& segments, bool closed, const HostMatrix& matrix,
               Box* box) {
    if (segments.empty()) return;
    box->Add(Apply(matrix, segments.front().anchor));
    const size_t pieces = closed ? segments.size() : segments.size() - 1;
    for (size_t i = 0; i < pieces; ++i) {
        const HostPathSegment& from = segments[i];
        const HostPathSegment& to = segments[i + 1 == segments.size() ? 0 : i + 1];
        AddCurve(Apply(matrix, from.anchor), Apply(matrix, from.out), Apply(matrix, to.in),
                 Apply(matrix, to.anchor), box);
    }
}

Box Extent(const Subpaths& subpaths) {
    Box box;
    for (const Subpath& subpath : subpaths) AddExtent(subpath.segments, subpath.closed, kIdentity, &box);
    return box;
}

double SignedArea(const Subpath& subpath) {
    double area = 0;
    const auto& segments = subpath.segments;
    const auto add = [&](HostPoint a, HostPoint b) { area += a.x * b.y - b.x * a.y; };
    for (size_t i = 0; i < segments.size(); ++i) {
        const HostPathSegment& to = segments[i + 1 == segments.size() ? 0 : i + 1];
        add(segments[i].anchor, segments[i].out);
        add(segments[i].out, to.in);
        add(to.in, to.anchor);
    }
    return area;
}

void Reverse(Subpath& subpath) {
    std::ranges::reverse(subpath.segments);
    for (HostPathSegment& segment : subpath.segments) std::swap(segment.in, segment.out);
}

} // namespace workbench
