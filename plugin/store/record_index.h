/// The record index: what the headers of the shown records say, sorted by `globals->sortMode` at all times.
///
/// The list is a block with a signed 32-bit count and the items behind it.  A row is a place in the list; it
/// has nothing to do with a record's number.  `globals->findMode` says what the list holds: the records of
/// the current group, a search result, or the records of all groups directly in a folder.
#pragma once

#include <cstddef>
#include <cstdint>

#include "plugin/store/gathered_items.h"
#include "plugin/store/memory_handle.h"
#include "plugin/store/record_layout.h"

constexpr uint32_t kRihPathBytes = 256;

/// Values of `globals->sortMode`; any other acts as kByName.
enum SortMode : int16_t {
    kByName = 0,
    kByKind = 1, ///< then by name
    kByDate = 2, ///< newest first, then by name
};

/// What the list knows of one record; `groupPath` and `recNo` together say which.
struct RihItem {
    uint32_t recNo;
    char name[kRecordNameBytes];
    char kind[kRecordNameBytes];
    char groupPath[kRihPathBytes];
    uint32_t created; ///< host order
};
static_assert(sizeof(RihItem) == 392 && offsetof(RihItem, created) == 388);

/// A list of `count` items that are all zero, or null if memory ran out.
MemoryHandle NewRihList(uint32_t count = 0);

/// The number of items; 0 for a null list.
int32_t RihCount(MemoryHandle list);

/// The item of a row, which must be below the count; valid until the list changes.
RihItem* RihItemOfRow(MemoryHandle list, int32_t row);

/// Inserts an item behind those that sort before it or equal to it.  With a null list, or when memory runs
/// out, nothing happens.  Texts are cut to their fields.  Always 0.
int32_t AidbAddItemRIHList(MemoryHandle* list, const char* groupPath, uint32_t recNo, const char* name,
                           const char* kind, uint32_t created);

/// Makes the list of what was gathered the record index; if memory runs out, which `globals->storeTrouble`
/// tells then, it stays as it is.
void TakeGathered(const GatheredItems& items);

/// Takes over what a header in file order says of an item's record; SortRihList has to follow.
void RefreshRihItem(RihItem* item, const RecordHeader& header);

/// Takes out the items whose row has a 0 in `keep`.
void KeepRihItems(MemoryHandle list, const uint8_t* keep);

/// Sorts a list whose items have changed: the result is that of inserting them one by one.
void SortRihList(MemoryHandle list);

/// Removes the record's item, if there is one.  Always 0.
int32_t AidbRmvItemRIHList(MemoryHandle* list, const char* groupPath, uint32_t recNo);

/// The row of a record in `rihList`, which is loaded if it is missing; -1 if it has none.
int32_t FindRihItem(const char* groupPath, uint32_t recNo);

/// Rebuilds `rihList` from a group's headers; a group that cannot be opened, or
/// finds no memory for its list, leaves none.  When the list
/// holds a search result or a folder it is kept, and only made, empty, if it is missing.  Always 0.
int32_t LoadRihList(const char* groupName);

/// Rebuilds `rihList` from all groups directly in a folder.  `curRecord` is the last header read.
/// With kMemory in `globals->storeTrouble` the list isn't whole.
void BuildFolderIndex(const char* root, const char* folder, const char* subFolder);

/// Sorts the list anew; items that are equal under the new mode keep their order.  Always 0.
int32_t ResortRihList(int16_t mode);

/// The group and record number behind a row: 1 if the row exists.  Else 0, with `row` and the current group
/// as the answer, which is right for a group that has no list.
/// @param outName  kNameBytes, may be null
int32_t GetRecordOfRow(int32_t row, char* outName, int32_t* outRecNo);
