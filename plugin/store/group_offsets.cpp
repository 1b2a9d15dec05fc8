#include "plugin/store/group_offsets.h"

#include <cstring>

#include "plugin/frame/globals.h"
#include "plugin/store/record_layout.h"

namespace {

bool StartTable(GroupOffsets& table, const FileStamp& stamp) {
    ForgetOffsets(table);
    table.places = NewHandle(sizeof kCountBytes, kSmallGrain);
    if (table.places == nullptr) return false;
    std::memcpy(BlockBytes(table.places), &kCountBytes, sizeof kCountBytes);
    table.stamp = stamp;
    return true;
}

} // namespace

GroupOffsets* OffsetsOf(const FileStamp& stamp) {
    GroupOffsets* oldest = globals->groupOffsets;
    for (GroupOffsets& table : globals->groupOffsets) {
        if (table.places != nullptr && table.stamp.SameFile(stamp)) {
            if (table.stamp != stamp && !StartTable(table, stamp)) return nullptr;
            table.lastUse = ++globals->offsetsUsed;
            return &table;
        }
        if (table.lastUse < oldest->lastUse) oldest = &table;
    }
    if (!StartTable(*oldest, stamp)) return nullptr;
    oldest->lastUse = ++globals->offsetsUsed;
    return oldest;
}

bool AddOffset(GroupOffsets& table, uint32_t end) {
    const uint64_t bytes = (uint64_t{table.known} + 2) * sizeof end;
    if (BlockSize(table.places) < bytes) {
        const MemoryHandle large = ResizeHandle(table.places, bytes, kSmallGrain);
        if (large == nullptr) return false;
        table.places = large;
    }
    std::memcpy(BlockBytes(table.places) + bytes - sizeof end, &end, sizeof end);
    ++table.known;
    return true;
}

void CutOffset(GroupOffsets& table, uint32_t number, const FileStamp& stamp) {
    table.stamp = stamp;
    if (number >= table.known) return;
    auto* places = reinterpret_cast<uint32_t*>(BlockBytes(table.places));
    const uint32_t bytes = places[number + 1] - places[number];
    for (uint32_t i = number + 1; i < table.known; ++i) places[i] = places[i + 1] - bytes;
    --table.known;
}

uint32_t PlaceOf(const GroupOffsets& table, uint32_t number) {
    uint32_t place;
    std::memcpy(&place, BlockBytes(table.places) + uint64_t{number} * sizeof place, sizeof place);
    return place;
}

void ForgetOffsets(GroupOffsets& table) {
    FreeHandle(table.places);
    table = {};
}

void FreeOffsets() {
    for (GroupOffsets& table : globals->groupOffsets) ForgetOffsets(table);
}
