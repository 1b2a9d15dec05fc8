#include "workbench/frame/panel_frame.h"

#include <algorithm>

#include "workbench/frame/frame_looks.h"
#include "workbench/frame/popup_menu.h"

namespace workbench {

namespace {

constexpr char kFrameClass[] = "WorkbenchPanel";
constexpr char kBodyClass[] = "WorkbenchPanelBody";
constexpr int kBorder = 1;
constexpr int kGripHeight = 8;

/// The body has the theme's colour and else nothing of its own.
LRESULT CALLBACK BodyProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_ERASEBKGND && Host::Current()) {
        RECT client;
        GetClientRect(window, &client);
        FillColor(reinterpret_cast<HDC>(wParam), client, ColorsOf(Host::Current()->theme()).face);
        return 1;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

BOOL CALLBACK InvalidateChild(HWND child, LPARAM) {
    InvalidateRect(child, nullptr, TRUE);
    return TRUE;
}

int Pixels(double size) {
    return static_cast<int>(std::clamp(size, 1.0, 10000.0));
}

} // namespace

PanelFrame::PanelFrame(Host& host, HostPanel& panel, HWND owner, POINT at) : host_(host), panel_(panel) {
    RegisterFrameClass(kFrameClass, Procedure);
    RegisterFrameClass(kBodyClass, BodyProcedure);
    const int width = Pixels(panel.size.width), height = Pixels(panel.size.height);
    CreateWindowExA(WS_EX_TOOLWINDOW, kFrameClass, WindowText(panel.title).c_str(),
                    WS_POPUP | WS_CLIPCHILDREN, at.x, at.y, width + 2 * kBorder,
                    kBarHeight + height + kGripHeight, owner, nullptr, nullptr, this);
    if (!window_) return;
    body_ = CreateWindowExA(0, kBodyClass, "", WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, kBorder, kBarHeight,
                            width, height, window_, nullptr, nullptr, nullptr);
}

PanelFrame::~PanelFrame() {
    if (window_) DestroyWindow(window_);
}

HWND PanelFrame::body() const {
    return body_ && IsWindow(body_) ? body_ : nullptr;
}

void PanelFrame::Show(bool show) {
    ShowWindow(window_, show ? SW_SHOW : SW_HIDE);
}

HostSize PanelFrame::BodySize() const {
    RECT client{};
    GetClientRect(window_, &client);
    return {static_cast<double>(client.right - 2 * kBorder),
            static_cast<double>(client.bottom - kBarHeight - kGripHeight)};
}

void PanelFrame::Resize(HostSize size) {
    const int width = std::max(Pixels(size.width), Pixels(panel_.minimum.width));
    const int height = std::max(Pixels(size.height), Pixels(panel_.minimum.height));
    SetWindowPos(window_, nullptr, 0, 0, width + 2 * kBorder, kBarHeight + height + kGripHeight,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    InvalidateRect(window_, nullptr, FALSE); // the button stands elsewhere in the title now
    if (body())
        SetWindowPos(body_, nullptr, kBorder, kBarHeight, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
    if (panel_.onSize) panel_.onSize(panel_.handle);
    if (!body()) return;
    InvalidateRect(body_, nullptr, TRUE);
    // Controls that moved over one another have kept each other's pixels.
    EnumChildWindows(body_, InvalidateChild, 0);
}

RECT PanelFrame::FlyoutButton() const {
    RECT client{};
    GetClientRect(window_, &client);
    return {client.right - kFlyoutButtonWidth, 2, client.right - 2, kBarHeight - 2};
}

void PanelFrame::OpenFlyout() {
    if (!panel_.flyout) return;
    std::vector<PopupItem> items;
    for (const FlyoutItem& item : panel_.flyout->items) {
        items.push_back({.number = item.number,
                         .text = item.text,
                         .separator = item.separator,
                         .marked = item.marked,
                         .enabled = item.enabled,
                         .items = {}});
    }
    POINT at{FlyoutButton().left, kBarHeight};
    ClientToScreen(window_, &at);
    const int picked = RunPopupMenu(window_, at, items, host_.theme());
    if (picked != 0 && panel_.onFlyout) panel_.onFlyout(panel_.handle, picked);
}

void PanelFrame::Paint() {
    PAINTSTRUCT paint;
    const HDC context = BeginPaint(window_, &paint);
    const FrameColors colors = ColorsOf(host_.theme());
    RECT client;
    GetClientRect(window_, &client);
    FillColor(context, client, colors.face);
    FillColor(context, {0, 0, client.right, kBarHeight}, colors.strip);
    FrameColor(context, client, colors.border);
    DrawLine(context, {0, 0, client.right, kBarHeight}, 8, panel_.title, colors.text);
    const RECT button = FlyoutButton();
    for (int line = 0; line < 3; ++line) {
        const int y = button.top + 5 + 4 * line;
        FillColor(context, {button.left + 6, y, button.right - 6, y + 2}, colors.text);
    }
    const RECT grip{client.right - 12, client.bottom - 4, client.right - 3, client.bottom - 3};
    FillColor(context, grip, colors.text);
    EndPaint(window_, &paint);
}

void PanelFrame::Press(POINT point) {
    const RECT button = FlyoutButton();
    if (PtInRect(&button, point)) {
        OpenFlyout();
        return;
    }
    RECT client;
    GetClientRect(window_, &client);
    const bool corner = point.y >= client.bottom - kGripHeight && point.x >= client.right - 16;
    if (!corner && point.y >= kBarHeight) return;
    grip_ = corner ? Grip::kSize : Grip::kMove;
    GetCursorPos(&gripPoint_);
    GetWindowRect(window_, &gripRect_);
    SetCapture(window_);
}

void PanelFrame::Drag(POINT screen) {
    const int dx = screen.x - gripPoint_.x, dy = screen.y - gripPoint_.y;
    if (grip_ == Grip::kMove) {
        SetWindowPos(window_, nullptr, gripRect_.left + dx, gripRect_.top + dy, 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    } else if (grip_ == Grip::kSize) {
        Resize({static_cast<double>(gripRect_.right - gripRect_.left - 2 * kBorder + dx),
                static_cast<double>(gripRect_.bottom - gripRect_.top - kBarHeight - kGripHeight + dy)});
    }
}

LRESULT PanelFrame::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    const POINT point{static_cast<SHORT>(LOWORD(lParam)), static_cast<SHORT>(HIWORD(lParam))};
    switch (message) {
        case WM_PAINT:
            Paint();
            return 0;
        case WM_ENABLE:
            if (enabled) enabled(wParam != 0);
            return 0;
        case WM_LBUTTONDOWN:
            Press(point);
            return 0;
        case WM_MOUSEMOVE:
            if (grip_ != Grip::kNone) {
                POINT screen = point;
                ClientToScreen(window_, &screen);
                Drag(screen);
            }
            return 0;
        case WM_LBUTTONUP:
            if (grip_ != Grip::kNone) ReleaseCapture();
            return 0;
        case WM_CAPTURECHANGED:
            grip_ = Grip::kNone;
            return 0;
        case WM_DESTROY:
            SetWindowLongPtrA(window_, GWLP_USERDATA, 0);
            window_ = nullptr;
            return 0;
        default:
            return DefWindowProcA(window_, message, wParam, lParam);
    }
}

LRESULT CALLBACK PanelFrame::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    PanelFrame* frame = ObjectOf<PanelFrame>(window, message, lParam);
    if (!frame) return DefWindowProcA(window, message, wParam, lParam);
    frame->window_ = window;
    return frame->Handle(message, wParam, lParam);
}

} // namespace workbench
