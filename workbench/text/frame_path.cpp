#include "workbench/text/frame_path.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "workbench/document/matrix.h"

namespace workbench {

namespace {

constexpr size_t kPieces = 16;
constexpr size_t kMostCorners = 8192;

HostPoint OnCurve(const HostPathSegment& from, const HostPathSegment& to, double t) {
    const double s = 1 - t;
    const double weights[] = {s * s * s, 3 * s * s * t, 3 * s * t * t, t * t * t};
    const HostPoint points[] = {from.anchor, from.out, to.in, to.anchor};
    HostPoint sum{0, 0};
    for (int i = 0; i < 4; ++i) {
        sum.x += weights[i] * points[i].x;
        sum.y += weights[i] * points[i].y;
    }
    return sum;
}

bool IsStraight(const HostPathSegment& from, const HostPathSegment& to) {
    return from.out.x == from.anchor.x && from.out.y == from.anchor.y && to.in.x == to.anchor.x &&
           to.in.y == to.anchor.y;
}

} // namespace

std::vector<HostPoint> CornersOf(const PathData& path, const HostMatrix& matrix,
                                 std::vector<size_t>* starts) {
    std::vector<HostPoint> corners;
    const auto& segments = path.segments;
    const size_t pieces = segments.size() * kPieces > kMostCorners ? 1 : kPieces;
    const size_t stride = segments.size() / kMostCorners + 1;
    const size_t curves = path.closed ? segments.size() : segments.empty() ? 0 : segments.size() - 1;
    for (size_t i = 0; i < segments.size(); ++i) {
        if (i % stride == 0 || i + 1 == segments.size()) corners.push_back(Apply(matrix, segments[i].anchor));
        if (starts) starts->push_back(corners.size() - 1);
        const HostPathSegment& next = segments[(i + 1) % segments.size()];
        if (i >= curves || IsStraight(segments[i], next)) continue;
        for (size_t piece = 1; piece < pieces; ++piece) {
            const double t = static_cast<double>(piece) / static_cast<double>(pieces);
            corners.push_back(Apply(matrix, OnCurve(segments[i], next, t)));
        }
    }
    if (path.closed && !corners.empty()) {
        corners.push_back(corners.front());
        if (starts) starts->push_back(corners.size() - 1);
    }
    const bool finite =
        std::ranges::all_of(corners, [](HostPoint p) { return std::isfinite(p.x) && std::isfinite(p.y); });
    return finite ? corners : std::vector<HostPoint>{};
}

AreaRoom::AreaRoom(std::vector<HostPoint> corners) : corners_(std::move(corners)) {
    if (corners_.empty()) return;
    const auto [low, high] = std::ranges::minmax_element(corners_, {}, &HostPoint::y);
    top_ = low->y;
    bottom_ = high->y;
}

std::vector<Room> AreaRoom::Inside(double y) const {
    std::vector<double> crossings;
    for (size_t i = 0; i < corners_.size(); ++i) {
        const HostPoint a = corners_[i], b = corners_[(i + 1) % corners_.size()];
        if ((a.y <= y) == (b.y <= y)) continue;
        crossings.push_back(a.x + (b.x - a.x) * ((y - a.y) / (b.y - a.y)));
    }
    std::ranges::sort(crossings);
    std::vector<Room> inside;
    for (size_t i = 0; i + 1 < crossings.size(); i += 2) inside.push_back({crossings[i], crossings[i + 1]});
    return inside;
}

bool AreaRoom::At(double top, double bottom, Room* room) const {
    constexpr int kHeights = 5;
    // Just inside, so that a box's own top and bottom count as inside.
    const double edge = (bottom - top) * 1e-3;
    std::vector<Room> common{
        {-std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity()}};
    for (int i = 0; i < kHeights; ++i) {
        const double y = top + edge + (bottom - top - 2 * edge) * i / (kHeights - 1);
        const std::vector<Room> inside = Inside(y);
        std::vector<Room> both;
        for (size_t a = 0, b = 0; a < common.size() && b < inside.size();) {
            const Room shared{std::max(common[a].left, inside[b].left),
                              std::min(common[a].right, inside[b].right)};
            if (shared.left < shared.right) both.push_back(shared);
            common[a].right < inside[b].right ? ++a : ++b;
        }
        common = std::move(both);
    }
    if (common.empty()) return false;
    *room = *std::ranges::max_element(common, {}, [](const Room& each) { return each.right - each.left; });
    return true;
}

Way::Way(const PathData& path, const HostMatrix& matrix) : corners_(CornersOf(path, matrix, &starts_)) {
    double sum = 0;
    for (size_t i = 0; i < corners_.size(); ++i) {
        if (i > 0) sum += std::hypot(corners_[i].x - corners_[i - 1].x, corners_[i].y - corners_[i - 1].y);
        distances_.push_back(sum);
    }
    if (!std::isfinite(sum)) {
        corners_.clear();
        distances_.clear();
    }
}

double Way::DistanceAt(double segments) const {
    if (distances_.empty() || !(segments > 0)) return 0;
    const auto last = static_cast<double>(starts_.size() - 1);
    if (segments >= last) return length();
    const auto index = static_cast<size_t>(segments);
    const double from = distances_[starts_[index]], to = distances_[starts_[index + 1]];
    return from + (to - from) * (segments - static_cast<double>(index));
}

double Way::SegmentsAt(double distance) const {
    if (!(distance > 0) || starts_.size() < 2) return 0;
    for (size_t i = 0; i + 1 < starts_.size(); ++i) {
        const double from = distances_[starts_[i]], to = distances_[starts_[i + 1]];
        if (distance < to) return static_cast<double>(i) + (distance - from) / (to - from);
    }
    return static_cast<double>(starts_.size() - 1);
}

void Way::At(double distance, HostPoint* point, HostPoint* direction) const {
    *point = {0, 0};
    *direction = {1, 0};
    if (corners_.empty()) return;
    *point = corners_.front();
    if (corners_.size() < 2) return;
    const auto found = std::ranges::upper_bound(distances_, distance);
    size_t i = std::clamp<size_t>(static_cast<size_t>(found - distances_.begin()), 1, corners_.size() - 1);
    while (i > 1 && distances_[i] == distances_[i - 1]) --i;
    const HostPoint a = corners_[i - 1], b = corners_[i];
    const double piece = distances_[i] - distances_[i - 1];
    if (!(piece > 0)) return;
    *direction = {(b.x - a.x) / piece, (b.y - a.y) / piece};
    const double along = distance - distances_[i - 1];
    *point = {a.x + direction->x * along, a.y + direction->y * along};
}

} // namespace workbench
