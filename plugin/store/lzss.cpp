#include "plugin/store/lzss.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

// Which of several equal matches is taken, and so every packed byte, follows from the shape of the trees:
// the 18 strings before the start go in first, from the nearest to the farthest; each first byte has its
// own tree; the search keeps the first of several longest matches that it meets on its way down; a string
// that equals a node in all 18 bytes takes its place; a node with two children is replaced by its in-order
// predecessor.

namespace {

constexpr uint32_t kRingBytes = 4096;
constexpr uint32_t kLongest = 18;
constexpr uint32_t kShortest = 3;
constexpr uint32_t kFirstPlace = kRingBytes - kLongest;
constexpr uint32_t kItemsInGroup = 8;
constexpr uint32_t kLongestRunPeriod = 4; ///< a pixel

uint64_t LoadEight(const uint8_t* bytes) {
    uint64_t value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

uint32_t LoadTwo(const uint8_t* bytes) {
    uint16_t value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

// The place of the first byte, in memory, in which two words differ.
uint32_t FirstDifference(uint64_t difference) {
    const int bits = std::endian::native == std::endian::little ? std::countr_zero(difference)
                                                                : std::countl_zero(difference);
    return static_cast<uint32_t>(bits) / 8;
}

// How many of the 18 bytes at `a` and `b` agree, from the front.
uint32_t CommonBytes(const uint8_t* a, const uint8_t* b) {
    if (const uint64_t difference = LoadEight(a) ^ LoadEight(b)) return FirstDifference(difference);
    if (const uint64_t difference = LoadEight(a + 8) ^ LoadEight(b + 8))
        return 8 + FirstDifference(difference);
    if (a[16] != b[16]) return 16;
    return a[17] == b[17] ? kLongest : 17;
}

bool AllCommon(const uint8_t* a, const uint8_t* b) {
    return LoadEight(a) == LoadEight(b) && LoadEight(a + 8) == LoadEight(b + 8) &&
           LoadTwo(a + 16) == LoadTwo(b + 16);
}

struct Match {
    uint32_t place = 0;
    uint32_t bytes = 0;
};

/// The last 4096 bytes, and the trees over the strings of 18 bytes that begin at each of them.
class Ring {
public:
    Ring();
    void Put(uint32_t place, uint8_t byte);
    uint8_t at(uint32_t place) const { return bytes_[place]; }

    /// Puts the string at `place` into its tree and finds the longest earlier one.
    Match Insert(uint32_t place);
    void Remove(uint32_t place);

    /// Whether `next` goes on with the one byte that fills the string at `place`, found one byte back.
    bool RunGoesOn(uint32_t place, const Match& match, std::span<const uint8_t> next) const;
    /// Does at once what removing, putting and inserting would do for the next 18 bytes of such a run: each
    /// string takes the place of the one before it, so that only the last is left in the tree.
    Match GoOnWithRun(uint32_t place);

private:
    static constexpr uint16_t kNone = kRingBytes;
    /// The root of a first byte's tree hangs at the right of a node behind those of the ring.
    static constexpr uint32_t RootOf(uint8_t byte) { return kRingBytes + 1 + byte; }

    bool InsertIntoRun(uint32_t place, Match& match);
    void Replace(uint32_t old, uint32_t place);
    void HangInPlaceOf(uint32_t old, uint32_t node);

    // The first 17 bytes stand again behind the end, so that every string lies in one piece.
    std::array<uint8_t, kRingBytes + kLongest - 1> bytes_{};
    std::array<uint16_t, kRingBytes + 1> left_;
    std::array<uint16_t, kRingBytes + 1 + 256> right_;
    std::array<uint16_t, kRingBytes + 1> parent_;
};

Ring::Ring() {
    left_.fill(kNone);
    right_.fill(kNone);
    parent_.fill(kNone);
}

void Ring::Put(uint32_t place, uint8_t byte) {
    bytes_[place] = byte;
    if (place < kLongest - 1) bytes_[place + kRingBytes] = byte;
}

// Makes the link that led to `old` lead to `node`.
void Ring::HangInPlaceOf(uint32_t old, uint32_t node) {
    const uint16_t parent = parent_[old];
    parent_[node] = parent;
    if (right_[parent] == old) {
        right_[parent] = static_cast<uint16_t>(node);
    } else {
        left_[parent] = static_cast<uint16_t>(node);
    }
}

void Ring::Replace(uint32_t old, uint32_t place) {
    left_[place] = left_[old];
    right_[place] = right_[old];
    parent_[left_[old]] = static_cast<uint16_t>(place);
    parent_[right_[old]] = static_cast<uint16_t>(place);
    HangInPlaceOf(old, place);
    parent_[old] = kNone;
}

// No two nodes hold the same 18 bytes, so an equal node, wherever it is met, is the one that a search from
// the root would end at.  In a run it lies one period back, and most of a stream and a preview is runs.
bool Ring::InsertIntoRun(uint32_t place, Match& match) {
    for (uint32_t period = 1; period <= kLongestRunPeriod; ++period) {
        const uint32_t earlier = (place - period) & (kRingBytes - 1);
        if (parent_[earlier] == kNone || !AllCommon(&bytes_[earlier], &bytes_[place])) continue;
        Replace(earlier, place);
        match = {earlier, kLongest};
        return true;
    }
    return false;
}

Match Ring::Insert(uint32_t place) {
    Match match;
    if (InsertIntoRun(place, match)) return match;
    const uint8_t* string = &bytes_[place];
    uint32_t parent = RootOf(string[0]);
    uint16_t* link = &right_[parent];
    while (*link != kNone) {
        const uint32_t node = *link;
        const uint32_t common = CommonBytes(string, &bytes_[node]);
        if (common > match.bytes) {
            match = {node, common};
            if (common == kLongest) {
                Replace(node, place);
                return match;
            }
        }
        parent = node;
        link = string[common] < bytes_[node + common] ? &left_[node] : &right_[node];
    }
    *link = static_cast<uint16_t>(place);
    parent_[place] = static_cast<uint16_t>(parent);
    left_[place] = kNone;
    right_[place] = kNone;
    return match;
}

void Ring::Remove(uint32_t place) {
    if (parent_[place] == kNone) return;
    uint16_t heir;
    if (right_[place] == kNone) {
        heir = left_[place];
    } else if (left_[place] == kNone) {
        heir = right_[place];
    } else {
        heir = left_[place];
        if (right_[heir] != kNone) {
            do heir = right_[heir];
            while (right_[heir] != kNone);
            right_[parent_[heir]] = left_[heir];
            parent_[left_[heir]] = parent_[heir];
            left_[heir] = left_[place];
            parent_[left_[place]] = heir;
        }
        right_[heir] = right_[place];
        parent_[right_[place]] = heir;
    }
    HangInPlaceOf(place, heir);
    parent_[place] = kNone;
}

bool Ring::RunGoesOn(uint32_t place, const Match& match, std::span<const uint8_t> next) const {
    return next.size() >= kLongest && match.bytes == kLongest &&
           match.place == ((place - 1) & (kRingBytes - 1)) && AllCommon(&bytes_[place], next.data());
}

Match Ring::GoOnWithRun(uint32_t place) {
    const uint8_t byte = bytes_[place];
    for (uint32_t step = kLongest; step < 2 * kLongest; ++step) {
        const uint32_t oldest = (place + step) & (kRingBytes - 1);
        Remove(oldest);
        Put(oldest, byte);
    }
    const uint32_t last = (place + kLongest) & (kRingBytes - 1);
    Replace(place, last);
    return {(last - 1) & (kRingBytes - 1), kLongest};
}

/// Collects items into groups behind their flag bytes.
class GroupWriter {
public:
    explicit GroupWriter(std::span<uint8_t> out) : out_(out) {}

    /// False when the room does not suffice.
    bool Literal(uint8_t byte) {
        if (!Room(1)) return false;
        out_[flags_] = static_cast<uint8_t>(out_[flags_] | 1u << items_++);
        out_[used_++] = byte;
        return true;
    }
    bool Pair(const Match& match) {
        if (!Room(2)) return false;
        ++items_;
        out_[used_++] = static_cast<uint8_t>(match.place);
        out_[used_++] = static_cast<uint8_t>((match.place >> 4 & 0xF0) | (match.bytes - kShortest));
        return true;
    }
    uint64_t used() const { return used_; }

private:
    bool Room(size_t bytes) {
        const bool opens = items_ == kItemsInGroup;
        if (out_.size() - used_ < bytes + (opens ? 1 : 0)) return false;
        if (opens) {
            flags_ = used_++;
            out_[flags_] = 0;
            items_ = 0;
        }
        return true;
    }

    std::span<uint8_t> out_;
    size_t used_ = 0;
    size_t flags_ = 0;
    uint32_t items_ = kItemsInGroup;
};

} // namespace

std::optional<uint64_t> PackLzss(std::span<const uint8_t> plain, std::span<uint8_t> packed) {
    Ring ring;
    GroupWriter writer(packed);
    uint32_t place = kFirstPlace; // of the next item
    uint32_t ahead = 0;           // bytes of input that lie in the ring from `place` on
    size_t taken = 0;
    for (; ahead < kLongest && taken < plain.size(); ++ahead) ring.Put(place + ahead, plain[taken++]);
    for (uint32_t back = 1; back <= kLongest; ++back) ring.Insert(place - back);
    Match match = ring.Insert(place);
    while (ahead > 0) {
        // At the end of the input a string goes on into what is left of the round before.
        match.bytes = std::min(match.bytes, ahead);
        uint32_t step = 1;
        if (match.bytes < kShortest) {
            if (!writer.Literal(ring.at(place))) return std::nullopt;
        } else {
            step = match.bytes;
            if (!writer.Pair(match)) return std::nullopt;
            if (ring.RunGoesOn(place, match, plain.subspan(taken))) {
                match = ring.GoOnWithRun(place);
                place = (place + kLongest) & (kRingBytes - 1);
                taken += kLongest;
                continue;
            }
        }
        for (; step > 0; --step) {
            const uint32_t oldest = (place + kLongest) & (kRingBytes - 1);
            ring.Remove(oldest);
            place = (place + 1) & (kRingBytes - 1);
            if (taken < plain.size()) {
                ring.Put(oldest, plain[taken++]);
            } else if (--ahead == 0) {
                continue;
            }
            match = ring.Insert(place);
        }
    }
    return writer.used();
}

namespace {

/// Walks the items of packed bytes; a pair whose second byte is missing is no item.
class ItemReader {
public:
    explicit ItemReader(std::span<const uint8_t> packed)
        : next_(packed.data()), end_(next_ + packed.size()) {}

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
    uint8_t byte() const { return item_[0]; }
    uint32_t place() const { return item_[0] | (item_[1] & 0xF0u) << 4; }
    uint32_t bytes() const { return (item_[1] & 0x0Fu) + kShortest; }

private:
    const uint8_t* next_;
    const uint8_t* end_;
    const uint8_t* item_ = nullptr;
    uint32_t flags_ = 1;
};

// Copies a match whose source may overlap what it writes, or begin among the zeros before the start.
void CopyMatch(uint8_t* start, uint64_t done, uint64_t distance, uint64_t bytes) {
    uint8_t* to = start + done;
    for (; distance > done && bytes > 0; --bytes, ++done) *to++ = 0;
    if (bytes == 0) return;
    const uint8_t* from = to - distance;
    if (distance >= bytes) {
        std::memcpy(to, from, bytes);
    } else if (distance == 1) {
        std::memset(to, *from, bytes);
    } else {
        for (; bytes > 0; --bytes) *to++ = *from++;
    }
}

} // namespace

uint64_t UnpackLzss(std::span<const uint8_t> packed, std::span<uint8_t> plain) {
    ItemReader items(packed);
    uint64_t done = 0;
    while (done < plain.size()) {
        const ItemReader::Kind kind = items.Next();
        if (kind == ItemReader::kEnd) break;
        if (kind == ItemReader::kLiteral) {
            plain[done++] = items.byte();
            continue;
        }
        // Distance 0 names the oldest byte of the ring, which the match is about to overwrite.
        uint64_t distance = (kFirstPlace + done - items.place()) & (kRingBytes - 1);
        if (distance == 0) distance = kRingBytes;
        const uint64_t bytes = std::min<uint64_t>(items.bytes(), plain.size() - done);
        CopyMatch(plain.data(), done, distance, bytes);
        done += bytes;
    }
    return done;
}

uint64_t UnpackedLzssBytes(std::span<const uint8_t> packed) {
    ItemReader items(packed);
    uint64_t bytes = 0;
    for (;;) {
        const ItemReader::Kind kind = items.Next();
        if (kind == ItemReader::kEnd) return bytes;
        bytes += kind == ItemReader::kLiteral ? 1 : items.bytes();
    }
}
