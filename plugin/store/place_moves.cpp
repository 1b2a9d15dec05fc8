#include "plugin/store/place_moves.h"

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

#include "plugin/store/cp932.h"
#include "plugin/store/folder_entries.h"
#include "plugin/store/group_file.h"
#include "plugin/store/places.h"
#include "plugin/store/store_names.h"
#include "plugin/store/trace.h"

namespace {

enum class Where { kOld, kNew, kBoth, kNowhere, kUnknown };

std::string GroupFilePathOf(const std::string& group) {
    char path[kFullPathBytes];
    GroupFilePath(group.c_str(), path);
    return path;
}

// Also where the two names are one to the file system: there `from` is asked for by its exact name.
Where WhereIs(const std::string& from, const std::string& to) {
    const PlaceState atNew = StateOfNewPlace(from.c_str(), to.c_str());
    const PlaceState atOld = StateOfNewPlace(to.c_str(), from.c_str());
    if (atNew == PlaceState::kUnknown || atOld == PlaceState::kUnknown) return Where::kUnknown;
    if (atOld == PlaceState::kTaken) return atNew == PlaceState::kTaken ? Where::kBoth : Where::kOld;
    return atNew == PlaceState::kTaken ? Where::kNew : Where::kNowhere;
}

// A move that could not be brought to the disk may be one all the same: what counts is where it stands.
Where MoveEntry(const std::string& from, const std::string& to) {
    if (!MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_WRITE_THROUGH))
        StoreFails(GetLastError() == ERROR_SHARING_VIOLATION ? StoreTrouble::kBusy : StoreTrouble::kDisk);
    return WhereIs(from, to);
}

WorkEnd TakeDataBack(const Intent& intent, const std::string& data, const std::string& newData) {
    if (!intent.hasData) return WorkEnd::kUndone;
    switch (WhereIs(data, newData)) {
        case Where::kOld:
        case Where::kBoth: // what stands at the new place is another's
        case Where::kNowhere:
            return WorkEnd::kUndone;
        case Where::kNew:
            return MoveEntry(newData, data) == Where::kNew ? WorkEnd::kUndone : WorkEnd::kStuck;
        case Where::kUnknown:
            break;
    }
    return WorkEnd::kStuck;
}

bool Fits(const char* path, const char* newPath) {
    return path[0] != '\0' && newPath[0] != '\0' && StaysBelowRoot(path) && StaysBelowRoot(newPath);
}

// False, with the reason, unless something stands at the old place and nothing at the new one.
bool IsMoveOpen(const std::string& from, const std::string& to) {
    switch (WhereIs(from, to)) {
        case Where::kOld:
            return true;
        case Where::kUnknown:
            return StoreFails(StoreTrouble::kDisk);
        default:
            return StoreFails(StoreTrouble::kRefused);
    }
}

int32_t MoveWithNote(const char* groupName, const char* newGroupName) {
    if (!Fits(groupName, newGroupName) || !IsFitPlaceOfGroup(newGroupName)) {
        StoreFails(StoreTrouble::kRefused);
        return -1;
    }
    const StoreLock lock(kStoreExclusive);
    if (!lock.held() || !FinishInterruptedWork()) return -1;
    Intent intent;
    intent.kind = IntentKind::kMoveGroup;
    intent.group = groupName;
    intent.newGroup = newGroupName;
    const std::string data = DataDirectoryOf(groupName), newData = DataDirectoryOf(newGroupName);
    if (!IsMoveOpen(GroupFilePathOf(groupName), GroupFilePathOf(newGroupName))) return -1;
    intent.hasData = WhereIs(data, newData) != Where::kNowhere;
    if (intent.hasData && !IsMoveOpen(data, newData)) return -1;
    if (!WriteIntent(intent)) return -1;
    return FinishWork(intent) == WorkEnd::kDone ? 0 : -1;
}

size_t DepthOf(std::string_view path) {
    size_t depth = 0;
    for (size_t at = 0; at < path.size(); ++at) {
        if (path[at] == '\\') ++depth;
        if (IsLeadByte(static_cast<uint8_t>(path[at]))) ++at;
    }
    return depth;
}

bool HasSubFolders(const std::string& directory, bool& has) {
    std::vector<FolderEntry> entries;
    if (!ListFolder(directory, entries)) return StoreFails(StoreTrouble::kDisk);
    has = false;
    for (const FolderEntry& entry : entries)
        has = has || (entry.asDirectory && !IsHiddenFolderName(entry.name.c_str()));
    return true;
}

int32_t MoveDirectory(const char* path, const char* newPath) {
    const std::string from = PathInRoot(path), to = PathInRoot(newPath);
    const bool intoItself = std::string_view(newPath).starts_with(std::string(path) + '\\');
    if (!Fits(path, newPath) || from.empty() || intoItself) {
        StoreFails(StoreTrouble::kRefused);
        return -1;
    }
    const StoreLock lock(kStoreExclusive);
    if (!lock.held() || !FinishInterruptedWork() || !IsMoveOpen(from, to)) return -1;
    bool has = false;
    if (DepthOf(newPath) > DepthOf(path) && !HasSubFolders(from, has)) return -1;
    if (has) {
        StoreFails(StoreTrouble::kRefused);
        return -1;
    }
    return MoveEntry(from, to) == Where::kNew ? 0 : -1;
}

} // namespace

WorkEnd FinishGroupMove(const Intent& intent) {
    const std::string file = GroupFilePathOf(intent.group), newFile = GroupFilePathOf(intent.newGroup);
    const std::string data = DataDirectoryOf(intent.group.c_str());
    const std::string newData = DataDirectoryOf(intent.newGroup.c_str());
    const Where where = WhereIs(file, newFile);
    if (where == Where::kUnknown) return WorkEnd::kStuck;
    if (where == Where::kNew) return WorkEnd::kDone; // the file goes last
    if (where != Where::kOld) return TakeDataBack(intent, data, newData);
    if (intent.hasData) {
        Where whereData = WhereIs(data, newData);
        if (whereData == Where::kOld) whereData = MoveEntry(data, newData);
        if (whereData == Where::kUnknown) return WorkEnd::kStuck;
        if (whereData != Where::kNew) return TakeDataBack(intent, data, newData);
    }
    const Where moved = MoveEntry(file, newFile);
    if (moved == Where::kNew) return WorkEnd::kDone;
    return moved == Where::kUnknown ? WorkEnd::kStuck : TakeDataBack(intent, data, newData);
}

int32_t MoveGroup(const char* groupName, const char* newGroupName) {
    const TraceScope trace("MoveGroup");
    return WithinMemory([=] { return MoveWithNote(groupName, newGroupName); });
}

int32_t MoveFolder(const char* path, const char* newPath) {
    const TraceScope trace("MoveFolder");
    return WithinMemory([=] { return MoveDirectory(path, newPath); });
}
