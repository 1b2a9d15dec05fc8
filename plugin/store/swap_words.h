/// The byte order of stored numbers: big-endian on every machine.
#pragma once

#include <cstdint>

/// The value in the other byte order if `globals->swapBytes` is set, else the value itself.  The way in
/// and the way out are the same.
uint16_t SwapShort(uint16_t value);
uint32_t SwapLong(uint32_t value);
