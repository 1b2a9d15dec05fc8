#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/win32/desktop_log.h"
#include "win32/headless/headless_display.h"
#include "win32/object_counts.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

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
    void MakePopup() {
        popup_ = MakeLogged("B", 0, WS_POPUP | WS_VISIBLE, {120, 60, 180, 110}, top_);
        Pump(hands_);
        TakeLog();
    }
    std::vector<std::string> Pumped() {
        Pump(hands_);
        return TakeLog();
    }

    HeadlessDisplay hands_{400, 300};
    HWND top_ = nullptr, child_ = nullptr, popup_ = nullptr;
};

// The orders below are those of real windows, but that those draw frames and erase backgrounds when they are
// shown, and that what is uncovered is painted anew here.
TEST_F(DesktopMessages, CreationShowsAndMovesTheFocusInWindowsOrder) {
    top_ = MakeLogged("A", 0, WS_POPUP, {50, 40, 250, 190}, nullptr);
    EXPECT_THAT(TakeLog(), ElementsAre("A NCCREATE", "A CREATE", "A SIZE 0 200 150", "A MOVE 0 50 40"));
    child_ = MakeLogged("C", 0, WS_CHILD | WS_VISIBLE, {10, 10, 60, 50}, top_);
    EXPECT_THAT(TakeLog(), ElementsAre("C NCCREATE", "C CREATE", "C SIZE 0 50 40", "C MOVE 0 10 10",
                                       "C SHOWWINDOW 1 0"));
    ShowWindow(top_, SW_SHOW);
    EXPECT_THAT(TakeLog(),
                ElementsAre("A SHOWWINDOW 1 0", "A ACTIVATE 1 0", "A SETFOCUS 0", "A WINDOWPOSCHANGED"));
    EXPECT_THAT(Pumped(), ElementsAre("A PAINT", "C PAINT"));
    SetFocus(child_);
    EXPECT_THAT(TakeLog(), ElementsAre("A KILLFOCUS C", "C SETFOCUS A"));
    popup_ = MakeLogged("B", 0, WS_POPUP | WS_VISIBLE, {120, 60, 180, 110}, top_);
    EXPECT_THAT(TakeLog(), ElementsAre("B NCCREATE", "B CREATE", "B SIZE 0 60 50", "B MOVE 0 120 60",
                                       "B SHOWWINDOW 1 0", "A ACTIVATE 0 B", "B ACTIVATE 1 A",
                                       "C KILLFOCUS B", "B SETFOCUS C", "B WINDOWPOSCHANGED"));
    EXPECT_THAT(Pumped(), ElementsAre("B PAINT"));
}

TEST_F(DesktopMessages, AnOverlappedWindowLearnsItsSizeWhenItIsShown) {
    top_ = MakeLogged("O", 0, WS_OVERLAPPED | WS_VISIBLE, {30, 30, 130, 110}, nullptr);
    EXPECT_THAT(TakeLog(),
                ElementsAre("O NCCREATE", "O CREATE", "O SHOWWINDOW 1 0", "O ACTIVATE 1 0", "O SETFOCUS 0",
                            "O WINDOWPOSCHANGED", "O SIZE 0 98 58", "O MOVE 0 31 51"));
}

