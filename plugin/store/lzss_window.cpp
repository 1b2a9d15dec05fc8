#include "plugin/store/lzss_window.h"

#include <algorithm>
#include <limits>

namespace {

constexpr uint32_t kPixel = 4;    ///< bytes
constexpr uint32_t kFewAlike = 8; ///< strings that are looked at before FindOldest is worth it

uint32_t LowBit(uint64_t word) {
    return static_cast<uint32_t>(std::countr_zero(word));
}

// The next group that has any strings; the last one always has.
uint32_t GroupBehind(const MatchWindow& window, uint32_t group) {
    const auto above = [](uint64_t word, uint32_t bit) { return word & (~uint64_t{1} << bit); };
    uint32_t word = group / 64;
    if (const uint64_t bits = above(window.groups[word], group % 64)) return word * 64 + LowBit(bits);
    uint32_t words = word / 64;
    uint64_t left = above(window.groupWords[words], word % 64);
    while (left == 0) left = window.groupWords[++words];
    word = words * 64 + LowBit(left);
    return word * 64 + LowBit(window.groups[word]);
}

// Groups are in the order of their strings.
uint32_t GroupOf(const uint8_t* string) {
    const uint32_t two = uint32_t{string[0]} << 8 | string[1];
    if (two != 0) return kZeroGroups + two;
    const uint32_t zeros = LeadingZeros(string);
    return zeros == kLongest ? 0 : 256 * (kLongest - zeros) + string[zeros];
}

// Less than 0, 0 or more for a string before, equal to or behind another.
int Compare(const uint8_t* text, const uint8_t* string, uint64_t start, const WindowString& other) {
    if (start != other.start) return start < other.start ? -1 : 1;
    // The two words overlap, so as to end with the string.
    const uint8_t* otherBytes = text + other.place;
    const uint64_t middle = LoadOrdered(string + 8), otherMiddle = LoadOrdered(otherBytes + 8);
    if (middle != otherMiddle) return middle < otherMiddle ? -1 : 1;
    const uint64_t end = LoadOrdered(string + 10), otherEnd = LoadOrdered(otherBytes + 10);
    return end == otherEnd ? 0 : end < otherEnd ? -1 : 1;
}

// Walks to both neighbours, or to the string if it is there.
void WalkToSpot(const MatchWindow& window, const uint8_t* text, const uint8_t* string, uint32_t from,
                Spot& spot) {
    const auto compare = [&](uint32_t other) {
        return Compare(text, string, spot.start, window.strings[other]);
    };
    int order = compare(from);
    if (order > 0) {
        spot.before = from;
        while ((spot.behind = window.strings[spot.before].behind) != kLastString &&
               (order = compare(spot.behind)) > 0)
            spot.before = spot.behind;
        if (order == 0) spot.equal = spot.behind;
    } else if (order < 0) {
        spot.behind = from;
        while ((spot.before = window.strings[spot.behind].before) != kFirstString &&
               (order = compare(spot.before)) < 0)
            spot.behind = spot.before;
        if (order == 0) spot.equal = spot.before;
    } else {
        spot.equal = from;
    }
}

// Whether the string of zeros matches as many bytes and is the oldest of its tree.  It isn't asked often, and
// in line it would slow down what asks.
[[gnu::noinline]] bool ZerosAreOldest(const MatchWindow& window, const uint8_t* string, uint32_t bytes) {
    const WindowString& zeros = window.strings[window.zeros];
    return zeros.group == 0 && zeros.age == window.zerosAge && LeadingZeros(string) >= bytes;
}

// The match of fewer bytes than a start has, where many strings are alike.
[[gnu::noinline]] Match FindOldest(MatchWindow& window, const Spot& spot, uint32_t bytes) {
    const uint32_t shift = 64 - 8 * bytes;
    const uint64_t start = spot.start >> shift;
    OldestAlike& known = window.oldest[start * 0x9E37'79B9'7F4A'7C15u >> (64 - kOldestAlikeBits)];
    const WindowString& oldest = window.strings[known.string];
    if (known.start == start && known.bytes == bytes && known.agesPassedOn == window.agesPassedOn &&
        known.age == oldest.age && oldest.group != kNoGroup)
        return {oldest.place, bytes};
    known = {start, bytes, 0, std::numeric_limits<uint32_t>::max(), window.agesPassedOn};
    const auto isAlike = [&](uint32_t other) {
        return window.strings[other].start >> shift == start && other < kFirstString;
    };
    const auto consider = [&](uint32_t other) {
        if (window.strings[other].age >= known.age) return;
        known.age = window.strings[other].age;
        known.string = other;
    };
    for (uint32_t other = spot.before; isAlike(other); other = window.strings[other].before) consider(other);
    for (uint32_t other = spot.behind; isAlike(other); other = window.strings[other].behind) consider(other);
    return {window.strings[known.string].place, bytes};
}

} // namespace

void InitWindow(MatchWindow& window) {
    for (WindowString& string : window.strings) string.group = kNoGroup;
    window.unusedCount = kRingBytes;
    for (uint32_t i = 0; i < kRingBytes; ++i) window.unused[i] = static_cast<uint16_t>(i);
    WindowString& first = window.strings[kFirstString];
    WindowString& last = window.strings[kLastString];
    // They are older than any string, so no neighbour's age passes on to them.
    first.age = last.age = 0;
    first.behind = kLastString;
    last.before = kFirstString;
    last.start = ~uint64_t{0};
    SetGroup(window, kLastGroup, kLastString);
}

void MoveText(MatchWindow& window, uint32_t bytes) {
    for (WindowString& string : window.strings) string.place = static_cast<uint16_t>(string.place - bytes);
    window.nearPlace -= bytes;
    window.ringOffset = (window.ringOffset + bytes) & (kRingBytes - 1);
}

void LeaveZerosAlone(MatchWindow& window) {
    window.zeros = window.strings[kFirstString].behind;
    window.zerosAge = window.strings[window.zeros].age;
}

Spot FindSpot(MatchWindow& window, const uint8_t* text, uint32_t place) {
    const uint8_t* string = text + place;
    Spot spot{LoadOrdered(string), GroupOf(string), 0, 0, kFirstString};
    if (window.groups[spot.group / 64] >> (spot.group % 64) & 1) {
        uint32_t like = window.stringAt[window.RingPlace(window.nearPlace + 1)];
        if (window.strings[like].group != spot.group)
            like = window.stringAt[window.RingPlace(place - kPixel)];
        if (window.strings[like].group != spot.group) like = window.heads[spot.group];
        WalkToSpot(window, text, string, like, spot);
    } else {
        spot.behind = window.heads[GroupBehind(window, spot.group)];
        spot.before = window.strings[spot.behind].before;
    }
    if (spot.equal != kFirstString) {
        window.nearPlace = window.strings[spot.equal].place;
    } else {
        const WindowString& before = window.strings[spot.before];
        const WindowString& behind = window.strings[spot.behind];
        window.nearPlace =
            (before.start ^ spot.start) < (behind.start ^ spot.start) ? before.place : behind.place;
    }
    return spot;
}

Match FindMatch(MatchWindow& window, const uint8_t* text, uint32_t place, const Spot& spot) {
    const auto common = [&](uint32_t other) {
        if (other >= kFirstString) return uint32_t{0};
        const WindowString& string = window.strings[other];
        if (const uint64_t difference = string.start ^ spot.start)
            return static_cast<uint32_t>(std::countl_zero(difference)) / 8;
        return CommonBytes(text + place, text + string.place);
    };
    const uint32_t commonBefore = common(spot.before), commonBehind = common(spot.behind);
    Match match{0, std::max(commonBefore, commonBehind)};
    if (match.bytes < kShortest) return match;
    // What is alike may be most of the tree.
    if (spot.start >> (64 - 8 * kShortest) == 0 && ZerosAreOldest(window, text + place, match.bytes))
        return {window.strings[window.zeros].place, match.bytes};
    uint32_t oldest = std::numeric_limits<uint32_t>::max();
    const auto consider = [&](const WindowString& string) {
        if (string.age >= oldest) return;
        oldest = string.age;
        match.place = string.place;
    };
    // No other has more in common.
    const auto isAlike = [&](uint32_t other) {
        const uint64_t difference = window.strings[other].start ^ spot.start;
        if (match.bytes < sizeof difference)
            return difference >> (64 - 8 * match.bytes) == 0 && other < kFirstString;
        return difference == 0 && common(other) == match.bytes;
    };
    uint32_t few = match.bytes < sizeof spot.start ? kFewAlike : kRingBytes;
    for (uint32_t other = spot.before; isAlike(other); other = window.strings[other].before) {
        if (few-- == 0) return FindOldest(window, spot, match.bytes);
        consider(window.strings[other]);
    }
    for (uint32_t other = spot.behind; isAlike(other); other = window.strings[other].behind) {
        if (few-- == 0) return FindOldest(window, spot, match.bytes);
        consider(window.strings[other]);
    }
    return match;
}

void RemoveStrings(MatchWindow& window, uint32_t ringPlace, uint32_t count) {
    while (count > 0) {
        const uint32_t bit = ringPlace % 64, bits = std::min(count, 64 - bit);
        const uint64_t mask = (bits == 64 ? ~uint64_t{0} : (uint64_t{1} << bits) - 1) << bit;
        for (uint64_t there = window.presentAt[ringPlace / 64] & mask; there != 0; there &= there - 1)
            RemoveString(window, ringPlace - bit + LowBit(there));
        ringPlace = (ringPlace + bits) & (kRingBytes - 1);
        count -= bits;
    }
}
