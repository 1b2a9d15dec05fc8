#include "plugin/dialogs/folder_dialogs.h"

#include <windows.h>

#include <cstring>

#include "plugin/dialogs/dialog_texts.h"
#include "plugin/dialogs/place_controls.h"
#include "plugin/frame/globals.h"
#include "plugin/panel/current_place.h"
#include "plugin/store/cp932.h"
#include "plugin/store/places.h"
#include "plugin/store/store_names.h"

namespace {

constexpr UINT kFolderSetting = 16147;
constexpr UINT kGroupSetting = 16148;
constexpr UINT kNewFolder = 16149;
constexpr UINT kNewGroup = 16150;

enum PlaceControl : int { kTake = 1, kCancel = 2, kName = 5, kFolder = 8, kSubFolder = 10 };
constexpr PlaceLists kLists = {kFolder, kSubFolder, 0};
constexpr size_t kMostPartBytes = 78;

void ReadName(HWND dialog, char* part) {
    ReadText(dialog, kName, part, kMostPartBytes);
}

// A second-level folder stands as its parent and its name, a top folder as "None" and its name.
void ShowFolder(HWND dialog) {
    SplitCurrentName();
    const bool below = globals->selSubFolder[0] != '\0';
    FillFolderList(dialog, kFolder, below ? globals->selFolder : "");
    SetDlgItemTextA(dialog, kName, below ? globals->selSubFolder : globals->selFolder);
}

void ShowParents(HWND dialog) {
    SplitCurrentName();
    FillFolderList(dialog, kFolder, globals->selFolder);
}

void TakeFolder(HWND dialog) {
    ReadFolderOfList(dialog, kFolder, globals->selFolder);
    ReadName(dialog, globals->selSubFolder);
    if (globals->selFolder[0] != '\0') return;
    std::strcpy(globals->selFolder, globals->selSubFolder);
    globals->selSubFolder[0] = '\0';
}

void ShowPlace(HWND dialog) {
    FillFolderList(dialog, kFolder, globals->selFolder);
    FillSubFolderList(dialog, kLists, false);
}

void ShowGroup(HWND dialog) {
    ShowPlace(dialog);
    SetDlgItemTextA(dialog, kName, globals->selGroup);
}

void TakeGroup(HWND dialog) {
    ReadFolderOfList(dialog, kFolder, globals->selFolder);
    ReadFolderOfList(dialog, kSubFolder, globals->selSubFolder);
    ReadName(dialog, globals->selGroup);
    if (globals->selFolder[0] == '\0') globals->selSubFolder[0] = '\0';
}

// A name that doesn't fit stands alone and in no folder, so that the caller sees it: joined, it would be
// taken apart at other places than where it was put together.
void TakeNewGroup(HWND dialog) {
    char folder[kPartBytes], subFolder[kPartBytes], group[kPartBytes];
    ReadFolderOfList(dialog, kFolder, folder);
    ReadFolderOfList(dialog, kSubFolder, subFolder);
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
    SendDlgItemMessageA(dialog, kName, EM_SETSEL, 0, -1);
    SetFocus(GetDlgItem(dialog, kName));
}

void OnCommand(HWND dialog, int control, const PlaceDialog& kind) {
    if (control == kFolder && kind.hasSubFolders) FillSubFolderList(dialog, kLists, true);
    if (control == kTake) kind.take(dialog);
    if (control == kTake || control == kCancel) EndDialog(dialog, control);
}

INT_PTR Handle(HWND dialog, UINT message, WPARAM wParam, const PlaceDialog& kind) {
    switch (message) {
        case WM_INITDIALOG:
            Open(dialog, kind);
            return FALSE; // the focus is set
        case WM_COMMAND:
            OnCommand(dialog, LOWORD(wParam), kind);
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
    return Handle(dialog, message, wParam, {ShowPlace, TakeNewGroup, true});
}

} // namespace

bool RunFolderSetting() {
    return RunDialog(kFolderSetting, FolderSettingProc) == kTake;
}

bool RunGroupSetting() {
    return RunDialog(kGroupSetting, GroupSettingProc) == kTake;
}

bool RunNewFolder() {
    return RunDialog(kNewFolder, NewFolderProc) == kTake;
}

bool RunNewGroup() {
    return RunDialog(kNewGroup, NewGroupProc) == kTake;
}
