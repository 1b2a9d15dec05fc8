#include "plugin/panel/panel_commands.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "plugin/dialogs/dialog_texts.h"
#include "plugin/dialogs/entry_dialog.h"
#include "plugin/dialogs/folder_commands.h"
#include "plugin/dialogs/search_dialog.h"
#include "plugin/frame/globals.h"
#include "plugin/host/entry.h"
#include "plugin/host/held_suites.h"
#include "plugin/host/suites.h"
#include "plugin/panel/current_place.h"
#include "plugin/panel/delete_record.h"
#include "plugin/panel/list_presses.h"
#include "plugin/panel/list_table.h"
#include "plugin/panel/origin_cells.h"
#include "plugin/panel/panel_controls.h"
#include "plugin/panel/panel_layout.h"
#include "plugin/panel/panel_lists.h"
#include "plugin/placement/action_names.h"
#include "plugin/store/cp932.h"
#include "plugin/store/record.h"
#include "plugin/store/record_index.h"
#include "plugin/store/store_names.h"

namespace {

int32_t SelectedRecordRow(HWND panel) {
    return GetSelectedRow(GetDlgItem(panel, kRecordList));
}

void RegisterSelected(HWND panel) {
    if (globals->commandPending != 0) return;
    const HeldSuites suites;
    if (!suites.held() || globals->aidbfname[0] == '\0') return;
    PlayInternalAction(kRegisterCommand, SelectedRecordRow(panel));
}

void DeleteSelected(HWND panel) {
    const int32_t row = SelectedRecordRow(panel);
    if (row < 0) {
        MessageBeep(0);
        return;
    }
    const HeldSuites suites;
    if (suites.held()) AskAndDeleteRecord(panel, row);
}

void EditSelected(HWND panel) {
    const int32_t row = SelectedRecordRow(panel);
    if (row < 0) {
        MessageBeep(0);
        return;
    }
    EditRecordOfRow(panel, row);
}

void ChangeGroup(HWND panel) {
    char text[kNameBytes] = "";
    char name[kNameBytes];
    GetWindowTextA(GetDlgItem(panel, kGroupCombo), text, sizeof text);
    SplitCurrentName();
    JoinGroupName(globals->selFolder, globals->selSubFolder, text, name);
    if (text[0] == '\0' || SameText(name, globals->aidbfname)) return;
    SelectGroup(name);
    RebuildFolderList(panel);
    IndexSelectedFolder();
    RebuildRecordList(panel, true);
}

void SetOrigin(HWND panel) {
    const HWND control = GetDlgItem(panel, kOriginControl);
    RECT client{};
    GetClientRect(control, &client);
    const int cell = OriginCellAt(client, PointerIn(control));
    if (cell < 0 || cell == ControlNumber(control)) return;
    globals->originMode = static_cast<int16_t>(cell);
    ShowControlNumber(panel, kOriginControl, cell);
}

void NewFolder(HWND panel) {
    SplitCurrentName();
    const bool hasRoom = globals->selFolder[0] == '\0' || globals->selSubFolder[0] == '\0';
    if (hasRoom || SameText(globals->selGroup, kSearchResult)) {
        AddFolder(panel, globals->aidbfname);
    } else {
        PlainBeep();
    }
}

void DeleteGroupOrFolder(HWND panel) {
    SplitCurrentName();
    const bool isFolder = SameText(globals->selGroup, kFolderSelected);
    const bool isRoot = globals->selFolder[0] == '\0' && globals->selSubFolder[0] == '\0';
    if (SameText(globals->selGroup, kSearchResult) || (isFolder && isRoot)) {
        PlainBeep();
    } else if (isFolder) {
        DeleteFolder(panel, globals->aidbfname);
    } else {
        DeleteGroup(panel, globals->aidbfname);
    }
}

void SetGroupOrFolder(HWND panel) {
    // The group that is offered where there is none doesn't exist before something is stored in it.
    if (SameText(globals->aidbfname, kUntitledGroup) && GroupFileExists(globals->aidbfname) == 0) {
        AddGroup(panel, globals->aidbfname);
    } else {
        MoveOrRename(panel, globals->aidbfname);
    }
}

void ToggleFolderList(HWND panel) {
    globals->browseMode = globals->browseMode ? 0 : 1;
    ShowControlNumber(panel, kFolderListButton, globals->browseMode ? kFoldersShownIcon : kFoldersHiddenIcon);
    ApplyBrowseMode(panel);
}

/// Commands that need the suites from their beginning to their end.
void HandleFolderCommand(HWND panel, int control) {
    const HeldSuites suites;
    if (!suites.held()) return;
    switch (control) {
        case kNewFolderButton:
            NewFolder(panel);
            break;
        case kNewGroupButton:
            AddGroup(panel, globals->aidbfname);
            break;
        case kDeleteGroupButton:
            DeleteGroupOrFolder(panel);
            break;
        case kGroupSettingButton:
            SetGroupOrFolder(panel);
            break;
        case kSearchButton:
            SearchAndShow(panel);
            break;
        default:
            break;
    }
}

void Dispatch(HWND panel, int control) {
    switch (control) {
        case kNewButton:
            RegisterSelected(panel);
            break;
        case kDeleteButton:
            DeleteSelected(panel);
            break;
        case kSettingButton:
            EditSelected(panel);
            break;
        case kGroupCombo:
            ChangeGroup(panel);
            break;
        case kOriginControl:
            SetOrigin(panel);
            break;
        case kFolderListButton:
            ToggleFolderList(panel);
            break;
        case kRecordList:
            PressRecordList(panel);
            break;
        case kFolderList:
            PressFolderList(panel);
            break;
        default:
            HandleFolderCommand(panel, control);
            break;
    }
}

} // namespace

void HandlePanelCommand(HWND panel, int control) {
    if (globals->menuBusy) {
        MessageBeep(0);
        return;
    }
    globals->menuBusy = 1;
    const ClearedAtEnd busy(globals->menuBusy);
    Dispatch(panel, control);
}

void PlayInternalAction(int command, int32_t row) {
    globals->commandPending = command;
    globals->selectedRow = row;
    // The action clears it; a host that wouldn't play it must not leave the panel locked.
    if (ActionManagerSuite().PlayAction(kInternalAction, 1, nullptr) != kHostNoError) {
        globals->commandPending = 0;
    }
}

void EditRecordOfRow(HWND panel, int32_t row) {
    char group[kNameBytes];
    int32_t number = 0;
    GetRecordOfRow(row, group, &number);
    const HeldSuites suites;
    if (suites.held()) EditRecord(panel, group, number);
}

void SearchAndShow(HWND panel) {
    if (!RunSearchDialog()) return;
    RebuildFolderList(panel);
    RebuildGroupCombo(panel);
    RebuildRecordList(panel, true);
}
