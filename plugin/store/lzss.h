/// The coder of packed bodies: LZSS (Storer and Szymanski 1982) with Bell's binary search trees (1986), in
/// the form that became common in 1989.
///
/// A ring of 4096 bytes, matches of 3 to 18.  The ring starts as zeros with the write position at 4078.  A
/// flag byte precedes up to eight items, bit 0 first: 1 is a literal byte, 0 a pair: ring position in the
/// first byte and the high half of the second, length less 3 in its low half.  The packed bytes are part
/// of the file format: which of several equal matches is taken follows from the trees, see lzss_window.h.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

/// The most bytes that `bytes` bytes can pack to.
constexpr uint64_t MostPackedBytes(uint64_t bytes) {
    return bytes + (bytes + 7) / 8;
}

/// Packs `plain` into `packed` and returns the bytes written; nothing if the room does not
/// suffice, memory ran out or there are 4 GB to pack, which no record can hold.  A second thread
/// helps with a long body, and has ended when this returns.
std::optional<uint64_t> PackLzss(std::span<const uint8_t> plain, std::span<uint8_t> packed);

/// The packed bytes of two bodies, the second right behind the first.
struct PackedPair {
    uint64_t first;
    uint64_t second;
};

/// Packs two bodies as PackLzss does, side by side if they are long and there is room for the most that both
/// can pack to.
std::optional<PackedPair> PackPairLzss(std::span<const uint8_t> first, std::span<const uint8_t> second,
                                       std::span<uint8_t> packed);

/// Unpacks until the packed bytes end, also in the middle of a group, or the room is full.  Returns the
/// bytes written.  Any input is taken.
uint64_t UnpackLzss(std::span<const uint8_t> packed, std::span<uint8_t> plain);

/// The bytes that `packed` unpacks to, without unpacking it.
uint64_t UnpackedLzssBytes(std::span<const uint8_t> packed);
