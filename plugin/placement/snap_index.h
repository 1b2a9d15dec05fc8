/// An index over the visible paths, which gives the anchors or pieces near a point in the order of the walk.
///
/// It costs little more than a walk to make, since it grows only where it is asked, as described by R. M.
/// Karp, R. Motwani and P. Raghavan, "Deferred Data Structuring" (1988).  Two trees of cells, one over
/// anchors and one over pieces, begin with a cell that lists all paths.  Each cell is quartered when a point
/// in it is first asked for, and the quarter lists what has any of its points in reach: whole paths as long
/// as they are smaller than the cell, then their anchors or pieces, for which the path is read.  So one list
/// answers a query, and lists keep the order of the walk.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "plugin/placement/piece_reach.h"
#include "suites/host_types.h"

struct IndexedPath {
    ArtHandle art;
    HostRect bounds; ///< as the host gives them
    IndexBox reach;  ///< of the bounds
    bool read;       ///< what follows is known
    bool closed;
    uint32_t first; ///< of its segments, in `segments`
    uint32_t count;
};

constexpr uint32_t kWholePath = 0xFFFFFFFF;

/// An anchor, the piece that begins at it, or a path.
struct IndexItem {
    uint32_t path;
    uint32_t segment; ///< in `segments`; kWholePath
};

struct IndexCell {
    IndexBox box;
    size_t firstItem, itemCount;
    uint32_t quarters[4]; ///< 0: not made yet
    bool divided;         ///< else the list has no whole paths, and is short or the cell small
};

enum IndexedThing { kIndexedAnchors, kIndexedPieces };

struct IndexTree {
    IndexedThing thing;
    std::vector<IndexCell> cells; ///< the first holds all
    std::vector<IndexItem> items; ///< the cells' lists
};

enum class IndexState { kNotMade, kMade, kFailed };

struct SnapIndex {
    IndexState state = IndexState::kNotMade;
    double pull = 0;                ///< that it was made for
    std::vector<IndexedPath> paths; ///< in the order of the walk
    std::vector<HostPathSegment> segments;
    std::vector<PieceReach> reaches; ///< by segment, of the piece that begins there; nowhere if none does
    IndexTree anchors{kIndexedAnchors, {}, {}}, pieces{kIndexedPieces, {}, {}};

    // The query that runs.
    HostPoint point;
    const IndexTree* asked;
    uint32_t path, segment, behindSegment; ///< the rest of a path that comes first
    size_t item, behindItem;
};

/// Makes the index for searches with this pull.  False, for good: the host gave an error, or memory ran out.
bool MakeSnapIndex(SnapIndex& index, double pull);

/// Begins a query for what may be within the pull of the point.  False: as above, and the index has failed.
bool StartQuery(SnapIndex& index, IndexedThing thing, const HostPoint& point);

/// The same behind `last`, where the point has moved while its path was searched: the rest of this path comes
/// first, whatever its bounds.
bool ContinueQuery(SnapIndex& index, const IndexItem& last, const HostPoint& point);

/// The next one.  None that is within the pull is left out.  False: no more.
bool NextItem(SnapIndex& index, IndexItem& item);

/// The piece that begins at an item's anchor; only for items of a query for pieces.
struct IndexedPiece {
    uint32_t firstNumber, secondNumber; ///< of the path's segments
    const HostPathSegment &first, &second;
};
IndexedPiece PieceOf(const SnapIndex& index, const IndexItem& item);
