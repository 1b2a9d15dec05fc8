#include "plugin/store/record_index.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <span>
#include <utility>

#include "plugin/frame/globals.h"
#include "plugin/store/header_walk.h"
#include "plugin/store/record.h"
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

// An item's sort key is a row of words that compare as numbers: under kByName the eight of its name, under
// kByKind those of its kind in front of them, under kByDate one word for the time.
constexpr uint32_t kTextWords = kRecordNameBytes / sizeof(uint64_t);

uint64_t TextWord(const char* text, uint32_t word) {
    uint64_t value;
    std::memcpy(&value, text + word * sizeof value, sizeof value);
    if constexpr (std::endian::native == std::endian::little) value = __builtin_bswap64(value);
    return value;
}

uint32_t KeyWords(int16_t mode) {
    return mode == kByKind ? 2 * kTextWords : mode == kByDate ? 1 + kTextWords : kTextWords;
}

uint64_t KeyWord(const RihItem& item, int16_t mode, uint32_t word) {
    if (mode == kByKind) {
        return word < kTextWords ? TextWord(item.kind, word) : TextWord(item.name, word - kTextWords);
    }
    if (mode == kByDate) return word == 0 ? ~uint64_t{item.created} : TextWord(item.name, word - 1);
    return TextWord(item.name, word);
}

// The word that tells items apart whose words are equal up to this one.  Fields are filled with zeros, so
// nothing follows a word that ends with one.
uint32_t NextWord(int16_t mode, uint32_t word, uint64_t key) {
    const bool isText = mode != kByDate || word != 0;
    if (!isText || (key & 0xFF) != 0) return word + 1;
    return mode == kByKind && word < kTextWords ? kTextWords : KeyWords(mode);
}

struct SortEntry {
    uint64_t key; ///< the word by which it is sorted now
    uint32_t row; ///< where it stood before

    bool operator<(const SortEntry& other) const {
        return key != other.key ? key < other.key : row < other.row;
    }
};

constexpr uint32_t kDigitBits = 11;
constexpr uint32_t kDigits = (64 + kDigitBits - 1) / kDigitBits;
constexpr uint32_t kDigitValues = 1u << kDigitBits;
constexpr size_t kFewEntries = 4096; ///< sorted by comparing

// Sorts by key, from the lowest digit up, leaving equal ones as they are: entries come in the order of rows.
// Digits that all keys have in common, such as the zeros behind short texts, are passed over.
void SortByDigits(std::span<SortEntry> entries, std::span<SortEntry> spare) {
    std::array<std::array<uint32_t, kDigitValues>, kDigits> ends{};
    const auto digit = [](uint64_t key, uint32_t pass) {
        return key >> (kDigitBits * pass) & (kDigitValues - 1);
    };
    for (const SortEntry& entry : entries)
        for (uint32_t pass = 0; pass < kDigits; ++pass) ++ends[pass][digit(entry.key, pass)];
    std::span<SortEntry> from = entries, to = spare.first(entries.size());
    for (uint32_t pass = 0; pass < kDigits; ++pass) {
        if (ends[pass][digit(entries[0].key, pass)] == entries.size()) continue;
        uint32_t sum = 0;
        for (uint32_t& value : ends[pass]) sum += std::exchange(value, sum);
        for (const SortEntry& entry : from) to[ends[pass][digit(entry.key, pass)]++] = entry;
        std::swap(from, to);
    }
    if (from.data() != entries.data()) std::ranges::copy(from, entries.begin());
}

// Sorts by the words from `word` on: by one word all at once, then each stretch of equal ones by the next.
// The items themselves are touched once for a word, not for each comparison.  Entries come in the order of
// rows; `spare` is at least as long.
void SortEntries(std::span<SortEntry> entries, std::span<SortEntry> spare, const RihItem* items, int16_t mode,
                 uint32_t word) {
    for (SortEntry& entry : entries) entry.key = KeyWord(items[entry.row], mode, word);
    if (entries.size() > kFewEntries) {
        SortByDigits(entries, spare);
    } else if (!std::is_sorted(entries.begin(), entries.end())) {
        std::sort(entries.begin(), entries.end());
    }
    while (!entries.empty()) {
        const uint64_t key = entries[0].key;
        const uint32_t next = NextWord(mode, word, key);
        const auto end = std::ranges::find_if(entries, [key](const SortEntry& e) { return e.key != key; });
        const auto equal = entries.first(static_cast<size_t>(end - entries.begin()));
        if (equal.size() > 1 && next < KeyWords(mode)) SortEntries(equal, spare, items, mode, next);
        entries = entries.subspan(equal.size());
    }
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

void AppendRihItem(MemoryHandle* list, const char* groupPath, uint32_t recNo, const RecordHeader& header) {
    if (*list == nullptr) return;
    const int32_t count = RihCount(*list);
    if (!GrowList(list, count)) return;
    FillItemOfHeader(RihItemOfRow(*list, count), groupPath, recNo, header);
    SetCount(*list, count + 1);
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
    SortEntries(entries, both.subspan(count), items, globals->sortMode, 0);
    ArrangeItems(entries, items);
}

int32_t LoadRihList(const char* groupName) {
    const TraceScope trace("LoadRihList");
    if (globals->findMode == kFindSearchResult || globals->findMode == kFindFolder) {
        if (globals->rihList == nullptr) globals->rihList = NewRihList();
        return 0;
    }
    FreeHandle(globals->rihList);
    HandleOwner list(NewRihList());
    if (list.get() == nullptr) return 0;
    const auto makeRoom = [&list](uint32_t count) {
        if (const MemoryHandle large = ResizeHandle(list.get(), ListBytes(count), kSmallGrain))
            list.get() = large;
    };
    const auto add = [&list, groupName](uint32_t number, const RecordHeader& header) {
        AppendRihItem(&list.get(), groupName, number, header);
    };
    const HeaderReach reach = ForEachHeader(groupName, makeRoom, add);
    // Without memory for all of it there is none, rather than one that leaves records out.
    if (!reach.opened || RihCount(list.get()) != static_cast<int32_t>(reach.walked)) return 0;
    SortRihList(list.get());
    globals->rihList = list.Release();
    return 0;
}

void BuildFolderIndex(const char* root, const char* folder, const char* subFolder) {
    const TraceScope trace("BuildFolderIndex");
    FreeHandle(globals->rihList);
    LoadRihList(globals->aidbfname);
    if (globals->rihList == nullptr) return;
    HandleOwner rows(ListGroups(root, folder, subFolder));
    if (rows.get() == nullptr) StoreFails(StoreTrouble::kMemory);
    ForEachHeaderOfGroups(rows.get(), [](const char* group, uint32_t number, const RecordHeader& header) {
        AppendRihItem(&globals->rihList, group, number, header);
    });
    SortRihList(globals->rihList);
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
