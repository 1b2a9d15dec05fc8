#include <windows.h>

#include <sys/mman.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "win32/memory_hook.h"

// The address checker sees overruns of blocks from the C library alone, so there all blocks come from it.
#if defined(__SANITIZE_ADDRESS__)
#define BLOCKS_FROM_C_LIBRARY 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define BLOCKS_FROM_C_LIBRARY 1
#endif
#endif

namespace {

#ifdef BLOCKS_FROM_C_LIBRARY
constexpr SIZE_T kMappedBytes = SIZE_MAX;
#else
constexpr SIZE_T kMappedBytes = 0x100000; // from here on the system can extend a block without copying it
#endif
constexpr SIZE_T kPageBytes = 0x1000;
constexpr SIZE_T kHugeBytes = 0x400000;
constexpr SIZE_T kLargestBlock = SIZE_T{1} << 38; // beyond any memory, and within what the checkers accept

// Stands in front of the bytes that the caller sees.
struct alignas(16) Header {
    SIZE_T bytes;
    SIZE_T mapped; // length of the mapping; 0 for a block of the C library
};

Header* HeaderOf(HGLOBAL block) {
    return static_cast<Header*>(block) - 1;
}
char* BytesOf(Header* header) {
    return reinterpret_cast<char*>(header + 1);
}
SIZE_T WholePages(SIZE_T bytes) {
    return (bytes + kPageBytes - 1) / kPageBytes * kPageBytes;
}

Header* MapBlock(SIZE_T total) {
    const SIZE_T length = WholePages(total);
    void* pages = ::mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED) return nullptr;
    // Fewer faults where the system has large pages; nothing is lost where it has none.
    if (length >= kHugeBytes) ::madvise(pages, length, MADV_HUGEPAGE);
    auto* header = static_cast<Header*>(pages);
    header->mapped = length;
    return header;
}

Header* NewBlock(SIZE_T bytes) {
    const SIZE_T total = bytes + sizeof(Header);
    if (total >= kMappedBytes) return MapBlock(total);
    return static_cast<Header*>(std::calloc(1, total));
}

void DropBlock(Header* header) {
    if (header->mapped != 0) {
        ::munmap(header, header->mapped);
    } else {
        std::free(header);
    }
}

// Null if the block has to be copied to one of the other kind, or if memory ran out.
Header* ExtendInKind(Header* header, SIZE_T total) {
    if (header->mapped == 0) {
        return total < kMappedBytes ? static_cast<Header*>(std::realloc(header, total)) : nullptr;
    }
    const SIZE_T length = WholePages(total);
    void* pages = ::mremap(header, header->mapped, length, MREMAP_MAYMOVE);
    if (pages == MAP_FAILED) return nullptr;
    header = static_cast<Header*>(pages);
    header->mapped = length;
    return header;
}

HGLOBAL FailBlock(DWORD code) {
    SetLastError(code);
    return nullptr;
}

bool IsRefused() {
    return refusesBlock != nullptr && refusesBlock();
}

} // namespace

bool (*refusesBlock)() = nullptr;

HGLOBAL GlobalAlloc(UINT flags, SIZE_T bytes) {
    if ((flags & ~UINT{GMEM_ZEROINIT}) != 0) return FailBlock(ERROR_INVALID_PARAMETER);
    Header* header = bytes <= kLargestBlock && !IsRefused() ? NewBlock(bytes) : nullptr;
    if (header == nullptr) return FailBlock(ERROR_NOT_ENOUGH_MEMORY);
    header->bytes = bytes;
    return BytesOf(header);
}

HGLOBAL GlobalReAlloc(HGLOBAL block, SIZE_T bytes, UINT flags) {
    if (block == nullptr || (flags & ~UINT{GMEM_ZEROINIT}) != GMEM_MOVEABLE)
        return FailBlock(ERROR_INVALID_PARAMETER);
    if (bytes > kLargestBlock || IsRefused()) return FailBlock(ERROR_NOT_ENOUGH_MEMORY);
    Header* header = HeaderOf(block);
    const SIZE_T before = header->bytes;
    const SIZE_T beforeMapped = header->mapped;
    Header* extended = ExtendInKind(header, bytes + sizeof(Header));
    if (extended == nullptr) {
        extended = NewBlock(bytes);
        if (extended == nullptr) return FailBlock(ERROR_NOT_ENOUGH_MEMORY);
        std::memcpy(BytesOf(extended), BytesOf(header), std::min(before, bytes));
        DropBlock(header);
    } else if (bytes > before && (flags & GMEM_ZEROINIT) != 0) {
        // Pages that the mapping gained are zero already, and are better left untouched.
        const SIZE_T fresh = beforeMapped != 0 ? std::min(bytes, beforeMapped - sizeof(Header)) : bytes;
        if (fresh > before) std::memset(BytesOf(extended) + before, 0, fresh - before);
    }
    extended->bytes = bytes;
    return BytesOf(extended);
}

HGLOBAL GlobalFree(HGLOBAL block) {
    if (block != nullptr) DropBlock(HeaderOf(block));
    return nullptr;
}

SIZE_T GlobalSize(HGLOBAL block) {
    return block != nullptr ? HeaderOf(block)->bytes : 0;
}
