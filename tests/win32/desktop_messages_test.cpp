#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/win32/desktop_log.h"
#include "win32/headless/headless_display.h"
#include "win32/object_counts.h"

namespace {

using testing::ElementsAre;

class DesktopMessages : public testing::Test {
protected:
    DesktopMessages() { RegisterLogClass(); }
    ~DesktopMessages() override {
        for (const HWND window : {top_, popup_})
            if (IsWindow(window)) DestroyWindow(window);
        ForgetLogClass();
        EXPECT_EQ(CountObjects().windows, 0);
        EXPECT_EQ(CountObjects().timers, 0);
        EXPECT_EQ(CountObjects().contexts, 0);
    }

    void MakeWindows() {
        top_ = MakeLogged("A", 0, WS_POPUP, {50, 40, 250, 190}, nullptr);
        child_ = MakeLogged("C", 0, WS_CHILD | WS_VISIBLE, {20, 20, 50, 50}, top_);
        ShowWindow(top_, SW_SHOW);
        Pump(hands_);
        TakeLog();
    }
    void MakePopup() { popup_ = MakeLogged("B", 0, WS_POPUP | WS_VISIBLE, {120, 60, 180, 110}, top_); }
    std::vector<std::string> Pumped() {
        Pump(hands_);
        return TakeLog();
    }

    HeadlessDisplay hands_{400, 300};
    HWND top_ = nullptr, child_ = nullptr, popup_ = nullptr;
};

// The orders are those of real windows.
TEST_F(DesktopMessages, TheFocusGoesFromWindowToWindow) {
    MakeWindows();
    SetFocus(child_);
    EXPECT_THAT(TakeLog(), ElementsAre("A KILLFOCUS", "C SETFOCUS"));
    MakePopup();
    EXPECT_THAT(TakeLog(), ElementsAre("B CREATE", "A ACTIVATE", "B ACTIVATE", "C KILLFOCUS", "B SETFOCUS"));
    EXPECT_THAT(Pumped(), ElementsAre("B PAINT"));
    hands_.Click(80, 70);
    EXPECT_THAT(Pumped(), ElementsAre("B ACTIVATE", "A ACTIVATE", "B KILLFOCUS", "A SETFOCUS",
                                      "C LBUTTONDOWN", "C LBUTTONUP"));
    SetFocus(child_);
    TakeLog();
    EnableWindow(child_, FALSE); // its input goes to what is around it
    EXPECT_THAT(TakeLog(), ElementsAre("C KILLFOCUS"));
    hands_.Click(80, 70);
    EXPECT_THAT(Pumped(), ElementsAre("A LBUTTONDOWN", "A LBUTTONUP"));
    EnableWindow(child_, TRUE);
    SetFocus(child_);
    TakeLog();
    DestroyWindow(child_);
    EXPECT_THAT(TakeLog(), ElementsAre("C KILLFOCUS", "A SETFOCUS", "C DESTROY"));
    MakeLogged("D", 0, WS_CHILD, {0, 0, 9, 9}, top_);
    SetFocus(popup_);
    TakeLog();
    DestroyWindow(top_);
    EXPECT_THAT(TakeLog(), ElementsAre("B ACTIVATE", "B KILLFOCUS", "B DESTROY", "A DESTROY", "D DESTROY"));
}

TEST_F(DesktopMessages, KeysAndLettersGoToTheFocus) {
    MakeWindows();
    SetFocus(child_);
    TakeLog();
    hands_.Type(u8"a表").KeyWith(VK_CONTROL, 'C').KeyWith(VK_MENU, 'N');
    EXPECT_THAT(Pumped(), ElementsAre("C KEYDOWN 41", "C CHAR 61", "C KEYUP 41", "C CHAR 95", "C CHAR 5c",
                                      "C KEYDOWN 11", "C KEYDOWN 43", "C CHAR 3", "C KEYUP 43", "C KEYUP 11",
                                      "C SYSKEYDOWN 12", "C SYSKEYDOWN 4e", "C SYSCHAR 6e", "C SYSKEYUP 4e",
                                      "C KEYUP 12"));
}

TEST_F(DesktopMessages, ADoubleClickIsTheSecondOfTwo) {
    MakeWindows();
    const auto presses = [&] {
        std::string found;
        for (const std::string& line : Pumped())
            if (line.starts_with("C LBUTTOND")) found += line.starts_with("C LBUTTONDBL") ? '2' : '1';
        return found;
    };
    hands_.Click(81, 71).Click(81, 71);
    EXPECT_EQ(presses(), "12");
    hands_.DoubleClick(81, 71); // the third press begins anew
    EXPECT_EQ(presses(), "12");
    hands_.Click(81, 71).Pause(501).Click(81, 71);
    EXPECT_EQ(presses(), "11");
    hands_.Pause(600).Click(81, 71).Click(84, 71); // too far away
    EXPECT_EQ(presses(), "11");
}

TEST_F(DesktopMessages, PostedComeBeforeQuitInputPaintAndTimers) {
    MakeWindows();
    SetTimer(child_, 5, 20, nullptr);
    Sleep(100); // five periods, one message
    InvalidateRect(top_, nullptr, TRUE);
    InputKey('B', true);
    PostMessageA(top_, WM_APP, 0, 0);
    PostQuitMessage(3);
    std::vector<UINT> order;
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE)) {
        MSG removed;
        ASSERT_TRUE(PeekMessageA(&removed, nullptr, 0, 0, PM_REMOVE));
        EXPECT_EQ(removed.message, message.message);
        order.push_back(removed.message);
        DispatchMessageA(&removed);
    }
    EXPECT_THAT(order, ElementsAre(WM_APP, WM_QUIT, WM_KEYDOWN, WM_PAINT, WM_PAINT, WM_TIMER));
    InputKey('B', false);
    KillTimer(child_, 5);
}

