/// Packs what lies between two long runs of zeros.
///
/// Behind such a run the window holds the string of 18 zeros alone; while the unit is shorter than the ring,
/// no string leaves; and the next run drives out all of them.  So no age ever passes on, and the oldest of
/// the strings with the longest common start is the one that came first: chains of equal starts are enough.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "plugin/store/lzss_form.h"
#include "plugin/store/lzss_writer.h"

constexpr uint32_t kResettingZeros = 4160; ///< more than the ring and the longest match
constexpr uint32_t kMostUnitBytes = 4000;
static_assert(kMostUnitBytes + 2 * kLongest < kRingBytes - kLongest);

struct ZeroRun {
    size_t start;
    size_t end; ///< 0 if there is no run
};

/// The first run of at least kResettingZeros zeros that begins at `from` or behind it and before `to`.
ZeroRun FindZeroRun(std::span<const uint8_t> bytes, size_t from, size_t to);

/// Lies in zeroed memory, and needs no clearing between units.
struct UnitMemory {
    static constexpr uint32_t kHeads = 0x1000;

    /// Strings are numbered in the order in which they came, from 1; the string of zeros is number 1.
    std::array<uint8_t, kLongest + kMostUnitBytes + 2 * kLongest> text;
    std::array<uint16_t, kMostUnitBytes + kLongest + 2> places; ///< where a string stands last, in `text`
    std::array<uint16_t, kMostUnitBytes + kLongest + 2> older;  ///< of the same chain, 0 for none
    std::array<uint16_t, kMostUnitBytes + 2 * kLongest> stringAt;
    std::array<uint16_t, kHeads> heads;
    std::array<uint16_t, kMostUnitBytes + kLongest + 2> usedHeads; ///< to be emptied behind the unit
};

/// Packs the bytes from `start`, behind zeros that leave nothing else in the window, up to the last string of
/// zeros of `run`, which begins at most kMostUnitBytes farther on.
/// @param inItem  places from `start` that the last item covers; gets those behind the end
/// @return false if the room does not suffice
bool PackUnit(UnitMemory& unit, std::span<const uint8_t> plain, size_t start, const ZeroRun& run,
              uint32_t& inItem, GroupWriter& writer);
