/// The numbers of the packed form, and how its strings are compared.  Only the LZSS files include this.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

constexpr uint32_t kRingBytes = 4096;
constexpr uint32_t kLongest = 18;
constexpr uint32_t kShortest = 3;
constexpr uint32_t kFirstPlace = kRingBytes - kLongest;
constexpr uint32_t kItemsInGroup = 8;
constexpr uint32_t kLongestPeriod = 4; ///< of repeated strings that are looked for: a pixel

/// The place in a packed pair's two bytes, and its length.
constexpr uint32_t PlaceOfPair(uint32_t first, uint32_t second) {
    return first | (second & 0xF0) << 4;
}
constexpr uint32_t BytesOfPair(uint32_t second) {
    return (second & 0x0F) + kShortest;
}

inline uint64_t LoadEight(const uint8_t* bytes) {
    uint64_t value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

inline uint32_t LoadTwo(const uint8_t* bytes) {
    uint16_t value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

/// Eight bytes as a number that compares as they do.
inline uint64_t LoadOrdered(const uint8_t* bytes) {
    const uint64_t value = LoadEight(bytes);
    if constexpr (std::endian::native == std::endian::big) return value;
    return __builtin_bswap64(value);
}

/// The place of the first byte, in memory, in which two words differ.
inline uint32_t FirstDifference(uint64_t difference) {
    const int bits = std::endian::native == std::endian::little ? std::countr_zero(difference)
                                                                : std::countl_zero(difference);
    return static_cast<uint32_t>(bits) / 8;
}

/// How many of the 18 bytes at `string` are zeros, from the front.
inline uint32_t LeadingZeros(const uint8_t* string) {
    if (const uint64_t word = LoadEight(string)) return FirstDifference(word);
    if (const uint64_t word = LoadEight(string + 8)) return 8 + FirstDifference(word);
    if (string[16] != 0) return 16;
    return string[17] != 0 ? 17 : kLongest;
}

/// How many of the 18 bytes at `a` and `b` agree, from the front.
inline uint32_t CommonBytes(const uint8_t* a, const uint8_t* b) {
    if (const uint64_t difference = LoadEight(a) ^ LoadEight(b)) return FirstDifference(difference);
    if (const uint64_t difference = LoadEight(a + 8) ^ LoadEight(b + 8))
        return 8 + FirstDifference(difference);
    if (a[16] != b[16]) return 16;
    return a[17] == b[17] ? kLongest : 17;
}

inline bool AllCommon(const uint8_t* a, const uint8_t* b) {
    return LoadEight(a) == LoadEight(b) && LoadEight(a + 8) == LoadEight(b + 8) &&
           LoadTwo(a + 16) == LoadTwo(b + 16);
}
