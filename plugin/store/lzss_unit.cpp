#include "plugin/store/lzss_unit.h"

#include <algorithm>

namespace {

constexpr uint16_t kZeros = 1; ///< the number of the string of zeros

size_t ZerosEnd(std::span<const uint8_t> bytes, size_t from) {
    while (bytes.size() - from >= sizeof(uint64_t) && LoadEight(&bytes[from]) == 0) from += sizeof(uint64_t);
    while (from < bytes.size() && bytes[from] == 0) ++from;
    return from;
}

size_t ZerosStart(std::span<const uint8_t> bytes, size_t from, size_t least) {
    while (from - least >= sizeof(uint64_t) && LoadEight(&bytes[from - sizeof(uint64_t)]) == 0)
        from -= sizeof(uint64_t);
    while (from > least && bytes[from - 1] == 0) --from;
    return from;
}

// Strings that match three bytes have the same head.  Strings of three zeros and more match the oldest, that
// of 18 zeros, in all their leading zeros, so only those that have more in common need to be found.
uint32_t HeadOf(const uint8_t* string, uint32_t zeros) {
    uint32_t word;
    if (zeros < kShortest) {
        std::memcpy(&word, string, sizeof word);
        if constexpr (std::endian::native == std::endian::big) word >>= 8;
        word &= 0xFFFFFF;
    } else {
        word = 0x1000000u | zeros << 8 | string[zeros];
    }
    return word * 0x9E3779B1u >> 20;
}
static_assert(UnitMemory::kHeads == 1u << 12);

/// The walk over a unit.
struct UnitWalk {
    UnitMemory& unit;
    uint32_t strings = kZeros;
    uint32_t heads = 0; // in use
};

struct Found {
    uint32_t place;
    uint32_t bytes;
};

void TakePlace(UnitWalk& walk, uint32_t string, uint32_t place) {
    walk.unit.places[string] = static_cast<uint16_t>(place);
    walk.unit.stringAt[place] = static_cast<uint16_t>(string);
}

// Puts the string at a place into its chain, or in the place of an equal one, and finds its match.
Found Insert(UnitWalk& walk, uint32_t place) {
    UnitMemory& unit = walk.unit;
    const uint8_t* string = &unit.text[place];
    const uint64_t start = LoadEight(string);
    for (uint32_t period = 1; period <= kLongestPeriod; ++period) {
        if (start != LoadEight(string - period) || !AllCommon(string, string - period)) continue;
        TakePlace(walk, unit.stringAt[place - period], place);
        return {place - period, kLongest};
    }
    const uint32_t zeros = LeadingZeros(string);
    Found found{unit.places[kZeros], zeros < kShortest ? kShortest - 1 : zeros};
    if (zeros == kLongest) {
        TakePlace(walk, kZeros, place);
        return found;
    }
    const uint32_t head = HeadOf(string, zeros);
    uint32_t best = 0;
    uint32_t bytes = found.bytes + 1;
    for (uint32_t other = unit.heads[head]; other != 0; other = unit.older[other]) {
        const uint32_t common = CommonBytes(string, &unit.text[unit.places[other]]);
        if (common < bytes) continue;
        best = other;
        bytes = common;
        if (common == kLongest) break;
    }
    if (best != 0) {
        found = {unit.places[best], bytes};
        if (bytes == kLongest) {
            TakePlace(walk, best, place);
            return found;
        }
    }
    const uint32_t added = ++walk.strings;
    if (unit.heads[head] == 0) unit.usedHeads[walk.heads++] = static_cast<uint16_t>(head);
    unit.older[added] = unit.heads[head];
    unit.heads[head] = static_cast<uint16_t>(added);
    TakePlace(walk, added, place);
    return found;
}

// The strings from place kLongest of the unit's text up to the first of zeros.
bool PackStrings(UnitWalk& walk, uint32_t count, uint32_t ringOffset, uint32_t& inItem, GroupWriter& writer) {
    for (uint32_t place = kLongest; place < kLongest + count; ++place, --inItem) {
        const Found found = Insert(walk, place);
        if (inItem != 0) continue;
        if (found.bytes < kShortest) {
            inItem = 1;
            if (!writer.Literal(walk.unit.text[place])) return false;
        } else {
            inItem = found.bytes;
            if (!writer.Pair((found.place + ringOffset) & (kRingBytes - 1), found.bytes)) return false;
        }
    }
    return true;
}

} // namespace

ZeroRun FindZeroRun(std::span<const uint8_t> bytes, size_t from, size_t to) {
    // A run that is long enough covers one of the places probed, and no run reaches back over the probe
    // before.
    for (size_t probe = from + kResettingZeros - 1; probe < bytes.size(); probe += kResettingZeros) {
        const size_t least = probe + 1 - kResettingZeros;
        if (least >= to) break;
        if (bytes[probe] != 0) continue;
        const size_t start = ZerosStart(bytes, probe, least);
        if (start >= to) break;
        const size_t end = ZerosEnd(bytes, probe);
        if (end - start >= kResettingZeros) return {start, end};
        probe = end;
    }
    return {0, 0};
}

bool PackUnit(UnitMemory& unit, std::span<const uint8_t> plain, size_t start, const ZeroRun& run,
              uint32_t& inItem, GroupWriter& writer) {
    const auto bytes = static_cast<uint32_t>(run.start - start);
    std::memcpy(&unit.text[kLongest], &plain[start], bytes);
    std::fill_n(&unit.text[kLongest + bytes], 2 * kLongest, uint8_t{0});
    const auto ringOffset = static_cast<uint32_t>((start + kFirstPlace - kLongest) & (kRingBytes - 1));

    UnitWalk walk{unit};
    TakePlace(walk, kZeros, kLongest - 1);
    // The bytes before are zeros: where a run goes on from them, it is theirs.
    for (uint32_t i = 0; i < kLongest - 1; ++i) unit.stringAt[i] = kZeros;
    const bool fits = PackStrings(walk, bytes + 1, ringOffset, inItem, writer);
    for (uint32_t i = 0; i < walk.heads; ++i) unit.heads[unit.usedHeads[i]] = 0;
    if (!fits) return false;

    size_t place = run.start + 1 + inItem;
    const size_t end = run.end - kLongest + 1; // behind the last string of zeros
    if (place < end) {
        const auto pairs = (end - place + kLongest - 1) / kLongest;
        const auto before = static_cast<uint32_t>((place - 1 + kFirstPlace) & (kRingBytes - 1));
        if (!writer.Pairs(before, pairs)) return false;
        place += pairs * kLongest;
    }
    inItem = static_cast<uint32_t>(place - end);
    return true;
}
