#include "workbench/document/handle_table.h"

#include <atomic>

namespace workbench {

namespace {

constexpr uint64_t kFirstHandle = 0x10000;
constexpr uint64_t kHandleStep = 16;

std::atomic<uint64_t> nextChunk{0};

uint64_t TakeChunk(uint64_t bytesPerChunk) {
    for (;;) {
        const uint64_t chunk = nextChunk++;
        const uint64_t first = kFirstHandle + chunk * bytesPerChunk;
        if ((first & 0xFFFFFFFFu) >= kFirstHandle) return chunk;
    }
}

} // namespace

HandleTable::HandleTable() = default;
HandleTable::~HandleTable() = default;

uintptr_t HandleTable::Add(HandleType type, void* object) {
    if (used_ == kChunkEntries) {
        const uint64_t chunk = TakeChunk(kChunkEntries * kHandleStep);
        if (chunks_.empty()) firstChunk_ = chunk;
        chunks_.resize(static_cast<size_t>(chunk - firstChunk_) + 1);
        chunks_.back() = std::make_unique<Chunk>();
        used_ = 0;
    }
    const uint64_t number = (firstChunk_ + chunks_.size() - 1) * kChunkEntries + used_;
    (*chunks_.back())[used_++] = {object, type};
    return static_cast<uintptr_t>(kFirstHandle + number * kHandleStep);
}

void HandleTable::Remove(uintptr_t handle) {
    if (const Entry* entry = EntryOf(handle)) const_cast<Entry*>(entry)->object = nullptr;
}

void* HandleTable::Find(HandleType type, uintptr_t handle) const {
    const Entry* entry = EntryOf(handle);
    return entry && entry->type == type ? entry->object : nullptr;
}

HandleType HandleTable::TypeOf(uintptr_t handle) const {
    const Entry* entry = EntryOf(handle);
    return entry ? entry->type : HandleType::kNone;
}

const HandleTable::Entry* HandleTable::EntryOf(uintptr_t handle) const {
    if (handle < kFirstHandle || handle % kHandleStep != 0) return nullptr;
    const uint64_t number = (handle - kFirstHandle) / kHandleStep;
    const uint64_t chunk = number / kChunkEntries;
    if (chunk < firstChunk_ || chunk - firstChunk_ >= chunks_.size()) return nullptr;
    const auto& entries = chunks_[static_cast<size_t>(chunk - firstChunk_)];
    return entries ? &(*entries)[number % kChunkEntries] : nullptr;
}

} // namespace workbench
