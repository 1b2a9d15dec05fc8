#include "plugin/placement/snap_index.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <new>

#include "plugin/host/suites.h"
#include "plugin/placement/visible_paths.h"

namespace {

constexpr size_t kFewItems = 16;       // are not divided further
constexpr double kSmallCell = 4;       // pulls; what is within reach lies in about two of them
constexpr size_t kMostItems = 1 << 23; // a tree that grows beyond is made anew
// Segments of a large document.  Memory that is set aside and never touched costs next to nothing, moving
// what has grown costs more than reading.
constexpr size_t kRoom = 1 << 18;
constexpr uint32_t kMostSegments = 0x7FFFFFFF;

// Reading the document

HostError AddPaths(SnapIndex& index) {
    VisiblePaths walk{};
    for (;;) {
        IndexedPath path{};
        if (const HostError error = NextVisiblePath(walk, path.art)) return error;
        if (!path.art) return kHostNoError;
        if (const HostError error = ArtSuite().GetArtBounds(path.art, &path.bounds)) return error;
        path.reach = ReachOfRect(path.bounds, index.pull);
        index.paths.push_back(path);
    }
}

void AddReaches(SnapIndex& index, const IndexedPath& path) {
    const HostPathSegment* segments = index.segments.data() + path.first;
    for (uint32_t i = 0; i + 1 < path.count; ++i) {
        index.reaches.push_back(ReachOfPiece(segments[i], segments[i + 1], index.pull));
    }
    if (path.count == 0) return;
    index.reaches.push_back(path.closed ? ReachOfPiece(segments[path.count - 1], segments[0], index.pull)
                                        : PieceReach{kNowhere, 0, 0, 0, -1});
}

HostError ReadPath(SnapIndex& index, IndexedPath& path) {
    int32_t count = 0, closed = 0;
    if (const HostError error = PathSuite().GetPathSegmentCount(path.art, &count)) return error;
    if (const HostError error = PathSuite().GetPathClosed(path.art, &closed)) return error;
    count = std::max(count, 0);
    path.first = static_cast<uint32_t>(index.segments.size());
    path.count = static_cast<uint32_t>(count);
    path.closed = closed != 0;
    if (path.count > kMostSegments - path.first) return kHostOutOfMemory;
    if (path.first == 0) {
        index.segments.reserve(kRoom);
        index.reaches.reserve(kRoom);
    }
    index.segments.resize(path.first + path.count);
    if (count > 0) {
        HostPathSegment* segments = index.segments.data() + path.first;
        if (const HostError error = PathSuite().GetPathSegments(path.art, 0, count, segments)) return error;
    }
    AddReaches(index, path);
    path.read = true;
    return kHostNoError;
}

// Cells

/// As small as the pull or the numbers' precision allow.
bool IsSmall(const IndexBox& box, double pull) {
    const double size = std::max(double{box.right} - box.left, double{box.top} - box.bottom);
    const float magnitude =
        std::max({std::fabs(box.left), std::fabs(box.right), std::fabs(box.bottom), std::fabs(box.top)});
    return size <= std::max(kSmallCell * pull, magnitude * 1e-6);
}

bool IsWider(const IndexBox& a, const IndexBox& b) {
    return double{a.right} - a.left > double{b.right} - b.left ||
           double{a.top} - a.bottom > double{b.top} - b.bottom;
}

/// A cell under way: its items are the last of the tree's.
struct NewCell {
    IndexTree& tree;
    IndexBox limits; // what it may hold
    bool wholePaths; // it lists some
    IndexBox held = kNowhere;
    size_t firstItem = tree.items.size();

