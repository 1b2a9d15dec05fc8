/// The packer's walk over a body, a unit or a block at a time.  Only the packer includes this.
///
/// After a long run of zeros nothing but their string is left in the window, and what follows up to the next
/// such run is a unit that can be packed with little ado (lzss_unit.h); the objects of a stream are mostly
/// such units.  All else is packed in blocks, with the window (lzss_window.h).
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <span>

#include "plugin/store/lzss_form.h"
#include "plugin/store/lzss_unit.h"
#include "plugin/store/lzss_window.h"
#include "plugin/store/lzss_writer.h"
#include "plugin/store/memory_handle.h"

constexpr uint32_t kBlockBytes = 0x8000;
constexpr uint32_t kHistory = kRingBytes; ///< bytes of the text in front of a block
static_assert(kHistory + kBlockBytes <= std::numeric_limits<uint16_t>::max());

/// What a walk needs, in one zeroed block of memory.
struct Packer {
    std::array<uint8_t, kHistory + kBlockBytes + kLongest + 2 * sizeof(uint64_t)> text;
    uint32_t inItem; ///< places that the last item still covers
    MatchWindow window;
    UnitMemory unit;
};

struct PackWalk {
    PackWalk(std::span<const uint8_t> body, std::span<uint8_t> room);

    HandleOwner memory; ///< of a Packer; no bytes if memory ran out
    std::span<const uint8_t> plain;
    GroupWriter writer;
    size_t start = 0;       ///< the place that comes next
    size_t blocksEnd = 0;   ///< how far the window has come
    bool onlyZeros = false; ///< are in the window

    Packer& packer() const { return *reinterpret_cast<Packer*>(memory.bytes()); }
};

/// The place behind the last string of zeros of a run.
inline size_t PlaceBehindZeros(size_t runEnd) {
    return runEnd - kLongest + 1;
}

/// Lets a new walk begin behind a run of at least kResettingZeros zeros: with the item that starts at its
/// end.
void BeginBehindZeros(PackWalk& walk, size_t runEnd);

/// Ends a walk that has come to PlaceBehindZeros of a run with the zeros that are left.
bool PackLastZeros(PackWalk& walk);

/// Packs the next unit or block, but not beyond `limit`: the body's end, or PlaceBehindZeros of a run.
/// @return false if the room does not suffice
bool PackNext(PackWalk& walk, size_t limit);
