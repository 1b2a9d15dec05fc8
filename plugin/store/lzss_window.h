/// The strings that the packer can match, without the search trees that the form is defined by.
///
/// Each first byte has its own tree.  New strings become leaves, so that a tree is ordered by string from
/// left to right and by age from the root down: both orders together determine its shape.  A string that
/// equals one in the tree takes its place, age included.  A string that leaves is replaced by its in-order
/// predecessor, which then has its age, if it has two children, which is to say that both neighbours in
/// string order are younger; else its only subtree moves up, and no age changes.  A search meets, of all the
/// strings with the longest common start, the oldest first.  So ages and neighbours are all there is to keep.
#pragma once

#include <array>
#include <cstdint>

#include "plugin/store/lzss_form.h"
#include "plugin/store/lzss_ranks.h"

struct Match {
    uint32_t place = 0; ///< in the text
    uint32_t bytes = 0;
};

/// Lies in zeroed memory.  Strings are named by their ranks (lzss_ranks.h).
struct MatchWindow {
    std::array<int64_t, kMostRanks> ages; ///< when it came; the less, the older
    std::array<uint16_t, kMostRanks> places;
    std::array<uint16_t, kMostRanks> before, behind; // the neighbours in string order
    std::array<uint64_t, kMostRanks / 64 + 1> present;
    std::array<uint64_t, kMostRanks / 4096 + 1> presentWords; // the words above that are not 0
    std::array<uint16_t, kRingBytes> rankAt;                  // of the string at a place of the ring
    std::array<uint64_t, kRingBytes / 64> presentAt;          // whether that string is there, not replaced
    uint32_t ringOffset;                                      // from a place in the text to one of the ring

    uint32_t RingPlace(uint32_t place) const { return (place + ringOffset) & (kRingBytes - 1); }
    bool Has(uint32_t rank) const { return present[rank / 64] >> (rank % 64) & 1; }
};

/// Empties the window for strings of these ranks.
void ClearWindow(MatchWindow& window, const StringRanks& strings, uint32_t ringOffset);

/// A string that is not there yet.
void AddString(MatchWindow& window, uint32_t rank, uint32_t place, int64_t age);

/// The same string again, at another place.
inline void ReplaceString(MatchWindow& window, uint32_t rank, uint32_t place) {
    const uint32_t old = window.RingPlace(window.places[rank]);
    window.presentAt[old / 64] &= ~(uint64_t{1} << (old % 64));
    const uint32_t ringPlace = window.RingPlace(place);
    window.presentAt[ringPlace / 64] |= uint64_t{1} << (ringPlace % 64);
    window.rankAt[ringPlace] = static_cast<uint16_t>(rank);
    window.places[rank] = static_cast<uint16_t>(place);
}

/// Takes out the string that begins at a place of the ring, if it is there.
inline void RemoveString(MatchWindow& window, uint32_t ringPlace) {
    const uint64_t there = uint64_t{1} << (ringPlace % 64);
    if ((window.presentAt[ringPlace / 64] & there) == 0) return;
    window.presentAt[ringPlace / 64] &= ~there;
    const uint32_t rank = window.rankAt[ringPlace];
    const uint32_t before = window.before[rank], behind = window.behind[rank];
    const int64_t age = window.ages[rank];
    // Neither outcome is likelier, so there is no branch.
    const int64_t ageBefore = window.ages[before];
    const bool bothYounger = (ageBefore > age) & (window.ages[behind] > age);
    window.ages[before] = bothYounger ? age : ageBefore;
    window.behind[before] = static_cast<uint16_t>(behind);
    window.before[behind] = static_cast<uint16_t>(before);
    const uint64_t left = window.present[rank / 64] &= ~(uint64_t{1} << (rank % 64));
    if (left == 0) window.presentWords[rank / 4096] &= ~(uint64_t{1} << (rank / 64 % 64));
}

/// The same for `count` places.
void RemoveStrings(MatchWindow& window, uint32_t ringPlace, uint32_t count);

/// The match of a string that was just added; of fewer bytes than kShortest if there is none.
Match FindMatch(const MatchWindow& window, const uint8_t* text, uint32_t rank);
