#include "plugin/dialogs/folder_commands.h"

#include <cstdio>
#include <cstring>

#include "plugin/dialogs/dialog_texts.h"
#include "plugin/dialogs/folder_dialogs.h"
#include "plugin/dialogs/store_messages.h"
#include "plugin/frame/globals.h"
#include "plugin/panel/current_place.h"
#include "plugin/panel/panel_controls.h"
#include "plugin/panel/panel_layout.h"
#include "plugin/panel/panel_lists.h"
#include "plugin/store/cp932.h"
#include "plugin/store/data_directories.h"
#include "plugin/store/place_moves.h"
#include "plugin/store/place_names.h"
#include "plugin/store/places.h"
#include "plugin/store/record.h"
#include "plugin/store/record_index.h"
#include "plugin/store/store_names.h"

namespace {

enum MessageText : UINT { // Japanese numbers
    kDeleteGroupQuestion = 16251,
    kGroupRefused = 16252,
    kDeleteSubFolderQuestion = 16253,
    kFolderRefused = 16254,
    kDeleteFolderQuestion = 16255,
};

PlaceParts SelectedParts() {
    PlaceParts parts;
    std::memcpy(parts.folder, globals->selFolder, sizeof parts.folder);
    std::memcpy(parts.subFolder, globals->selSubFolder, sizeof parts.subFolder);
    std::memcpy(parts.group, globals->selGroup, sizeof parts.group);
    return parts;
}

void Tell(UINT text, const char* name, int32_t number) {
    char message[kMessageBytes];
    LoadMessage(text, name, number, message);
    TellUser(message);
}

bool Ask(UINT text, const char* name) {
    char question[kMessageBytes];
    LoadMessage(text, name, 0, question);
    return AskYesNo(question);
}

int32_t Beep(int32_t result) {
    PlainBeep();
    return result;
}

int32_t RefusePlace(UINT text, const char* path, bool showMessage) {
    PlainBeep();
    if (showMessage) Tell(text, path, -1);
    return -1;
}

bool IsTaken(const char* from, const char* to) {
    return StateOfNewPlaceInRoot(from, to) != PlaceState::kFree;
}

int32_t CheckGroupPlace(const PlaceParts& from, const PlaceParts& to, bool showMessage) {
    char path[kPlacePathBytes], newPath[kPlacePathBytes];
    GroupPathOfParts(from, kGroupSuffix, path);
    GroupPathOfParts(to, kGroupSuffix, newPath);
    if (!StaysBelowRoot(newPath) || !IsFitGroupName(to.group) || IsTaken(path, newPath))
        return RefusePlace(kGroupRefused, newPath, showMessage);
    GroupPathOfParts(from, kDataSuffix, path);
    GroupPathOfParts(to, kDataSuffix, newPath);
    return IsTaken(path, newPath) ? RefusePlace(kFolderRefused, newPath, showMessage) : 0;
}

// `from` is what is on its way to the new place; empty parts for something new.
int32_t CheckPlace(const PlaceParts& from, bool showMessage) {
    const PlaceParts to = SelectedParts();
    if (IsGroupPart(to.group)) return CheckGroupPlace(from, to, showMessage);
    if (to.folder[0] == '\0') return -1;
    char path[kPlacePathBytes], newPath[kPlacePathBytes];
    FolderPathOfParts(from, path);
    FolderPathOfParts(to, newPath);
    const char* name = to.subFolder[0] != '\0' ? to.subFolder : to.folder;
    const bool fits = StaysBelowRoot(newPath) && IsFitFolderName(name);
    return fits && !IsTaken(path, newPath) ? 0 : RefusePlace(kFolderRefused, newPath, showMessage);
}

// What the file system says of a move that failed is known to the store alone.
int32_t TellMoveFailed(UINT text, const char* path) {
    if (globals->storeTrouble != StoreTrouble::kRefused) {
        PlainBeep();
        TellStoreTrouble();
        return -1;
    }
    return RefusePlace(text, path, true);
}

void TellNotDeleted(int32_t error) {
    char message[kMessageBytes];
    std::snprintf(message, sizeof message,
                  globals->language == 0 ? "フォルダを全て削除することが出来ませんでした。[%d]"
                                         : "The folder could not be deleted as a whole. [%d]",
                  static_cast<int>(error));
    TellUser(message);
}

int32_t RefuseNewGroup(const char* savedName) {
    Tell(kGroupRefused, globals->aidbfname, -1);
    CopyText(globals->aidbfname, sizeof globals->aidbfname, savedName);
    return -1;
}

int32_t MakeNewGroup(HWND panel, const char* savedName) {
    SplitCurrentName();
    if (!IsFitPlaceOfGroup(globals->aidbfname)) return RefuseNewGroup(savedName);
    if (CheckNewPlaceFree(true) != 0) {
        CopyText(globals->aidbfname, sizeof globals->aidbfname, savedName);
        return -1;
    }
    if (MakeGroup(globals->aidbfname) != 0) return RefuseNewGroup(savedName);
    char newName[kNameBytes];
    CopyText(newName, sizeof newName, globals->aidbfname);
    globals->aidbfname[0] = '\0'; // so that the new name is a change
    SelectGroup(newName);
    RefreshAfterFolderChange(panel);
    return 0;
}

int32_t MoveOnDisk(const PlaceParts& from, const PlaceParts& to) {
    char path[kPlacePathBytes], newPath[kPlacePathBytes];
    if (from.group[0] == '\0') {
        FolderPathOfParts(from, path);
        FolderPathOfParts(to, newPath);
        return MoveFolder(path, newPath) == 0 ? 0 : TellMoveFailed(kFolderRefused, newPath);
    }
    char name[kNameBytes], newName[kNameBytes];
    NameOfParts(from, name);
    NameOfParts(to, newName);
    GroupPathOfParts(to, kGroupSuffix, newPath);
    return MoveGroup(name, newName) == 0 ? 0 : TellMoveFailed(kGroupRefused, newPath);
}

// False if the user doesn't want it, or gives no place; then `result` is the command's.
bool AskForNewPlace(const PlaceParts& from, int32_t& result) {
    result = 0;
    if (from.group[0] != '\0') {
        if (!RunGroupSetting()) return false;
        if (!IsGroupPart(globals->selGroup)) result = Beep(-1);
    } else {
        if (!RunFolderSetting()) return false;
        if (globals->selFolder[0] == '\0' && globals->selSubFolder[0] == '\0') result = Beep(-1);
    }
    return result == 0;
}

} // namespace

