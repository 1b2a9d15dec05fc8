#include "workbench/frame/alert_window.h"

#include <algorithm>
#include <vector>

#include "workbench/frame/frame_looks.h"

namespace workbench {

namespace {

constexpr int kAlertMargin = 16;
constexpr int kLineHeight = 18;
constexpr int kButtonWidth = 84, kButtonHeight = 24, kButtonGap = 8;

struct AlertBox {
    std::vector<std::string> lines;
    int last = kAlertNo; ///< what leaving it answers
    int answer = 0;      ///< 0 while it stands
};

std::vector<std::string> LinesOf(const std::string& text) {
    std::vector<std::string> lines(1);
    for (const char c : text) {
        if (c == '\n') {
            lines.emplace_back();
        } else if (c != '\r') {
            lines.back() += c;
        }
    }
    return lines;
}

void PaintAlert(HWND window, const AlertBox& box) {
    PAINTSTRUCT paint;
    const HDC context = BeginPaint(window, &paint);
    RECT client;
    GetClientRect(window, &client);
    FillColor(context, client, GetSysColor(COLOR_BTNFACE));
    int top = kAlertMargin;
    for (const std::string& line : box.lines) {
        DrawLine(context, {kAlertMargin, top, client.right, top + kLineHeight}, 0, line,
                 GetSysColor(COLOR_BTNTEXT));
        top += kLineHeight;
    }
    EndPaint(window, &paint);
}

LRESULT CALLBACK AlertProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    AlertBox* box = ObjectOf<AlertBox>(window, message, lParam);
    if (!box) return DefWindowProcA(window, message, wParam, lParam);
    switch (message) {
        case WM_PAINT:
            PaintAlert(window, *box);
            return 0;
        case WM_COMMAND:
            if (HIWORD(wParam) == BN_CLICKED) box->answer = LOWORD(wParam);
            return 0;
        case WM_CLOSE:
            box->answer = box->last;
            return 0;
        default:
            return DefWindowProcA(window, message, wParam, lParam);
    }
}

void MakeButton(HWND window, int id, const char* text, int left, int top) {
    const HWND button = CreateWindowExA(
        0, "BUTTON", text,
        WS_CHILD | WS_VISIBLE | WS_TABSTOP | (id == kAlertYes ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON), left, top,
        kButtonWidth, kButtonHeight, window, reinterpret_cast<HMENU>(static_cast<intptr_t>(id)), nullptr,
        nullptr);
    SendMessageA(button, WM_SETFONT, reinterpret_cast<WPARAM>(FrameFont()), 0);
}

/// The texts of the buttons by their answers from kAlertYes on.
std::vector<const char*> ButtonsOf(AlertKind kind) {
    switch (kind) {
        case AlertKind::kYesNo:
            return {"Yes", "No"};
        case AlertKind::kSaveChanges:
            return {"Save", "Don't Save", "Cancel"};
        default:
            return {"OK"};
    }
}

/// Return and Y answer yes, N no, Escape leaves; the rest goes its way.
bool TakeKey(AlertBox& box, const MSG& message) {
    if (message.message != WM_KEYDOWN) return false;
    if (message.wParam == VK_RETURN || message.wParam == 'Y') box.answer = kAlertYes;
    if (message.wParam == 'N') box.answer = kAlertNo;
    if (message.wParam == VK_ESCAPE) box.answer = box.last;
    return box.answer != 0;
}

} // namespace

int RunAlert(HWND owner, const std::string& text, AlertKind kind) {
    RegisterFrameClass(kAlertClass, AlertProcedure);
    const std::vector<const char*> buttons = ButtonsOf(kind);
    AlertBox box{.lines = LinesOf(text), .last = std::max(static_cast<int>(buttons.size()), kAlertNo)};
    const HDC measure = GetDC(nullptr);
    int width =
        std::max(260, 2 * kAlertMargin + static_cast<int>(buttons.size()) * (kButtonWidth + kButtonGap));
    for (const std::string& line : box.lines)
        width = std::max(width, TextWidth(measure, line) + 2 * kAlertMargin);
    ReleaseDC(nullptr, measure);
    const int textHeight = static_cast<int>(box.lines.size()) * kLineHeight;
    const int height = textHeight + 3 * kAlertMargin + kButtonHeight + 24;
    const HWND window = CreateWindowExA(
        WS_EX_TOPMOST, kAlertClass, kind == AlertKind::kError ? "Error" : "Workbench",
        WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN, (GetSystemMetrics(SM_CXSCREEN) - width) / 2,
        (GetSystemMetrics(SM_CYSCREEN) - height) / 2, width + 2, height, owner, nullptr, nullptr, &box);
    if (!window) return box.last;
    int right = width - kAlertMargin;
    for (size_t i = 0; i < buttons.size(); ++i) {
        MakeButton(window, kAlertYes + static_cast<int>(i), buttons[i], right - kButtonWidth,
                   textHeight + 2 * kAlertMargin);
        right -= kButtonWidth + kButtonGap;
    }
    const BOOL wasDisabled = owner ? EnableWindow(owner, FALSE) : TRUE;
    ShowWindow(window, SW_SHOW);
    SetFocus(GetDlgItem(window, kAlertYes));
    MSG message;
    while (box.answer == 0 && GetMessageA(&message, nullptr, 0, 0) > 0) {
        if (TakeKey(box, message)) break;
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    if (owner && !wasDisabled) EnableWindow(owner, TRUE);
    DestroyWindow(window);
    return box.answer == 0 ? box.last : box.answer;
}

} // namespace workbench
