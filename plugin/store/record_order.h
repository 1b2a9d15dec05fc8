/// The order of the record index, for whatever holds the keys of its items.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <span>

#include "plugin/store/record_index.h"
#include "plugin/store/record_layout.h"

/// What an item is sorted by.  Texts are filled up with zeros to whole words of eight bytes.
struct RihKeys {
    const char* name;
    const char* kind;
    uint32_t nameWords; ///< the words behind them count as zero
    uint32_t kindWords;
    uint32_t created; ///< host order
};

struct SortEntry {
    uint64_t key; ///< used while sorting
    uint32_t row; ///< which item it stands for
};

/// Sorts by key, leaving equal ones as they are.
/// @param spare  at least as long; its contents are lost
void SortByDigits(std::span<SortEntry> entries, std::span<SortEntry> spare);

constexpr uint32_t kTextWords = kRecordNameBytes / sizeof(uint64_t);

/// An item's key is a row of words that compare as numbers: under kByName the eight of its name, under
/// kByKind those of its kind in front of them, under kByDate one word for the time in front of them.
constexpr uint32_t KeyWords(int16_t mode) {
    return mode == kByKind ? 2 * kTextWords : mode == kByDate ? 1 + kTextWords : kTextWords;
}

inline uint64_t TextWord(const char* text, uint32_t words, uint32_t word) {
    if (word >= words) return 0;
    uint64_t value;
    std::memcpy(&value, text + word * sizeof value, sizeof value);
    if constexpr (std::endian::native == std::endian::little) value = __builtin_bswap64(value);
    return value;
}

inline uint64_t KeyWord(const RihKeys& keys, int16_t mode, uint32_t word) {
    if (mode == kByKind) {
        if (word < kTextWords) return TextWord(keys.kind, keys.kindWords, word);
        word -= kTextWords;
    } else if (mode == kByDate) {
        if (word == 0) return ~uint64_t{keys.created};
        --word;
    }
    return TextWord(keys.name, keys.nameWords, word);
}

/// The word that tells items apart whose words are equal up to this one, which is `key`.  Nothing follows a
/// word of a text that ends with a zero.
constexpr uint32_t NextKeyWord(int16_t mode, uint32_t word, uint64_t key) {
    const bool isText = mode != kByDate || word != 0;
    if (!isText || (key & 0xFF) != 0) return word + 1;
    return mode == kByKind && word < kTextWords ? kTextWords : KeyWords(mode);
}

constexpr size_t kFewEntries = 64; ///< sorted by comparing

/// Puts entries, which come in ascending order of their rows, in the order of their items; equal ones stay as
/// they come.  All are sorted by one word at once, then each stretch of equal ones by the next, so that an
/// item's keys are read once for each word that is needed to tell it from others.
/// @param spare   at least as long; its contents are lost
/// @param keysOf  `keysOf(row)` gives the RihKeys of a row
template <typename KeysOf>
void SortRows(std::span<SortEntry> entries, std::span<SortEntry> spare, KeysOf keysOf, int16_t mode,
              uint32_t word = 0) {
    for (SortEntry& entry : entries) entry.key = KeyWord(keysOf(entry.row), mode, word);
    const auto before = [](const SortEntry& a, const SortEntry& b) {
        return a.key != b.key ? a.key < b.key : a.row < b.row;
    };
    if (entries.size() > kFewEntries) {
        SortByDigits(entries, spare);
    } else if (!std::is_sorted(entries.begin(), entries.end(), before)) {
        std::sort(entries.begin(), entries.end(), before);
    }
    while (!entries.empty()) {
        const uint64_t key = entries[0].key;
        const uint32_t next = NextKeyWord(mode, word, key);
        const auto end = std::ranges::find_if(entries, [key](const SortEntry& e) { return e.key != key; });
        const auto equal = entries.first(static_cast<size_t>(end - entries.begin()));
        if (equal.size() > 1 && next < KeyWords(mode)) SortRows(equal, spare, keysOf, mode, next);
        entries = entries.subspan(equal.size());
    }
}
