#include "plugin/panel/paint_folders.h"

#include <cstring>

#include "plugin/dialogs/dialog_texts.h"
#include "plugin/frame/globals.h"
#include "plugin/host/held_suites.h"
#include "plugin/panel/list_paint.h"
#include "plugin/panel/list_table.h"
#include "plugin/panel/panel_lists.h"
#include "plugin/panel/text_cut.h"
#include "plugin/store/cp932.h"
#include "plugin/store/store_names.h"

namespace {

constexpr int kIndent = 20;
constexpr int kClosedIcon = 16264, kOpenIcon = 16265, kGroupIcon = 16266;
constexpr int kBesideText = 25; ///< pixels of a row that its text leaves free

struct FolderIcons {
    HICON closed, open, group;
};

FolderIcons LoadFolderIcons() {
    const HeldSuites suites;
    if (!suites.held()) return {};
    const HINSTANCE instance = ModuleInstance();
    return {LoadIconA(instance, MAKEINTRESOURCEA(kClosedIcon)),
            LoadIconA(instance, MAKEINTRESOURCEA(kOpenIcon)),
            LoadIconA(instance, MAKEINTRESOURCEA(kGroupIcon))};
}

HICON IconOfRow(const FolderIcons& icons, const FolderRowLook& look, const char* text) {
    if (look.isGroup) return icons.group;
    return IsExpanded(text) ? icons.open : icons.closed;
}

void PaintRow(ListPaint& paint, const FolderIcons& icons, const RECT& row, const char* text, bool selected) {
    const RECT line = {row.left, row.top, row.right, row.bottom + 1};
    paint.Row(line, selected);
    const FolderRowLook look = LookOfFolderRow(text);
    RECT square = SquareOfLine(line);
    OffsetRect(&square, look.indent, 0);
    if (const HICON icon = IconOfRow(icons, look, text)) {
        const POINT corner = CentredIcon(square);
        DrawIcon(paint.context(), corner.x, corner.y, icon);
    }
    const ShownText shown = CutToWidth(paint.context(), look.shown, row.right - row.left - kBesideText);
    SetTextColor(paint.context(), RowTextColor(selected));
    TextOutA(paint.context(), square.right + 5, square.top + 3, shown.bytes, shown.count);
}

void PaintRows(HDC context, HWND control, const ListGrid& grid, RowRange rows, int32_t selected) {
    ListPaint paint(context);
    const FolderIcons icons = LoadFolderIcons();
    for (int32_t row = rows.first; row < rows.end; ++row) {
        char text[kNameBytes];
        GetListRowText(control, row, text, sizeof text);
        PaintRow(paint, icons, CellRect(grid, row), text, row == selected);
    }
}

} // namespace

FolderRowLook LookOfFolderRow(const char* text) {
    char folder[kPartBytes], subFolder[kPartBytes], group[kPartBytes];
    SplitGroupName(text, folder, subFolder, group);
    const bool hasFolder = folder[0] != '\0';
    const bool hasSubFolder = subFolder[0] != '\0' && std::strcmp(subFolder, kFolderRowPart) != 0;
    const bool hasGroup = group[0] != '\0' && std::strcmp(group, kFolderRowGroup) != 0;
    FolderRowLook look{};
    look.isGroup = !hasFolder || hasGroup;
    if (hasFolder) look.indent = kIndent * ((hasSubFolder ? 1 : 0) + (hasGroup ? 1 : 0));
    const char* shown = look.isGroup ? group : hasSubFolder ? subFolder : folder;
    CopyText(look.shown, sizeof look.shown, shown);
    return look;
}

void PaintFolderList(HDC context, HWND control) {
    const ListGrid grid = GridOfList(control);
    FillWith(context, grid.client, kFolderListGrey);
    PaintRows(context, control, grid, RowsInSight(grid, GetRowCount(control)), GetSelectedRow(control));
}

void PaintFolderRow(HDC context, HWND control, int32_t row, bool selected) {
    const ListGrid grid = GridOfList(control);
    const RowRange rows = RowsInSight(grid, row + 1);
    if (row < rows.first || row >= rows.end) return;
    PaintRows(context, control, grid, {row, row + 1}, selected ? row : -1);
}
