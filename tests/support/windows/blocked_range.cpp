#include "tests/support/blocked_range.h"

#include <windows.h>

BlockedRange::BlockedRange(const void* inside) {
    MEMORY_BASIC_INFORMATION part{};
    if (VirtualQuery(inside, &part, sizeof part) == 0) return;
    void* const begin = part.AllocationBase;
    begin_ = static_cast<char*>(begin);
    while (VirtualQuery(begin_ + bytes_, &part, sizeof part) != 0 && part.AllocationBase == begin)
        bytes_ += part.RegionSize;
}

BlockedRange::~BlockedRange() {
    if (blocked_) VirtualFree(begin_, 0, MEM_RELEASE);
}

bool BlockedRange::Block() {
    if (bytes_ == 0 || blocked_) return blocked_;
    blocked_ = VirtualAlloc(begin_, bytes_, MEM_RESERVE, PAGE_NOACCESS) == begin_;
    return blocked_;
}

bool BlockedRange::Contains(const void* address) const {
    return address >= begin_ && address < begin_ + bytes_;
}
