#include <algorithm>
#include <vector>

#include "win32/codepage_932.h"
#include "win32/controls/control_support.h"
#include "win32/controls/dialog.h"

namespace {

std::vector<HWND> ChildrenOf(HWND dialog) {
    std::vector<HWND> children;
    for (HWND child = GetWindow(dialog, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT))
        children.push_back(child);
    return children;
}

LRESULT CodeOf(HWND control, const MSG* message = nullptr) {
    return SendMessageA(control, WM_GETDLGCODE, message != nullptr ? message->wParam : 0,
                        reinterpret_cast<LPARAM>(message));
}

bool CanTakeFocus(HWND control) {
    return (StyleOf(control) & WS_VISIBLE) != 0 && IsWindowEnabled(control);
}

// From `start` on round the list, `from` itself last.
template <class Accept>
HWND Search(const std::vector<HWND>& controls, HWND from, bool backwards, Accept accept) {
    const auto count = static_cast<int>(controls.size());
    const auto found = std::find(controls.begin(), controls.end(), from);
    int at = found != controls.end() ? static_cast<int>(found - controls.begin()) : (backwards ? 0 : -1);
    for (int step = 0; step < count; ++step) {
        at = (at + (backwards ? count - 1 : 1)) % count;
        if (accept(controls[static_cast<size_t>(at)])) return controls[static_cast<size_t>(at)];
    }
    return nullptr;
}

// The letter behind the first single '&', in lower case; 0 for none.
int MnemonicOf(HWND control) {
    const std::string text = TextOf(control);
    for (size_t i = 0; i + 1 < text.size(); i += Cp932UnitBytes(std::string_view(text).substr(i))) {
        if (text[i] != '&') continue;
        ++i;
        const auto letter = static_cast<unsigned char>(text[i]);
        if (letter != '&') return letter >= 'A' && letter <= 'Z' ? letter - 'A' + 'a' : letter;
    }
    return 0;
}

bool ShowsMnemonic(HWND control) {
    const LRESULT code = CodeOf(control);
    if ((code & DLGC_STATIC) != 0) return (StyleOf(control) & kStaticNoPrefix) == 0;
    return (code & DLGC_BUTTON) != 0 && CanTakeFocus(control);
}

bool TakeMnemonic(HWND dialog, HWND from, WPARAM key) {
    const int letter = key >= 'A' && key <= 'Z' ? static_cast<int>(key) - 'A' + 'a' : static_cast<int>(key);
    if (letter <= ' ') return false;
    const HWND found = Search(ChildrenOf(dialog), ControlOf(dialog, from), false, [letter](HWND control) {
        return IsWindowVisible(control) && ShowsMnemonic(control) && MnemonicOf(control) == letter;
    });
    if (found == nullptr) return false;
    if ((CodeOf(found) & DLGC_STATIC) != 0) {
        // A label's letter is that of the control behind it.
        const HWND next = NextTabControl(dialog, found, false);
        if (next != nullptr) SendMessageA(dialog, kNextDialogControl, reinterpret_cast<WPARAM>(next), TRUE);
        return true;
    }
    SendMessageA(dialog, kNextDialogControl, reinterpret_cast<WPARAM>(found), TRUE);
    SendMessageA(found, BM_CLICK, 0, 0);
    return true;
}

void Command(HWND dialog, int id, HWND control) {
    SendMessageA(dialog, WM_COMMAND, PackWParam(id, BN_CLICKED), reinterpret_cast<LPARAM>(control));
}

void TakeReturn(HWND dialog) {
    const HWND focus = GetFocus();
    if (ControlOf(dialog, focus) != nullptr && (CodeOf(focus) & DLGC_DEFPUSHBUTTON) != 0) {
        Command(dialog, GetDlgCtrlID(focus), focus);
        return;
    }
    const LRESULT answer = SendMessageA(dialog, kGetDefaultId, 0, 0);
    const int id = HIWORD(answer) == kHasDefaultId ? LOWORD(answer) : IDOK;
    const HWND button = GetDlgItem(dialog, id);
    if (button == nullptr || IsWindowEnabled(button)) Command(dialog, id, button);
}

bool TakeKeyDown(HWND dialog, const MSG& message) {
    const LRESULT code = CodeOf(message.hwnd, &message);
    if ((code & DLGC_WANTALLKEYS) != 0) return false;
    switch (message.wParam) {
        case VK_TAB:
            if ((code & DLGC_WANTTAB) != 0) return false;
            SendMessageA(dialog, kNextDialogControl, IsKeyDown(VK_SHIFT), FALSE);
            return true;
        case VK_LEFT:
        case VK_UP:
        case VK_RIGHT:
        case VK_DOWN: {
            if ((code & DLGC_WANTARROWS) != 0) return false;
            const bool backwards = message.wParam == VK_LEFT || message.wParam == VK_UP;
            const HWND next = NextGroupControl(dialog, message.hwnd, backwards);
            if (next != nullptr)
                SendMessageA(dialog, kNextDialogControl, reinterpret_cast<WPARAM>(next), TRUE);
            return true;
        }
        case VK_ESCAPE:
            Command(dialog, IDCANCEL, GetDlgItem(dialog, IDCANCEL));
            return true;
        case VK_RETURN:
            TakeReturn(dialog);
            return true;
        default:
            // Where the keyboard doesn't make letters of it itself.
            return IsKeyDown(VK_MENU) && TakeMnemonic(dialog, message.hwnd, message.wParam);
    }
}

} // namespace