int32_t CheckNewPlaceFree(bool showMessage) {
    return CheckPlace({}, showMessage);
}

int32_t AddFolder(HWND panel, const char*) {
    if (!RunNewFolder()) return 0;
    globals->selGroup[0] = '\0';
    if (CheckNewPlaceFree(true) != 0) return -1;
    char path[kPlacePathBytes], fullPath[kFullPathBytes], root[kNameBytes];
    FolderPathOfParts(SelectedParts(), path);
    GetDatabaseRoot(root);
    JoinRootAndPath(root, path, fullPath);
    const DWORD error = CreateDirectoryA(fullPath, nullptr) ? DWORD{ERROR_SUCCESS} : GetLastError();
    if (error == ERROR_SUCCESS) RefreshAfterFolderChange(panel);
    globals->hasFolders = kNotKnown;
    if (error == ERROR_SUCCESS) return 0;
    PlainBeep();
    Tell(kFolderRefused, path, static_cast<int32_t>(error));
    return static_cast<int32_t>(error);
}

int32_t AddGroup(HWND panel, const char*) {
    char savedName[kNameBytes];
    CopyText(savedName, sizeof savedName, globals->aidbfname);
    SplitCurrentName();
    if (!RunNewGroup()) return 0;
    return MakeNewGroup(panel, savedName);
}

int32_t DeleteGroup(HWND panel, const char* name) {
    char group[kNameBytes];
    CopyText(group, sizeof group, name);
    if (!Ask(kDeleteGroupQuestion, group)) return 0;
    if (group[0] == '\0') return -1;
    const int32_t result = DeleteGroupAndData(group);
    if (GroupFileExists(group) != 0) {
        TellStoreTrouble();
        return result;
    }
    if (result != 0) {
        if (globals->storeTrouble == StoreTrouble::kDisk)
            TellNotDeleted(result); // its records are gone, what lay beside them isn't
        else
            TellStoreTrouble();
    }
    // Where there is no other group one of that name stays current, and nobody selects it anew.
    if (globals->findMode == kFindGroup) FreeHandle(globals->rihList);
    FreeHandle(globals->curRecord);
    globals->curRecordNo = -1;
    RefreshAfterFolderChange(panel);
    return result;
}

int32_t DeleteFolder(HWND panel, const char* name) {
    PlaceParts parts = PartsOfName(name);
    parts.group[0] = '\0';
    if (parts.folder[0] == '\0') return Beep(-1);
    const bool top = parts.subFolder[0] == '\0';
    if (!Ask(top ? kDeleteFolderQuestion : kDeleteSubFolderQuestion, top ? parts.folder : parts.subFolder))
        return 0;
    char path[kPlacePathBytes], fullPath[kFullPathBytes], root[kNameBytes];
    FolderPathOfParts(parts, path);
    if (!StaysBelowRoot(path)) return Beep(-1);
    GetDatabaseRoot(root);
    JoinRootAndPath(root, path, fullPath);
    const int32_t error = DeleteTree(fullPath);
    if (error != 0) {
        PlainBeep();
        TellNotDeleted(error);
    }
    globals->hasFolders = kNotKnown; // what could be deleted is gone in either case
    RefreshAfterFolderChange(panel);
    return error;
}

int32_t MoveOrRename(HWND panel, const char*) {
    SplitCurrentName();
    PlaceParts from = PartsOfName(globals->aidbfname);
    if (!IsGroupPart(from.group)) from.group[0] = '\0';
    int32_t result;
    if (!AskForNewPlace(from, result)) return result;
    if (CheckPlace(from, true) != 0) return -1;
    if (from.group[0] == '\0' && from.folder[0] == '\0') return Beep(-1);
    const PlaceParts to = SelectedParts();
    if (MoveOnDisk(from, to) != 0) return -1;
    FollowMove(from, to);
    RebuildFolderList(panel);
    RebuildGroupCombo(panel);
    globals->hasFolders = kNotKnown;
    return 0;
}

void RefreshAfterFolderChange(HWND panel) {
    RebuildFolderList(panel);
    RebuildGroupCombo(panel);
    IndexSelectedFolder();
    RebuildRecordList(panel, true);
}
