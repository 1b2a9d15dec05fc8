#include "plugin/store/memory_handle.h"

#include <windows.h>

#include <algorithm>

namespace {

// Stands in front of a block's bytes.  `capacity` bytes behind it are allocated; those beyond `size` are
// zero.
struct alignas(16) BlockHeader {
    uint64_t size;
    uint64_t capacity;
};

constexpr uint64_t kLargestBlock = uint64_t{1} << 40; // so that no sum of sizes can overflow

BlockHeader* HeaderOf(MemoryHandle handle) {
    return reinterpret_cast<BlockHeader*>(handle);
}

uint64_t RoundUp(uint64_t bytes, uint64_t grain) {
    return (bytes + grain - 1) / grain * grain;
}

// More than was asked for, so that growing in grains copies each byte a bounded number of times.
uint64_t GrownCapacity(uint64_t capacity, uint64_t size) {
    return std::max(size, capacity + capacity / 2);
}

} // namespace

MemoryHandle NewHandle(uint64_t bytes, uint64_t grain) {
    if (bytes > kLargestBlock) return nullptr;
    const uint64_t size = RoundUp(bytes, grain);
    auto* header =
        static_cast<BlockHeader*>(GlobalAlloc(GMEM_FIXED | GMEM_ZEROINIT, sizeof(BlockHeader) + size));
    if (header == nullptr) return nullptr;
    *header = {size, size};
    return reinterpret_cast<MemoryHandle>(header);
}

MemoryHandle ResizeHandle(MemoryHandle handle, uint64_t bytes, uint64_t grain) {
    if (handle == nullptr) return NewHandle(bytes, grain);
    if (bytes > kLargestBlock) return nullptr;
    BlockHeader* header = HeaderOf(handle);
    const uint64_t size = RoundUp(bytes, grain);
    if (size <= header->size) return handle;
    if (size > header->capacity) {
        const auto grow = [header](uint64_t capacity) {
            return static_cast<BlockHeader*>(
                GlobalReAlloc(header, sizeof(BlockHeader) + capacity, GMEM_MOVEABLE | GMEM_ZEROINIT));
        };
        uint64_t capacity = GrownCapacity(header->capacity, size);
        BlockHeader* grown = grow(capacity);
        if (grown == nullptr) grown = grow(capacity = size);
        if (grown == nullptr) return nullptr;
        header = grown;
        header->capacity = capacity;
    }
    header->size = size;
    return reinterpret_cast<MemoryHandle>(header);
}

void FreeHandle(MemoryHandle& handle) {
    if (handle != nullptr) GlobalFree(HeaderOf(handle));
    handle = nullptr;
}

uint8_t* BlockBytes(MemoryHandle handle) {
    return handle != nullptr ? reinterpret_cast<uint8_t*>(HeaderOf(handle) + 1) : nullptr;
}

uint64_t BlockSize(MemoryHandle handle) {
    return handle != nullptr ? HeaderOf(handle)->size : 0;
}
