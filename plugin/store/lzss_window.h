/// The strings that the packer can match, without the search trees that the form is defined by.
///
/// Each first byte has its own tree.  New strings become leaves, so that a tree is ordered by string from
/// left to right and by age from the root down: both orders together determine its shape.  A string that
/// equals one in the tree takes its place, age included.  A string that leaves is replaced by its in-order
/// predecessor, which then has its age, if it has two children, which is to say that both neighbours in
/// string order are younger; else its only subtree moves up, and no age changes.  A search meets, of all the
/// strings with the longest common start, the oldest first.  So ages and neighbours are all there is to keep:
/// one list in string order.
///
/// A new string is looked for among its group, which is the strings with the same two bytes at the start, or
/// the same number of zeros and the same byte behind them: from one that is likely to stand near it, which is
/// what follows the string that the one before stands next to, or what stands a pixel back; else from the
/// group's first.  An empty group's neighbours are those of the next group that is not empty.
#pragma once

#include <array>
#include <cstdint>

#include "plugin/store/lzss_form.h"

constexpr uint32_t kOldestAlikeBits = 6;
constexpr uint32_t kOldestAlike = 1 << kOldestAlikeBits;

struct Match {
    uint32_t place = 0; ///< in the text
    uint32_t bytes = 0;
};

struct WindowString {
    uint64_t start; ///< its first eight bytes in order
    uint32_t age;   ///< when it came; the less, the older
    uint32_t group; ///< kNoGroup if it isn't in use
    uint16_t place; ///< in the text
    uint16_t before, behind;
};

constexpr uint32_t kReach = kRingBytes - kLongest + 1; ///< a string that is so far back has left the window
constexpr uint32_t kFirstString = kRingBytes;          ///< stands before all others; they are numbered from 0
constexpr uint32_t kLastString = kRingBytes + 1;       ///< stands behind all others
constexpr uint32_t kZeroGroups = 256 * (kLongest - 1);
constexpr uint32_t kLastGroup = kZeroGroups + 0x10000; ///< that of kLastString alone
constexpr uint32_t kNoGroup = kLastGroup + 1;

/// Which of the strings that start alike is the oldest.  It stays so while it is there and no age passes on:
/// the strings that come are younger.
struct OldestAlike {
    uint64_t start; ///< what they have in common, as a number
    uint32_t bytes; ///< of the start; 0 if nothing is known
    uint32_t string;
    uint32_t age;
    uint32_t agesPassedOn; ///< the window's, when it was found
};

struct MatchWindow {
    std::array<WindowString, kRingBytes + 2> strings;
    std::array<uint16_t, kRingBytes> unused; ///< the numbers of strings that are not in use
    uint32_t unusedCount;
    std::array<uint16_t, kRingBytes> stringAt;       ///< by place in the ring; also one that has moved on
    std::array<uint64_t, kRingBytes / 64> presentAt; ///< whether it has not moved on
    std::array<uint16_t, kLastGroup + 1> heads;      ///< the first string of each group that has any
    std::array<uint64_t, kLastGroup / 64 + 1> groups;
    std::array<uint64_t, kLastGroup / 4096 + 1> groupWords; ///< the words above that are not 0
    uint32_t ringOffset;                                    ///< from a place in the text to one of the ring
    uint32_t zeros;        ///< the number of a string of zeros that was alone in the window
    uint32_t zerosAge;     ///< its age, for as long as it is there; it is the oldest of its tree
    uint32_t nearPlace;    ///< of the string that the one before is like; in the text
    uint32_t agesPassedOn; ///< how often
    std::array<OldestAlike, kOldestAlike> oldest; ///< where many are alike, found by their start

    uint32_t RingPlace(uint32_t place) const { return (place + ringOffset) & (kRingBytes - 1); }
};

/// Makes a window in zeroed memory, without any strings.
void InitWindow(MatchWindow& window);

