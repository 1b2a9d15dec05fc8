/// The search trees that the packed form is defined by, one for each first byte (Bell 1986).  Only the packer
/// includes this.
#pragma once

#include <array>
#include <cstdint>

#include "plugin/store/lzss_form.h"

/// Nodes are named by their numbers.  The first 256 stand above the trees of their numbers, whose tops are
/// their right children; 0 is also no child at all.
struct TreeNode {
    uint64_t key; ///< the bytes of the string behind the first, in order
    std::array<uint16_t, 2> children;
    uint16_t parent;
    uint16_t place; ///< of the string, in the ring
};

/// Lies in zeroed memory.
struct MatchTree {
    static constexpr uint32_t kTops = 256;

    std::array<TreeNode, kTops + kRingBytes> nodes;
    std::array<uint16_t, kRingBytes> nodeAt; ///< by place in the ring; 0 where another place took its place
    std::array<uint16_t, kRingBytes> freed;  ///< nodes
    uint32_t freedCount;
    uint32_t used;     ///< nodes behind the tops, the freed ones among them
    uint64_t inserted; ///< strings
    uint64_t steps;    ///< down the trees; many more than strings tell that a tree has become a list
};

struct Match {
    uint32_t place = 0; ///< in the ring
    uint32_t bytes = 0;
};

/// Puts the string at a place of the ring into its tree, or in the place of an equal one.
/// @param string  its bytes; so many bytes before it as the ring holds are there, too
/// @param searches  whether the match is needed; if not, only one of the whole string is told
/// @return what matches most of it; of less than kShortest bytes if nothing does
Match InsertString(MatchTree& tree, const uint8_t* string, uint32_t place, bool searches);

/// Takes out a node.
void RemoveNode(MatchTree& tree, uint32_t node);

inline void RemoveString(MatchTree& tree, uint32_t place) {
    if (const uint32_t node = tree.nodeAt[place]) {
        tree.nodeAt[place] = 0;
        RemoveNode(tree, node);
    }
}

/// Removes the strings at `count` places of the ring.
void RemoveStrings(MatchTree& tree, uint32_t place, uint32_t count);

inline void PlaceNode(MatchTree& tree, uint32_t node, uint32_t place) {
    tree.nodeAt[place] = static_cast<uint16_t>(node);
    tree.nodes[node].place = static_cast<uint16_t>(place);
}

/// Removes all strings but that of zeros at a place.
void KeepZeros(MatchTree& tree, uint32_t place);