TEST_F(DesktopMessages, TheCaptionMovesAndClosesAWindow) {
    top_ = MakeLogged("O", 0, WS_CAPTION | WS_SYSMENU | WS_VISIBLE, {30, 30, 130, 110}, nullptr);
    hands_.Drag({60, 40}, {75, 60}, 3);
    Pump(hands_);
    RECT frame;
    GetWindowRect(top_, &frame);
    EXPECT_EQ(frame.left, 45);
    EXPECT_EQ(frame.top, 50);
    hands_.Drag({frame.right - 10, frame.top + 10}, {frame.right - 60, frame.top + 60}, 2); // let go outside
    Pump(hands_);
    EXPECT_TRUE(IsWindow(top_));
    hands_.Click(frame.right - 10, frame.top + 10);
    Pump(hands_);
    EXPECT_FALSE(IsWindow(top_));
}

std::string Order() {
    std::string order;
    for (HWND window = GetTopWindow(nullptr); window != nullptr; window = GetWindow(window, GW_HWNDNEXT)) {
        char name[8];
        GetWindowTextA(window, name, sizeof name);
        order += order.empty() ? name : std::string(" ") + name;
    }
    return order;
}

TEST_F(DesktopMessages, OwnedWindowsStayAboveTheirOwner) {
    top_ = MakeLogged("A", 0, WS_POPUP | WS_VISIBLE, {0, 0, 50, 50}, nullptr);
    const HWND first = MakeLogged("P1", 0, WS_POPUP | WS_VISIBLE, {0, 0, 50, 50}, top_);
    const HWND second = MakeLogged("P2", 0, WS_POPUP | WS_VISIBLE, {0, 0, 50, 50}, top_);
    const HWND other = popup_ = MakeLogged("R", 0, WS_POPUP | WS_VISIBLE, {0, 0, 50, 50}, nullptr);
    const auto place = [](HWND window, HWND behind) {
        SetWindowPos(window, behind, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
        return Order();
    };
    EXPECT_EQ(Order(), "R P2 P1 A");
    EXPECT_EQ(place(first, HWND_TOP), "P1 R P2 A");
    EXPECT_EQ(place(other, HWND_TOP), "R P1 P2 A");
    EXPECT_EQ(place(top_, HWND_TOP), "P1 P2 A R");
    EXPECT_EQ(place(top_, HWND_BOTTOM), "P1 P2 R A");
    EXPECT_EQ(place(first, HWND_BOTTOM), "P2 R P1 A");
    EXPECT_EQ(place(second, other), "R P2 P1 A");
    EXPECT_EQ(place(top_, HWND_TOPMOST), "P2 P1 A R");
    EXPECT_EQ(place(other, HWND_TOP), "P2 P1 A R");
    EXPECT_EQ(place(top_, HWND_NOTOPMOST), "P2 P1 A R");
    EXPECT_EQ(place(other, HWND_TOP), "R P2 P1 A");
}

} // namespace
