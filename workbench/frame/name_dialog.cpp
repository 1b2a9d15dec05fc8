#include "workbench/frame/name_dialog.h"

#include <vector>

#include "workbench/frame/frame_looks.h"
#include "workbench/suites/text_encoding.h"

namespace workbench {

namespace {

constexpr char kNameDialogClass[] = "WorkbenchNameDialog";
constexpr int kNameWidth = 460, kNameHeight = 104, kNameMargin = 14;
constexpr int kNameButtonWidth = 84, kNameButtonHeight = 24;
constexpr int kMostBytes = 1023;

struct NameDialog {
    int answer = 0; ///< 0 while it stands
};

LRESULT CALLBACK NameProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    NameDialog* dialog = ObjectOf<NameDialog>(window, message, lParam);
    if (!dialog) return DefWindowProcA(window, message, wParam, lParam);
    switch (message) {
        case WM_ERASEBKGND: {
            RECT client;
            GetClientRect(window, &client);
            FillColor(reinterpret_cast<HDC>(wParam), client, GetSysColor(COLOR_BTNFACE));
            return 1;
        }
        case WM_COMMAND: {
            const int id = LOWORD(wParam);
            if (HIWORD(wParam) == BN_CLICKED && id != kNameDialogEdit) dialog->answer = id;
            return 0;
        }
        case WM_CLOSE:
            dialog->answer = kNameDialogCancel;
            return 0;
        default:
            return DefWindowProcA(window, message, wParam, lParam);
    }
}

HWND MakeControl(HWND window, const char* controlClass, const std::string& text, DWORD style, int id,
                 const RECT& place) {
    const HWND control =
        CreateWindowExA(style & ES_AUTOHSCROLL ? WS_EX_CLIENTEDGE : 0, controlClass, text.c_str(),
                        WS_CHILD | WS_VISIBLE | WS_TABSTOP | style, place.left, place.top,
                        place.right - place.left, place.bottom - place.top, window,
                        reinterpret_cast<HMENU>(static_cast<intptr_t>(id)), nullptr, nullptr);
    SendMessageA(control, WM_SETFONT, reinterpret_cast<WPARAM>(FrameFont()), 0);
    return control;
}

/// Return and Escape answer, Tab goes round; the rest goes its way.
bool TakeKey(HWND window, NameDialog& dialog, const MSG& message) {
    if (message.message != WM_KEYDOWN) return false;
    const HWND focus = GetFocus();
    if (message.wParam == VK_RETURN) {
        dialog.answer = GetDlgCtrlID(focus) == kNameDialogCancel ? kNameDialogCancel : kNameDialogOk;
    } else if (message.wParam == VK_ESCAPE) {
        dialog.answer = kNameDialogCancel;
    } else if (message.wParam == VK_TAB) {
        const int id = GetDlgCtrlID(focus);
        const int next = id == kNameDialogEdit ? kNameDialogOk
                         : id == kNameDialogOk ? kNameDialogCancel
                                               : kNameDialogEdit;
        SetFocus(GetDlgItem(window, next));
        return true;
    }
    return dialog.answer != 0;
}

void RunDialog(HWND window, NameDialog& dialog) {
    MSG message;
    while (dialog.answer == 0 && GetMessageA(&message, nullptr, 0, 0) > 0) {
        if (TakeKey(window, dialog, message)) continue;
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
}

} // namespace

std::optional<std::string> AskName(HWND owner, const std::string& title, const std::string& proposal) {
    RegisterFrameClass(kNameDialogClass, NameProcedure);
    NameDialog dialog;
    const HWND window = CreateWindowExA(
        0, kNameDialogClass, WindowText(title).c_str(), WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN,
        (GetSystemMetrics(SM_CXSCREEN) - kNameWidth) / 2, (GetSystemMetrics(SM_CYSCREEN) - kNameHeight) / 2,
        kNameWidth, kNameHeight, owner, nullptr, nullptr, &dialog);
    if (!window) return std::nullopt;
    RECT client;
    GetClientRect(window, &client);
    const std::string shown = WindowText(proposal);
    const HWND edit = MakeControl(window, "EDIT", shown, ES_AUTOHSCROLL, kNameDialogEdit,
                                  {kNameMargin, kNameMargin, client.right - kNameMargin, kNameMargin + 24});
    SendMessageA(edit, EM_LIMITTEXT, kMostBytes, 0);
    SendMessageA(edit, EM_SETSEL, 0, -1);
    const LONG top = kNameMargin + 24 + 10, right = client.right - kNameMargin;
    MakeControl(
        window, "BUTTON", "OK", BS_DEFPUSHBUTTON, kNameDialogOk,
        {right - 2 * kNameButtonWidth - 8, top, right - kNameButtonWidth - 8, top + kNameButtonHeight});
    MakeControl(window, "BUTTON", "Cancel", BS_PUSHBUTTON, kNameDialogCancel,
                {right - kNameButtonWidth, top, right, top + kNameButtonHeight});
    const BOOL wasDisabled = owner ? EnableWindow(owner, FALSE) : TRUE;
    ShowWindow(window, SW_SHOW);
    SetFocus(edit);
    RunDialog(window, dialog);
    std::vector<char> text(static_cast<size_t>(GetWindowTextLengthA(edit)) + 1);
    GetWindowTextA(edit, text.data(), static_cast<int>(text.size()));
    if (owner && !wasDisabled) EnableWindow(owner, TRUE);
    DestroyWindow(window);
    const std::string typed = text.data();
    if (dialog.answer != kNameDialogOk || typed.empty()) return std::nullopt;
    return typed == shown ? proposal : DecodeText(typed, kEncodingCp932).value_or("");
}

} // namespace workbench
