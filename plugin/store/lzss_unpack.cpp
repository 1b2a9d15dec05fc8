#include <algorithm>
#include <array>
#include <bit>

#include "plugin/store/lzss.h"
#include "plugin/store/lzss_form.h"

// Whole groups are unpacked with wide copies as long as there is slack behind what they write; the careful
// way, one item after the other, does the rest.

namespace {

constexpr uint32_t kGroupBytes = 1 + 2 * kItemsInGroup; ///< of the largest group
constexpr uint32_t kGroupRoom = kItemsInGroup * kLongest;
constexpr uint32_t kOnlyPairs = 0, kOnlyLiterals = 0xFF; ///< flag bytes
constexpr uint32_t kSlack = 32;                          ///< more than any copy writes behind its end

/// Walks the items of packed bytes; a pair whose second byte is missing is no item.
class ItemReader {
public:
    ItemReader(const uint8_t* next, const uint8_t* end) : next_(next), end_(end) {}

    enum Kind { kEnd, kLiteral, kPair };
    Kind Next() {
        if (flags_ <= 1) { // nothing left but the mark above the eighth item
            if (next_ == end_) return kEnd;
            flags_ = 0x100u | *next_++;
        }
        const bool literal = flags_ & 1;
        flags_ >>= 1;
        if (end_ - next_ < (literal ? 1 : 2)) return kEnd;
        item_ = next_;
        next_ += literal ? 1 : 2;
        return literal ? kLiteral : kPair;
    }
    const uint8_t* next() const { return next_; }
    uint8_t byte() const { return item_[0]; }
    uint32_t place() const { return PlaceOfPair(item_[0], item_[1]); }
    uint32_t bytes() const { return BytesOfPair(item_[1]); }

private:
    const uint8_t* next_;
    const uint8_t* end_;
    const uint8_t* item_ = nullptr;
    uint32_t flags_ = 1;
};

// Distance 0 names the oldest byte of the ring, which the match is about to overwrite.
uint64_t DistanceOf(uint32_t place, uint64_t done) {
    const uint64_t distance = (kFirstPlace + done - place) & (kRingBytes - 1);
    return distance == 0 ? kRingBytes : distance;
}

// Copies a match whose source may overlap what it writes, or begin among the zeros before the start.
void CopyMatch(uint8_t* start, uint64_t done, uint64_t distance, uint64_t bytes) {
    uint8_t* to = start + done;
    for (; distance > done && bytes > 0; --bytes, ++done) *to++ = 0;
    for (; bytes > 0; --bytes, ++to) *to = *(to - distance);
}

void CopyEight(uint8_t* to, const uint8_t* from) {
    std::memcpy(to, from, 8);
}
void CopySixteen(uint8_t* to, const uint8_t* from) {
    std::memcpy(to, from, 16);
}

// A number whose bytes lie in memory from the lowest on, and back.
uint64_t Little(uint64_t value) {
    if constexpr (std::endian::native == std::endian::little) return value;
    return __builtin_bswap64(value);
}

// Eight bytes that go on with the last `distance` bytes before `to`, again and again, and by how many of them
// the next eight begin alike.  Reads eight bytes before `to`.
struct Pattern {
    uint64_t bytes;
    uint32_t step;
};
[[gnu::always_inline]] inline Pattern PatternBefore(const uint8_t* to, uint64_t distance) {
    static constexpr std::array<uint8_t, 8> kSteps = {0, 8, 8, 6, 8, 5, 6, 7};
    static constexpr std::array<uint64_t, 8> kRepeat = {0,
                                                        0x0101'0101'0101'0101,
                                                        0x0001'0001'0001'0001,
                                                        0x0001'0000'0100'0001,
                                                        0x0000'0001'0000'0001,
                                                        0x0000'0100'0000'0001,
                                                        0x0001'0000'0000'0001,
                                                        0x0100'0000'0000'0001};
    const uint64_t last = Little(LoadEight(to - 8)) >> (64 - 8 * distance);
    return {Little(last * kRepeat[distance]), kSteps[distance]};
}

// Copies 18 bytes that don't overlap.
void CopyFar(uint8_t* to, const uint8_t* from) {
    std::array<uint8_t, kLongest> bytes;
    std::memcpy(bytes.data(), from, kLongest);
    std::memcpy(to, bytes.data(), kLongest);
}

// Copies at least 18 bytes and at most kSlack from less than kLongest before.
void CopyNear(uint8_t* to, uint64_t distance) {
    if (distance >= 8) {
        const uint8_t* from = to - distance;
        for (uint32_t i = 0; i < 24; i += 8) CopyEight(to + i, from + i);
    } else if (distance == 1) {
        std::memset(to, to[-1], 24);
    } else {
        const Pattern pattern = PatternBefore(to, distance);
        for (uint32_t i = 0; i < 4; ++i) std::memcpy(to + i * pattern.step, &pattern.bytes, 8);
    }
}

// Goes on for `bytes`, a multiple of kGroupRoom, with the bytes that stand `distance` before; writes no more
// than kSlack behind them.
void GoOn(uint8_t* to, uint64_t distance, uint64_t bytes) {
    static_assert(kGroupRoom % 16 == 0);
    if (distance >= 16) {
        for (uint64_t i = 0; i < bytes; i += 16) CopySixteen(to + i, to + i - distance);
    } else if (distance >= 8) {
        for (uint64_t i = 0; i < bytes; i += 8) CopyEight(to + i, to + i - distance);
    } else if (distance == 1) {
        std::memset(to, to[-1], bytes);
    } else {
        const Pattern pattern = PatternBefore(to, distance);
        for (uint64_t i = 0; i < bytes; i += pattern.step) std::memcpy(to + i, &pattern.bytes, 8);
    }
}

// Four pairs of 18 bytes from a place on, each 18 places behind the one before, as they are packed.
uint64_t FourPairs(uint32_t place) {
    constexpr uint64_t kEach = 0x0001'0001'0001'0001;
    constexpr uint64_t kPlaces =
        uint64_t{kLongest} << 16 | uint64_t{2 * kLongest} << 32 | uint64_t{3 * kLongest} << 48;
    const uint64_t places = (place & (kRingBytes - 1)) * kEach + kPlaces;
    return (places & 0xFF * kEach) | (places & 0xF00 * kEach) << 4 | ((kLongest - kShortest) << 8) * kEach;
}

// Whether a group is eight pairs of 18 bytes whose distance is that of a pair from `place`, as in a run.
bool IsGroupOfRun(const uint8_t* group, uint32_t place) {
    if (group[0] != 0) return false;
    if constexpr (std::endian::native == std::endian::little)
        return LoadEight(group + 1) == FourPairs(place) &&
               LoadEight(group + 9) == FourPairs(place + 4 * kLongest);
    for (uint32_t i = 0; i < kItemsInGroup; ++i, place += kLongest) {
        const uint8_t* pair = group + 1 + 2 * i;
        if (PlaceOfPair(pair[0], pair[1]) != (place & (kRingBytes - 1)) || BytesOfPair(pair[1]) != kLongest)
            return false;
    }
    return true;
}

/// Where the unpacking stands.
struct Unpacker {
    const uint8_t* next; ///< the flag byte of a group
    const uint8_t* end;
    uint8_t* start;
    uint64_t done;
    uint64_t room;
};

// A match whose source is near enough to overlap, or begins among the zeros before the start.
void CopySpecial(const Unpacker& unpacker, uint64_t done, uint64_t distance, uint32_t bytes) {
    if (distance > done) {
        CopyMatch(unpacker.start, done, distance, bytes);
    } else {
        CopyNear(unpacker.start + done, distance);
    }
}

// The items of one group behind its flag byte.  In front of each pair stand some literals, mostly none: they
// are copied without asking, because a processor can't foresee which item follows.
void UnpackItems(Unpacker& unpacker, uint32_t flags) {
    const uint8_t* next = unpacker.next;
    uint64_t done = unpacker.done;
    const auto copyLiterals = [&](uint32_t count) {
        CopyEight(unpacker.start + done, next);
        next += count;
        done += count;
    };
    const auto pairs = kItemsInGroup - static_cast<uint32_t>(std::popcount(flags));
    for (uint32_t i = 0; i < pairs; ++i) {
        const auto literals = static_cast<uint32_t>(std::countr_one(flags));
        copyLiterals(literals);
        flags >>= literals + 1;
        const uint64_t distance = DistanceOf(PlaceOfPair(next[0], next[1]), done);
        const uint32_t bytes = BytesOfPair(next[1]);
        uint8_t* const to = unpacker.start + done;
        if ((distance < kLongest) | (distance > done)) {
            CopySpecial(unpacker, done, distance, bytes);
        } else {
            CopyFar(to, to - distance);
        }
        next += 2;
        done += bytes;
    }
    copyLiterals(static_cast<uint32_t>(std::popcount(flags)));
    unpacker.next = next;
    unpacker.done = done;
}

bool HasWholeGroup(const Unpacker& unpacker) {
    return unpacker.end - unpacker.next >= std::ptrdiff_t{kGroupBytes + 8} &&
           unpacker.room - unpacker.done >= kGroupRoom + kSlack;
}

// The groups from here on that do nothing but go on with one run; false if there is none.
bool UnpackRun(Unpacker& unpacker) {
    const uint8_t* const pair = unpacker.next + 1;
    if (BytesOfPair(pair[1]) != kLongest || BytesOfPair(pair[2 * kItemsInGroup - 1]) != kLongest)
        return false;
    uint32_t place = PlaceOfPair(pair[0], pair[1]);
    const uint64_t distance = DistanceOf(place, unpacker.done);
    if (distance > unpacker.done) return false;
    uint8_t* const to = unpacker.start + unpacker.done;
    uint64_t bytes = 0;
    for (; HasWholeGroup(unpacker) && IsGroupOfRun(unpacker.next, place); place += kGroupRoom) {
        unpacker.next += kGroupBytes;
        unpacker.done += kGroupRoom;
        bytes += kGroupRoom;
    }
    if (bytes == 0) return false;
    GoOn(to, distance, bytes);
    return true;
}

void UnpackGroups(Unpacker& unpacker) {
    while (HasWholeGroup(unpacker)) {
        const uint32_t flags = *unpacker.next;
        if (flags == kOnlyLiterals) {
            CopyEight(unpacker.start + unpacker.done, unpacker.next + 1);
            unpacker.next += 1 + kItemsInGroup;
            unpacker.done += kItemsInGroup;
            continue;
        }
        if (flags == kOnlyPairs && UnpackRun(unpacker)) continue;
        ++unpacker.next;
        UnpackItems(unpacker, flags);
    }
}

// Unpacks at most `items` items; returns the bytes done.
uint64_t UnpackSingly(ItemReader& reader, std::span<uint8_t> plain, uint64_t done, uint64_t items) {
    for (; items > 0 && done < plain.size(); --items) {
        const ItemReader::Kind kind = reader.Next();
        if (kind == ItemReader::kEnd) break;
        if (kind == ItemReader::kLiteral) {
            plain[done++] = reader.byte();
            continue;
        }
        const uint64_t bytes = std::min<uint64_t>(reader.bytes(), plain.size() - done);
        CopyMatch(plain.data(), done, DistanceOf(reader.place(), done), bytes);
        done += bytes;
    }
    return done;
}

} // namespace

uint64_t UnpackLzss(std::span<const uint8_t> packed, std::span<uint8_t> plain) {
    ItemReader first(packed.data(), packed.data() + packed.size());
    Unpacker unpacker{nullptr, packed.data() + packed.size(), plain.data(), 0, plain.size()};
    // So that patterns have eight bytes before them.
    unpacker.done = UnpackSingly(first, plain, 0, kItemsInGroup);
    unpacker.next = first.next();
    UnpackGroups(unpacker);
    ItemReader rest(unpacker.next, unpacker.end);
    return UnpackSingly(rest, plain, unpacker.done, packed.size());
}

namespace {

/// What the flag byte of a whole group tells.
struct GroupShape {
    std::array<uint8_t, 2 * kItemsInGroup> lengths{}; ///< 0x0F where a pair's length stands, else 0
    uint8_t packedBytes = 0;                          ///< without the flag byte
    uint8_t leastBytes = 0;                           ///< unpacked, if all pairs are of kShortest
};

constexpr std::array<GroupShape, 256> kGroupShapes = [] {
    std::array<GroupShape, 256> shapes;
    for (uint32_t flags = 0; flags < shapes.size(); ++flags) {
        GroupShape& shape = shapes[flags];
        for (uint32_t i = 0; i < kItemsInGroup; ++i) {
            const bool literal = flags >> i & 1;
            if (!literal) shape.lengths[shape.packedBytes + 1u] = 0x0F;
            shape.packedBytes = static_cast<uint8_t>(shape.packedBytes + (literal ? 1 : 2));
            shape.leastBytes = static_cast<uint8_t>(shape.leastBytes + (literal ? 1 : kShortest));
        }
    }
    return shapes;
}();

} // namespace

uint64_t UnpackedLzssBytes(std::span<const uint8_t> packed) {
    const uint8_t* next = packed.data();
    const uint8_t* const end = next + packed.size();
    uint64_t bytes = 0;
    while (end - next >= std::ptrdiff_t{kGroupBytes}) {
        // What is common needs no waiting for the table.
        if (*next == kOnlyPairs) {
            const uint64_t pairs = LoadEight(kGroupShapes[kOnlyPairs].lengths.data());
            const uint64_t lengths = (LoadEight(next + 1) & pairs) + (LoadEight(next + 9) & pairs);
            bytes += kItemsInGroup * kShortest + (lengths * 0x0101'0101'0101'0101 >> 56);
            next += kGroupBytes;
            continue;
        }
        if (*next == kOnlyLiterals) {
            bytes += kItemsInGroup;
            next += 1 + kItemsInGroup;
            continue;
        }
        const GroupShape& shape = kGroupShapes[*next++];
        // Eight numbers of at most 30, added in the top byte of a product.
        const uint64_t lengths = (LoadEight(next) & LoadEight(shape.lengths.data())) +
                                 (LoadEight(next + 8) & LoadEight(shape.lengths.data() + 8));
        bytes += shape.leastBytes + (lengths * 0x0101'0101'0101'0101 >> 56);
        next += shape.packedBytes;
    }
    ItemReader items(next, end);
    for (;;) {
        const ItemReader::Kind kind = items.Next();
        if (kind == ItemReader::kEnd) return bytes;
        bytes += kind == ItemReader::kLiteral ? 1 : items.bytes();
    }
}
