#include "win32/controls/control_support.h"

#include <algorithm>

DWORD StyleOf(HWND window) {
    return static_cast<DWORD>(GetWindowLongPtrA(window, GWL_STYLE));
}

HWND TopLevelOf(HWND window) {
    while (window != nullptr && (StyleOf(window) & WS_CHILD) != 0) window = GetParent(window);
    return window;
}

RECT ClientRectangle(HWND window) {
    RECT client = {};
    GetClientRect(window, &client);
    return client;
}

bool IsKeyDown(int virtualKey) {
    return GetKeyState(virtualKey) < 0;
}

std::string TextOf(HWND window) {
    std::string text(static_cast<size_t>(std::max(GetWindowTextLengthA(window), 0)) + 1, '\0');
    const int bytes = GetWindowTextA(window, text.data(), static_cast<int>(text.size()));
    text.resize(static_cast<size_t>(std::max(bytes, 0)));
    return text;
}

void Redraw(HWND window) {
    InvalidateRect(window, nullptr, TRUE);
}

void NotifyParent(HWND control, int code) {
    SendMessageA(GetParent(control), WM_COMMAND, PackWParam(GetDlgCtrlID(control), code),
                 reinterpret_cast<LPARAM>(control));
}

HBRUSH ControlColors(HWND control, HWND parent, UINT message, HDC context) {
    const bool isField = message == WM_CTLCOLOREDIT || message == WM_CTLCOLORLISTBOX;
    const int background = isField ? COLOR_WINDOW : COLOR_BTNFACE;
    SetTextColor(context, GetSysColor(isField ? COLOR_WINDOWTEXT : COLOR_BTNTEXT));
    SetBkColor(context, GetSysColor(background));
    const LRESULT answer =
        SendMessageA(parent, message, reinterpret_cast<WPARAM>(context), reinterpret_cast<LPARAM>(control));
    return answer != 0 ? reinterpret_cast<HBRUSH>(answer) : GetSysColorBrush(background);
}

PaintContext::PaintContext(HWND window, WPARAM given) : window_(window), own_(given == 0), paint_{} {
    context_ = own_ ? BeginPaint(window, &paint_) : reinterpret_cast<HDC>(given);
}

PaintContext::~PaintContext() {
    if (own_) EndPaint(window_, &paint_);
}

void DrawBorder(HDC context, const RECT& rectangle, int color) {
    FrameRect(context, &rectangle, GetSysColorBrush(color));
}

void DrawRaisedFace(HDC context, const RECT& rectangle, bool pressed) {
    FillRect(context, &rectangle, GetSysColorBrush(COLOR_BTNFACE));
    DrawBorder(context, rectangle, COLOR_BTNSHADOW);
    RECT edge = rectangle;
    InflateRect(&edge, -1, -1);
    if (IsRectEmpty(&edge)) return;
    const HBRUSH brush = GetSysColorBrush(pressed ? COLOR_BTNSHADOW : COLOR_BTNHIGHLIGHT);
    const RECT top = {edge.left, edge.top, edge.right, edge.top + 1};
    const RECT left = {edge.left, edge.top, edge.left + 1, edge.bottom};
    FillRect(context, &top, brush);
    FillRect(context, &left, brush);
}

void DrawArrow(HDC context, const RECT& rectangle, int direction, int color) {
    constexpr int kRows = 4;
    const int centre = (rectangle.left + rectangle.right) / 2;
    const int top = (rectangle.top + rectangle.bottom - kRows) / 2;
    for (int row = 0; row < kRows; ++row) {
        const int half = direction == VK_UP ? row : kRows - 1 - row;
        const RECT line = {centre - half - 1, top + row, centre + half, top + row + 1};
        FillRect(context, &line, GetSysColorBrush(color));
    }
}

int OwnBorder(HWND window) {
    const bool wanted = (StyleOf(window) & WS_BORDER) != 0 ||
                        (GetWindowLongPtrA(window, GWL_EXSTYLE) & WS_EX_CLIENTEDGE) != 0;
    RECT outer = {};
    GetWindowRect(window, &outer);
    const RECT client = ClientRectangle(window);
    return wanted && outer.right - outer.left == client.right ? 2 : 0;
}
