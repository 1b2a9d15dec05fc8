/// Puts the strings of 18 bytes that begin at some places of a text in order.  Only the packer includes this.
#pragma once

#include <array>
#include <cstdint>
#include <span>

constexpr uint32_t kMostStrings = 0x8000 + 0x1000;
constexpr uint32_t kMostRanks = kMostStrings + 257; ///< with a border before each first byte and at the end

/// Lies in zeroed memory; nothing in it outlives a call of RankStrings but `ranks`, `borders` and their
/// counts.
struct StringRanks {
    struct Entry {
        uint64_t start; ///< the string's first eight bytes, as a number
        uint16_t place;
        uint16_t kind;
    };

    uint32_t strings; ///< set by the caller, as are the places
    std::array<uint16_t, kMostStrings> places;
    /// Of each string, in the order of the places.  Equal strings have equal ranks.  The strings of one first
    /// byte lie between two borders.
    std::array<uint16_t, kMostStrings> ranks;
    uint32_t rankCount; ///< borders included; rank 0 and the last one are borders
    std::array<uint16_t, 257> borders;
    uint32_t borderCount;

    std::array<Entry, kMostStrings> entries, spare; // of the distinct strings
    std::array<uint16_t, kMostStrings> rankOfKind;
    std::array<uint16_t, 0x20000> table; // of a hash; kinds from 1
};

/// @param text  18 bytes can be read at every place
void RankStrings(StringRanks& strings, const uint8_t* text);
