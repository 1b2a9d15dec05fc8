#include "plugin/store/interrupted_work.h"

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "plugin/frame/globals.h"
#include "plugin/store/data_directories.h"
#include "plugin/store/folder_entries.h"
#include "plugin/store/group_file.h"
#include "plugin/store/linked_files.h"
#include "plugin/store/place_moves.h"
#include "plugin/store/places.h"
#include "plugin/store/record.h"
#include "plugin/store/store_lock.h"
#include "plugin/store/store_names.h"
#include "plugin/store/swap_words.h"

namespace {

// False if it can't be told; a group without a file has no records.
bool CountOf(const std::string& group, uint32_t& count) {
    char path[kFullPathBytes];
    GroupFilePath(group.c_str(), path);
    count = 0;
    if (StateOfEntry(path) == EntryState::kMissing) return true;
    GroupFile file;
    if (!file.OpenToRead(group.c_str())) return false;
    count = file.storedCount();
    return true;
}

WorkEnd CloseGapOf(const std::string& dataDirectory, const Intent& intent) {
    if (!CloseGap(dataDirectory, static_cast<uint32_t>(intent.number), intent.directories))
        return WorkEnd::kStuck;
    DeleteRemoved(dataDirectory);
    return WorkEnd::kDone;
}

WorkEnd FinishDelete(const Intent& intent) {
    uint32_t count;
    if (!CountOf(intent.group, count)) return WorkEnd::kStuck;
    if (count == intent.count) return WorkEnd::kUndone; // the group file was never replaced
    if (count != intent.count - 1) return WorkEnd::kStuck;
    return CloseGapOf(DataDirectoryOf(intent.group.c_str()), intent);
}

struct Move {
    const Intent& intent;
    std::string from, to; ///< the record's directory
    bool hadDirectory;
    int32_t newNumber;
};

bool ReadStored(const std::string& group, int32_t number, HandleOwner& record, uint32_t& bytes) {
    AidbReadRecord(group.c_str(), number, &record.get(), kReadWhole, false);
    if (record.get() == nullptr) return false;
    std::memcpy(&bytes, record.bytes() + offsetof(RecordHeader, size), sizeof bytes);
    bytes = SwapLong(bytes);
    return bytes != 0;
}

// Whether they are one record, whose texts alone may have been edited on the way; false if one of them can't
// be read.
bool CompareRecords(const Move& move, bool& same) {
    HandleOwner a, b;
    uint32_t aBytes, bBytes;
    if (!ReadStored(move.intent.group, move.intent.number, a, aBytes) ||
        !ReadStored(move.intent.newGroup, move.newNumber, b, bBytes))
        return false;
    constexpr size_t texts = offsetof(RecordHeader, name), behind = offsetof(RecordHeader, created);
    same = aBytes == bBytes && aBytes >= behind && std::equal(a.bytes(), a.bytes() + texts, b.bytes()) &&
           std::equal(a.bytes() + behind, a.bytes() + aBytes, b.bytes() + behind);
    return true;
}

bool RenameDirectory(const std::string& from, const std::string& to) {
    return MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_WRITE_THROUGH) != FALSE;
}

// The new group's data directory has been made, and what stood in the way there put aside, before the note.
bool BringDirectory(const Move& move) {
    if (!move.hadDirectory) return MakeFolder(move.to);
    const EntryState from = StateOfEntry(move.from);
    const EntryState to = StateOfEntry(move.to);
    if (from == EntryState::kMissing && to == EntryState::kDirectory) return true;
    return from == EntryState::kDirectory && to == EntryState::kMissing &&
           RenameDirectory(move.from, move.to);
}

bool BringDirectoryBack(const Move& move) {
    const EntryState from = StateOfEntry(move.from);
    if (!move.hadDirectory)
        return StateOfEntry(move.to) == EntryState::kMissing || RemoveDirectoryA(move.to.c_str());
    if (from == EntryState::kDirectory) return true;
    return from == EntryState::kMissing && RenameDirectory(move.to, move.from);
}

WorkEnd UndoMove(const Move& move) {
    if (!BringDirectoryBack(move)) return WorkEnd::kStuck;
    DeleteRecord(move.intent.newGroup.c_str(), move.newNumber);
    uint32_t count;
    return CountOf(move.intent.newGroup, count) && count == move.intent.newCount ? WorkEnd::kUndone
                                                                                 : WorkEnd::kStuck;
}

// The record stands in both groups: it leaves the old one, or else the new one again.
WorkEnd FinishAppended(const Move& move) {
    bool same;
    if (!CompareRecords(move, same)) return WorkEnd::kStuck;
    if (!same) return WorkEnd::kUndone; // what was appended is another's, so nothing has been moved
    if (!BringDirectory(move)) return UndoMove(move);
    DeleteRecord(move.intent.group.c_str(), move.intent.number);
    uint32_t count;
    if (!CountOf(move.intent.group, count))
        return WorkEnd::kStuck; // a deletion that failed may be one all the same
    return count == move.intent.count ? UndoMove(move) : WorkEnd::kDone;
}

