#include "plugin/store/swap_words.h"

#include "plugin/frame/globals.h"

uint16_t SwapShort(uint16_t value) {
    if (globals->swapBytes == 0) return value;
    return static_cast<uint16_t>(value << 8 | value >> 8);
}

uint32_t SwapLong(uint32_t value) {
    if (globals->swapBytes == 0) return value;
    return value << 24 | (value & 0xFF00u) << 8 | (value >> 8 & 0xFF00u) | value >> 24;
}
