#include "plugin/store/lzss_ranks.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "plugin/store/lzss_form.h"

namespace {

using Entry = StringRanks::Entry;

constexpr uint32_t kDigitBits = 11;
constexpr uint32_t kDigits = 3; ///< from the top; what they leave equal is compared
constexpr uint32_t kDigitValues = 1u << kDigitBits;
constexpr uint32_t kFewEntries = 400; ///< sorted by comparing

uint32_t HashOf(const uint8_t* string, int shift) {
    const uint64_t mixed =
        LoadEight(string) * 0x9E3779B97F4A7C15u ^
        (LoadEight(string + 8) + uint64_t{LoadTwo(string + 16)} * 0x10001000100010u) * 0xC2B2AE3D27D4EB4Fu;
    return static_cast<uint32_t>(mixed * 0x9FB21C651E98DF25u >> shift);
}

// Gives equal strings the same kind, in `ranks` for now, and makes an entry of each kind.
uint32_t FindKinds(StringRanks& all, const uint8_t* text) {
    const uint32_t slots = std::bit_ceil(2 * all.strings + 2);
    const int shift = 64 - std::countr_zero(slots);
    std::fill_n(all.table.begin(), slots, uint16_t{0});
    uint32_t kinds = 0;
    for (uint32_t i = 0; i < all.strings; ++i) {
        const uint8_t* string = text + all.places[i];
        uint32_t slot = HashOf(string, shift);
        while (all.table[slot] != 0 && !AllCommon(string, text + all.entries[all.table[slot] - 1].place))
            slot = (slot + 1) & (slots - 1);
        if (all.table[slot] == 0) {
            all.entries[kinds] = {LoadOrdered(string), all.places[i], static_cast<uint16_t>(kinds)};
            all.table[slot] = static_cast<uint16_t>(++kinds);
        }
        all.ranks[i] = static_cast<uint16_t>(all.table[slot] - 1);
    }
    return kinds;
}

// From the least significant digit to the top, back and forth between the two arrays.
void SortByDigits(StringRanks& all, uint32_t count) {
    std::array<std::array<uint32_t, kDigitValues>, kDigits> ends{};
    const auto digit = [](const Entry& entry, uint32_t pass) {
        return entry.start >> (64 - kDigitBits * (kDigits - pass)) & (kDigitValues - 1);
    };
    for (uint32_t i = 0; i < count; ++i)
        for (uint32_t pass = 0; pass < kDigits; ++pass) ++ends[pass][digit(all.entries[i], pass)];
    for (auto& counts : ends) {
        uint32_t sum = 0;
        for (uint32_t& value : counts) sum += std::exchange(value, sum);
    }
    Entry* from = all.entries.data();
    Entry* to = all.spare.data();
    for (uint32_t pass = 0; pass < kDigits; ++pass) {
        for (uint32_t i = 0; i < count; ++i) to[ends[pass][digit(from[i], pass)]++] = from[i];
        std::swap(from, to);
    }
    static_assert(kDigits % 2 == 1, "the last pass leaves the entries in the spare array");
}

// Equal strings don't occur.
struct Before {
    const uint8_t* text;
    bool operator()(const Entry& a, const Entry& b) const {
        if (a.start != b.start) return a.start < b.start;
        const uint64_t middleA = LoadOrdered(text + a.place + 8);
        const uint64_t middleB = LoadOrdered(text + b.place + 8);
        if (middleA != middleB) return middleA < middleB;
        return std::memcmp(text + a.place + 16, text + b.place + 16, 2) < 0;
    }
};

// The entries in order.
const Entry* Sort(StringRanks& all, const uint8_t* text, uint32_t count) {
    const Before before{text};
    if (count < kFewEntries) {
        std::sort(all.entries.begin(), all.entries.begin() + count, before);
        return all.entries.data();
    }
    SortByDigits(all, count);
    Entry* const sorted = all.spare.data();
    constexpr uint32_t kLeftBits = 64 - kDigits * kDigitBits;
    for (uint32_t first = 0; first < count;) {
        uint32_t end = first + 1;
        while (end < count && sorted[first].start >> kLeftBits == sorted[end].start >> kLeftBits) ++end;
        if (end - first > 1) std::sort(sorted + first, sorted + end, before);
        first = end;
    }
    return sorted;
}

} // namespace

void RankStrings(StringRanks& all, const uint8_t* text) {
    const uint32_t kinds = FindKinds(all, text);
    const Entry* sorted = Sort(all, text, kinds);
    all.borderCount = 0;
    uint32_t rank = 0;
    for (uint32_t i = 0; i < kinds; ++i) {
        if (i == 0 || sorted[i].start >> 56 != sorted[i - 1].start >> 56)
            all.borders[all.borderCount++] = static_cast<uint16_t>(rank++);
        all.rankOfKind[sorted[i].kind] = static_cast<uint16_t>(rank++);
    }
    all.borders[all.borderCount++] = static_cast<uint16_t>(rank++);
    all.rankCount = rank;
    for (uint32_t i = 0; i < all.strings; ++i) all.ranks[i] = all.rankOfKind[all.ranks[i]];
}
