#include "plugin/dialogs/folder_dialogs.h"

#include <windows.h>

#include <cstring>

#include "plugin/dialogs/dialog_texts.h"
#include "plugin/dialogs/place_controls.h"
#include "plugin/frame/globals.h"
#include "plugin/host/entry.h"
#include "plugin/panel/current_place.h"
#include "plugin/store/cp932.h"
#include "plugin/store/places.h"
#include "plugin/store/store_names.h"

namespace {

constexpr UINT kFolderSettingDialog = 16147;
constexpr UINT kGroupSettingDialog = 16148;
constexpr UINT kNewFolderDialog = 16149;
constexpr UINT kNewGroupDialog = 16150;

enum PlaceControl : int {
    kTakePlace = 1,
    kCancelPlace = 2,
    kPlaceName = 5,
    kPlaceFolder = 8,
    kPlaceSubFolder = 10
};
constexpr PlaceLists kGroupPlaceLists = {kPlaceFolder, kPlaceSubFolder, 0};

void ReadName(HWND dialog, char* part) {
    ReadText(dialog, kPlaceName, part, kMostPartBytes);
}

// A second-level folder stands as its parent and its name, a top folder as "None" and its name.
void ShowFolder(HWND dialog) {
    SplitCurrentName();
    const bool below = globals->selSubFolder[0] != '\0';
    FillFolderList(dialog, kPlaceFolder, below ? globals->selFolder : "");
    SetDlgItemTextA(dialog, kPlaceName, below ? globals->selSubFolder : globals->selFolder);
}

void ShowParents(HWND dialog) {
    SplitCurrentName();
    FillFolderList(dialog, kPlaceFolder, globals->selFolder);
}

void TakeFolder(HWND dialog) {
    ReadFolderOfList(dialog, kPlaceFolder, globals->selFolder);
    ReadName(dialog, globals->selSubFolder);
    if (globals->selFolder[0] != '\0') return;
    std::strcpy(globals->selFolder, globals->selSubFolder);
    globals->selSubFolder[0] = '\0';
}

void ShowGroupPlace(HWND dialog) {
    FillFolderList(dialog, kPlaceFolder, globals->selFolder);
    FillSubFolderList(dialog, kGroupPlaceLists, false);
}

void ShowGroup(HWND dialog) {
    ShowGroupPlace(dialog);
    SetDlgItemTextA(dialog, kPlaceName, globals->selGroup);
}

void TakeGroup(HWND dialog) {
    ReadFolderOfList(dialog, kPlaceFolder, globals->selFolder);
    ReadFolderOfList(dialog, kPlaceSubFolder, globals->selSubFolder);
    ReadName(dialog, globals->selGroup);
    if (globals->selFolder[0] == '\0') globals->selSubFolder[0] = '\0';
}

// A name that doesn't fit stands alone and in no folder, so that the caller sees it: joined, it would be
// taken apart at other places than where it was put together.
void TakeNewGroup(HWND dialog) {
    char folder[kPartBytes], subFolder[kPartBytes], group[kPartBytes];
    ReadFolderOfList(dialog, kPlaceFolder, folder);
    ReadFolderOfList(dialog, kPlaceSubFolder, subFolder);
    ReadName(dialog, group);
    const char* name = group;
    while (*name == '\\') ++name;
    if (name != group || !IsFitGroupName(group))
        CopyText(globals->aidbfname, sizeof globals->aidbfname, name);
    else
        JoinGroupName(folder, subFolder, group, globals->aidbfname);
}

/// What tells the four dialogs apart.
struct PlaceDialog {
    void (*show)(HWND dialog);
    void (*take)(HWND dialog);
    bool hasSubFolders;
};

// The name is what the user came for, so it has the focus.
void Open(HWND dialog, const PlaceDialog& kind) {
    CentreDialog(dialog);
    kind.show(dialog);
    SendDlgItemMessageA(dialog, kPlaceName, EM_SETSEL, 0, -1);
    SetFocus(GetDlgItem(dialog, kPlaceName));
}

void OnPlaceCommand(HWND dialog, int control, const PlaceDialog& kind) {
    if (control == kPlaceFolder && kind.hasSubFolders) FillSubFolderList(dialog, kGroupPlaceLists, true);
    // So that it stays when the list above is only looked at.
    if (control == kPlaceSubFolder && kind.hasSubFolders)
        ReadFolderOfList(dialog, kPlaceSubFolder, globals->selSubFolder);
    if (control == kTakePlace) kind.take(dialog);
    if (control == kTakePlace || control == kCancelPlace) EndDialog(dialog, control);
}

INT_PTR Handle(HWND dialog, UINT message, WPARAM wParam, const PlaceDialog& kind) {
    switch (message) {
        case WM_INITDIALOG:
            Open(dialog, kind);
            return FALSE; // the focus is set
        case WM_COMMAND:
            OnPlaceCommand(dialog, LOWORD(wParam), kind);
            return TRUE;
        default:
            return FALSE;
    }
}

INT_PTR CALLBACK FolderSettingProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
    return Handle(dialog, message, wParam, {ShowFolder, TakeFolder, false});
}

INT_PTR CALLBACK NewFolderProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
    return Handle(dialog, message, wParam, {ShowParents, TakeFolder, false});
}

INT_PTR CALLBACK GroupSettingProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
    return Handle(dialog, message, wParam, {ShowGroup, TakeGroup, true});
}

INT_PTR CALLBACK NewGroupProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
    return Handle(dialog, message, wParam, {ShowGroupPlace, TakeNewGroup, true});
}

} // namespace

bool RunFolderSetting() {
    return RunDialog(kFolderSettingDialog, DialogEntry<FolderSettingProc>) == kTakePlace;
}

bool RunGroupSetting() {
    return RunDialog(kGroupSettingDialog, DialogEntry<GroupSettingProc>) == kTakePlace;
}

bool RunNewFolder() {
    return RunDialog(kNewFolderDialog, DialogEntry<NewFolderProc>) == kTakePlace;
}

bool RunNewGroup() {
    return RunDialog(kNewGroupDialog, DialogEntry<NewGroupProc>) == kTakePlace;
}
