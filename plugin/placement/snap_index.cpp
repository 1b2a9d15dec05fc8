#include "plugin/placement/snap_index.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <new>

#include "plugin/host/suites.h"
#include "plugin/placement/geometry.h"
#include "plugin/placement/visible_paths.h"

namespace {

constexpr uint32_t kLeafEntries = 8;
constexpr size_t kNodeChildren = 16;
constexpr size_t kMostEntries = 0x7FFFFFFF;

// Entries of a large document.  Memory that is set aside and never touched costs next to nothing, and moving
// what has grown costs more than all else.
constexpr size_t kRoom = 1 << 20;

// Boxes

constexpr double kLargestCoordinate = 1e37; // what is beyond, or no number, has a box without limits
constexpr IndexBox kEverywhere{std::numeric_limits<float>::lowest(), std::numeric_limits<float>::lowest(),
                               std::numeric_limits<float>::max(), std::numeric_limits<float>::max()};

/// Above what is lost on the way to a float (relative 6e-8) and in the searches' own arithmetic.
double RoundingSlack(double magnitude) {
    return magnitude * 2e-7 + 1e-30;
}

struct Extent {
    double left, bottom, right, top;
    double magnitude; // sum of absolute coordinates, so that one that is no number shows
};

Extent ExtentOf(const HostPoint& point) {
    return {point.x, point.y, point.x, point.y, std::fabs(point.x) + std::fabs(point.y)};
}

void Include(Extent& extent, const HostPoint& point) {
    extent.left = std::min(extent.left, point.x);
    extent.right = std::max(extent.right, point.x);
    extent.bottom = std::min(extent.bottom, point.y);
    extent.top = std::max(extent.top, point.y);
    extent.magnitude += std::fabs(point.x) + std::fabs(point.y);
}

IndexBox BoxOf(const Extent& extent, double reach) {
    if (!(extent.magnitude + reach < kLargestCoordinate)) return kEverywhere;
    const double slack = reach + RoundingSlack(extent.magnitude + reach);
    return {static_cast<float>(extent.left - slack), static_cast<float>(extent.bottom - slack),
            static_cast<float>(extent.right + slack), static_cast<float>(extent.top + slack)};
}

bool Overlap(const IndexBox& a, const IndexBox& b) {
    return a.left <= b.right && b.left <= a.right && a.bottom <= b.top && b.bottom <= a.top;
}

IndexBox Union(const IndexBox& a, const IndexBox& b) {
    return {std::min(a.left, b.left), std::min(a.bottom, b.bottom), std::max(a.right, b.right),
            std::max(a.top, b.top)};
}

bool Same(const HostPoint& a, const HostPoint& b) {
    return a.x == b.x && a.y == b.y;
}

/// Does the shorter arc between the two directions from a centre, given along an axis and across it, pass the
/// axis on its positive side?  For arcs up to 105 degrees, one end of which is then well out on that side.
bool PassesAxis(double alongA, double acrossA, double alongB, double acrossB, double radius) {
    return acrossA * acrossB <= 0.0 && std::max(alongA, alongB) > radius / 2.0;
}

/// A piece whose ends fit a circle may be searched as its arc, which its control points needn't surround:
/// handles may point backward.  Returns how far beyond the extent a point on the arc may lie, by what the
/// searches allow a circle to be off.
double IncludeArc(Extent& extent, const HostPathSegment& first, const HostPathSegment& second) {
    // A handle on its anchor makes no arc.
    if (Same(first.out, first.anchor) || Same(second.in, second.anchor)) return 0.0;
    HostPoint c;
    double r;
    if (!CircleThroughEnds(first, second, c, r)) return 0.0;
    const HostPoint a{first.anchor.x - c.x, first.anchor.y - c.y};
    const HostPoint b{second.anchor.x - c.x, second.anchor.y - c.y};
    const double chord = Distance(a, b);
    const bool all = !(r > 1.0 && chord * chord < 2.5 * r * r);
    if (all || PassesAxis(a.x, a.y, b.x, b.y, r)) Include(extent, {c.x + r, c.y});
    if (all || PassesAxis(-a.x, a.y, -b.x, b.y, r)) Include(extent, {c.x - r, c.y});
    if (all || PassesAxis(a.y, a.x, b.y, b.x, r)) Include(extent, {c.x, c.y + r});
    if (all || PassesAxis(-a.y, a.x, -b.y, b.x, r)) Include(extent, {c.x, c.y - r});
    return 0.05 + r * 1e-4;
}

IndexBox BoxOfPiece(const HostPathSegment& first, const HostPathSegment& second) {
    Extent extent = ExtentOf(first.anchor);
    Include(extent, first.out);
    Include(extent, second.in);
    Include(extent, second.anchor);
    const double reach = IncludeArc(extent, first, second);
    return BoxOf(extent, reach);
}

// Reading the document

uint32_t ShareOf(uint32_t whole, uint32_t part, uint32_t parts) {
    return static_cast<uint32_t>(uint64_t{whole} * part / parts);
}

/// A path's entries, and leaves over them.
void AddEntries(SnapIndex& index, const IndexedPath& path, const std::vector<HostPathSegment>& segments) {
    const size_t count = static_cast<size_t>(path.segmentCount);
    for (size_t i = 0; i < count; ++i) {
        const bool last = i + 1 == count;
        index.boxes.push_back(last && !path.closed ? BoxOf(ExtentOf(segments[i].anchor), 0.0)
                                                   : BoxOfPiece(segments[i], segments[last ? 0 : i + 1]));
    }
    // Leaves of about the same size, which are smaller than full ones and a rest.
    const uint32_t entries = static_cast<uint32_t>(count);
    const uint32_t leaves = (entries + kLeafEntries - 1) / kLeafEntries;
    for (uint32_t leaf = 0; leaf < leaves; ++leaf) {
        const uint32_t first = path.firstEntry + ShareOf(entries, leaf, leaves);
        const uint32_t behind = path.firstEntry + ShareOf(entries, leaf + 1, leaves);
        IndexBox box = index.boxes[first];
        for (uint32_t i = first + 1; i < behind; ++i) box = Union(box, index.boxes[i]);
        index.nodes.push_back({box, first, behind - 1, 0, 0});
    }
}

HostError AddPath(SnapIndex& index, ArtHandle art, std::vector<HostPathSegment>& segments) {
    IndexedPath path{art, {}, static_cast<uint32_t>(index.boxes.size()), 0, false};
    int32_t closed = 0;
    if (const HostError error = ArtSuite().GetArtBounds(art, &path.bounds)) return error;
    if (const HostError error = PathSuite().GetPathSegmentCount(art, &path.segmentCount)) return error;
    if (path.segmentCount < 1) return kHostNoError;
    if (const HostError error = PathSuite().GetPathClosed(art, &closed)) return error;
    path.closed = closed != 0;
    const size_t count = static_cast<size_t>(path.segmentCount);
    if (count > kMostEntries - index.boxes.size()) return kHostOutOfMemory;
    if (count > segments.size()) segments.resize(count);
    if (const HostError error = PathSuite().GetPathSegments(art, 0, path.segmentCount, segments.data()))
        return error;
    index.paths.push_back(path);
    AddEntries(index, path, segments);
    return kHostNoError;
}

HostError AddPaths(SnapIndex& index) {
    index.boxes.reserve(kRoom);
    index.nodes.reserve(kRoom / 4);
    std::vector<HostPathSegment> segments;
    VisiblePaths walk{};
    for (;;) {
        ArtHandle path = nullptr;
        if (const HostError error = NextVisiblePath(walk, path)) return error;
        if (!path) return kHostNoError;
        if (const HostError error = AddPath(index, path, segments)) return error;
    }
}

// The tree

struct SortItem {
    uint32_t key, node;
};

/// Unsigned numbers in the order of the floats: negative ones are turned round and lie below.
uint32_t SortKey(float low, float high) {
    const uint32_t bits = std::bit_cast<uint32_t>(low / 2 + high / 2);
    return bits & 0x80000000 ? ~bits : bits | 0x80000000;
}

/// By key, least significant digit first, and stable; `other` is room for as many items.
void RadixSort(std::vector<SortItem>& items, std::vector<SortItem>& other) {
    constexpr uint32_t kDigitBits = 11, kDigits = 1 << kDigitBits;
    for (uint32_t shift = 0; shift < 32; shift += kDigitBits) {
        uint32_t starts[kDigits + 1] = {};
        for (const SortItem& item : items) ++starts[(item.key >> shift & (kDigits - 1)) + 1];
        for (uint32_t digit = 0; digit < kDigits; ++digit) starts[digit + 1] += starts[digit];
        for (const SortItem& item : items) other[starts[item.key >> shift & (kDigits - 1)]++] = item;
        items.swap(other);
    }
}

/// Brings nodes that lie together together: strips by x, in each of them by y.
void SortIntoStrips(std::vector<IndexNode>& nodes) {
    const uint32_t count = static_cast<uint32_t>(nodes.size());
    const size_t parents = (nodes.size() + kNodeChildren - 1) / kNodeChildren;
    const size_t strips = static_cast<size_t>(std::ceil(std::sqrt(static_cast<double>(parents))));
    const size_t length = (parents + strips - 1) / strips * kNodeChildren;
    std::vector<SortItem> items(count), other(count);
    std::vector<uint32_t> stripOf(count);
    for (uint32_t i = 0; i < count; ++i) items[i] = {SortKey(nodes[i].box.left, nodes[i].box.right), i};
    RadixSort(items, other);
    for (size_t i = 0; i < count; ++i) stripOf[items[i].node] = static_cast<uint32_t>(i / length);
    for (uint32_t i = 0; i < count; ++i) items[i] = {SortKey(nodes[i].box.bottom, nodes[i].box.top), i};
    RadixSort(items, other);
    for (SortItem& item : items) item.key = stripOf[item.node]; // a stable sort keeps the order by y
    RadixSort(items, other);
    std::vector<IndexNode> sorted;
    sorted.reserve(nodes.size() + nodes.size() / (kNodeChildren - 1) + 16); // and the levels above
    for (const SortItem& item : items) sorted.push_back(nodes[item.node]);
    nodes.swap(sorted);
}

IndexNode ParentOf(const std::vector<IndexNode>& nodes, size_t first, size_t behind) {
    IndexNode parent = nodes[first];
    for (size_t i = first + 1; i < behind; ++i) {
        parent.box = Union(parent.box, nodes[i].box);
        parent.firstEntry = std::min(parent.firstEntry, nodes[i].firstEntry);
        parent.lastEntry = std::max(parent.lastEntry, nodes[i].lastEntry);
    }
    parent.firstChild = static_cast<uint32_t>(first);
    parent.childCount = static_cast<uint32_t>(behind - first);
    return parent;
}

void BuildTree(std::vector<IndexNode>& nodes) {
    if (nodes.empty()) return;
    SortIntoStrips(nodes);
    for (size_t level = 0, end = nodes.size(); end - level > 1; level = end, end = nodes.size()) {
        for (size_t first = level; first < end; first += kNodeChildren) {
            nodes.push_back(ParentOf(nodes, first, std::min(first + kNodeChildren, end)));
        }
    }
}

void PushNode(SnapIndex& index, uint32_t node) {
    const IndexNode& added = index.nodes[node];
    if (added.lastEntry < index.nextEntry || !Overlap(added.box, index.wanted)) return;
    index.heap.push_back(node); // the room for all of them is reserved
    std::push_heap(index.heap.begin(), index.heap.end(), [&index](uint32_t a, uint32_t b) {
        return index.nodes[a].firstEntry > index.nodes[b].firstEntry;
    });
}

uint32_t PopNode(SnapIndex& index) {
    std::pop_heap(index.heap.begin(), index.heap.end(), [&index](uint32_t a, uint32_t b) {
        return index.nodes[a].firstEntry > index.nodes[b].firstEntry;
    });
    const uint32_t node = index.heap.back();
    index.heap.pop_back();
    return node;
}

/// Opens nodes up to the next leaf.  Leaves are successive entries, so no other leaf has any between them.
bool NextLeaf(SnapIndex& index) {
    while (!index.heap.empty()) {
        const IndexNode& node = index.nodes[PopNode(index)];
        if (node.childCount == 0) {
            index.nextEntry = std::max(index.nextEntry, node.firstEntry);
            index.leafEnd = node.lastEntry + 1;
            return true;
        }
        for (uint32_t i = 0; i < node.childCount; ++i) PushNode(index, node.firstChild + i);
    }
    return false;
}

} // namespace

