#include <algorithm>

#include "win32/codepage_932.h"
#include "win32/controls/combo_data.h"
#include "win32/controls/control_support.h"

namespace {

void Toggle(HWND combo, ComboData& data) {
    if (data.isDropped)
        CloseCombo(combo, data, false);
    else
        OpenCombo(combo, data);
}

void TakeKey(HWND combo, ComboData& data, WPARAM key) {
    const bool alternate = IsKeyDown(VK_MENU) && (key == VK_UP || key == VK_DOWN);
    if (key == VK_F4 || alternate) {
        Toggle(combo, data);
        return;
    }
    if (key == VK_RETURN || key == VK_ESCAPE) {
        if (data.isDropped) CloseCombo(combo, data, key == VK_RETURN);
        return;
    }
    const int item = ItemOfKey(data.list, key);
    if (item >= 0 && item != SelectionOf(data)) ChooseComboItem(combo, data, item, false);
}

// The next item that begins with a letter.
void TakeLetter(HWND combo, ComboData& data, char letter) {
    std::string wanted(1, letter);
    if (data.leadByte != '\0') {
        wanted.insert(wanted.begin(), data.leadByte);
        data.leadByte = '\0';
    } else if (IsCp932LeadByte(static_cast<unsigned char>(letter))) {
        data.leadByte = letter;
        return;
    }
    const auto* list = DataOf<ListData>(data.list);
    if (list == nullptr || static_cast<unsigned char>(wanted[0]) < ' ') return;
    const int item = FindListItem(*list, list->selected, wanted, false);
    if (item >= 0 && item != list->selected) ChooseComboItem(combo, data, item, false);
}

void Press(HWND combo, ComboData& data, POINT point) {
    if (!data.isFocused) SetFocus(combo);
    if (DataOf<ComboData>(combo) != &data) return;
    const RECT button = ComboButton(combo);
    if (data.edit == nullptr || PtInRect(&button, point)) Toggle(combo, data);
}

void Turn(HWND combo, ComboData& data, WPARAM wParam) {
    const int delta = HighPart(static_cast<LPARAM>(wParam));
    if (data.isDropped)
        SendMessageA(data.list, WM_MOUSEWHEEL, wParam, 0);
    else if (delta != 0)
        TakeKey(combo, data, delta > 0 ? VK_UP : VK_DOWN);
}

} // namespace

void ChooseComboItem(HWND combo, ComboData& data, int item, bool picked) {
    SelectListItem(data.list, item);
    data.settled = item;
    ShowComboItem(combo, data, item);
    if (data.edit != nullptr) SendMessageA(data.edit, EM_SETSEL, 0, -1);
    if (picked || !data.isDropped) CloseCombo(combo, data, true);
    if (DataOf<ComboData>(combo) == &data) NotifyParent(combo, CBN_SELCHANGE);
}

bool TakeComboInput(HWND combo, ComboData& data, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_SYSKEYDOWN:
            if (wParam != VK_UP && wParam != VK_DOWN) return false;
            Toggle(combo, data);
            return true;
        case WM_KEYDOWN:
            TakeKey(combo, data, wParam);
            return true;
        case WM_CHAR:
            if (data.edit != nullptr)
                SendMessageA(data.edit, message, wParam, lParam);
            else
                TakeLetter(combo, data, static_cast<char>(wParam));
            return true;
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
            Press(combo, data, PointOf(lParam));
            return true;
        case WM_MOUSEWHEEL:
            Turn(combo, data, wParam);
            return true;
        default:
            return false;
    }
}
