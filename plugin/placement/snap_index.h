/// An index over the pieces of the visible paths, which gives those near a point in the order of the walk.
///
/// Every segment of a path is an entry: its anchor, with the piece that begins at it if there is one.
/// Entries are numbered in the order in which a walk over the document meets them.  Boxes over up to eight
/// successive entries of a path are the leaves of a tree packed as by S. T. Leutenegger, M. A. Lopez and
/// J. Edgington, "STR: A Simple and Efficient Algorithm for R-Tree Packing" (1997).  A query takes nodes
/// from a heap, that of the lowest entry first, as searches for the nearest take the nearest first; so
/// entries come in order, and what a caller doesn't ask for is never looked at.
///
/// Segments themselves stay with the host and are read when a query has found them.
#pragma once

#include <cstdint>
#include <vector>

#include "suites/host_types.h"

/// Rounded outward from what it bounds.
struct IndexBox {
    float left, bottom, right, top;
};

struct IndexNode {
    IndexBox box;
    uint32_t firstEntry, lastEntry; ///< lowest and highest below it
    uint32_t firstChild;            ///< node number
    uint32_t childCount;            ///< 0: a leaf, which holds firstEntry to lastEntry
};

struct IndexedPath {
    ArtHandle art;
    HostRect bounds; ///< as the host gives them
    uint32_t firstEntry;
    int32_t segmentCount;
    bool closed;
};

enum class IndexState { kNotMade, kMade, kFailed };

struct SnapIndex {
    IndexState state = IndexState::kNotMade;
    std::vector<IndexedPath> paths; ///< those with segments, in the order of the walk
    std::vector<IndexBox> boxes;    ///< by entry
    std::vector<IndexNode> nodes;   ///< the root is the last

    // The query that runs.
    std::vector<uint32_t> heap; ///< node numbers
    IndexBox wanted;
    uint32_t nextEntry; ///< not below this one
    uint32_t leafEnd;   ///< behind the last entry of the leaf that is being read
};

/// Makes the index.  False, for good: the host gave an error, or memory ran out.
bool MakeSnapIndex(SnapIndex& index);

/// Begins a query for the entries from `firstEntry` on that come within `tolerance` of the point on both
/// axes.
void StartQuery(SnapIndex& index, const HostPoint& point, double tolerance, uint32_t firstEntry);

/// The next entry whose box does; none that is within reach is left out.  False: no more.
bool NextEntry(SnapIndex& index, uint32_t& entry);

/// The path that an entry belongs to.
const IndexedPath& PathOfEntry(const SnapIndex& index, uint32_t entry);
