/// Blocks of zeroed memory that only grow.
///
/// An operation that may enlarge a block takes its handle by reference, because the block may move.
#pragma once

#include <cstddef>
#include <cstdint>

struct MemoryBlock;                ///< never defined: only BlockBytes gives its bytes
using MemoryHandle = MemoryBlock*; ///< null is no block

constexpr uint64_t kRecordGrain = 0x200000; ///< records and raster objects
constexpr uint64_t kSmallGrain = 0x20000;   ///< all other blocks

/// A block of at least `bytes` zero bytes, rounded up to a multiple of `grain`; null if memory ran out.
MemoryHandle NewHandle(uint64_t bytes, uint64_t grain);

/// Makes sure that the block holds `bytes`, rounded up to a multiple of `grain`; a null handle makes a new
/// block.  New bytes are zero.  Returns the handle, moved or not, or null if memory ran out: the old
/// block then stands.  A block never shrinks.  Costs amortised constant time for each byte added.
[[nodiscard]] MemoryHandle ResizeHandle(MemoryHandle handle, uint64_t bytes, uint64_t grain);

/// Frees the block, if any, and clears the handle.
void FreeHandle(MemoryHandle& handle);

/// The block's bytes, aligned for any type; null for a null handle.
uint8_t* BlockBytes(MemoryHandle handle);

/// The block's size in bytes, a multiple of its grain; 0 for a null handle.
uint64_t BlockSize(MemoryHandle handle);

/// Frees a block at the end of a scope.
class HandleOwner {
public:
    explicit HandleOwner(MemoryHandle handle = nullptr) : handle_(handle) {}
    ~HandleOwner() { FreeHandle(handle_); }
    HandleOwner(const HandleOwner&) = delete;
    HandleOwner& operator=(const HandleOwner&) = delete;

    MemoryHandle& get() { return handle_; }
    uint8_t* bytes() const { return BlockBytes(handle_); }
    MemoryHandle Release() {
        MemoryHandle handle = handle_;
        handle_ = nullptr;
        return handle;
    }

private:
    MemoryHandle handle_;
};