WorkEnd FinishMove(const Intent& intent) {
    const auto newNumber = static_cast<int32_t>(intent.newCount);
    const Move move = {intent, RecordDirectoryOf(intent.group.c_str(), intent.number),
                       RecordDirectoryOf(intent.newGroup.c_str(), newNumber),
                       !intent.directories.empty() &&
                           intent.directories.front().first == static_cast<uint32_t>(intent.number),
                       newNumber};
    uint32_t count, newCount;
    if (!CountOf(intent.group, count) || !CountOf(intent.newGroup, newCount)) return WorkEnd::kStuck;
    if (newCount == intent.newCount && count == intent.count) return WorkEnd::kUndone;
    if (newCount != intent.newCount + 1) return WorkEnd::kStuck;
    if (count == intent.count) {
        const WorkEnd end = FinishAppended(move);
        if (end != WorkEnd::kDone) return end;
    } else if (count != intent.count - 1) {
        return WorkEnd::kStuck;
    }
    Intent gap = intent; // its directory has gone to the new group
    if (move.hadDirectory && gap.directories.front().first++ == gap.directories.front().last)
        gap.directories.erase(gap.directories.begin());
    return CloseGapOf(DataDirectoryOf(intent.group.c_str()), gap);
}

WorkEnd FinishPool(const Intent& intent) {
    const std::string directory = RecordDirectoryOf(intent.group.c_str(), intent.number);
    const std::string stored = JoinPath(directory, intent.storedName);
    const std::string pooled = JoinPath(ImageFolderPath(), intent.pooledName);
    const EntryState atHome = StateOfEntry(stored);
    if (atHome == EntryState::kUnknown) return WorkEnd::kStuck;
    if (atHome != EntryState::kMissing) return WorkEnd::kUndone;
    if (StateOfEntry(pooled) == EntryState::kMissing)
        return WorkEnd::kUndone; // gone, but by none of our doing
    const LinkNote note = {intent.storedName, intent.pooledName};
    const std::string notePath = JoinPath(directory, NameOfLinkNote(intent.storedName));
    if (WriteLinkNote(notePath, note)) return WorkEnd::kDone;
    if (!DeleteFileA(notePath.c_str()) && StateOfEntry(notePath) != EntryState::kMissing)
        return WorkEnd::kStuck;
    return MoveFileExA(pooled.c_str(), stored.c_str(), MOVEFILE_COPY_ALLOWED | MOVEFILE_WRITE_THROUGH)
               ? WorkEnd::kUndone
               : WorkEnd::kStuck;
}

// The note lies on a share, and anybody may have written it.
bool NamesAreSafe(const Intent& intent) {
    switch (intent.kind) {
        case IntentKind::kDelete:
            return StaysBelowRoot(intent.group);
        case IntentKind::kMove:
        case IntentKind::kMoveGroup:
            return StaysBelowRoot(intent.group) && StaysBelowRoot(intent.newGroup);
        case IntentKind::kRenumber:
            return StaysBelowRoot(intent.directory);
        case IntentKind::kPool:
            return StaysBelowRoot(intent.group) && IsPlainComponent(intent.storedName) &&
                   IsPlainComponent(intent.pooledName);
    }
    return false;
}

WorkEnd GoOn(const Intent& intent) {
    switch (intent.kind) {
        case IntentKind::kDelete:
            return FinishDelete(intent);
        case IntentKind::kMove:
            return FinishMove(intent);
        case IntentKind::kRenumber:
            return CloseGapOf(PathInRoot(intent.directory), intent);
        case IntentKind::kPool:
            return FinishPool(intent);
        case IntentKind::kMoveGroup:
            return FinishGroupMove(intent);
    }
    return WorkEnd::kStuck;
}

WorkEnd GoOnWithinMemory(const Intent& intent) {
    try {
        return GoOn(intent);
    } catch (const std::bad_alloc&) {
        return WorkEnd::kStuck;
    }
}

} // namespace

bool WorkIsInterrupted() {
    const std::string path = PathInRoot(kIntentFile);
    return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES ||
           GetLastError() != ERROR_FILE_NOT_FOUND;
}

namespace {

/// Whoever takes the lock may have a record in hand that isn't stored yet; the deletions of another's work
/// must not drop it.
class RecordSetAside {
public:
    RecordSetAside() : record_(globals->curRecord), number_(globals->curRecordNo) {
        globals->curRecord = nullptr;
        globals->curRecordNo = -1;
    }
    ~RecordSetAside() {
        FreeHandle(globals->curRecord);
        globals->curRecord = record_;
        globals->curRecordNo = number_;
    }
    RecordSetAside(const RecordSetAside&) = delete;
    RecordSetAside& operator=(const RecordSetAside&) = delete;

private:
    MemoryHandle record_;
    int32_t number_;
};

} // namespace

bool FinishInterruptedWork() {
    if (!WorkIsInterrupted()) return true;
    Intent intent;
    if (!ReadIntent(intent) || !NamesAreSafe(intent)) return StoreFails(StoreTrouble::kUnfinished);
    const RecordSetAside aside;
    const StoreTrouble before =
        globals->storeTrouble; // that others' work had to be undone is no trouble of ours
    if (FinishWork(intent) == WorkEnd::kStuck) return false;
    globals->storeTrouble = before;
    return true;
}

std::string DescribeInterruptedWork() {
    std::string text;
    if (StateOfEntry(PathInRoot(kIntentFile)) == EntryState::kMissing) return text;
    ReadWholeFile(PathInRoot(kIntentFile), kMostIntentBytes, text);
    Intent intent;
    return ParseIntent(text, intent) ? text : "damaged";
}

WorkEnd FinishWork(const Intent& intent) {
    const StoreTrouble before = globals->storeTrouble;
    const WorkEnd end = GoOnWithinMemory(intent);
    if (end == WorkEnd::kStuck) {
        StoreFails(StoreTrouble::kUnfinished);
        return end;
    }
    DropIntent();
    if (end == WorkEnd::kDone) globals->storeTrouble = before;
    if (end == WorkEnd::kUndone && globals->storeTrouble == StoreTrouble::kNone)
        StoreFails(StoreTrouble::kDisk);
    return end;
}
