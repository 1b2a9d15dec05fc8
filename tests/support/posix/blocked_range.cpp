#include "tests/support/blocked_range.h"

#include <link.h>
#include <sys/mman.h>

#include <algorithm>
#include <cstdint>

namespace {

struct Search {
    uintptr_t inside, begin, end;
};

int LookAtModule(dl_phdr_info* module, size_t, void* parameter) {
    auto* search = static_cast<Search*>(parameter);
    uintptr_t begin = UINTPTR_MAX, end = 0;
    for (int i = 0; i < module->dlpi_phnum; ++i) {
        const auto& part = module->dlpi_phdr[i];
        if (part.p_type != PT_LOAD) continue;
        begin = std::min<uintptr_t>(begin, module->dlpi_addr + part.p_vaddr);
        end = std::max<uintptr_t>(end, module->dlpi_addr + part.p_vaddr + part.p_memsz);
    }
    if (search->inside < begin || search->inside >= end) return 0;
    search->begin = begin & ~uintptr_t{4095};
    search->end = (end + 4095) & ~uintptr_t{4095};
    return 1;
}

} // namespace

BlockedRange::BlockedRange(const void* inside) {
    Search search{reinterpret_cast<uintptr_t>(inside), 0, 0};
    dl_iterate_phdr(LookAtModule, &search);
    begin_ = reinterpret_cast<char*>(search.begin);
    bytes_ = search.end - search.begin;
}

BlockedRange::~BlockedRange() {
    if (blocked_) munmap(begin_, bytes_);
}

bool BlockedRange::Block() {
    if (bytes_ == 0 || blocked_) return blocked_;
    void* place = mmap(begin_, bytes_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED_NOREPLACE, -1, 0);
    blocked_ = place == begin_;
    return blocked_;
}

bool BlockedRange::Contains(const void* address) const {
    return address >= begin_ && address < begin_ + bytes_;
}