bool MakeSnapIndex(SnapIndex& index) {
    try {
        if (AddPaths(index) == kHostNoError) {
            BuildTree(index.nodes);
            index.heap.reserve(index.nodes.size());
            index.state = IndexState::kMade;
            return true;
        }
    } catch (const std::bad_alloc&) {
    }
    index = {};
    index.state = IndexState::kFailed;
    return false;
}

void StartQuery(SnapIndex& index, const HostPoint& point, double tolerance, uint32_t firstEntry) {
    index.wanted = BoxOf(ExtentOf(point), tolerance);
    index.nextEntry = firstEntry;
    index.leafEnd = 0;
    index.heap.clear();
    if (!index.nodes.empty()) PushNode(index, static_cast<uint32_t>(index.nodes.size() - 1));
}

bool NextEntry(SnapIndex& index, uint32_t& entry) {
    do {
        while (index.nextEntry < index.leafEnd) {
            entry = index.nextEntry++;
            if (Overlap(index.boxes[entry], index.wanted)) return true;
        }
    } while (NextLeaf(index));
    return false;
}

const IndexedPath& PathOfEntry(const SnapIndex& index, uint32_t entry) {
    const auto behind =
        std::upper_bound(index.paths.begin(), index.paths.end(), entry,
                         [](uint32_t wanted, const IndexedPath& path) { return wanted < path.firstEntry; });
    return *(behind - 1);
}
