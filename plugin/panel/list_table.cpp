#include "plugin/panel/list_table.h"

#include <cstring>

#include "plugin/frame/globals.h"
#include "plugin/panel/panel_controls.h"
#include "plugin/store/cp932.h"

namespace {

ListEntry* FindEntry(HWND control) {
    for (int32_t i = 0; i < globals->listCount; ++i) {
        if (globals->lists[i].window == control) return &globals->lists[i];
    }
    return nullptr;
}

ListEntry* FindOrMakeEntry(HWND control) {
    if (ListEntry* entry = FindEntry(control)) return entry;
    if (globals->listCount == kListEntries) return nullptr;
    ListEntry* entry = &globals->lists[globals->listCount++];
    *entry = {control, 0, -1, nullptr};
    return entry;
}

char* TextOfRow(const ListEntry& entry, int32_t row) {
    return reinterpret_cast<char*>(BlockBytes(entry.rows)) + size_t{kNameBytes} * static_cast<size_t>(row);
}

bool HasRow(const ListEntry* entry, int32_t row) {
    return entry && row >= 0 && row < entry->rowCount;
}

void RepaintRow(HWND control, int32_t row) {
    if (row < 0 || !IsWindowVisible(control)) return;
    RECT rectangle;
    GetRowRect(control, row, &rectangle);
    // A row paints one pixel beyond its edges, where its neighbours begin.
    ++rectangle.right;
    ++rectangle.bottom;
    InvalidateRect(control, &rectangle, FALSE);
}

} // namespace

void AddListRow(HWND control, const char* text) {
    ListEntry* entry = FindOrMakeEntry(control);
    if (!entry) return;
    const uint64_t bytes = uint64_t{kNameBytes} * (static_cast<uint64_t>(entry->rowCount) + 1);
    const MemoryHandle rows = ResizeHandle(entry->rows, bytes, kSmallGrain);
    if (!rows) return;
    entry->rows = rows;
    CopyText(TextOfRow(*entry, entry->rowCount), kNameBytes, text);
    ++entry->rowCount;
}

void ClearListRows(HWND control) {
    if (ListEntry* entry = FindEntry(control)) {
        FreeHandle(entry->rows);
        entry->rowCount = 0;
        entry->selected = -1;
    }
    if (IsWindowVisible(control)) InvalidateRect(control, nullptr, TRUE);
}

void DeleteListRow(HWND control, int32_t row) {
    ListEntry* entry = FindEntry(control);
    if (!HasRow(entry, row)) return;
    const auto behind = static_cast<size_t>(entry->rowCount - row - 1);
    std::memmove(TextOfRow(*entry, row), TextOfRow(*entry, row + 1), behind * kNameBytes);
    --entry->rowCount;
}

int32_t GetRowCount(HWND control) {
    const ListEntry* entry = FindEntry(control);
    return entry ? entry->rowCount : 0;
}

int32_t GetSelectedRow(HWND control) {
    const ListEntry* entry = FindEntry(control);
    return entry ? entry->selected : -1;
}

void SelectListRow(HWND control, int32_t row) {
    ListEntry* entry = FindEntry(control);
    if (!entry) return;
    const int32_t old = entry->selected;
    entry->selected = HasRow(entry, row) ? row : -1;
    RepaintRow(control, old);
    RepaintRow(control, entry->selected);
}

void GetListRowText(HWND control, int32_t row, char* text, int32_t size) {
    if (size <= 0) return;
    const ListEntry* entry = FindEntry(control);
    CopyText(text, static_cast<size_t>(size), HasRow(entry, row) ? TextOfRow(*entry, row) : "");
}

ListGrid GridOfList(HWND control) {
    const int id = GetDlgCtrlID(control);
    RECT client{};
    GetClientRect(control, &client);
    SCROLLINFO bar{};
    bar.cbSize = sizeof bar;
    bar.fMask = SIF_POS;
    if (id == kRecordList || id == kFolderList) {
        GetScrollInfo(GetDlgItem(GetParent(control), id + 1), SB_CTL, &bar);
    }
    return MakeListGrid(client, globals->toolMode, id == kRecordList, bar.nPos);
}

void GetRowRect(HWND control, int32_t row, RECT* rectangle) {
    *rectangle = CellRect(GridOfList(control), row);
}

int32_t RowFromPoint(HWND control, POINT point) {
    return RowAt(GridOfList(control), GetRowCount(control), point);
}

void FreeListTable() {
    globals->listCount = 0;
    for (ListEntry& entry : globals->lists) {
        FreeHandle(entry.rows);
        entry = {};
    }
}
