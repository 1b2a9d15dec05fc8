#include "plugin/store/data_directories.h"

#include <windows.h>

#include <new>
#include <vector>

#include "plugin/frame/globals.h"
#include "plugin/store/cp932.h"
#include "plugin/store/folder_entries.h"
#include "plugin/store/interrupted_work.h"
#include "plugin/store/linked_files.h"
#include "plugin/store/store_lock.h"
#include "plugin/store/trace.h"

namespace {

constexpr DWORD kStoreIsBusy = ERROR_SHARING_VIOLATION;

DWORD DeleteFileOfTree(const std::string& path) {
    LinkNote note;
    const bool isNote = path.size() > sizeof kNoteSuffix - 1 && path.ends_with(kNoteSuffix) &&
                        ReadLinkNote(path.c_str(), &note) && IsPlainComponent(note.pooledName);
    if (!DeleteFileA(path.c_str())) return GetLastError();
    // The note goes first: one that outlived its file could come to speak of another's.
    if (isNote) DeleteFileA(JoinPath(ImageFolderPath(), note.pooledName).c_str());
    return ERROR_SUCCESS;
}

DWORD RemoveFolder(const std::string& path) {
    return RemoveDirectoryA(path.c_str()) ? ERROR_SUCCESS : GetLastError();
}

DWORD DeleteEntries(const std::string& directory, int depth) {
    std::vector<FolderEntry> entries;
    if (!ListFolder(directory, entries)) return GetLastError();
    for (const FolderEntry& entry : entries) {
        const std::string path = JoinPath(directory, entry.name);
        DWORD error = ERROR_SUCCESS;
        if (!entry.asDirectory)
            error = entry.state == EntryState::kLink
                        ? (DeleteFileA(path.c_str()) ? ERROR_SUCCESS : GetLastError())
                        : DeleteFileOfTree(path);
        else if (entry.state == EntryState::kLink)
            error = RemoveFolder(path);
        else if (entry.name[0] != '.' && depth < kDeepestTree) {
            error = DeleteEntries(path, depth + 1);
            const DWORD removal = RemoveFolder(path);
            if (removal != ERROR_SUCCESS) error = removal;
        }
        if (error != ERROR_SUCCESS) return error;
    }
    return ERROR_SUCCESS;
}

// The last component of a path and what is in front of it, without the backslash between.
void SplitLast(const std::string& path, std::string& folder, std::string& name) {
    size_t last = std::string::npos;
    for (size_t at = 0; at < path.size(); at += CharacterBytes(path.c_str() + at)) {
        if (path[at] == '\\') last = at;
    }
    folder = last == std::string::npos ? "" : path.substr(0, last);
    name = last == std::string::npos ? path : path.substr(last + 1);
}

int32_t CloseGapWithNote(const std::string& directoryInRoot, uint32_t number) {
    Intent intent;
    intent.kind = IntentKind::kRenumber;
    intent.number = static_cast<int32_t>(number);
    intent.directory = directoryInRoot;
    const std::string directory = PathInRoot(directoryInRoot);
    if (!NumbersFrom(directory, number, intent.directories)) {
        StoreFails(StoreTrouble::kDamaged);
        return -1;
    }
    if (intent.directories.empty()) {
        DeleteRemoved(directory);
        return 0;
    }
    if (!WriteIntent(intent)) return -1;
    return FinishWork(intent) == WorkEnd::kDone ? 0 : -1;
}

int32_t RemoveData(const char* groupName, int32_t number) {
    const StoreLock lock(kStoreExclusive);
    if (!lock.held() || !FinishInterruptedWork()) return -1;
    const std::string directory = DataDirectoryOf(groupName);
    if (directory.empty() || number < -1) {
        StoreFails(StoreTrouble::kRefused);
        return -1;
    }
    if (number >= 0) {
        const size_t root = PathInRoot("\\").size() - 1;
        return CloseGapWithNote(directory.substr(root), static_cast<uint32_t>(number));
    }
    if (StateOfEntry(directory) == EntryState::kMissing || DeleteTree(directory.c_str()) == 0) return 0;
    StoreFails(StoreTrouble::kDisk);
    return -1;
}

int32_t RenumberData(const std::string& path) {
    std::string folder, name;
    SplitLast(path, folder, name);
    const std::string root = PathInRoot("\\");
    const bool digits = !name.empty() && name.size() <= kMostNumberDigits &&
                        name.find_first_not_of("0123456789") == std::string::npos;
    if (!digits || !folder.starts_with(root)) return -1;
    const StoreLock lock(kStoreExclusive);
    if (!lock.held() || !FinishInterruptedWork()) return -1;
    const auto number = static_cast<uint32_t>(std::stoul(name));
    // Where the directory still stands there is no gap, and nothing can move.
    if (StateOfEntry(JoinPath(folder, std::to_string(number))) != EntryState::kMissing) return 0;
    return CloseGapWithNote(folder.substr(root.size() - 1), number);
}

int32_t MoveData(const char* oldGroup, int32_t oldNumber, const char* newGroup, int32_t newNumber) {
    const StoreLock lock(kStoreExclusive);
    if (!lock.held() || !FinishInterruptedWork()) return -1;
    const std::string oldData = DataDirectoryOf(oldGroup), newData = DataDirectoryOf(newGroup);
    if (oldData.empty() || newData.empty() || oldNumber < 0 || newNumber < 0) {
        StoreFails(StoreTrouble::kRefused);
        return -1;
    }
    const std::string from = RecordDirectoryOf(oldGroup, oldNumber);
    const std::string to = RecordDirectoryOf(newGroup, newNumber);
    if (from == to) return 0;
    const bool ready = MakeFolder(oldData) && MakeFolder(from) && MakeFolder(newData) &&
                       ClearPlaceOf(newData, static_cast<uint32_t>(newNumber));
    if (ready && MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_WRITE_THROUGH)) return 0;
    // A move that could not be brought to the disk is one all the same, and is taken back.
    if (ready && StateOfEntry(from) == EntryState::kMissing)
        MoveFileExA(to.c_str(), from.c_str(), MOVEFILE_WRITE_THROUGH);
    StoreFails(StoreTrouble::kDisk);
    return -1;
}

