#include "plugin/store/record_moves.h"

#include <windows.h>

#include <cstring>
#include <string>

#include "plugin/frame/globals.h"
#include "plugin/store/data_directories.h"
#include "plugin/store/folder_entries.h"
#include "plugin/store/group_file.h"
#include "plugin/store/interrupted_work.h"
#include "plugin/store/record.h"
#include "plugin/store/store_names.h"
#include "plugin/store/swap_words.h"
#include "plugin/store/trace.h"

namespace {

// How the group and its data directory stand before the operation; false if it can't be told.
bool Survey(const char* group, int32_t number, Intent& intent) {
    GroupFile file;
    if (!file.OpenToRead(group)) return false;
    if (number < 0 || static_cast<uint32_t>(number) >= file.count())
        return StoreFails(StoreTrouble::kRefused);
    intent.group = group;
    intent.number = number;
    intent.count = file.storedCount();
    return NumbersFrom(DataDirectoryOf(group), static_cast<uint32_t>(number), intent.directories) ||
           StoreFails(StoreTrouble::kDamaged);
}

int32_t Delete(const char* group, int32_t number) {
    const StoreLock lock(kStoreExclusive);
    if (!lock.held() || !FinishInterruptedWork()) return -1;
    Intent intent;
    intent.kind = IntentKind::kDelete;
    if (!Survey(group, number, intent)) return -1;
    if (!WriteIntent(intent)) return -1;
    DeleteRecord(group, number);
    return FinishWork(intent) == WorkEnd::kDone ? 0 : -1;
}

bool IsPseudoEntry(const char* name) {
    char folder[kPartBytes], subFolder[kPartBytes], group[kPartBytes];
    SplitGroupName(name, folder, subFolder, group);
    return group[0] == '\0' || std::strcmp(group, kSearchResult) == 0 ||
           std::strcmp(group, kFolderSelected) == 0;
}

// The record's file image, as AppendToGroup and WriteRecord take it.
bool ReadImage(const char* group, int32_t number, HandleOwner& record) {
    AidbReadRecord(group, number, &record.get(), kReadWhole, false);
    if (record.get() == nullptr) return StoreFails(StoreTrouble::kDisk);
    const auto* start = reinterpret_cast<const RecordStart*>(record.bytes());
    const uint64_t bodies = uint64_t{SwapLong(start->packedPreview)} + SwapLong(start->packedObjects);
    const bool whole = SwapLong(start->header.size) == kSmallestRecordBytes + bodies;
    return (whole && start->packedPreview != 0) || StoreFails(StoreTrouble::kDamaged);
}

void TakeTexts(HandleOwner& record, const RecordHeader* texts) {
    if (texts == nullptr) return;
    auto* header = reinterpret_cast<RecordHeader*>(record.bytes());
    std::memcpy(header->name, texts->name, sizeof header->name);
    std::memcpy(header->kind, texts->kind, sizeof header->kind);
    std::memcpy(header->comment, texts->comment, sizeof header->comment);
}

// The place of the new record's directory, made free for it.
bool Prepare(const char* newGroup, Intent& intent) {
    char path[kFullPathBytes];
    GroupFilePath(newGroup, path);
    intent.newGroup = newGroup;
    intent.newCount = 0;
    if (StateOfEntry(path) != EntryState::kMissing) {
        GroupFile file;
        if (!file.OpenToRead(newGroup)) return false;
        intent.newCount = file.storedCount();
    }
    const std::string data = DataDirectoryOf(newGroup);
    return (MakeFolder(data) && ClearPlaceOf(data, intent.newCount)) || StoreFails(StoreTrouble::kDisk);
}

bool CheckNames(const char* group, const char* newGroup, bool& same) {
    char path[kFullPathBytes], newPath[kFullPathBytes];
    GroupFilePath(group, path);
    GroupFilePath(newGroup, newPath);
    same = std::strcmp(path, newPath) == 0;
    if (IsPseudoEntry(newGroup) || newPath[0] == '\0') return StoreFails(StoreTrouble::kRefused);
    return same || CompareStoreNames(path, newPath) != 0 || StoreFails(StoreTrouble::kRefused);
}

void SetCurRecord(MemoryHandle record, int32_t number) {
    FreeHandle(globals->curRecord);
    globals->curRecord = record;
    globals->curRecordNo = number;
}

// Appends the record; false with the group as it was.
bool Append(const Intent& intent, HandleOwner& record) {
    SetCurRecord(record.Release(), -1);
    const bool appended = WriteRecord(intent.newGroup.c_str(), -1) == 0;
    record.get() = globals->curRecord; // the deletion from the old group takes what is current
    globals->curRecord = nullptr;
    globals->curRecordNo = -1;
    return appended;
}

int32_t Move(const char* group, int32_t number, const char* newGroup, int32_t* newNumber,
             const RecordHeader* texts) {
    const StoreLock lock(kStoreExclusive);
    if (!lock.held() || !FinishInterruptedWork()) return -1;
    bool same;
    Intent intent;
    intent.kind = IntentKind::kMove;
    HandleOwner record;
    if (!CheckNames(group, newGroup, same) || !Survey(group, number, intent)) return -1;
    if (same) {
        *newNumber = number;
        return 0;
    }
    if (!ReadImage(group, number, record) || !Prepare(newGroup, intent)) return -1;
    TakeTexts(record, texts);
    if (!WriteIntent(intent)) return -1;
    Append(intent, record);
    const WorkEnd end = FinishWork(intent);
    if (end == WorkEnd::kUndone) return -1;
    *newNumber = static_cast<int32_t>(intent.newCount);
    if (end == WorkEnd::kStuck) return -1;
    if (globals->findMode == kFindGroup) SelectGroup(newGroup);
    SetCurRecord(record.Release(), *newNumber);
    return 0;
}

} // namespace

int32_t DeleteRecordAndData(const char* group, int32_t number) {
    const TraceScope trace("DeleteRecordAndData");
    return WithinMemory([=] { return Delete(group, number); });
}

int32_t MoveRecordToGroup(const char* group, int32_t number, const char* newGroup, int32_t* newNumber,
                          const RecordHeader* texts) {
    const TraceScope trace("MoveRecordToGroup");
    return WithinMemory([=] { return Move(group, number, newGroup, newNumber, texts); });
}
