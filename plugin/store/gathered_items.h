/// A record index in the making: items are noted briefly in the order in which they come, and put down as
/// items of a list when their order is known, each once and in its place.
#pragma once

#include <cstdint>

#include "plugin/store/memory_handle.h"
#include "plugin/store/record_layout.h"

struct GatheredItems {
    HandleOwner notes; ///< one behind the other, of different lengths
    uint64_t noteBytes = 0;
    uint32_t count = 0;
};

/// Notes an item of a header in file order.  Texts are cut to their fields.  False, with `storeTrouble`, if
/// memory ran out: the item is lost.
/// @param groupPath  must stay as it is until the list is made
bool GatherItem(GatheredItems& items, const char* groupPath, uint32_t recNo, const RecordHeader& header);

/// The list of the items, sorted by `globals->sortMode`: the same as inserting them one by one.  Null, with
/// `storeTrouble`, if memory ran out.
MemoryHandle ListOfGathered(const GatheredItems& items);
