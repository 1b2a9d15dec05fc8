#include "plugin/store/lzss_window.h"

#include <algorithm>
#include <limits>

namespace {

// Borders are older than any string, so no neighbour's age passes over them.
constexpr int64_t kBorderAge = std::numeric_limits<int64_t>::min();

void SetPresent(MatchWindow& window, uint32_t rank) {
    window.present[rank / 64] |= uint64_t{1} << (rank % 64);
    window.presentWords[rank / 4096] |= uint64_t{1} << (rank / 64 % 64);
}

uint32_t TopBit(uint64_t word) {
    return 63 - static_cast<uint32_t>(std::countl_zero(word));
}

// The nearest rank below that is there; the border at 0 always is.
uint32_t PresentBefore(const MatchWindow& window, uint32_t rank) {
    const auto below = [](uint64_t word, uint32_t bit) { return word & ((uint64_t{1} << bit) - 1); };
    uint32_t word = rank / 64;
    if (const uint64_t bits = below(window.present[word], rank % 64)) return word * 64 + TopBit(bits);
    uint32_t group = word / 64;
    uint64_t words = below(window.presentWords[group], word % 64);
    while (words == 0) words = window.presentWords[--group];
    word = group * 64 + TopBit(words);
    return word * 64 + TopBit(window.present[word]);
}

} // namespace

void ClearWindow(MatchWindow& window, const StringRanks& strings, uint32_t ringOffset) {
    std::fill_n(window.present.begin(), strings.rankCount / 64 + 1, uint64_t{0});
    window.presentWords.fill(0);
    window.presentAt.fill(0);
    window.ringOffset = ringOffset;
    for (uint32_t i = 0; i < strings.borderCount; ++i) {
        const uint16_t border = strings.borders[i];
        SetPresent(window, border);
        window.ages[border] = kBorderAge;
        if (i > 0) window.before[border] = strings.borders[i - 1];
        if (i + 1 < strings.borderCount) window.behind[border] = strings.borders[i + 1];
    }
}

void AddString(MatchWindow& window, uint32_t rank, uint32_t place, int64_t age) {
    const uint32_t before = PresentBefore(window, rank);
    const uint32_t behind = window.behind[before];
    window.behind[before] = window.before[behind] = static_cast<uint16_t>(rank);
    window.before[rank] = static_cast<uint16_t>(before);
    window.behind[rank] = static_cast<uint16_t>(behind);
    window.ages[rank] = age;
    window.places[rank] = static_cast<uint16_t>(place);
    SetPresent(window, rank);
    const uint32_t ringPlace = window.RingPlace(place);
    window.rankAt[ringPlace] = static_cast<uint16_t>(rank);
    window.presentAt[ringPlace / 64] |= uint64_t{1} << (ringPlace % 64);
}

void RemoveStrings(MatchWindow& window, uint32_t ringPlace, uint32_t count) {
    while (count > 0) {
        const uint32_t bit = ringPlace % 64, bits = std::min(count, 64 - bit);
        const uint64_t mask = (bits == 64 ? ~uint64_t{0} : (uint64_t{1} << bits) - 1) << bit;
        for (uint64_t there = window.presentAt[ringPlace / 64] & mask; there != 0; there &= there - 1)
            RemoveString(window, ringPlace - bit + static_cast<uint32_t>(std::countr_zero(there)));
        ringPlace = (ringPlace + bits) & (kRingBytes - 1);
        count -= bits;
    }
}

Match FindMatch(const MatchWindow& window, const uint8_t* text, uint32_t rank) {
    const uint8_t* string = text + window.places[rank];
    const auto common = [&](uint32_t other) {
        if (window.ages[other] == kBorderAge) return uint32_t{0};
        return CommonBytes(string, text + window.places[other]);
    };
    uint32_t before = window.before[rank], behind = window.behind[rank];
    const uint32_t commonBefore = common(before), commonBehind = common(behind);
    Match match{0, std::max(commonBefore, commonBehind)};
    if (match.bytes < kShortest) return match;
    int64_t oldest = std::numeric_limits<int64_t>::max();
    const auto consider = [&](uint32_t other) {
        if (window.ages[other] >= oldest) return;
        oldest = window.ages[other];
        match.place = window.places[other];
    };
    if (commonBefore == match.bytes) {
        do {
            consider(before);
            before = window.before[before];
        } while (common(before) == match.bytes);
    }
    if (commonBehind == match.bytes) {
        do {
            consider(behind);
            behind = window.behind[behind];
        } while (common(behind) == match.bytes);
    }
    return match;
}
