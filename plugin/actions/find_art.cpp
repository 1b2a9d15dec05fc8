#include "plugin/actions/find_art.h"

#include <algorithm>
#include <vector>

#include "plugin/capture/art_walk.h"
#include "plugin/host/suites.h"
#include "plugin/placement/geometry.h"

namespace {

constexpr int kChords = 8; ///< of a curved piece

HostPoint CubicPoint(const HostPathSegment& first, const HostPathSegment& second, double t) {
    const double s = 1 - t;
    const double a = s * s * s, b = 3 * s * s * t, c = 3 * s * t * t, d = t * t * t;
    return {a * first.anchor.x + b * first.out.x + c * second.in.x + d * second.anchor.x,
            a * first.anchor.y + b * first.out.y + c * second.in.y + d * second.anchor.y};
}

/// True if an odd number of the piece's chords cross the ray.
bool PieceFlips(const HostPathSegment& first, const HostPathSegment& second, const HostPoint& point) {
    if (IsStraight(first, second)) return ChordCrossesRay(first.anchor, second.anchor, point);
    bool flips = false;
    HostPoint from = first.anchor;
    for (int chord = 1; chord <= kChords; ++chord) {
        const HostPoint to = chord == kChords
                                 ? second.anchor
                                 : CubicPoint(first, second, static_cast<double>(chord) / kChords);
        if (ChordCrossesRay(from, to, point)) flips = !flips;
        from = to;
    }
    return flips;
}

bool ReadSegments(ArtHandle path, std::vector<HostPathSegment>& segments) {
    int32_t count = 0;
    if (PathSuite().GetPathSegmentCount(path, &count) || count < 2) return false;
    segments.resize(static_cast<size_t>(count));
    return PathSuite().GetPathSegments(path, 0, count, segments.data()) == kHostNoError;
}

bool PathHolds(ArtHandle path, const HostPoint& point) {
    HostRect bounds{};
    if (ArtSuite().GetArtBounds(path, &bounds)) return false;
    return bounds.left <= point.x && point.x <= bounds.right && bounds.bottom <= point.y &&
           point.y <= bounds.top && PointInPath(path, point);
}

ArtHandle FindArtInTree(ArtHandle root, const HostPoint& point) {
    ArtHandle found = nullptr;
    WalkArt(root, 0, [&](ArtHandle art, int32_t kind, int32_t) {
        if (found) return false;
        if (kind == kArtPath && PathHolds(art, point)) found = art;
        return kind == kArtGroup || kind == kArtCompoundPath;
    });
    return found;
}

} // namespace

bool ChordCrossesRay(const HostPoint& p0, const HostPoint& p1, const HostPoint& point) {
    if (p0.x == p1.x) return false;
    if (!(std::min(p0.x, p1.x) < point.x && point.x <= std::max(p0.x, p1.x))) return false;
    const double slope = (p1.y - p0.y) / (p1.x - p0.x);
    const double crossing = slope * point.x + (p0.y - slope * p0.x);
    return crossing >= 0 ? point.y >= 0 && crossing >= point.y : point.y <= 0 && point.y >= crossing;
}

bool PointInPath(ArtHandle path, const HostPoint& point) {
    std::vector<HostPathSegment> segments;
    if (!ReadSegments(path, segments)) return false;
    bool inside = false;
    const HostPathSegment* previous = &segments.back();
    for (const HostPathSegment& segment : segments) {
        if (PieceFlips(*previous, segment, point)) inside = !inside;
        previous = &segment;
    }
    return inside;
}

ArtHandle FindArtAtPoint(const HostPoint& point) {
    ArtHandle found = nullptr;
    ForEachLayerRoot([&](ArtHandle root) {
        if (!found) found = FindArtInTree(root, point);
        return kHostNoError;
    });
    return found;
}