TEST_F(DesktopMessages, OnlyWhatChangesIsTold) {
    MakeWindows();
    SetWindowPos(child_, nullptr, 25, 20, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    EXPECT_THAT(TakeLog(), ElementsAre("C WINDOWPOSCHANGED", "C MOVE 0 25 20"));
    SetWindowPos(child_, nullptr, 0, 0, 40, 30, SWP_NOMOVE | SWP_NOZORDER);
    EXPECT_THAT(TakeLog(), ElementsAre("C WINDOWPOSCHANGED", "C SIZE 0 40 30"));
    MoveWindow(child_, 25, 20, 40, 30, TRUE);
    EXPECT_THAT(TakeLog(), IsEmpty());
    ShowWindow(child_, SW_SHOW);
    EXPECT_THAT(TakeLog(), IsEmpty());
}

TEST_F(DesktopMessages, DestructionHandsOnTheFocusFirst) {
    MakeWindows();
    MakePopup();
    DestroyWindow(popup_);
    EXPECT_THAT(TakeLog(), ElementsAre("B WINDOWPOSCHANGED", "B ACTIVATE 0 A", "A ACTIVATE 1 B",
                                       "B KILLFOCUS A", "A SETFOCUS B", "B DESTROY", "B NCDESTROY"));
    SetFocus(child_);
    TakeLog();
    DestroyWindow(child_);
    EXPECT_THAT(TakeLog(), ElementsAre("C SHOWWINDOW 0 0", "C WINDOWPOSCHANGED", "C KILLFOCUS A",
                                       "A SETFOCUS C", "C DESTROY", "C NCDESTROY"));
    MakeLogged("D", 0, WS_CHILD, {0, 0, 9, 9}, top_);
    MakePopup();
    DestroyWindow(top_);
    EXPECT_THAT(TakeLog(), ElementsAre("A WINDOWPOSCHANGED", "B WINDOWPOSCHANGED", "B ACTIVATE 0 0",
                                       "B KILLFOCUS 0", "B DESTROY", "B NCDESTROY", "A DESTROY", "D DESTROY",
                                       "D NCDESTROY", "A NCDESTROY"));
}

TEST_F(DesktopMessages, APressActivatesAndADoubleClickIsTheSecondOfTwo) {
    MakeWindows();
    MakePopup();
    hands_.Click(80, 70);
    EXPECT_THAT(Pumped(), ElementsAre("C SETCURSOR C 1 200", "A SETCURSOR C 1 200", "C MOUSEMOVE 0 10 10",
                                      "C MOUSEACTIVATE A 1 201", "A MOUSEACTIVATE A 1 201", "B ACTIVATE 0 A",
                                      "A ACTIVATE 2 B", "B KILLFOCUS A", "A SETFOCUS B",
                                      "C SETCURSOR C 1 201", "A SETCURSOR C 1 201", "C LBUTTONDOWN 1 10 10",
                                      "C SETCURSOR C 1 202", "A SETCURSOR C 1 202", "C LBUTTONUP 0 10 10"));
    const auto presses = [&] {
        std::string found;
        for (const std::string& line : Pumped())
            if (line.starts_with("C LBUTTOND")) found += line.starts_with("C LBUTTONDBL") ? '2' : '1';
        return found;
    };
    hands_.Click(81, 71);
    EXPECT_EQ(presses(), "2");
    hands_.DoubleClick(81, 71); // the third press begins anew
    EXPECT_EQ(presses(), "12");
    hands_.Click(81, 71).Pause(501).Click(81, 71);
    EXPECT_EQ(presses(), "11");
    hands_.Pause(600).Click(81, 71).Click(84, 71); // too far away
    EXPECT_EQ(presses(), "11");
}

TEST_F(DesktopMessages, DisabledWindowsGetNoInput) {
    MakeWindows();
    SetFocus(child_);
    TakeLog();
    EnableWindow(child_, FALSE);
    EXPECT_THAT(TakeLog(), ElementsAre("C KILLFOCUS 0", "C ENABLE 0"));
    hands_.Click(80, 70);
    EXPECT_THAT(Pumped(), ElementsAre("A SETCURSOR A 1 200", "A MOUSEMOVE 0 30 30", "A SETCURSOR A 1 201",
                                      "A LBUTTONDOWN 1 30 30", "A SETCURSOR A 1 202", "A LBUTTONUP 0 30 30"));
    EnableWindow(top_, FALSE);
    MakePopup();
    hands_.Click(60, 120);
    EXPECT_THAT(Pumped(),
                ElementsAre("A SETCURSOR A -2 200", "A SETCURSOR A -2 201", "A SETCURSOR A -2 202"));
    EXPECT_EQ(SetFocus(child_), nullptr);
    EXPECT_EQ(GetFocus(), popup_);
}

TEST_F(DesktopMessages, KeysAndLettersGoToTheFocus) {
    MakeWindows();
    SetFocus(child_);
    TakeLog();
    hands_.Type(u8"a表").Key(VK_RETURN).KeyWith(VK_CONTROL, 'C').KeyWith(VK_MENU, 'N');
    EXPECT_THAT(Pumped(),
                ElementsAre("C KEYDOWN 41 1", "C CHAR 61 1", "C KEYUP 41 c0000001", "C CHAR 95 1",
                            "C CHAR 5c 1", "C KEYDOWN d 1", "C CHAR d 1", "C KEYUP d c0000001",
                            "C KEYDOWN 11 1", "C KEYDOWN 43 1", "C CHAR 3 1", "C KEYUP 43 c0000001",
                            "C KEYUP 11 c0000001", "C SYSKEYDOWN 12 20000001", "C SYSKEYDOWN 4e 20000001",
                            "C SYSCHAR 6e 20000001", "C SYSKEYUP 4e e0000001", "C KEYUP 12 c0000001"));
    hands_.Move(60, 150).Wheel(1); // the wheel goes to what is under the pointer
    EXPECT_THAT(Pumped(), ElementsAre("A SETCURSOR A 1 200", "A MOUSEMOVE 0 10 110", "A SETCURSOR A 1 20a",
                                      "A MOUSEWHEEL"));
}

TEST_F(DesktopMessages, CaptureTakesThePointerFromEverywhere) {
    MakeWindows();
    SetCapture(child_);
    hands_.Click(5, 5);
    EXPECT_THAT(Pumped(),
                ElementsAre("C MOUSEMOVE 0 -65 -55", "C LBUTTONDOWN 1 -65 -55", "C LBUTTONUP 0 -65 -55"));
    SetCapture(top_);
    ReleaseCapture();
    EXPECT_THAT(TakeLog(), ElementsAre("C CAPTURECHANGED A", "A CAPTURECHANGED 0"));
    SetCapture(child_);
    ShowWindow(child_, SW_HIDE);
    EXPECT_EQ(GetCapture(), nullptr);
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

int ticksSeen;
void CALLBACK OuterTick(HWND window, UINT, UINT_PTR timer, DWORD) {
    KillTimer(window, timer);
    MSG message;
    while (ticksSeen < 3 && GetMessageA(&message, nullptr, 0, 0)) DispatchMessageA(&message);
}
void CALLBACK InnerTick(HWND, UINT, UINT_PTR, DWORD) {
    ++ticksSeen;
}

TEST_F(DesktopMessages, ALoopInsideATimerDeliversTheOtherTimers) {
    MakeWindows();
    ticksSeen = 0;
    SetTimer(top_, 1, 30, OuterTick);
    SetTimer(top_, 2, 50, InnerTick);
    const DWORD start = GetTickCount();
    MSG message;
    while (ticksSeen < 3 && GetMessageA(&message, nullptr, 0, 0)) DispatchMessageA(&message);
    EXPECT_EQ(GetTickCount() - start, 150u);
    KillTimer(top_, 2);
}

TEST_F(DesktopMessages, ALoopThatPollsSeesEachStepOfTheHands) {
    MakeWindows();
    hands_.Drag({80, 70}, {88, 70}, 4).Key(VK_CONTROL);
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) && message.message != WM_LBUTTONDOWN)
        DispatchMessageA(&message);
    POINT point;
    std::vector<int> seen;
    while (GetAsyncKeyState(VK_LBUTTON) < 0) {
        GetCursorPos(&point);
        if (seen.empty() || seen.back() != point.x) seen.push_back(point.x);
    }
    EXPECT_THAT(seen, ElementsAre(80, 82, 84, 86, 88));
    Sleep(50);
    Sleep(50);
    EXPECT_EQ(GetAsyncKeyState(VK_CONTROL), 1); // up, but pressed since it was last asked for
    EXPECT_EQ(GetAsyncKeyState(VK_CONTROL), 0);
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

using DesktopDeath = testing::Test;

TEST(DesktopDeath, AProgramThatWaitsForNothingEnds) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    MSG message;
    EXPECT_DEATH(
        {
            HeadlessDisplay hands(10, 10);
            hands.Move(1, 2);
            while (GetMessageA(&message, nullptr, 0, 0) >= 0) {
            }
        },
        "no timer is set.*last step: move to 1, 2");
    EXPECT_DEATH(
        {
            HeadlessDisplay hands(10, 10);
            while (GetAsyncKeyState(VK_LBUTTON) >= 0) {
            }
        },
        "asks for input in a loop");
    EXPECT_DEATH(
        {
            HeadlessDisplay hands(10, 10);
            SetTimer(nullptr, 0, 200, nullptr);
            while (GetMessageA(&message, nullptr, 0, 0)) {
            }
        },
        "lets time go by");
    EXPECT_DEATH(GetMessageA(&message, nullptr, 0, 0), "no display");
}

} // namespace
