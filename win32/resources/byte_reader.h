/// Reads numbers of the low byte first out of bytes that nobody vouches for.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

/// The first read that leads outside fails, and so do all after it: they give 0 and empty spans.
class ByteReader {
public:
    explicit ByteReader(std::span<const uint8_t> bytes) : bytes_(bytes) {}

    bool Failed() const { return failed_; }
    size_t Position() const { return position_; }
    size_t Rest() const { return failed_ ? 0 : bytes_.size() - position_; }

    std::span<const uint8_t> Take(uint64_t count) {
        if (count > Rest()) {
            failed_ = true;
            return {};
        }
        const auto part = bytes_.subspan(position_, static_cast<size_t>(count));
        position_ += part.size();
        return part;
    }
    uint8_t Byte() { return static_cast<uint8_t>(Number(1)); }
    uint16_t Word() { return static_cast<uint16_t>(Number(2)); }
    uint32_t Long() { return Number(4); }

    /// To the next position that is a multiple of 4; the end of the bytes will do.
    void Align() { Take(std::min<uint64_t>((4 - position_ % 4) % 4, Rest())); }

private:
    uint32_t Number(size_t count) {
        uint32_t number = 0;
        int shift = 0;
        for (const uint8_t byte : Take(count)) {
            number |= static_cast<uint32_t>(byte) << shift;
            shift += 8;
        }
        return number;
    }

    std::span<const uint8_t> bytes_;
    size_t position_ = 0;
    bool failed_ = false;
};
