#include "plugin/panel/paint_controls.h"

#include "plugin/frame/globals.h"
#include "plugin/panel/list_paint.h"
#include "plugin/panel/origin_cells.h"
#include "plugin/panel/panel_controls.h"

namespace {

/// An item's text; empty for the field of a combo without items.
void GetItemText(const DRAWITEMSTRUCT& item, char (&text)[kNameBytes]) {
    text[0] = '\0';
    const LRESULT bytes = SendMessageA(item.hwndItem, CB_GETLBTEXTLEN, item.itemID, 0);
    if (bytes < 0 || bytes >= kNameBytes) return;
    SendMessageA(item.hwndItem, CB_GETLBTEXT, item.itemID, reinterpret_cast<LPARAM>(text));
}

void FillWithPanelColor(const DRAWITEMSTRUCT& item) {
    if (globals->panelBrush) FillRect(item.hDC, &item.rcItem, globals->panelBrush);
}

} // namespace

void PaintComboItem(const DRAWITEMSTRUCT& item) {
    char text[kNameBytes];
    GetItemText(item, text);
    const bool selected = (item.itemState & ODS_SELECTED) != 0;
    FillRect(item.hDC, &item.rcItem,
             static_cast<HBRUSH>(GetStockObject(selected ? LTGRAY_BRUSH : WHITE_BRUSH)));
    const COLORREF oldColor = SetTextColor(item.hDC, RGB(0, 0, 0));
    if (item.itemState & ODS_FOCUS) DrawFocusRect(item.hDC, &item.rcItem);
    RECT place = item.rcItem;
    place.left += 2;
    const int oldMode = SetBkMode(item.hDC, TRANSPARENT);
    const HGDIOBJ oldFont = globals->panelFont ? SelectObject(item.hDC, globals->panelFont) : nullptr;
    DrawTextA(item.hDC, text, -1, &place, DT_SINGLELINE | DT_VCENTER);
    if (oldFont) SelectObject(item.hDC, oldFont);
    SetBkMode(item.hDC, oldMode);
    SetTextColor(item.hDC, oldColor);
}

void PaintOriginControl(const DRAWITEMSTRUCT& item) {
    POINT pointer{};
    GetCursorPos(&pointer);
    ScreenToClient(item.hwndItem, &pointer);
    const int current = ControlNumber(item.hwndItem);
    const bool pressed = (item.itemState & (ODS_SELECTED | ODS_CHECKED)) != 0;
    const BYTE idle = globals->uiDark ? 0xDD : 0x88, under = globals->uiDark ? 0xAA : 0x44;
    FillWithPanelColor(item);
    for (int cell = 0; cell < kOriginCells; ++cell) {
        const RECT place = OriginCell(item.rcItem, cell);
        const bool held = pressed && pointer.x >= place.left && pointer.x <= place.right &&
                          pointer.y >= place.top && pointer.y <= place.bottom;
        const BYTE grey = held ? under : cell == current ? BYTE{0} : idle;
        FillWith(item.hDC, place, RGB(grey, grey, grey));
    }
}

void PaintIconButton(const DRAWITEMSTRUCT& item) {
    const int icon = ControlNumber(item.hwndItem) + (globals->uiDark ? kDarkIcons : 0);
    FillWithPanelColor(item);
    if (icon >= 0 && icon < kPanelIcons && globals->panelIcons[icon]) {
        const POINT corner = CentredIcon(item.rcItem);
        DrawIcon(item.hDC, corner.x, corner.y, globals->panelIcons[icon]);
    }
    if (item.itemState & ODS_SELECTED) InvertRect(item.hDC, &item.rcItem);
}