DWORD DeleteWholeTree(const std::string& directory) {
    const StoreLock lock(kStoreExclusive);
    if (!lock.held()) return kStoreIsBusy;
    const EntryState state = StateOfEntry(directory);
    DWORD error = state == EntryState::kDirectory ? DeleteEntries(directory, 1) : DWORD{ERROR_SUCCESS};
    const DWORD removal = RemoveFolder(directory);
    return removal != ERROR_SUCCESS ? removal : error;
}

} // namespace

int32_t RemoveRecordData(const char* groupName, int32_t number) {
    const TraceScope trace("RemoveRecordData");
    return WithinMemory([=] { return RemoveData(groupName, number); });
}

int32_t MoveRecordData(const char* oldGroup, int32_t oldNumber, const char* newGroup, int32_t newNumber) {
    const TraceScope trace("MoveRecordData");
    return WithinMemory([=] { return MoveData(oldGroup, oldNumber, newGroup, newNumber); });
}

int32_t RenumberRecordData(const char* path) {
    const TraceScope trace("RenumberRecordData");
    return WithinMemory([=] { return RenumberData(path); });
}

int32_t DeleteTree(const char* directory) {
    const TraceScope trace("DeleteTree");
    return WithinMemory([=] { return static_cast<int32_t>(DeleteWholeTree(directory)); });
}

int32_t DeleteDataFile(const char* path) {
    const TraceScope trace("DeleteDataFile");
    return WithinMemory([=] {
        const StoreLock lock(kStoreExclusive);
        return static_cast<int32_t>(lock.held() ? DeleteFileOfTree(path) : kStoreIsBusy);
    });
}
