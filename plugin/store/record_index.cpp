#include "plugin/store/record_index.h"

#include <algorithm>
#include <cstring>
#include <span>

#include "plugin/frame/globals.h"
#include "plugin/store/gathered_items.h"
#include "plugin/store/header_walk.h"
#include "plugin/store/record.h"
#include "plugin/store/record_order.h"
#include "plugin/store/store_lock.h"
#include "plugin/store/store_names.h"
#include "plugin/store/store_tree.h"
#include "plugin/store/swap_words.h"
#include "plugin/store/trace.h"

namespace {

constexpr uint64_t kListCountBytes = 4;

void SetCount(MemoryHandle list, int32_t count) {
    std::memcpy(BlockBytes(list), &count, sizeof count);
}

// Fills a text field of an item; what does not fit is cut, and a NUL always follows.
template <size_t kBytes>
void SetText(char (&field)[kBytes], const char* text, size_t textBytes) {
    const size_t bytes = strnlen(text, std::min(textBytes, kBytes - 1));
    std::memcpy(field, text, bytes);
    std::memset(field + bytes, 0, kBytes - bytes);
}

int CompareNames(const RihItem& a, const RihItem& b) {
    return std::memcmp(a.name, b.name, sizeof a.name);
}

// Whether `a` stands in front of `b`.  Texts compare as plain bytes; equal items stay as they came.
bool Before(const RihItem& a, const RihItem& b) {
    if (globals->sortMode == kByKind) {
        const int kinds = std::memcmp(a.kind, b.kind, sizeof a.kind);
        return (kinds != 0 ? kinds : CompareNames(a, b)) < 0;
    }
    if (globals->sortMode == kByDate && a.created != b.created) return a.created > b.created;
    return CompareNames(a, b) < 0;
}

constexpr uint64_t ListBytes(uint64_t items) {
    return kListCountBytes + items * sizeof(RihItem);
}

// Makes room for one more item, or fails for lack of memory.
bool GrowList(MemoryHandle* list, int32_t count) {
    const uint64_t bytes = ListBytes(uint64_t{static_cast<uint32_t>(count)} + 1);
    const MemoryHandle large = ResizeHandle(*list, bytes, kSmallGrain);
    if (large == nullptr) return StoreFails(StoreTrouble::kMemory);
    *list = large;
    return true;
}

// Inserts an item at a row, or loses it if memory runs out.
void InsertAt(MemoryHandle* list, int32_t row, const RihItem& item) {
    const int32_t count = RihCount(*list);
    if (!GrowList(list, count)) return;
    RihItem* place = RihItemOfRow(*list, row);
    std::memmove(place + 1, place, static_cast<size_t>(count - row) * sizeof(RihItem));
    *place = item;
    SetCount(*list, count + 1);
}

void FillItem(RihItem* item, const char* groupPath, uint32_t recNo, const char* name, const char* kind,
              uint32_t created) {
    item->recNo = recNo;
    SetText(item->name, name, kRecordNameBytes);
    SetText(item->kind, kind, kRecordNameBytes);
    SetText(item->groupPath, groupPath, kRihPathBytes);
    item->created = created;
}

} // namespace

MemoryHandle NewRihList(uint32_t count) {
    if (count > INT32_MAX) return nullptr;
    const MemoryHandle list = NewHandle(ListBytes(uint64_t{count} + 1), kSmallGrain);
    if (list != nullptr) SetCount(list, static_cast<int32_t>(count));
    return list;
}

int32_t RihCount(MemoryHandle list) {
    int32_t count = 0;
    if (list != nullptr) std::memcpy(&count, BlockBytes(list), sizeof count);
    return count;
}

RihItem* RihItemOfRow(MemoryHandle list, int32_t row) {
    return reinterpret_cast<RihItem*>(BlockBytes(list) + kListCountBytes) + row;
}

int32_t AidbAddItemRIHList(MemoryHandle* list, const char* groupPath, uint32_t recNo, const char* name,
                           const char* kind, uint32_t created) {
    const TraceScope trace("AidbAddItemRIHList");
    if (*list == nullptr) return 0;
    RihItem item;
    FillItem(&item, groupPath, recNo, name, kind, created);
    RihItem* first = RihItemOfRow(*list, 0);
    RihItem* place = std::upper_bound(first, first + RihCount(*list), item, Before);
    InsertAt(list, static_cast<int32_t>(place - first), item);
    return 0;
}

int32_t AidbRmvItemRIHList(MemoryHandle* list, const char* groupPath, uint32_t recNo) {
    const TraceScope trace("AidbRmvItemRIHList");
    const int32_t row = FindRihItem(groupPath, recNo);
    const int32_t count = RihCount(*list);
    if (row < 0 || row >= count) return 0;
    RihItem* item = RihItemOfRow(*list, row);
    std::memmove(item, item + 1, static_cast<size_t>(count - row - 1) * sizeof(RihItem));
    SetCount(*list, count - 1);
    return 0;
}

int32_t FindRihItem(const char* groupPath, uint32_t recNo) {
    if (globals->rihList == nullptr) LoadRihList(globals->aidbfname);
    const int32_t count = RihCount(globals->rihList);
    for (int32_t row = 0; row < count; ++row) {
        const RihItem* item = RihItemOfRow(globals->rihList, row);
        if (item->recNo == recNo && std::strcmp(item->groupPath, groupPath) == 0) return row;
    }
    return -1;
}

