/// Writes packed items.  Only the packer includes this.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <span>

#include "plugin/store/lzss_form.h"

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
    bool Pair(uint32_t ringPlace, uint32_t bytes) {
        if (!Room(2)) return false;
        ++items_;
        PutPair(ringPlace, bytes);
        return true;
    }
    /// Pairs of 18 bytes, each 18 places on.
    bool Pairs(uint32_t ringPlace, size_t count) {
        for (; count > 0; --count, ringPlace = (ringPlace + kLongest) & (kRingBytes - 1)) {
            while (items_ == kItemsInGroup && count > kItemsInGroup &&
                   out_.size() - used_ > 2 * kItemsInGroup) {
                out_[used_++] = 0;
                for (uint32_t i = 0; i < kItemsInGroup; ++i)
                    PutPair((ringPlace + i * kLongest) & (kRingBytes - 1), kLongest);
                ringPlace = (ringPlace + kItemsInGroup * kLongest) & (kRingBytes - 1);
                count -= kItemsInGroup;
            }
            if (!Pair(ringPlace, kLongest)) return false;
        }
        return true;
    }
    uint64_t used() const { return used_; }

    /// Goes on with another's items.
    bool Append(const GroupWriter& other) {
        size_t next = 0;
        if (items_ < kItemsInGroup) {
            while (other.used_ - next >= kWide && out_.size() - used_ >= 2 * kWide)
                next += AppendGroup(&other.out_[next]);
        }
        size_t flags = 0;
        for (uint32_t items = kItemsInGroup; next < other.used_; ++items) {
            if (items == kItemsInGroup) {
                flags = next++;
                items = 0;
            }
            const uint8_t* item = &other.out_[next];
            const bool literal = other.out_[flags] >> items & 1;
            if (!(literal ? Literal(item[0]) : Pair(PlaceOfPair(item[0], item[1]), BytesOfPair(item[1]))))
                return false;
            next += literal ? 1 : 2;
        }
        return true;
    }

private:
    static constexpr size_t kWide = 32; ///< more than a group and what a wide copy takes behind it

    /// Appends a whole group: the open group takes its first items, a new one the rest.  Reads and writes up
    /// to 16 bytes more.  Returns the group's bytes.
    size_t AppendGroup(const uint8_t* group) {
        const uint32_t fit = kItemsInGroup - items_;
        const uint32_t first = group[0] & ((1u << fit) - 1), rest = uint32_t{group[0]} >> fit;
        const size_t firstBytes = 2 * fit - static_cast<size_t>(std::popcount(first));
        const size_t restBytes = 2 * items_ - static_cast<size_t>(std::popcount(rest));
        out_[flags_] = static_cast<uint8_t>(out_[flags_] | first << items_);
        std::memcpy(&out_[used_], group + 1, 2 * kItemsInGroup);
        flags_ = used_ + firstBytes;
        out_[flags_] = static_cast<uint8_t>(rest);
        std::memcpy(&out_[flags_ + 1], group + 1 + firstBytes, 2 * kItemsInGroup);
        used_ = flags_ + 1 + restBytes;
        return 1 + firstBytes + restBytes;
    }
    void PutPair(uint32_t ringPlace, uint32_t bytes) {
        out_[used_] = static_cast<uint8_t>(ringPlace);
        out_[used_ + 1] = static_cast<uint8_t>((ringPlace >> 4 & 0xF0) | (bytes - kShortest));
        used_ += 2;
    }
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