HWND ControlOf(HWND dialog, HWND window) {
    while (window != nullptr && (StyleOf(window) & WS_CHILD) != 0) {
        const HWND parent = GetParent(window);
        if (parent == dialog) return window;
        window = parent;
    }
    return nullptr;
}

HWND NextTabControl(HWND dialog, HWND from, bool backwards) {
    return Search(ChildrenOf(dialog), ControlOf(dialog, from), backwards,
                  [](HWND control) { return (StyleOf(control) & WS_TABSTOP) != 0 && CanTakeFocus(control); });
}

HWND NextGroupControl(HWND dialog, HWND from, bool backwards) {
    const std::vector<HWND> all = ChildrenOf(dialog);
    const auto found = std::find(all.begin(), all.end(), ControlOf(dialog, from));
    if (found == all.end()) return nullptr;
    const auto begins = [](HWND control) { return (StyleOf(control) & WS_GROUP) != 0; };
    auto first = found;
    while (first != all.begin() && !begins(*first)) --first;
    const auto last = std::find_if(found + 1, all.end(), begins);
    return Search(std::vector<HWND>(first, last), *found, backwards,
                  [](HWND control) { return CanTakeFocus(control) && (CodeOf(control) & DLGC_STATIC) == 0; });
}

void FocusControl(HWND control) {
    if (control == nullptr) return;
    if ((CodeOf(control) & DLGC_HASSETSEL) != 0) SendMessageA(control, EM_SETSEL, 0, -1);
    SetFocus(control);
}

void UpdateDefaultButton(DialogData& data) {
    const HWND focus = ControlOf(data.window, GetFocus());
    if (focus == nullptr) return;
    data.focus = focus;
    constexpr LRESULT kPush = DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON;
    const HWND wanted = (CodeOf(focus) & kPush) != 0 ? focus : GetDlgItem(data.window, data.defaultId);
    for (const HWND control : ChildrenOf(data.window)) {
        const LRESULT code = CodeOf(control);
        if ((code & DLGC_DEFPUSHBUTTON) != 0 && control != wanted)
            SendMessageA(control, kButtonSetStyle, BS_PUSHBUTTON, TRUE);
        if ((code & DLGC_UNDEFPUSHBUTTON) != 0 && control == wanted)
            SendMessageA(control, kButtonSetStyle, BS_DEFPUSHBUTTON, TRUE);
    }
}

bool TakeDialogKey(HWND dialog, const MSG& message) {
    if (message.hwnd != dialog && ControlOf(dialog, message.hwnd) == nullptr) return false;
    switch (message.message) {
        case WM_KEYDOWN:
            return TakeKeyDown(dialog, message);
        case WM_CHAR:
            if ((CodeOf(message.hwnd, &message) & (DLGC_WANTCHARS | DLGC_WANTALLKEYS)) != 0) return false;
            return TakeMnemonic(dialog, message.hwnd, message.wParam);
        case WM_SYSCHAR:
            return TakeMnemonic(dialog, message.hwnd, message.wParam);
        default:
            return false;
    }
}
