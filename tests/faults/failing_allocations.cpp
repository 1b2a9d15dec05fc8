#include "tests/faults/failing_allocations.h"

#include <cstdlib>
#include <new>

#include "win32/memory_hook.h"

namespace {

struct Countdown {
    bool runs = false;
    unsigned count = 0, first = 0, last = 0;
};
Countdown countdown;

bool Refuses() {
    if (!countdown.runs) return false;
    ++countdown.count;
    return countdown.count >= countdown.first && countdown.count <= countdown.last;
}

} // namespace

void FailAllocations(unsigned first, unsigned last) {
    refusesBlock = Refuses;
    countdown = {.runs = true, .first = first, .last = last};
}

unsigned StopFailingAllocations() {
    countdown.runs = false;
    refusesBlock = nullptr;
    return countdown.count;
}

void* operator new(size_t bytes, const std::nothrow_t&) noexcept {
    return Refuses() ? nullptr : std::malloc(bytes != 0 ? bytes : 1);
}
void* operator new(size_t bytes) {
    void* block = operator new(bytes, std::nothrow);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}
void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, size_t) noexcept {
    std::free(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
    std::free(block);
}
