#include "plugin/store/places.h"

#include <windows.h>

#include <cstring>
#include <initializer_list>
#include <new>
#include <string>
#include <vector>

#include "plugin/frame/globals.h"
#include "plugin/store/cp932.h"
#include "plugin/store/data_directories.h"
#include "plugin/store/folder_entries.h"
#include "plugin/store/group_file.h"
#include "plugin/store/interrupted_work.h"
#include "plugin/store/linked_files.h"
#include "plugin/store/store_names.h"
#include "plugin/store/trace.h"

namespace {

// The backslash in front of the last component.
size_t LastBackslash(const std::string& path) {
    size_t last = std::string::npos;
    for (size_t at = 0; at < path.size(); at += CharacterBytes(path.c_str() + at)) {
        if (path[at] == '\\') last = at;
    }
    return last;
}

bool EndsInBlankOrDot(const char* name) {
    char last = '\0';
    for (; *name != '\0'; name += CharacterBytes(name)) last = CharacterBytes(name) == 1 ? *name : '\0';
    return last == ' ' || last == '.';
}

bool IsOneOf(const char* name, std::initializer_list<const char*> words) {
    for (const char* word : words) {
        if (std::strcmp(name, word) == 0) return true;
    }
    return false;
}

PlaceState StateByListing(const std::string& path) {
    const size_t last = LastBackslash(path);
    std::vector<FolderEntry> entries;
    if (last == std::string::npos || !ListFolder(path.substr(0, last), entries)) return PlaceState::kUnknown;
    for (const FolderEntry& entry : entries) {
        if (entry.name == path.substr(last + 1)) return PlaceState::kTaken;
    }
    return PlaceState::kFree;
}

int32_t Refuse(StoreTrouble trouble) {
    StoreFails(trouble);
    return -1;
}

int32_t Make(const char* groupName) {
    if (!IsFitPlaceOfGroup(groupName)) return Refuse(StoreTrouble::kRefused);
    const StoreLock lock(kStoreShared);
    if (!lock.held()) return -1;
    char path[kFullPathBytes];
    GroupFilePath(groupName, path);
    const HANDLE file = CreateFileA(path, GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return Refuse(GetLastError() == ERROR_FILE_EXISTS ? StoreTrouble::kRefused : StoreTrouble::kDisk);
    CloseHandle(file);
    return 0;
}

int32_t Delete(const char* groupName) {
    if (!StaysBelowRoot(groupName)) return Refuse(StoreTrouble::kRefused);
    const StoreLock lock(kStoreExclusive);
    if (!lock.held() || !FinishInterruptedWork()) return -1;
    char path[kFullPathBytes];
    GroupFilePath(groupName, path);
    const EntryState state = StateOfEntry(path);
    if (state != EntryState::kMissing && !DeleteFileA(path)) {
        const bool open = GetLastError() == ERROR_SHARING_VIOLATION;
        return Refuse(open ? StoreTrouble::kBusy : StoreTrouble::kDisk);
    }
    return RemoveRecordData(groupName, -1);
}

} // namespace

bool StaysBelowRoot(std::string_view path) {
    if (path.starts_with('\\')) path.remove_prefix(1);
    size_t begin = 0;
    for (size_t at = 0; at <= path.size();
         at += at < path.size() && IsLeadByte(static_cast<uint8_t>(path[at])) ? 2 : 1) {
        if (at < path.size() && path[at] != '\\') continue;
        if (!IsPlainComponent(path.substr(begin, at - begin))) return false;
        begin = at + 1;
    }
    return true;
}

bool IsFitFolderName(const char* name) {
    return IsPlainComponent(name) && !IsHiddenFolderName(name) && !EndsInBlankOrDot(name) &&
           !IsOneOf(name, {kNoFolder, kFolderRowPart, kFolderRowGroup});
}

bool IsFitGroupName(const char* name) {
    return IsPlainComponent(name) && FindPart(name, kGroupSuffix) == nullptr &&
           !IsOneOf(name, {kSearchResult, kFolderSelected, kFolderRowGroup});
}

bool IsFitPlaceOfGroup(const char* groupName) {
    char folder[kPartBytes], subFolder[kPartBytes], group[kPartBytes];
    SplitGroupName(groupName, folder, subFolder, group);
    char joined[kNameBytes];
    JoinGroupName(folder, subFolder, group, joined);
    // A name that says more than its parts has empty ones, or too many.
    return std::strcmp(joined, groupName) == 0 && IsFitGroupName(group) &&
           (folder[0] == '\0' || IsPlainComponent(folder)) &&
           (subFolder[0] == '\0' || IsPlainComponent(subFolder));
}

PlaceState StateOfNewPlace(const char* oldPath, const char* newPath) {
    const EntryState state = StateOfEntry(newPath);
    if (state == EntryState::kMissing) return PlaceState::kFree;
    if (state == EntryState::kUnknown) return PlaceState::kUnknown;
    const bool caseAlone = CompareStoreNames(oldPath, newPath) == 0 && std::strcmp(oldPath, newPath) != 0;
    return caseAlone ? StateByListing(newPath) : PlaceState::kTaken;
}

PlaceState StateOfNewPlaceInRoot(const char* oldPath, const char* newPath) {
    try {
        return StateOfNewPlace(PathInRoot(oldPath).c_str(), PathInRoot(newPath).c_str());
    } catch (const std::bad_alloc&) {
        return PlaceState::kUnknown;
    }
}

int32_t MakeGroup(const char* groupName) {
    const TraceScope trace("MakeGroup");
    return WithinMemory([=] { return Make(groupName); });
}

int32_t DeleteGroupAndData(const char* groupName) {
    const TraceScope trace("DeleteGroupAndData");
    return WithinMemory([=] { return Delete(groupName); });
}
