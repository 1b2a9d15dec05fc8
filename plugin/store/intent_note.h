/// The note of intent: what an operation that spans several files is about to do, as `VLQ.INT` in the
/// database root for as long as it does it.
///
/// It is a text of lines `key = value` in the common line grammar.  Bytes of names that the grammar can't
/// hold stand as `%XX`.  It is written beside its place, flushed, and moved there; the last line says that it
/// is whole.  Only who holds the store's lock alone writes, reads or drops it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "plugin/store/renumbering.h"

inline constexpr char kIntentFile[] = "\\VLQ.INT";
inline constexpr char kIntentWorkFile[] = "\\VLQ.INW"; ///< the note on its way to its place and away from it
inline constexpr char kNoteWorkFile[] = "\\VLQ.LNK";   ///< a link note on its way beside a record
constexpr size_t kMostIntentBytes = 0x1000000;

enum class IntentKind {
    kDelete,    ///< of a record and its data directory
    kMove,      ///< of both to another group
    kRenumber,  ///< of the directories behind a gap, and removal of what stands in it
    kPool,      ///< of a stored file
    kMoveGroup, ///< of a group's file and its data directory to another name or folder
};

struct Intent {
    IntentKind kind = IntentKind::kDelete;
    std::string group;    ///< cp932, as callers name it; of kRenumber unused
    int32_t number = 0;   ///< of the record
    uint32_t count = 0;   ///< of the group's records before; kDelete, kMove
    std::string newGroup; ///< kMove, kMoveGroup
    uint32_t newCount = 0;
    std::string directory;    ///< kRenumber: the data directory, below the root, with a backslash in front
    NumberRanges directories; ///< those numbered `number` and on, before; kDelete, kMove, kRenumber
    std::string storedName, pooledName; ///< kPool
    bool hasData = false;               ///< kMoveGroup: whether there was a data directory
};

std::string FormatIntent(const Intent& intent);

/// False if the text isn't whole, or holds what no such note holds.
bool ParseIntent(std::string_view text, Intent& intent);

/// False, with the reason in `globals->storeTrouble`, if the note isn't certainly on the disk; then nothing
/// may be begun.
bool WriteIntent(const Intent& intent);

/// False if there is none that can be read whole.
bool ReadIntent(Intent& intent);

/// The work is done or undone, and on the disk.  If the note can't be dropped, the next who finds it sees
/// that nothing is left to do.
void DropIntent();
