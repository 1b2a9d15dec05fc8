#include "plugin/store/record_index.h"

#include <algorithm>
#include <cstring>

#include "plugin/frame/globals.h"
#include "plugin/store/group_file.h"
#include "plugin/store/record.h"
#include "plugin/store/store_names.h"
#include "plugin/store/store_tree.h"
#include "plugin/store/swap_words.h"
#include "plugin/store/trace.h"

namespace {

constexpr uint64_t kListCountBytes = 4;

enum SortMode : int16_t { kByName = 0, kByKind = 1, kByDate = 2 };

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

// Whether `a` stands behind `b`.  Texts compare as plain bytes; equal items stay as they came.
bool SortsAfter(const RihItem& a, const RihItem& b) {
    if (globals->sortMode == kByKind) {
        const int kinds = std::memcmp(a.kind, b.kind, sizeof a.kind);
        return (kinds != 0 ? kinds : CompareNames(a, b)) > 0;
    }
    if (globals->sortMode == kByDate && a.created != b.created) return a.created < b.created;
    return CompareNames(a, b) > 0;
}

bool Before(const RihItem& a, const RihItem& b) {
    return SortsAfter(b, a);
}

// Inserts an item at a row, or loses it if memory runs out.
void InsertAt(MemoryHandle* list, int32_t row, const RihItem& item) {
    const int32_t count = RihCount(*list);
    const uint64_t bytes = kListCountBytes + (static_cast<uint64_t>(count) + 1) * sizeof(RihItem);
    const MemoryHandle large = ResizeHandle(*list, bytes, kSmallGrain);
    if (large == nullptr) return;
    *list = large;
    RihItem* place = RihItemOfRow(large, row);
    std::memmove(place + 1, place, static_cast<size_t>(count - row) * sizeof(RihItem));
    *place = item;
    SetCount(large, count + 1);
}

void SortList(MemoryHandle list) {
    RihItem* first = RihItemOfRow(list, 0);
    std::stable_sort(first, first + RihCount(list), Before);
}

RihItem MakeItem(const char* groupPath, uint32_t recNo, const char* name, const char* kind,
                 uint32_t created) {
    RihItem item;
    item.recNo = recNo;
    SetText(item.name, name, kRecordNameBytes);
    SetText(item.kind, kind, kRecordNameBytes);
    SetText(item.groupPath, groupPath, kRihPathBytes);
    item.created = created;
    return item;
}

} // namespace

MemoryHandle NewRihList() {
    return NewHandle(kListCountBytes + sizeof(RihItem), kSmallGrain);
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
    const RihItem item = MakeItem(groupPath, recNo, name, kind, created);
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

// Puts the records of a group behind the list's items, unsorted.  Returns how many were walked.
uint32_t AppendGroup(MemoryHandle* list, GroupFile& file, const char* groupName) {
    GroupWalk walk(file);
    uint32_t walked = 0;
    for (; walk.Next(); ++walked) {
        RecordHeader header;
        std::memcpy(&header, walk.header(), sizeof header);
        InsertAt(
            list, RihCount(*list),
            MakeItem(groupName, walk.record().number, header.name, header.kind, SwapLong(header.created)));
    }
    return walked;
}

} // namespace

int32_t LoadRihList(const char* groupName) {
    const TraceScope trace("LoadRihList");
    if (globals->findMode == kFindSearchResult || globals->findMode == kFindFolder) {
        if (globals->rihList == nullptr) globals->rihList = NewRihList();
        return 0;
    }
    FreeHandle(globals->rihList);
    GroupFile file;
    if (!file.OpenToRead(groupName)) return 0;
    globals->rihList = NewRihList();
    if (globals->rihList == nullptr) return 0;
    AppendGroup(&globals->rihList, file, groupName);
    SortList(globals->rihList);
    return 0;
}

void BuildFolderIndex(const char* root, const char* folder, const char* subFolder) {
    const TraceScope trace("BuildFolderIndex");
    FreeHandle(globals->rihList);
    LoadRihList(globals->aidbfname);
    if (globals->rihList == nullptr) return;
    HandleOwner rows(ListGroups(root, folder, subFolder));
    const char* lastGroup = nullptr;
    uint32_t lastNumber = 0;
    for (int32_t row = 0; row < RowCount(rows.get()); ++row) {
        const char* group = RowText(rows.get(), row);
        GroupFile file;
        if (!file.OpenToRead(group) || file.count() == 0) continue;
        const uint32_t walked = AppendGroup(&globals->rihList, file, group);
        lastGroup = group;
        lastNumber = std::min(walked, file.count() - 1);
    }
    SortList(globals->rihList);
    // Whoever asks for a folder finds the last header in `curRecord`, or nothing if it is damaged.
    if (lastGroup != nullptr) {
        AidbReadRecord(lastGroup, static_cast<int32_t>(lastNumber), nullptr, kReadHeader, true);
    }
}

int32_t ResortRihList(int16_t mode) {
    const TraceScope trace("ResortRihList");
    if (globals->rihList == nullptr) LoadRihList(globals->aidbfname);
    if (globals->rihList == nullptr || mode == globals->sortMode) return 0;
    globals->sortMode = mode;
    SortList(globals->rihList);
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
