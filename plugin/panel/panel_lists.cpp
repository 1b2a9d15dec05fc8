#include "plugin/panel/panel_lists.h"

#include <cstdio>
#include <cstring>

#include "plugin/frame/globals.h"
#include "plugin/panel/current_place.h"
#include "plugin/panel/list_table.h"
#include "plugin/panel/panel_controls.h"
#include "plugin/panel/panel_layout.h"
#include "plugin/store/cp932.h"
#include "plugin/store/memory_handle.h"
#include "plugin/store/record.h"
#include "plugin/store/record_index.h"
#include "plugin/store/store_names.h"
#include "plugin/store/store_tree.h"

namespace {

/// The entries of the combo while it is filled.
struct ComboFilling {
    HWND combo;
    int count;
    int selected; ///< -1: none yet
};

void InsertAtEnd(ComboFilling& filling, const char* text) {
    SendMessageA(filling.combo, CB_INSERTSTRING, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(text));
    if (filling.selected < 0 && SameText(text, globals->selGroup)) filling.selected = filling.count;
    ++filling.count;
}

void InsertGroups(ComboFilling& filling) {
    char root[kNameBytes];
    GetDatabaseRoot(root);
    HandleOwner rows(ListGroups(root, globals->selFolder, globals->selSubFolder));
    for (int32_t i = 0; i < RowCount(rows.get()); ++i) {
        char folder[kPartBytes], subFolder[kPartBytes], group[kPartBytes];
        SplitGroupName(RowText(rows.get(), i), folder, subFolder, group);
        if (!SameText(folder, globals->selFolder) || !SameText(subFolder, globals->selSubFolder)) continue;
        InsertAtEnd(filling, group);
    }
}

} // namespace

void RebuildRecordList(HWND panel, bool reset) {
    const HWND list = GetDlgItem(panel, kRecordList);
    if (reset) ClearListRows(list);
    const auto count = static_cast<int32_t>(CountRecords(globals->aidbfname));
    for (int32_t row = GetRowCount(list); row < count; ++row) {
        char number[16];
        std::snprintf(number, sizeof number, "%d", row + 1);
        AddListRow(list, number);
    }
    UpdateScrollRange(panel, kRecordList, true);
    InvalidateRect(list, nullptr, FALSE);
}

void ListRecordsAnew(HWND panel) {
    if (globals->findMode == kFindGroup) FreeHandle(globals->rihList);
    IndexSelectedFolder();
    RebuildRecordList(panel, true);
}

void RebuildGroupCombo(HWND panel) {
    ComboFilling filling{GetDlgItem(panel, kGroupCombo), 0, -1};
    SendMessageA(filling.combo, CB_RESETCONTENT, 0, 0);
    SplitCurrentName();
    InsertGroups(filling);
    if (filling.count == 0) InsertAtEnd(filling, kUntitledGroup);
    const int lastGroup = filling.count - 1;
    InsertAtEnd(filling, SameText(globals->selGroup, kFolderSelected) ? kFolderSelected : kSearchResult);
    const int selected = filling.selected < 0 ? lastGroup : filling.selected;
    SendMessageA(filling.combo, CB_SETCURSEL, static_cast<WPARAM>(selected), 0);
}

void IndexSelectedFolder() {
    SplitCurrentName();
    if (!SameText(globals->selGroup, kFolderSelected)) return;
    char root[kNameBytes];
    GetDatabaseRoot(root);
    if (root[0] != '\0') BuildFolderIndex(root, globals->selFolder, globals->selSubFolder);
}

void SelectRecordRow(HWND panel, int32_t row) {
    SelectListRow(GetDlgItem(panel, kRecordList), row);
    UpdateScrollRange(panel, kRecordList, false);
}

namespace {

/// Takes a row out of `expandedRows`, which has one.
void CloseRow(int32_t row) {
    const auto behind = static_cast<size_t>(globals->expandedCount - row - 1);
    std::memmove(globals->expandedRows[row], globals->expandedRows[row + 1],
                 behind * sizeof globals->expandedRows[0]);
    --globals->expandedCount;
}

/// The place of a name in `expandedRows`; -1 if it isn't there.
int32_t FindExpanded(const char* name) {
    for (int32_t row = 0; row < globals->expandedCount; ++row) {
        if (SameText(globals->expandedRows[row], name)) return row;
    }
    return -1;
}

} // namespace

int32_t ToggleExpanded(const char* name) {
    if (globals->expandedCount < 0) globals->expandedCount = 0;
    if (const int32_t row = FindExpanded(name); row >= 0) {
        CloseRow(row);
        return 1;
    }
    char folder[kPartBytes], subFolder[kPartBytes], group[kPartBytes];
    SplitGroupName(name, folder, subFolder, group);
    if (!SameText(group, kFolderSelected) && !SameText(group, kFolderRowGroup)) return 0;
    if (globals->expandedCount >= kExpandedRows) CloseRow(0);
    CopyText(globals->expandedRows[globals->expandedCount++], kNameBytes, name);
    return 1;
}

int32_t IsExpanded(const char* name) {
    return FindExpanded(name) >= 0;
}
