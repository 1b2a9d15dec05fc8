#include <algorithm>

#include "win32/controls/control_classes.h"
#include "win32/controls/control_support.h"
#include "win32/controls/dialog.h"
#include "win32/controls/scroll_state.h"

namespace {

/// Behind DWLP_USER.
constexpr int kDataOffset = 24;

bool IsColorQuestion(UINT message) {
    return message >= WM_CTLCOLOREDIT && message <= WM_CTLCOLORSTATIC;
}

void RestoreFocus(const DialogData& data) {
    const bool isThere = ControlOf(data.window, data.focus) != nullptr && IsWindowEnabled(data.focus);
    FocusControl(isThere ? data.focus : NextTabControl(data.window, nullptr, false));
}

void MoveFocus(DialogData& data, WPARAM wParam, bool isWindow) {
    const HWND next =
        isWindow ? reinterpret_cast<HWND>(wParam) : NextTabControl(data.window, GetFocus(), wParam != 0);
    if (!IsWindow(next)) return;
    FocusControl(next);
    UpdateDefaultButton(data);
}

void Erase(const DialogData& data, HDC context) {
    const RECT client = ClientRectangle(data.window);
    FillRect(context, &client, ControlColors(data.window, data.window, WM_CTLCOLORDLG, context));
}

void Close(HWND window) {
    const HWND button = GetDlgItem(window, IDCANCEL);
    if (button != nullptr && !IsWindowEnabled(button))
        MessageBeep(0);
    else
        PostMessageA(window, WM_COMMAND, PackWParam(IDCANCEL, BN_CLICKED), reinterpret_cast<LPARAM>(button));
}

// What a dialog does with a message that its own procedure leaves.
LRESULT DefaultAnswer(DialogData& data, UINT message, WPARAM wParam, LPARAM lParam) {
    const HWND window = data.window;
    switch (message) {
        case WM_ERASEBKGND:
            Erase(data, reinterpret_cast<HDC>(wParam));
            return 1;
        case WM_ACTIVATE:
            if (LOWORD(wParam) != WA_INACTIVE)
                RestoreFocus(data);
            else if (const HWND focus = ControlOf(window, GetFocus()); focus != nullptr)
                data.focus = focus;
            return 0;
        case WM_SETFOCUS:
            RestoreFocus(data);
            return 0;
        case WM_CLOSE:
            Close(window);
            return 0;
        case WM_GETFONT:
            return reinterpret_cast<LRESULT>(data.font);
        case kGetDefaultId:
            return data.defaultId != 0 ? MAKELONG(data.defaultId, kHasDefaultId) : 0;
        case kSetDefaultId:
            data.defaultId = LOWORD(wParam);
            UpdateDefaultButton(data);
            return TRUE;
        case kNextDialogControl:
            MoveFocus(data, wParam, LOWORD(lParam) != 0);
            return 0;
        default:
            return DefWindowProcA(window, message, wParam, lParam);
    }
}

} // namespace

DialogData* DialogDataOf(HWND window) {
    char name[sizeof kDialogClass + 1] = {};
    if (GetClassNameA(window, name, sizeof name) == 0 || !IsSameClass(name, kDialogClass)) return nullptr;
    return reinterpret_cast<DialogData*>(GetWindowLongPtrA(window, kDataOffset));
}

LRESULT CALLBACK DialogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        auto* fresh =
            static_cast<DialogData*>(reinterpret_cast<const CREATESTRUCTA*>(lParam)->lpCreateParams);
        SetWindowLongPtrA(window, kDataOffset, reinterpret_cast<INT_PTR>(fresh));
        if (fresh != nullptr) fresh->window = window;
    }
    const auto procedure = reinterpret_cast<DLGPROC>(GetWindowLongPtrA(window, DWLP_DLGPROC));
    if (procedure != nullptr) {
        SetWindowLongPtrA(window, DWLP_MSGRESULT, 0);
        const INT_PTR handled = procedure(window, message, wParam, lParam);
        if (handled != 0)
            return IsColorQuestion(message) || message == WM_INITDIALOG
                       ? handled
                       : GetWindowLongPtrA(window, DWLP_MSGRESULT);
    }
    DialogData* data = DialogDataOf(window);
    if (message == WM_NCDESTROY && data != nullptr) {
        SetWindowLongPtrA(window, kDataOffset, 0);
        data->window = nullptr;
        // Its loop may be waiting for a message, and there will be none.
        if (!data->hasEnded) PostMessageA(nullptr, WM_NULL, 0, 0);
        data = nullptr;
    }
    return data != nullptr ? DefaultAnswer(*data, message, wParam, lParam)
                           : DefWindowProcA(window, message, wParam, lParam);
}

BOOL MapDialogRect(HWND dialog, RECT* rectangle) {
    const DialogData* data = DialogDataOf(dialog);
    if (data == nullptr || rectangle == nullptr) return FALSE;
    const int across = data->units.cx, down = data->units.cy;
    *rectangle = {MulDiv(rectangle->left, across, 4), MulDiv(rectangle->top, down, 8),
                  MulDiv(rectangle->right, across, 4), MulDiv(rectangle->bottom, down, 8)};
    return TRUE;
}

BOOL SetDlgItemTextA(HWND dialog, int id, LPCSTR text) {
    return SetWindowTextA(GetDlgItem(dialog, id), text);
}

UINT GetDlgItemTextA(HWND dialog, int id, LPSTR text, int size) {
    const HWND control = GetDlgItem(dialog, id);
    if (text != nullptr && size > 0) text[0] = '\0';
    return control != nullptr ? static_cast<UINT>(GetWindowTextA(control, text, size)) : 0;
}

LRESULT SendDlgItemMessageA(HWND dialog, int id, UINT message, WPARAM wParam, LPARAM lParam) {
    const HWND control = GetDlgItem(dialog, id);
    return control != nullptr ? SendMessageA(control, message, wParam, lParam) : 0;
}

BOOL CheckDlgButton(HWND dialog, int id, UINT check) {
    const HWND control = GetDlgItem(dialog, id);
    if (control == nullptr) return FALSE;
    SendMessageA(control, BM_SETCHECK, check, 0);
    return TRUE;
}

UINT IsDlgButtonChecked(HWND dialog, int id) {
    return static_cast<UINT>(SendDlgItemMessageA(dialog, id, BM_GETCHECK, 0, 0));
}