    void Add(const IndexItem& item, const IndexBox& reach) {
        tree.items.push_back(item);
        held = Union(held, reach);
        wholePaths |= item.segment == kWholePath;
    }
};

void AddMember(const SnapIndex& index, NewCell& cell, const IndexItem& item) {
    const HostPathSegment& segment = index.segments[item.segment];
    if (cell.tree.thing == kIndexedAnchors) {
        const IndexBox reach = ReachOfPoint(segment.anchor, index.pull);
        if (Overlap(reach, cell.limits)) cell.Add(item, reach);
        return;
    }
    const PieceReach& reach = index.reaches[item.segment];
    if (!Overlap(reach.box, cell.limits)) return; // most, and cheaper told here
    const IndexedPiece piece = PieceOf(index, item);
    if (ReachTouches(reach, piece.first, piece.second, cell.limits)) cell.Add(item, reach.box);
}

/// Lists what of the parent's list has a point of the cell in reach.
HostError FillCell(SnapIndex& index, NewCell& cell, size_t firstItem, size_t itemCount) {
    const bool members = itemCount <= kFewItems || IsSmall(cell.limits, index.pull);
    for (size_t i = firstItem; i < firstItem + itemCount; ++i) {
        const IndexItem item = cell.tree.items[i];
        if (item.segment != kWholePath) {
            AddMember(index, cell, item);
            continue;
        }
        IndexedPath& path = index.paths[item.path];
        if (!Overlap(path.reach, cell.limits)) continue;
        if (!members && !IsWider(path.reach, cell.limits)) {
            cell.Add(item, path.reach);
            continue;
        }
        if (!path.read) {
            if (const HostError error = ReadPath(index, path)) return error;
        }
        for (uint32_t k = 0; k < path.count; ++k) AddMember(index, cell, {item.path, path.first + k});
    }
    return kHostNoError;
}

/// Gives the tree the cell; it shrinks to what its items reach.
uint32_t EndCell(const SnapIndex& index, const NewCell& cell) {
    IndexTree& tree = cell.tree;
    const IndexBox box = Intersection(cell.limits, cell.held);
    const size_t count = tree.items.size() - cell.firstItem;
    const bool divided = cell.wholePaths || (count > kFewItems && !IsSmall(box, index.pull));
    tree.cells.push_back({box, cell.firstItem, count, {}, divided});
    return static_cast<uint32_t>(tree.cells.size() - 1);
}

void PlantTree(SnapIndex& index, IndexTree& tree) {
    tree.cells.clear();
    tree.items.clear();
    NewCell cell{tree, kEverywhere, false};
    for (uint32_t i = 0; i < index.paths.size(); ++i) cell.Add({i, kWholePath}, index.paths[i].reach);
    EndCell(index, cell);
}

/// The quarter of the cell that holds the point.
HostError EnterQuarter(SnapIndex& index, IndexTree& tree, const HostPoint& point, uint32_t& number) {
    const IndexCell cell = tree.cells[number];
    const float x = cell.box.left / 2 + cell.box.right / 2, y = cell.box.bottom / 2 + cell.box.top / 2;
    const bool right = point.x >= x, upper = point.y >= y;
    const size_t quarter = (right ? 1u : 0u) + (upper ? 2u : 0u);
    if (cell.quarters[quarter] == 0) {
        const IndexBox limits{right ? x : cell.box.left, upper ? y : cell.box.bottom,
                              right ? cell.box.right : x, upper ? cell.box.top : y};
        NewCell made{tree, limits, false};
        if (const HostError error = FillCell(index, made, cell.firstItem, cell.itemCount)) return error;
        const uint32_t madeNumber = EndCell(index, made);
        tree.cells[number].quarters[quarter] = madeNumber;
    }
    number = tree.cells[number].quarters[quarter];
    return kHostNoError;
}

/// Makes the list of the undivided cell that holds the point the query's.
HostError FindList(SnapIndex& index, IndexTree& tree) {
    index.item = index.behindItem = 0;
    if (tree.cells.empty() || tree.items.size() > kMostItems) PlantTree(index, tree);
    uint32_t number = 0;
    while (Holds(tree.cells[number].box, index.point)) {
        const IndexCell& cell = tree.cells[number];
        if (!cell.divided) {
            index.item = cell.firstItem;
            index.behindItem = cell.firstItem + cell.itemCount;
            break;
        }
        if (const HostError error = EnterQuarter(index, tree, index.point, number)) return error;
    }
    return kHostNoError;
}

/// Runs what reads the host and takes memory; the index fails with it.
template <typename Work>
bool Attempt(SnapIndex& index, Work work) {
    try {
        if (work() == kHostNoError) return true;
    } catch (const std::bad_alloc&) {
    }
    index = {};
    index.state = IndexState::kFailed;
    return false;
}

} // namespace

bool MakeSnapIndex(SnapIndex& index, double pull) {
    index = {};
    index.pull = pull;
    index.state = IndexState::kMade;
    return Attempt(index, [&] { return AddPaths(index); });
}

bool StartQuery(SnapIndex& index, IndexedThing thing, const HostPoint& point) {
    IndexTree& tree = thing == kIndexedAnchors ? index.anchors : index.pieces;
    // What is beyond all boxes but those without limits stays in these.
    index.point = {std::clamp(point.x, -double{kFloatMost}, double{kFloatMost}),
                   std::clamp(point.y, -double{kFloatMost}, double{kFloatMost})};
    index.asked = &tree;
    index.segment = index.behindSegment = 0;
    return Attempt(index, [&] { return FindList(index, tree); });
}

bool ContinueQuery(SnapIndex& index, const IndexItem& last, const HostPoint& point) {
    const IndexedPath path = index.paths[last.path];
    if (!StartQuery(index, index.asked->thing, point)) return false;
    index.path = last.path;
    index.segment = last.segment + 1;
    index.behindSegment = path.first + path.count;
    const auto& items = index.asked->items;
    const auto first = items.begin() + static_cast<ptrdiff_t>(index.item);
    const auto behind = items.begin() + static_cast<ptrdiff_t>(index.behindItem);
    index.item += static_cast<size_t>(
        std::partition_point(first, behind, [&](const IndexItem& item) { return item.path <= last.path; }) -
        first);
    return true;
}

bool NextItem(SnapIndex& index, IndexItem& item) {
    const bool anchors = index.asked->thing == kIndexedAnchors;
    while (index.segment < index.behindSegment) {
        item = {index.path, index.segment++};
        if (anchors || Holds(index.reaches[item.segment].box, index.point)) return true;
    }
    while (index.item < index.behindItem) {
        item = index.asked->items[index.item++];
        if (anchors || Holds(index.reaches[item.segment].box, index.point)) return true;
    }
    return false;
}

IndexedPiece PieceOf(const SnapIndex& index, const IndexItem& item) {
    const IndexedPath& path = index.paths[item.path];
    const uint32_t number = item.segment - path.first, next = number + 1 == path.count ? 0 : number + 1;
    return {number, next, index.segments[item.segment], index.segments[path.first + next]};
}
