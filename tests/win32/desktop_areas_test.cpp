#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "win32/headless/headless_display.h"
#include "win32/object_counts.h"
#include "win32/window_frame.h"

// Random trees of windows on a small screen, against a model that asks each pixel.
namespace {

constexpr int kAreaWidth = 64, kAreaHeight = 48;
constexpr size_t kMostWindows = 12;

uint32_t PixelOf(COLORREF color) {
    return static_cast<uint32_t>(GetRValue(color)) << 16 | static_cast<uint32_t>(GetGValue(color)) << 8 |
           GetBValue(color);
}

// What a window shows at a place of its client area: no two places or windows look alike.
COLORREF PatternAt(HWND window, int x, int y) {
    const auto seed = static_cast<uint32_t>(reinterpret_cast<uintptr_t>(window));
    return RGB(40 + x * 3, 40 + y * 4, seed * 37 + (seed >> 16) * 11);
}

constexpr COLORREF kErased = RGB(1, 2, 3);

LRESULT CALLBACK PatternProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCPAINT) {
        const HDC context = GetWindowDC(window);
        RECT frame;
        GetWindowRect(window, &frame);
        OffsetRect(&frame, -frame.left, -frame.top);
        const RECT client = ClientOfFrame(frame, static_cast<DWORD>(GetWindowLongPtrA(window, GWL_STYLE)), 0);
        for (int x = 0; x < frame.right; ++x)
            for (int y = 0; y < frame.bottom; ++y)
                if (!PtInRect(&client, {x, y})) SetPixel(context, x, y, PatternAt(window, 255 - x, 255 - y));
        ReleaseDC(window, context);
        return 0;
    }
    if (message != WM_PAINT) return DefWindowProcA(window, message, wParam, lParam);
    PAINTSTRUCT paint;
    const HDC context = BeginPaint(window, &paint);
    // One that was erased draws nothing else where its background shows through.
    for (int x = paint.rcPaint.left; x < paint.rcPaint.right; ++x)
        for (int y = paint.rcPaint.top; y < paint.rcPaint.bottom; ++y)
            if ((x + y) % 3 != 0) SetPixel(context, x, y, PatternAt(window, x, y));
    EndPaint(window, &paint);
    return 0;
}

class DesktopAreas : public testing::TestWithParam<int> {
protected:
    DesktopAreas() : random_(static_cast<unsigned>(GetParam())) {
        background_ = CreateSolidBrush(kErased);
        WNDCLASSA pattern = {};
        pattern.lpfnWndProc = PatternProcedure;
        pattern.lpszClassName = "Pattern";
        pattern.hbrBackground = background_;
        RegisterClassA(&pattern);
        pattern.style = CS_HREDRAW | CS_VREDRAW;
        pattern.lpszClassName = "PatternRedrawn";
        RegisterClassA(&pattern);
    }
    ~DesktopAreas() override {
        while (!windows_.empty()) DestroyOne(0);
        UnregisterClassA("Pattern", nullptr);
        UnregisterClassA("PatternRedrawn", nullptr);
        DeleteObject(background_);
        EXPECT_EQ(CountObjects().windows, 0);
        EXPECT_EQ(CountObjects().contexts, 0);
    }

    int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
    HWND AnyWindow() { return windows_[static_cast<size_t>(Below(static_cast<int>(windows_.size())))]; }

    RECT AnyPlace(HWND parent) {
        const int left = Below(parent == nullptr ? 40 : 20) - 6, top = Below(parent == nullptr ? 30 : 16) - 6;
        return {left, top, left + Below(45), top + Below(35)};
    }

    void MakeOne() {
        // Few parents, so that siblings overlap.
        const int parents = std::min(static_cast<int>(windows_.size()), 3);
        const HWND parent =
            parents > 0 && Below(5) > 0 ? windows_[static_cast<size_t>(Below(parents))] : nullptr;
        const bool owned = Below(6) == 0; // a window of its own that stays above what would be its parent
        DWORD style = (parent != nullptr && !owned ? WS_CHILD : WS_POPUP) | WS_CLIPSIBLINGS;
        if (Below(4) > 0) style |= WS_VISIBLE;
        if (Below(2) > 0) style |= WS_CLIPCHILDREN;
        if (Below(3) == 0) style |= WS_BORDER;
        const char* name = Below(2) > 0 ? "Pattern" : "PatternRedrawn";
        const bool topmost = (style & WS_POPUP) != 0 && Below(4) == 0;
        const RECT place = AnyPlace(parent);
        windows_.push_back(CreateWindowExA(topmost ? WS_EX_TOPMOST : 0, name, "", style, place.left,
                                           place.top, place.right - place.left, place.bottom - place.top,
                                           parent, nullptr, nullptr, nullptr));
        ASSERT_NE(windows_.back(), nullptr);
    }

