/// The small picture of a record.
#pragma once

#include <cstdint>

#include "plugin/store/memory_handle.h"
#include "suites/host_types.h"

constexpr int32_t kPreviewSide = 128; ///< pixels

/// Draws the selected art into a new preview block: 128 rows of 128 pixels from the top, each 4 bytes 0,
/// red, green, blue.
///
/// The host draws at twice the size into an off-screen port, of which each 2 by 2 pixels are averaged.  The
/// art stands centred in the square, as large as fits.
/// @param preview    out, the caller's to free; null if the port or the block can't be made
/// @param selection  the selection by host bounds
/// @return always 0: a record does without a preview
HostError CreatePreviewImage(MemoryHandle& preview, const HostRect& selection);

/// Appends to an art list what is to be drawn of `art`.
///
/// A list is a 32-bit count, 4 spare bytes and the handles; what was appended first lies on top.  A selected
/// group is drawn as a whole only if it is clipped and no layer's group, a compound path if it is
/// selected, otherwise their members count by themselves.  Guides are never drawn.
/// @return the host's code for `art` itself, or kHostOutOfMemory
HostError CreatePictImageProcess(ArtHandle art, MemoryHandle& list, int32_t depth);

/// A pixel as a word whose bytes in memory are 0, red, green, blue on this machine.
uint32_t PackPreviewPixel(uint8_t red, uint8_t green, uint8_t blue);
