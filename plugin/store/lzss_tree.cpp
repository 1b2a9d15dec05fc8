#include "plugin/store/lzss_tree.h"

#include <bit>
#include <cstddef>

namespace {

constexpr uint32_t kKeyEnd =
    1 + sizeof(uint64_t); ///< of a string's bytes; a second such word ends one byte short

uint16_t Short(uint32_t value) {
    return static_cast<uint16_t>(value);
}

uint32_t NewNode(MatchTree& tree) {
    if (tree.freedCount > 0) return tree.freed[--tree.freedCount];
    return MatchTree::kTops + tree.used++;
}

/// Two strings whose keys are the same.
struct Comparison {
    uint32_t common;
    bool greater;
};
Comparison CompareBehindKey(const uint8_t* a, const uint8_t* b) {
    const uint64_t wordA = LoadOrdered(a + kKeyEnd), wordB = LoadOrdered(b + kKeyEnd);
    if (wordA != wordB)
        return {kKeyEnd + static_cast<uint32_t>(std::countl_zero(wordA ^ wordB)) / 8, wordA > wordB};
    return {kLongest - (a[kLongest - 1] != b[kLongest - 1]), a[kLongest - 1] >= b[kLongest - 1]};
}

// How far back a string stands; the first strings, which go in from the nearest to the farthest, find others
// up to 17 places ahead.
std::ptrdiff_t DistanceBack(uint32_t place, uint32_t other) {
    constexpr uint32_t kMostAhead = kLongest - 1;
    return std::ptrdiff_t{(place - other + kMostAhead) & (kRingBytes - 1)} - std::ptrdiff_t{kMostAhead};
}

} // namespace

Match InsertString(MatchTree& tree, const uint8_t* string, uint32_t place, bool searches) {
    const uint64_t key = LoadOrdered(string + 1);
    uint32_t node = string[0], side = 1;
    uint32_t best = 0, bytes = kShortest - 1;
    // Keys that differ by less agree in more than `bytes`.
    uint64_t limit = searches ? uint64_t{1} << 48 : 1;
    uint64_t steps = 0;
    ++tree.inserted;
    while (const uint32_t child = tree.nodes[node].children[side]) {
        ++steps;
        node = child;
        const uint64_t other = tree.nodes[node].key;
        side = key > other;
        if ((key ^ other) >= limit) continue;
        if (key != other) {
            bytes = 1 + static_cast<uint32_t>(std::countl_zero(key ^ other)) / 8;
            limit = uint64_t{1} << (64 - 8 * bytes);
            best = node;
            continue;
        }
        const Comparison comparison =
            CompareBehindKey(string, string - DistanceBack(place, tree.nodes[node].place));
        if (comparison.common == kLongest) {
            const Match match{tree.nodes[node].place, kLongest};
            tree.nodeAt[match.place] = 0;
            PlaceNode(tree, node, place);
            tree.steps += steps;
            return match;
        }
        side = comparison.greater;
        if (comparison.common > bytes) {
            bytes = comparison.common;
            limit = 1;
            best = node;
        }
    }
    tree.steps += steps;
    const uint32_t added = NewNode(tree);
    tree.nodes[node].children[side] = Short(added);
    tree.nodes[added] = {key, {}, Short(node), Short(place)};
    tree.nodeAt[place] = Short(added);
    return {tree.nodes[best].place, bytes};
}

void RemoveNode(MatchTree& tree, uint32_t node) {
    auto& nodes = tree.nodes;
    const auto [left, right] = nodes[node].children;
    uint32_t heir = left != 0 ? left : right;
    if (left != 0 && right != 0) {
        if (nodes[heir].children[1] != 0) {
            do heir = nodes[heir].children[1];
            while (nodes[heir].children[1] != 0);
            const uint16_t orphan = nodes[heir].children[0], above = nodes[heir].parent;
            nodes[above].children[1] = orphan;
            nodes[orphan].parent = above;
            nodes[heir].children[0] = left;
            nodes[left].parent = Short(heir);
        }
        nodes[heir].children[1] = right;
        nodes[right].parent = Short(heir);
    }
    const uint32_t parent = nodes[node].parent;
    nodes[heir].parent = Short(parent);
    nodes[parent].children[nodes[parent].children[1] == node] = Short(heir);
    tree.freed[tree.freedCount++] = Short(node);
}

void RemoveStrings(MatchTree& tree, uint32_t place, uint32_t count) {
    while (count > 0) {
        if (count >= 4 && place + 4 <= kRingBytes) {
            uint64_t four;
            std::memcpy(&four, &tree.nodeAt[place], sizeof four);
            if (four == 0) {
                place = (place + 4) & (kRingBytes - 1);
                count -= 4;
                continue;
            }
        }
        RemoveString(tree, place);
        place = (place + 1) & (kRingBytes - 1);
        --count;
    }
}

void KeepZeros(MatchTree& tree, uint32_t place) {
    for (uint32_t top = 0; top < MatchTree::kTops; ++top) tree.nodes[top].children = {};
    tree.nodeAt.fill(0);
    tree.freedCount = 0;
    tree.used = 1;
    tree.nodes[0].children[1] = MatchTree::kTops;
    tree.nodes[MatchTree::kTops] = {0, {}, 0, Short(place)};
    tree.nodeAt[place] = MatchTree::kTops;
}
