#include "plugin/store/lzss_ranks.h"

#include <algorithm>
#include <utility>

#include "plugin/store/lzss_form.h"

// While they are sorted, strings are numbers: their first six bytes in order, and below them the place.

namespace {

constexpr uint32_t kPlaceBits = 16;
constexpr uint32_t kDigitBits = 11;
constexpr uint32_t kDigits = 3; ///< from the top; what they leave equal is compared
constexpr uint32_t kLeftBits = 64 - kDigits * kDigitBits;
constexpr uint32_t kDigitValues = 1u << kDigitBits;
constexpr uint32_t kFewStrings = 400; ///< sorted by comparing

uint32_t PlaceOf(uint64_t string) {
    return string & ((1u << kPlaceBits) - 1);
}

struct Before {
    const uint8_t* text;
    bool operator()(uint64_t a, uint64_t b) const {
        if ((a ^ b) >> kPlaceBits) return a < b;
        // The two words overlap, so as to end with the string.
        const uint8_t* restA = text + PlaceOf(a);
        const uint8_t* restB = text + PlaceOf(b);
        const uint64_t middleA = LoadOrdered(restA + 6), middleB = LoadOrdered(restB + 6);
        if (middleA != middleB) return middleA < middleB;
        return LoadOrdered(restA + 10) < LoadOrdered(restB + 10);
    }
};

// From the least significant digit to the top, back and forth between the two arrays.
void SortByDigits(StringRanks& all) {
    std::array<std::array<uint32_t, kDigitValues>, kDigits> ends{};
    const auto digit = [](uint64_t string, uint32_t pass) {
        return string >> (kLeftBits + kDigitBits * pass) & (kDigitValues - 1);
    };
    for (uint32_t i = 0; i < all.count; ++i)
        for (uint32_t pass = 0; pass < kDigits; ++pass) ++ends[pass][digit(all.strings[i], pass)];
    for (auto& counts : ends) {
        uint32_t sum = 0;
        for (uint32_t& value : counts) sum += std::exchange(value, sum);
    }
    uint64_t* from = all.strings.data();
    uint64_t* to = all.spare.data();
    for (uint32_t pass = 0; pass < kDigits; ++pass) {
        for (uint32_t i = 0; i < all.count; ++i) to[ends[pass][digit(from[i], pass)]++] = from[i];
        std::swap(from, to);
    }
    static_assert(kDigits % 2 == 1, "the last pass leaves the strings in the spare array");
}

// The strings in order.
const uint64_t* Sort(StringRanks& all, const uint8_t* text) {
    const Before before{text};
    if (all.count < kFewStrings) {
        std::sort(all.strings.begin(), all.strings.begin() + all.count, before);
        return all.strings.data();
    }
    SortByDigits(all);
    uint64_t* const sorted = all.spare.data();
    for (uint32_t first = 0; first < all.count;) {
        uint32_t end = first + 1;
        while (end < all.count && (sorted[first] ^ sorted[end]) >> kLeftBits == 0) ++end;
        if (end - first > 1) std::sort(sorted + first, sorted + end, before);
        first = end;
    }
    return sorted;
}

} // namespace

void RankStrings(StringRanks& all, const uint8_t* text) {
    for (uint32_t i = 0; i < all.count; ++i) {
        const uint32_t place = PlaceOf(all.strings[i]);
        all.strings[i] = (LoadOrdered(text + place) >> kPlaceBits << kPlaceBits) | place;
    }
    const uint64_t* sorted = Sort(all, text);
    all.borderCount = 0;
    uint32_t next = 0;
    for (uint32_t i = 0; i < all.count; ++i) {
        const uint8_t* string = text + PlaceOf(sorted[i]);
        if (i == 0 || (sorted[i] ^ sorted[i - 1]) >> 56) {
            all.borders[all.borderCount++] = static_cast<uint16_t>(next++);
            ++next;
        } else if ((sorted[i] ^ sorted[i - 1]) >> kPlaceBits ||
                   !AllCommon(string, text + PlaceOf(sorted[i - 1]))) {
            ++next;
        }
        all.ranks[PlaceOf(sorted[i])] = static_cast<uint16_t>(next - 1);
    }
    all.borders[all.borderCount++] = static_cast<uint16_t>(next++);
    all.rankCount = next;
}
