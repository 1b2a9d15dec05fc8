#include <algorithm>

#include "plugin/store/lzss.h"
#include "plugin/store/lzss_form.h"

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