    void DestroyOne(size_t at) {
        DestroyWindow(windows_[at]);
        std::erase_if(windows_, [](HWND window) { return !IsWindow(window); });
    }

    void ChangeSomething() {
        if (windows_.size() < 3 || (windows_.size() < kMostWindows && Below(4) == 0)) {
            MakeOne();
            return;
        }
        const HWND window = AnyWindow();
        const RECT place = AnyPlace(GetParent(window));
        const int width = place.right - place.left, height = place.bottom - place.top;
        switch (Below(7)) {
            case 0:
                SetWindowPos(window, nullptr, place.left, place.top, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
                break;
            case 1:
                SetWindowPos(window, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER);
                break;
            case 2:
                MoveWindow(window, place.left, place.top, width, height, TRUE);
                break;
            case 3:
                ShowWindow(window, Below(2) > 0 ? SW_SHOW : SW_HIDE);
                break;
            case 4:
                SetWindowPos(window, Below(2) > 0 ? HWND_TOP : HWND_BOTTOM, 0, 0, 0, 0,
                             SWP_NOMOVE | SWP_NOSIZE);
                break;
            case 5: {
                const RECT part = {Below(20), Below(20), Below(40), Below(40)};
                InvalidateRect(window, &part, Below(2));
                break;
            }
            default:
                if (Below(3) == 0) DestroyOne(static_cast<size_t>(Below(static_cast<int>(windows_.size()))));
        }
    }

    HeadlessDisplay hands_{kAreaWidth, kAreaHeight};
    std::mt19937 random_;
    HBRUSH background_;
    std::vector<HWND> windows_;
};

DWORD StyleOf(HWND window) {
    return static_cast<DWORD>(GetWindowLongPtrA(window, GWL_STYLE));
}

bool InFrame(HWND window, POINT point) {
    RECT frame;
    GetWindowRect(window, &frame);
    return PtInRect(&frame, point);
}

bool InClient(HWND window, POINT point) {
    RECT client;
    GetClientRect(window, &client);
    ScreenToClient(window, &point);
    return PtInRect(&client, point);
}

// The colour of a pixel when all is painted, from the topmost window down.
COLORREF ExpectedIn(HWND parent, POINT point) {
    for (HWND window = GetWindow(parent, GW_CHILD); window != nullptr;
         window = GetWindow(window, GW_HWNDNEXT)) {
        if ((StyleOf(window) & WS_VISIBLE) == 0 || !InFrame(window, point)) continue;
        RECT frame;
        GetWindowRect(window, &frame);
        if (!InClient(window, point))
            return PatternAt(window, 255 - (point.x - frame.left), 255 - (point.y - frame.top));
        const COLORREF inside = ExpectedIn(window, point);
        if (inside != CLR_INVALID) return inside;
        ScreenToClient(window, &point);
        return (point.x + point.y) % 3 != 0 ? PatternAt(window, point.x, point.y) : kErased;
    }
    return CLR_INVALID;
}

// Whatever windows do, when they have painted what they were asked to, the screen is as if all was painted.
TEST_P(DesktopAreas, WhatIsPaintedAddsUpToTheWholePicture) {
    for (int round = 0; round < 60; ++round) {
        for (int change = Below(4); change >= 0; --change) ChangeSomething();
        if (Below(4) == 0 && !windows_.empty()) UpdateWindow(AnyWindow());
        MSG message;
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageA(&message);
        for (int x = 0; x < kAreaWidth; ++x)
            for (int y = 0; y < kAreaHeight; ++y) {
                COLORREF expected = ExpectedIn(GetDesktopWindow(), {x, y});
                if (expected == CLR_INVALID) expected = GetSysColor(COLOR_BACKGROUND);
                ASSERT_EQ(hands_.Pixel(x, y), PixelOf(expected)) << x << ", " << y << " in round " << round;
            }
    }
}

INSTANTIATE_TEST_SUITE_P(Trees, DesktopAreas, testing::Range(1, 7));

} // namespace