namespace {

RihKeys KeysOfItem(const RihItem& item) {
    return {item.name, item.kind, kTextWords, kTextWords, item.created};
}

void FetchAhead(const RihItem& item) {
    for (size_t at = 0; at < sizeof item; at += 64)
        __builtin_prefetch(reinterpret_cast<const char*>(&item) + at);
}

// Puts each item where it belongs, along the circles in which they change places.
void ArrangeItems(std::span<SortEntry> entries, RihItem* items) {
    for (uint32_t start = 0; start < entries.size(); ++start) {
        if (entries[start].row == start) continue;
        const RihItem first = items[start];
        uint32_t place = start;
        while (entries[place].row != start) {
            const uint32_t from = entries[place].row;
            FetchAhead(items[entries[entries[from].row].row]);
            items[place] = items[from];
            entries[place].row = place;
            place = from;
        }
        items[place] = first;
        entries[place].row = place;
    }
}

void FillItemOfHeader(RihItem* item, const char* groupPath, uint32_t recNo, const RecordHeader& header) {
    FillItem(item, groupPath, recNo, header.name, header.kind, SwapLong(header.created));
}

} // namespace

void TakeGathered(const GatheredItems& items) {
    const MemoryHandle list = ListOfGathered(items);
    if (list == nullptr) return;
    FreeHandle(globals->rihList);
    globals->rihList = list;
}

void RefreshRihItem(RihItem* item, const RecordHeader& header) {
    const RihItem old = *item;
    FillItemOfHeader(item, old.groupPath, old.recNo, header);
}

void KeepRihItems(MemoryHandle list, const uint8_t* keep) {
    int32_t kept = 0;
    for (int32_t row = 0; row < RihCount(list); ++row) {
        if (keep[row] != 0) *RihItemOfRow(list, kept++) = *RihItemOfRow(list, row);
    }
    SetCount(list, kept);
}

void SortRihList(MemoryHandle list) {
    const auto count = static_cast<uint32_t>(RihCount(list));
    if (count < 2) return;
    RihItem* items = RihItemOfRow(list, 0);
    HandleOwner scratch(NewHandle(2 * uint64_t{count} * sizeof(SortEntry), kSmallGrain));
    if (scratch.bytes() == nullptr) {
        std::stable_sort(items, items + count, Before);
        return;
    }
    const std::span both(reinterpret_cast<SortEntry*>(scratch.bytes()), 2 * size_t{count});
    const std::span entries = both.first(count);
    for (uint32_t row = 0; row < count; ++row) entries[row].row = row;
    SortRows(
        entries, both.subspan(count), [items](uint32_t row) { return KeysOfItem(items[row]); },
        globals->sortMode);
    ArrangeItems(entries, items);
}

int32_t LoadRihList(const char* groupName) {
    const TraceScope trace("LoadRihList");
    if (globals->findMode == kFindSearchResult || globals->findMode == kFindFolder) {
        if (globals->rihList == nullptr) globals->rihList = NewRihList();
        return 0;
    }
    FreeHandle(globals->rihList);
    GatheredItems items;
    const auto gather = [&items, groupName](uint32_t number, const RecordHeader& header) {
        GatherItem(items, groupName, number, header);
    };
    const HeaderReach reach = ForEachHeader(groupName, gather);
    // Without memory for all of it there is none, rather than one that leaves records out.
    if (reach.opened && items.count == reach.walked) globals->rihList = ListOfGathered(items);
    return 0;
}

void BuildFolderIndex(const char* root, const char* folder, const char* subFolder) {
    const TraceScope trace("BuildFolderIndex");
    FreeHandle(globals->rihList);
    LoadRihList(globals->aidbfname);
    if (globals->rihList == nullptr) return;
    HandleOwner rows(ListGroups(root, folder, subFolder));
    if (rows.get() == nullptr) StoreFails(StoreTrouble::kMemory);
    GatheredItems items;
    ForEachHeaderOfGroups(rows.get(),
                          [&items](const char* group, uint32_t number, const RecordHeader& header) {
                              GatherItem(items, group, number, header);
                          });
    TakeGathered(items);
}

int32_t ResortRihList(int16_t mode) {
    const TraceScope trace("ResortRihList");
    if (globals->rihList == nullptr) LoadRihList(globals->aidbfname);
    if (globals->rihList == nullptr || mode == globals->sortMode) return 0;
    globals->sortMode = mode;
    SortRihList(globals->rihList);
    return 0;
}

int32_t GetRecordOfRow(int32_t row, char* outName, int32_t* outRecNo) {
    *outRecNo = row;
    if (outName != nullptr) std::memcpy(outName, globals->aidbfname, kNameBytes);
    if (globals->rihList == nullptr) LoadRihList(globals->aidbfname);
    if (row < 0 || row >= RihCount(globals->rihList)) return 0;
    const RihItem* item = RihItemOfRow(globals->rihList, row);
    *outRecNo = static_cast<int32_t>(item->recNo);
    if (outName != nullptr) std::memcpy(outName, item->groupPath, kRihPathBytes);
    return 1;
}
