#include "win32/desktop/frame_painting.h"

#include "win32/desktop/input_state.h"

namespace {

constexpr int kTitleIndent = 6;

void FillWith(HDC context, const RECT& area, int color) {
    FillRect(context, &area, GetSysColorBrush(color));
}

void PaintBorder(HDC context, const RECT& frame) {
    FrameRect(context, &frame, GetSysColorBrush(COLOR_WINDOWFRAME));
}

// Shadow above and to the left, light below and to the right.
void PaintClientEdge(HDC context, RECT edge) {
    for (int line = 0; line < kClientEdgeWidth; ++line) {
        FillWith(context, {edge.left, edge.top, edge.right, edge.top + 1}, COLOR_BTNSHADOW);
        FillWith(context, {edge.left, edge.top, edge.left + 1, edge.bottom}, COLOR_BTNSHADOW);
        FillWith(context, {edge.left, edge.bottom - 1, edge.right, edge.bottom}, COLOR_BTNFACE);
        FillWith(context, {edge.right - 1, edge.top, edge.right, edge.bottom}, COLOR_BTNFACE);
        InflateRect(&edge, -1, -1);
    }
}

void PaintCloseBox(HDC context, const RECT& box) {
    FillWith(context, box, COLOR_BTNFACE);
    FrameRect(context, &box, GetSysColorBrush(COLOR_BTNSHADOW));
    constexpr int kInset = 5;
    const int arm = box.right - box.left - 2 * kInset;
    for (int step = 0; step < arm; ++step)
        for (int thick = 0; thick < 2; ++thick) {
            const int x = box.left + kInset + step + thick - (step == arm - 1 ? 1 : 0);
            SetPixel(context, x, box.top + kInset + step, GetSysColor(COLOR_BTNTEXT));
            SetPixel(context, x, box.bottom - 1 - kInset - step, GetSysColor(COLOR_BTNTEXT));
        }
}

void PaintCaption(HDC context, const Window& window, const RECT& frame) {
    const bool active = GetActiveWindow() == window.handle;
    const RECT caption = {frame.left + kBorderWidth, frame.top + kBorderWidth, frame.right - kBorderWidth,
                          frame.top + kBorderWidth + kCaptionHeight};
    FillWith(context, caption, active ? COLOR_ACTIVECAPTION : COLOR_INACTIVECAPTION);
    const bool closes = (window.style & WS_SYSMENU) != 0;
    RECT title = {caption.left + kTitleIndent, caption.top,
                  closes ? CloseBoxOfFrame(frame).left - 2 : caption.right - kTitleIndent, caption.bottom};
    const HGDIOBJ font = SelectObject(context, GetStockObject(DEFAULT_GUI_FONT));
    SetBkMode(context, TRANSPARENT);
    SetTextColor(context, GetSysColor(COLOR_CAPTIONTEXT));
    DrawTextA(context, window.text.c_str(), static_cast<int>(window.text.size()), &title,
              DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
    SelectObject(context, font);
    if (closes) PaintCloseBox(context, CloseBoxOfFrame(frame));
}

// Takes messages, with the capture, until the left button is up or another takes the capture.  `moved` runs
// for each move of the pointer.
template <typename Moved>
void TrackButton(HWND window, Moved moved) {
    SetCapture(window);
    MSG message;
    while (GetCapture() == window) {
        if (!GetMessageA(&message, nullptr, 0, 0)) {
            PostQuitMessage(static_cast<int>(message.wParam)); // for the loop outside
            break;
        }
        if (message.message == WM_LBUTTONUP) break;
        if (message.message == WM_MOUSEMOVE) {
            moved(message.pt);
            continue;
        }
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    if (GetCapture() == window) ReleaseCapture();
}

} // namespace

int FrameHitTest(const Window& window, POINT onScreen) {
    if (window.parent == nullptr) return HTCLIENT;
    const RECT frame = FrameOnScreen(window);
    if (!Holds(frame, onScreen.x, onScreen.y)) return HTNOWHERE;
    if (Holds(ClientOnScreen(window), onScreen.x, onScreen.y)) return HTCLIENT;
    if (!HasCaption(window.style)) return HTBORDER;
    if ((window.style & WS_SYSMENU) != 0 && Holds(CloseBoxOfFrame(frame), onScreen.x, onScreen.y))
        return HTCLOSE;
    const int captionTop = frame.top + kBorderWidth;
    const bool inCaption = onScreen.y >= captionTop && onScreen.y < captionTop + kCaptionHeight;
    return inCaption ? HTCAPTION : HTBORDER;
}

void PaintFrame(const Window& window) {
    RECT frame = FrameOnScreen(window);
    frame = Moved(frame, -frame.left, -frame.top);
    const RECT client = ClientOfFrame(frame, window.style, window.extendedStyle);
    if (client.left == 0 && client.top == 0) return;
    const HDC context = GetWindowDC(window.handle);
    if ((window.extendedStyle & WS_EX_CLIENTEDGE) != 0) {
        RECT edge = client;
        InflateRect(&edge, kClientEdgeWidth, kClientEdgeWidth);
        PaintClientEdge(context, edge);
    }
    if ((window.style & (WS_CAPTION | WS_THICKFRAME)) != 0) PaintBorder(context, frame);
    if (HasCaption(window.style)) PaintCaption(context, window, frame);
    ReleaseDC(window.handle, context);
}

void DragByCaption(HWND handle) {
    const Window* window = WindowIfAny(handle);
    if (window == nullptr) return;
    const RECT start = window->place;
    const POINT from = Hands().pointer;
    TrackButton(handle, [&](POINT at) {
        SetWindowPos(handle, nullptr, start.left + at.x - from.x, start.top + at.y - from.y, 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    });
}

void PressCloseBox(HWND handle) {
    TrackButton(handle, [](POINT) {});
    const Window* window = WindowIfAny(handle);
    if (window == nullptr) return;
    const POINT at = Hands().pointer;
    if (Holds(CloseBoxOfFrame(FrameOnScreen(*window)), at.x, at.y)) SendMessageA(handle, WM_CLOSE, 0, 0);
}
