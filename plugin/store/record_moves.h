/// Changes of a record together with its data directory, so that a crash at any moment leaves both as they
/// were or is made good by the next change of the store.
///
/// Numbers of other records and `rihList` follow.  -1 leaves the reason in `globals->storeTrouble`: with
/// kUnfinished the change is made as far as the group files go, and the directories follow when the lock is
/// next taken; with any other reason nothing has changed.
#pragma once

#include <cstdint>

#include "plugin/store/record_layout.h"

/// Deletes a record, its data directory and the pooled files that its notes own.  `curRecord` is freed.
int32_t DeleteRecordAndData(const char* group, int32_t number);

/// Moves a record to the end of another group, which is made if it is missing.  Its stored bytes stay, both
/// stamps among them, and its data directory goes with it.  `curRecord` is the record's file image
/// afterwards, `curRecordNo` its new number; if the browser shows one group, that is the new one.  To move a
/// record to the group that it is in changes nothing.  A group whose name differs from the old one's in case
/// alone is refused: on some shares that is the same file.
/// @param texts  whose name, kind and comment the moved record gets; null: it keeps its own
int32_t MoveRecordToGroup(const char* group, int32_t number, const char* newGroup, int32_t* newNumber,
                          const RecordHeader* texts = nullptr);
