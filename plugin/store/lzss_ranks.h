/// Puts the strings of 18 bytes that begin at some places of a text in order.  Only the packer includes this.
#pragma once

#include <array>
#include <cstdint>

constexpr uint32_t kMostStrings = 0x8000 + 0x1000;  ///< places in a text are less
constexpr uint32_t kMostRanks = kMostStrings + 257; ///< with a border before each first byte and at the end

/// Lies in zeroed memory.
struct StringRanks {
    /// The caller sets the place of each string in its low 16 bits; the other bits and the order change.
    std::array<uint64_t, kMostStrings> strings;
    uint32_t count;

    /// By place.  Equal strings have equal ranks.  The strings of one first byte lie between two borders.
    std::array<uint16_t, kMostStrings> ranks;
    uint32_t rankCount; ///< borders included; rank 0 and the last one are borders
    std::array<uint16_t, 257> borders;
    uint32_t borderCount;

    std::array<uint64_t, kMostStrings> spare;
};

/// @param text  18 bytes can be read at every place
void RankStrings(StringRanks& all, const uint8_t* text);
