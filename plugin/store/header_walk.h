/// Going over the headers of groups, each file once and in its order.
#pragma once

#include <algorithm>
#include <cstdint>

#include "plugin/store/group_file.h"
#include "plugin/store/record.h"
#include "plugin/store/record_layout.h"
#include "plugin/store/store_tree.h"

/// How far a group could be gone over.
struct HeaderReach {
    uint32_t count = 0;  ///< records that the group may have, at most; 0 if it can't be opened
    uint32_t walked = 0; ///< records that were visited
    bool opened = false;
    bool whole = false; ///< every record was visited
};

/// Calls `visit(number, header)` for each record of a group.  The header is in file order, lasts for the
/// call, and its texts may lack their NUL.
template <typename Visit>
HeaderReach ForEachHeader(const char* groupName, Visit visit) {
    GroupFile file;
    if (!file.OpenToRead(groupName)) return {};
    HeaderReach reach{.count = file.count(), .opened = true};
    GroupWalk walk(file);
    for (; walk.Next(); ++reach.walked) {
        visit(walk.record().number, *reinterpret_cast<const RecordHeader*>(walk.header()));
    }
    reach.whole = walk.reachedCount();
    return reach;
}

/// Calls `visit(groupName, number, header)` for each record of a row list of groups.  Afterwards `curRecord`
/// is what reading each header into it leaves there: the last one, or nothing if that one is damaged.
/// @return how many groups weren't visited whole
template <typename Visit>
int32_t ForEachHeaderOfGroups(MemoryHandle rows, Visit visit) {
    int32_t broken = 0;
    const char* lastGroup = nullptr;
    uint32_t lastNumber = 0;
    for (int32_t row = 0; row < RowCount(rows); ++row) {
        const char* group = RowText(rows, row);
        const HeaderReach reach = ForEachHeader(
            group, [&](uint32_t number, const RecordHeader& header) { visit(group, number, header); });
        if (!reach.whole) ++broken;
        if (reach.count == 0) continue;
        lastGroup = group;
        lastNumber = std::min(reach.walked, reach.count - 1);
    }
    if (lastGroup != nullptr) {
        AidbReadRecord(lastGroup, static_cast<int32_t>(lastNumber), nullptr, kReadHeader, true);
    }
    return broken;
}
