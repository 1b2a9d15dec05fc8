/// From a path and its paint to a path object.
#pragma once

#include "plugin/objects/object_layout.h"
#include "plugin/store/memory_handle.h"
#include "suites/host_types.h"

/// A path object of one segment: what a caller has to provide.
constexpr uint32_t kOneSegmentPathBytes = kPathBaseBytes + sizeof(AidbSegment);
static_assert(kOneSegmentPathBytes == 5132);

/// The stored count is a signed 16-bit number.
constexpr int32_t kMaxPathSegments = INT16_MAX;

/// Writes the path object of `path` into `object`, a zeroed block of at least kOneSegmentPathBytes, which is
/// enlarged for more than one segment.  The fill's gradient goes into the object, a gradient on the stroke
/// becomes gray 0, custom colours go into the custom colour table, the art of patterns into `sideObjects`.
///
/// A guide and a path without segments give no object: the object's size word stays 0.  What the host
/// doesn't tell is left 0; the object is to be added none the less.
/// @param origin  the art point that becomes (0, 0) in the record
/// @return the host's code of the last step; kHostBadParameter if segments beyond kMaxPathSegments had to be
///         left out
HostError PostArtPathProcess(ArtHandle path, MemoryHandle& object, const HostPoint* origin);

/// A point of the art as one of the record, whose zero point is `origin`.
inline void Subtract(HostPoint& point, const HostPoint& origin) {
    point.x -= origin.x;
    point.y -= origin.y;
}

/// Makes an unfilled or unstroked paint independent of the document: the handle of a pattern or gradient
/// that paints nothing means nothing in a record.
void ForgetHandle(HostColor& color);
