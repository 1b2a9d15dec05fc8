#include "workbench/frame/progress_window.h"

#include <utility>

#include "workbench/frame/frame_looks.h"
#include "workbench/suites/host.h"

namespace workbench {

namespace {

constexpr char kProgressClass[] = "WorkbenchProgress";
constexpr int kProgressWidth = 320, kProgressHeight = 64, kProgressMargin = 14;
constexpr DWORD kPatience = 333; ///< milliseconds before the window appears
constexpr DWORD kBetween = 50;   ///< milliseconds from one picture of the bar to the next

} // namespace

ProgressWindow::ProgressWindow(HWND over, std::string text)
    : over_(over), text_(std::move(text)), begun_(GetTickCount()) {}

ProgressWindow::~ProgressWindow() {
    if (window_) DestroyWindow(window_);
}

void ProgressWindow::Make() {
    RegisterFrameClass(kProgressClass, Procedure);
    RECT place{};
    GetWindowRect(over_, &place);
    const int left = (place.left + place.right - kProgressWidth) / 2,
              top = (place.top + place.bottom - kProgressHeight) / 2;
    CreateWindowExA(WS_EX_TOPMOST | WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, kProgressClass, "", WS_POPUP, left,
                    top, kProgressWidth, kProgressHeight, nullptr, nullptr, nullptr, this);
    if (window_) ShowWindow(window_, SW_SHOWNA);
}

void ProgressWindow::ShowNow() {
    if (!window_) Make();
    if (!window_) return;
    InvalidateRect(window_, nullptr, FALSE);
    UpdateWindow(window_);
    GetAsyncKeyState(VK_ESCAPE); // lets the display show what was painted
    shownAt_ = GetTickCount();
}

void ProgressWindow::Show(size_t done, size_t of) {
    done_ = done;
    of_ = of;
    const DWORD now = GetTickCount();
    if (window_ ? now - shownAt_ >= kBetween : now - begun_ >= kPatience) ShowNow();
}

void ProgressWindow::Paint() {
    PAINTSTRUCT paint;
    const HDC context = BeginPaint(window_, &paint);
    const FrameColors colors = ColorsOf(Host::Current() ? Host::Current()->theme() : LightTheme());
    RECT client;
    GetClientRect(window_, &client);
    FillColor(context, client, colors.face);
    FrameColor(context, client, colors.border);
    DrawLine(context, {kProgressMargin, 8, client.right - kProgressMargin, 30}, 0, text_, colors.text);
    if (of_ > 0) {
        RECT bar{kProgressMargin, 36, client.right - kProgressMargin, 50};
        FrameColor(context, bar, colors.border);
        InflateRect(&bar, -2, -2);
        bar.right = bar.left + static_cast<LONG>((bar.right - bar.left) * static_cast<double>(done_) /
                                                 static_cast<double>(of_));
        FillColor(context, bar, colors.highlight);
    }
    EndPaint(window_, &paint);
}

LRESULT CALLBACK ProgressWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    ProgressWindow* progress = ObjectOf<ProgressWindow>(window, message, lParam);
    if (!progress) return DefWindowProcA(window, message, wParam, lParam);
    progress->window_ = window;
    if (message == WM_PAINT) {
        progress->Paint();
        return 0;
    }
    if (message == WM_DESTROY) {
        SetWindowLongPtrA(window, GWLP_USERDATA, 0);
        progress->window_ = nullptr;
        return 0;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

} // namespace workbench
