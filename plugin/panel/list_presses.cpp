#include "plugin/panel/list_presses.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

#include "plugin/dialogs/folder_commands.h"
#include "plugin/frame/globals.h"
#include "plugin/host/held_suites.h"
#include "plugin/panel/list_table.h"
#include "plugin/panel/paint_folders.h"
#include "plugin/panel/panel_commands.h"
#include "plugin/panel/panel_controls.h"
#include "plugin/panel/panel_lists.h"
#include "plugin/placement/action_names.h"
#include "plugin/store/store_names.h"

namespace {

constexpr int kArrowBox = 20;

/// Waits until the button is up or the pointer has left the press point; true if it has.
bool BecomesDrag(HWND control, POINT press) {
    while (GetAsyncKeyState(VK_LBUTTON) < 0) {
        const POINT pointer = PointerIn(control);
        if (std::abs(pointer.x - press.x) > kDragDistance || std::abs(pointer.y - press.y) > kDragDistance) {
            return true;
        }
    }
    return false;
}

bool IsSecondPress(bool changed) {
    return !changed && GetTickCount() - globals->lastClickTicks < kDoubleClickTime;
}

void PlaceRecord(int32_t row) {
    const HeldSuites suites;
    if (suites.held()) PlayInternalAction(kPlaceCommand, row);
}

/// Selects a row; whether it was another one before.
bool SelectChanged(HWND list, int32_t row) {
    const bool changed = GetSelectedRow(list) != row;
    SelectListRow(list, row);
    return changed;
}

/// Makes the name that a row stands for current, and shows its records.
void ShowPlaceOfRow(HWND panel, const char* text) {
    char name[kNameBytes];
    NameOfFolderRow(text, name);
    if (std::strcmp(name, globals->aidbfname) == 0) return;
    SelectGroup(name);
    IndexSelectedFolder();
    RebuildGroupCombo(panel);
    RebuildRecordList(panel, true);
}

void SetPlace(HWND panel) {
    char folder[kPartBytes], subFolder[kPartBytes], group[kPartBytes];
    SplitGroupName(globals->aidbfname, folder, subFolder, group);
    if (std::strcmp(group, kSearchResult) == 0) {
        MessageBeep(0);
        return;
    }
    const HeldSuites suites;
    if (suites.held()) MoveOrRename(panel, globals->aidbfname);
}

} // namespace

void PressRecordList(HWND panel) {
    if (globals->commandPending != 0) return;
    const HWND list = GetDlgItem(panel, kRecordList);
    const POINT press = PointerIn(list);
    const int32_t row = RowFromPoint(list, press);
    bool changed = false;
    if (row != GetSelectedRow(list)) changed = SelectChanged(list, row);
    if (BecomesDrag(list, press)) {
        if (row >= 0) PlaceRecord(row);
    } else if (row >= 0 && IsSecondPress(changed)) {
        globals->lastClickTicks = 0;
        EditRecordOfRow(panel, row);
    } else {
        globals->lastClickTicks = GetTickCount();
    }
}

bool IsOnArrow(const RECT& row, const char* text, int x) {
    char folder[kPartBytes], subFolder[kPartBytes], group[kPartBytes];
    SplitGroupName(text, folder, subFolder, group);
    const bool hasSubFolder = subFolder[0] != '\0' && std::strcmp(subFolder, kFolderRowPart) != 0;
    const bool hasGroup = group[0] != '\0' && std::strcmp(group, kFolderRowGroup) != 0;
    const int left = row.left + (!hasSubFolder ? 0 : hasGroup ? 2 * kArrowBox : kArrowBox);
    return x > left && x < left + kArrowBox;
}

void PressFolderList(HWND panel) {
    const HWND list = GetDlgItem(panel, kFolderList);
    const POINT press = PointerIn(list);
    const int32_t row = RowFromPoint(list, press);
    if (row < 0) return;
    const bool changed = SelectChanged(list, row);
    char text[kNameBytes];
    RECT place;
    GetListRowText(list, row, text, sizeof text);
    GetRowRect(list, row, &place);
    if (IsOnArrow(place, text, press.x) && ToggleExpanded(text) != 0) {
        RebuildFolderList(panel);
        globals->lastClickTicks = 0;
        return;
    }
    ShowPlaceOfRow(panel, text);
    if (IsSecondPress(changed)) {
        globals->lastClickTicks = 0;
        SetPlace(panel);
        return;
    }
    globals->lastClickTicks = GetTickCount();
}