/// Moves the text back by some bytes, and with it all places.
void MoveText(MatchWindow& window, uint32_t bytes);

/// Tells that the string of zeros is the only one in the window.
void LeaveZerosAlone(MatchWindow& window);

/// Where a string stands or could stand.
struct Spot {
    uint64_t start; ///< of the string
    uint32_t group;
    uint32_t before, behind;
    uint32_t equal; ///< the number of the string if it is there, else kFirstString
};

/// @param place  the one behind the string that was looked for last
Spot FindSpot(MatchWindow& window, const uint8_t* text, uint32_t place);

/// The match of a string that is not there; of fewer bytes than kShortest if there is none.
Match FindMatch(MatchWindow& window, const uint8_t* text, uint32_t place, const Spot& spot);

/// A string that is there stands at another place.
inline void SetPlace(MatchWindow& window, uint32_t string, uint32_t place) {
    const uint32_t ringPlace = window.RingPlace(place);
    window.presentAt[ringPlace / 64] |= uint64_t{1} << (ringPlace % 64);
    window.stringAt[ringPlace] = static_cast<uint16_t>(string);
    window.strings[string].place = static_cast<uint16_t>(place);
}
inline void LeavePlace(MatchWindow& window, uint32_t string) {
    const uint32_t old = window.RingPlace(window.strings[string].place);
    window.presentAt[old / 64] &= ~(uint64_t{1} << (old % 64));
}

inline void SetGroup(MatchWindow& window, uint32_t group, uint32_t head) {
    window.heads[group] = static_cast<uint16_t>(head);
    window.groups[group / 64] |= uint64_t{1} << (group % 64);
    window.groupWords[group / 4096] |= uint64_t{1} << (group / 64 % 64);
}
inline void ClearGroup(MatchWindow& window, uint32_t group) {
    const uint64_t left = window.groups[group / 64] &= ~(uint64_t{1} << (group % 64));
    window.groupWords[group / 4096] &= ~(uint64_t{left == 0} << (group / 64 % 64));
}

/// @param age  more than 0
inline void AddString(MatchWindow& window, const Spot& spot, uint32_t place, uint32_t age) {
    const uint32_t added = window.unused[--window.unusedCount];
    const auto before = static_cast<uint16_t>(spot.before), behind = static_cast<uint16_t>(spot.behind);
    window.strings[added] = {spot.start, age, spot.group, 0, before, behind};
    window.strings[before].behind = window.strings[behind].before = static_cast<uint16_t>(added);
    if (window.strings[before].group != spot.group) SetGroup(window, spot.group, added);
    SetPlace(window, added, place);
}

/// Takes out the string that begins at a place of the ring, if it is there.
inline void RemoveString(MatchWindow& window, uint32_t ringPlace) {
    const uint64_t there = uint64_t{1} << (ringPlace % 64);
    if ((window.presentAt[ringPlace / 64] & there) == 0) return;
    window.presentAt[ringPlace / 64] &= ~there;
    const uint16_t removed = window.stringAt[ringPlace];
    WindowString& string = window.strings[removed];
    WindowString& before = window.strings[string.before];
    WindowString& behind = window.strings[string.behind];
    // Neither outcome is likelier, so there is no branch.
    const uint64_t otherStarts = (before.start ^ string.start) | (behind.start ^ string.start);
    const bool bothYounger =
        (before.age > string.age) & (behind.age > string.age) & (otherStarts >> (64 - 8) == 0);
    before.age = bothYounger ? string.age : before.age;
    window.agesPassedOn += bothYounger;
    before.behind = string.behind;
    behind.before = string.before;
    if (before.group != string.group) {
        if (behind.group == string.group) {
            window.heads[string.group] = string.behind;
        } else {
            ClearGroup(window, string.group);
        }
    }
    string.group = kNoGroup;
    window.unused[window.unusedCount++] = removed;
}

/// The same for `count` places.
void RemoveStrings(MatchWindow& window, uint32_t ringPlace, uint32_t count);
