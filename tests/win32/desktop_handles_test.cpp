#include <gtest/gtest.h>

#include <set>

#include "tests/win32/desktop_log.h"
#include "win32/headless/headless_display.h"
#include "win32/object_counts.h"

namespace {

constexpr ObjectCounts kNothing = {};

// Destroys a window in the middle of one of the messages that a scene brings.
struct Destroyer {
    int message = -1;      // counted from 0; the one in which it strikes
    bool topLevel = false; // what it destroys: the window itself, or the top-level window around it
    int seen = 0;
};
Destroyer destroyer;

LRESULT CALLBACK DestroyingProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (destroyer.seen++ == destroyer.message) {
        const HWND parent = GetParent(window);
        DestroyWindow(destroyer.topLevel && parent != nullptr ? parent : window);
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

HWND Make(DWORD style, const RECT& place, HWND parent) {
    return CreateWindowExA(0, "Destroying", "title", style | WS_VISIBLE, place.left, place.top,
                           place.right - place.left, place.bottom - place.top, parent, nullptr, nullptr,
                           nullptr);
}

// Every kind of message that the desktop sends, whatever has become of the windows by then.
void PlayScene() {
    HeadlessDisplay hands(200, 150);
    const HWND top = Make(WS_CAPTION | WS_SYSMENU, {10, 10, 150, 140}, nullptr);
    const HWND child = Make(WS_CHILD | WS_BORDER, {10, 10, 60, 60}, top);
    const HWND grandchild = Make(WS_CHILD, {5, 5, 30, 30}, child);
    const HWND popup = Make(WS_POPUP, {100, 60, 140, 100}, top);
    if (child != nullptr) SetTimer(child, 1, 20, nullptr);
    PostMessageA(grandchild, WM_APP, 0, 0);
    hands.Click(40, 60).Click(110, 70).Move(30, 50).Wheel(1).Pause(40);
    hands.Do([=] { SetFocus(grandchild); }).Type(u8"a").KeyWith(VK_MENU, 'X').Drag({60, 15}, {70, 25}, 2);
    hands.Do([=] {
        SetCapture(grandchild);
        SetWindowPos(child, HWND_TOP, 5, 5, 40, 40, 0);
        ShowWindow(child, SW_HIDE);
        ShowWindow(child, SW_SHOW);
        EnableWindow(child, FALSE);
        SetWindowTextA(top, "other");
        InvalidateRect(top, nullptr, TRUE);
        UpdateWindow(top);
        ResizeDesktop(190, 140);
    });
    Pump(hands);
    KillTimer(child, 1);
    hands.Click(158, 22).Do([=] {
        DestroyWindow(popup);
        DestroyWindow(top);
    });
    Pump(hands);
    EXPECT_EQ(CountObjects(), kNothing);
}

TEST(DesktopHandles, AnyMessageMayDestroyAnyWindow) {
    WNDCLASSA destroying = {};
    destroying.style = CS_DBLCLKS;
    destroying.lpfnWndProc = DestroyingProcedure;
    destroying.lpszClassName = "Destroying";
    destroying.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    RegisterClassA(&destroying);
    destroyer = {};
    PlayScene();
    const int messages = destroyer.seen;
    EXPECT_GT(messages, 100);
    for (const bool topLevel : {false, true})
        for (int message = 0; message < messages; ++message) {
            destroyer = {message, topLevel, 0};
            PlayScene();
            ASSERT_FALSE(HasFailure()) << message;
        }
    EXPECT_TRUE(UnregisterClassA("Destroying", nullptr));
}

TEST(DesktopHandles, AStaleHandleLeadsNowhere) {
    HeadlessDisplay hands(50, 50);
    RegisterLogClass();
    const HWND living = MakeLogged("L", 0, WS_POPUP | WS_VISIBLE, {0, 0, 9, 9}, nullptr);
    const HWND stale = MakeLogged("S", 0, WS_POPUP, {0, 0, 9, 9}, nullptr);
    PostMessageA(stale, WM_APP, 0, 0);
    SetTimer(stale, 1, 10, nullptr);
    DestroyWindow(stale);
    std::set<HWND> made;
    for (int again = 0; again < 5000; ++again) { // its place is used again
        const HWND window = MakeLogged("N", 0, WS_CHILD, {0, 0, 1, 1}, living);
        ASSERT_NE(window, stale);
        made.insert(window);
        DestroyWindow(window);
    }
    EXPECT_EQ(made.size(), 5000u);
    TakeLog();
    const HWND handles[] = {stale, HWND_TOPMOST, HWND_BOTTOM, reinterpret_cast<HWND>(0x12345678)};
    RECT rectangle;
    POINT point = {};
    char text[9] = "";
    for (const HWND handle : handles) {
        EXPECT_FALSE(IsWindow(handle));
        EXPECT_FALSE(DestroyWindow(handle));
        EXPECT_FALSE(SetWindowPos(handle, nullptr, 1, 1, 1, 1, 0));
        EXPECT_FALSE(ShowWindow(handle, SW_SHOW));
        EXPECT_FALSE(GetClientRect(handle, &rectangle));
        EXPECT_FALSE(ScreenToClient(handle, &point));
        EXPECT_EQ(GetWindowTextA(handle, text, sizeof text), 0);
        EXPECT_EQ(SetWindowLongPtrA(handle, GWLP_WNDPROC, 1), 0);
        EXPECT_EQ(SendMessageA(handle, WM_GETTEXTLENGTH, 0, 0), 0);
        EXPECT_FALSE(PostMessageA(handle, WM_APP, 0, 0));
        EXPECT_EQ(SetTimer(handle, 1, 10, nullptr), 0u);
        EXPECT_EQ(GetDC(handle), nullptr);
        EXPECT_FALSE(InvalidateRect(handle, nullptr, TRUE));
        EXPECT_EQ(SetFocus(handle), nullptr);
        EXPECT_EQ(SetCapture(handle), nullptr);
        EXPECT_EQ(GetDlgItem(handle, 1), nullptr);
        EXPECT_EQ(MakeLogged("C", 0, WS_CHILD, {0, 0, 1, 1}, handle), nullptr);
    }
    EXPECT_EQ(GetLastError(), ERROR_INVALID_WINDOW_HANDLE);
    Sleep(100);
    Pump(hands);
    EXPECT_EQ(TakeLog(), std::vector<std::string>{"L PAINT"});
    EXPECT_EQ(CountObjects().timers, 0);
    DestroyWindow(living);
    ForgetLogClass();
}

} // namespace
