/// How far the pieces of a path reach, rounded outward, so that an index leaves out nothing.
///
/// A point finds an anchor or a piece only where it is in reach: within the pull on each axis of the anchor,
/// of the arc if the piece counts as one, else of the chords that follow it.
#pragma once

#include <algorithm>
#include <limits>

#include "suites/host_types.h"

/// Borders belong to it.
struct IndexBox {
    float left, bottom, right, top;
};

inline constexpr float kFloatMost = std::numeric_limits<float>::max();
inline constexpr IndexBox kEverywhere{-kFloatMost, -kFloatMost, kFloatMost, kFloatMost};
inline constexpr IndexBox kNowhere{kFloatMost, kFloatMost, -kFloatMost, -kFloatMost}; ///< neutral in a union

struct PieceReach {
    IndexBox box;
    float margin;                   ///< around the curve itself, within which a point may find it
    float centerX, centerY, radius; ///< of an arc; radius below 0: it is none
};

/// The points within `reach` of a rectangle, of a point, of a piece; all for numbers beyond 1e37 or none.
IndexBox ReachOfRect(const HostRect& rect, double reach);
IndexBox ReachOfPoint(const HostPoint& point, double reach);
PieceReach ReachOfPiece(const HostPathSegment& first, const HostPathSegment& second, double reach);

/// Has any point of the box a piece of this reach in reach?  Closer than by the piece's box: curves are
/// halved where they bulge.  True in doubt.
bool ReachTouches(const PieceReach& reach, const HostPathSegment& first, const HostPathSegment& second,
                  const IndexBox& box);

inline bool Overlap(const IndexBox& a, const IndexBox& b) {
    return a.left <= b.right && b.left <= a.right && a.bottom <= b.top && b.bottom <= a.top;
}

inline bool Holds(const IndexBox& box, const HostPoint& point) {
    return box.left <= point.x && point.x <= box.right && box.bottom <= point.y && point.y <= box.top;
}

inline IndexBox Union(const IndexBox& a, const IndexBox& b) {
    return {std::min(a.left, b.left), std::min(a.bottom, b.bottom), std::max(a.right, b.right),
            std::max(a.top, b.top)};
}

inline IndexBox Intersection(const IndexBox& a, const IndexBox& b) {
    return {std::max(a.left, b.left), std::max(a.bottom, b.bottom), std::min(a.right, b.right),
            std::min(a.top, b.top)};
}
