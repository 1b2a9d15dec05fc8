/// Pulls the point of a drag onto the art below it, or onto a grid.
///
/// The pull is two screen pixels at the current view's zoom.  A search takes the point in art units and moves
/// it on a hit; `kind` has to be kSnapNone, else it does nothing, and becomes the search's own kind on a hit.
/// The first hit in paint order from the top wins, not the nearest.  Visible layers are searched, locked ones
/// too, and hidden paths in them.  Without a view, or at a zoom of 0, a search misses.  A host error ends the
/// search and is returned; point and kind stand as they were at that moment.  All this runs between an
/// acquire and a release of the suites, on the host's main thread.
#pragma once

#include <cstdint>
#include <memory>

#include "suites/host_types.h"

enum SnapKind : int16_t {
    kSnapNone = 0,
    kSnapGrid = 1,
    kSnapAnchor = 2,
    kSnapIntersection = 3,
    kSnapPath = 4
};

/// The point becomes the first anchor within the pull on each axis.
HostError SnapToAnchor(HostPoint& point, int16_t& kind);

/// The point becomes the crossing of the first two pieces within the pull, in single precision.  Each of the
/// two moves the point, and it stays moved when they don't cross.
HostError SnapToIntersection(HostPoint& point, int16_t& kind);

/// The point moves onto the first piece within the pull.
HostError SnapToPath(HostPoint& point, int16_t& kind);

/// The point becomes the grid point nearest to it, in single precision; the caller sets kSnapGrid.  The grid
/// is `globals->flGrWidth` by `flGrHeight` points and goes through (0, 0).  An axis stays as it is whose
/// spacing isn't finite and above 0, or whose grid line would have a number beyond 32 bits.
void SnapToGrid(HostPoint& point);

struct SnapIndex;

/// The length of one drag, within which the document doesn't change.
///
/// The first search of the drag makes an index over the visible paths, and all searches ask it instead of
/// walking the document; their results are the same, bit for bit.  If it can't be made (memory, an error of
/// the host) the searches go on walking.  Must end before its call of the plug-in returns.
class Snapping {
public:
    Snapping();
    ~Snapping();
    Snapping(const Snapping&) = delete;
    Snapping& operator=(const Snapping&) = delete;

private:
    std::unique_ptr<SnapIndex> index_; // null if memory ran out
    SnapIndex* outer_;
};
