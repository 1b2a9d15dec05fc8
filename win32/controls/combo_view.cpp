#include <algorithm>

#include "win32/controls/combo_data.h"
#include "win32/controls/control_support.h"

namespace {

constexpr int kMostItemsShown = 30; ///< of a combo box that was made too low to say

std::string ItemText(const ComboData& data, int item) {
    const auto* list = DataOf<ListData>(data.list);
    const bool isThere = list != nullptr && item >= 0 && item < static_cast<int>(list->items.size());
    return isThere ? list->items[static_cast<size_t>(item)] : "";
}

// Below the field, or above it where there is more room on the screen.
RECT ListPlace(HWND combo, const ComboData& data) {
    const auto* list = DataOf<ListData>(data.list);
    RECT field = {};
    GetWindowRect(combo, &field);
    const int count = std::max(CountOf(data), 1), itemHeight = list != nullptr ? list->itemHeight : 1;
    const int shown = data.dropHeight >= itemHeight ? data.dropHeight / itemHeight : kMostItemsShown;
    const int below = GetSystemMetrics(SM_CYSCREEN) - field.bottom, above = field.top;
    const int wanted = std::min(count, shown) * itemHeight + 2;
    const bool goesUp = wanted > below && above > below;
    const int room = std::max((goesUp ? above : below) - 2, itemHeight);
    const int height = std::min(wanted, room / itemHeight * itemHeight + 2);
    const LONG top = goesUp ? field.top - height : field.bottom;
    return {field.left, top, field.right, top + height};
}

void DrawByOwner(HWND combo, HDC context, const RECT& place, int item, UINT state) {
    DRAWITEMSTRUCT draw = {};
    draw.CtlType = ODT_COMBOBOX;
    draw.CtlID = static_cast<UINT>(GetDlgCtrlID(combo));
    draw.itemID = static_cast<UINT>(item);
    draw.itemAction = ODA_DRAWENTIRE;
    draw.itemState = state;
    draw.hwndItem = combo;
    draw.hDC = context;
    draw.rcItem = place;
    SendMessageA(GetParent(combo), WM_DRAWITEM, draw.CtlID, reinterpret_cast<LPARAM>(&draw));
}

void DrawField(HWND combo, const ComboData& data, HDC context, const RECT& place) {
    const bool enabled = IsWindowEnabled(combo) != 0, marked = data.isFocused && !data.isDropped;
    const int item = SelectionOf(data);
    if (IsOwnerDrawn(combo)) {
        UINT state = ODS_COMBOBOXEDIT;
        if (marked) state |= ODS_SELECTED | ODS_FOCUS;
        if (!enabled) state |= ODS_DISABLED;
        DrawByOwner(combo, context, place, item, state);
        return;
    }
    const std::string text = ItemText(data, item);
    if (marked) {
        FillRect(context, &place, GetSysColorBrush(COLOR_HIGHLIGHT));
        SetTextColor(context, GetSysColor(COLOR_HIGHLIGHTTEXT));
    } else if (!enabled) {
        SetTextColor(context, GetSysColor(COLOR_GRAYTEXT));
    }
    RECT line = place;
    line.left += 2;
    SetBkMode(context, TRANSPARENT);
    DrawTextA(context, text.c_str(), static_cast<int>(text.size()), &line,
              DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
    if (marked) DrawFocusRect(context, &place);
}

} // namespace

RECT ComboButton(HWND combo) {
    const RECT client = ClientRectangle(combo);
    const LONG left = std::max<LONG>(client.right - 1 - GetSystemMetrics(SM_CXVSCROLL), 1);
    return {left, 1, client.right - 1, client.bottom - 1};
}

RECT ComboField(HWND combo) {
    RECT field = ClientRectangle(combo);
    InflateRect(&field, -2, -2);
    field.right = ComboButton(combo).left - 1;
    return field;
}

void FitCombo(HWND combo, ComboData& data) {
    const RECT client = ClientRectangle(combo);
    const int height = data.fieldHeight + 2 * kComboBorder;
    data.isFitting = true;
    if (client.bottom != height)
        SetWindowPos(combo, nullptr, 0, 0, client.right, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    data.isFitting = false;
    if (data.edit == nullptr) return;
    const RECT field = ComboField(combo);
    MoveWindow(data.edit, field.left, field.top, std::max<int>(field.right - field.left, 0),
               std::max<int>(field.bottom - field.top, 0), TRUE);
}

void OpenCombo(HWND combo, ComboData& data) {
    if (data.isDropped) return;
    NotifyParent(combo, CBN_DROPDOWN);
    const auto* list = DataOf<ListData>(data.list);
    if (DataOf<ComboData>(combo) != &data || list == nullptr) return;
    data.isDropped = true;
    if (data.edit != nullptr) {
        const std::string text = TextOf(data.edit);
        const int item = text.empty() ? -1 : FindListItem(*list, -1, text, false);
        SelectListItem(data.list, item);
        if (item >= 0) ShowComboItem(combo, data, item);
    }
    data.settled = list->selected;
    ShowList(data.list, ListPlace(combo, data));
    Redraw(combo);
}

void CloseCombo(HWND combo, ComboData& data, bool accepted) {
    NotifyParent(combo, accepted ? CBN_SELENDOK : CBN_SELENDCANCEL);
    if (DataOf<ComboData>(combo) != &data || !data.isDropped) return;
    data.isDropped = false;
    if (!accepted) SelectListItem(data.list, data.settled);
    HideList(data.list);
    Redraw(combo);
    NotifyParent(combo, CBN_CLOSEUP);
}

void ShowComboItem(HWND combo, ComboData& data, int item) {
    if (data.edit == nullptr) {
        Redraw(combo);
        return;
    }
    const std::string text = ItemText(data, item);
    SetWindowTextA(data.edit, text.c_str());
    if (data.isFocused) SendMessageA(data.edit, EM_SETSEL, 0, -1);
}

void PaintCombo(HWND combo, const ComboData& data, HDC context) {
    const int saved = SaveDC(context);
    {
        const Selected font(context, data.font);
        const RECT client = ClientRectangle(combo), button = ComboButton(combo);
        const bool enabled = IsWindowEnabled(combo) != 0;
        FillRect(
            context, &client,
            ControlColors(combo, GetParent(combo), enabled ? WM_CTLCOLOREDIT : WM_CTLCOLORSTATIC, context));
        DrawBorder(context, client, COLOR_BTNSHADOW);
        DrawRaisedFace(context, button, data.isDropped);
        DrawArrow(context, button, VK_DOWN, enabled ? COLOR_BTNTEXT : COLOR_GRAYTEXT);
        if (data.edit == nullptr) DrawField(combo, data, context, ComboField(combo));
    }
    RestoreDC(context, saved);
}

void DrawComboItem(HWND combo, const ListItemDraw& draw) {
    const UINT state = draw.selected ? ODS_SELECTED | ODS_FOCUS : 0u;
    DrawByOwner(combo, draw.context, draw.place, draw.item, state);
}
