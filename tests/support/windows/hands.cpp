#include "tests/support/hands.h"

#include <atomic>
#include <cstdio>
#include <thread>
#include <vector>

// A step has had its effect when the program is idle again.  Timer messages come when nothing else waits, so
// a hidden window's fast timer tells.  In loops that take no messages, which watch the button, nothing can
// tell; there a press counts as seen when its message was taken, and Until waits for what follows from a
// move.

namespace {

constexpr UINT kRunAction = WM_APP;
constexpr UINT kIdleTimer = 1, kIdlePeriod = 10; // milliseconds
constexpr unsigned kIdleTicks = 2;               // the first may have been under way
constexpr unsigned kMostWaited = 30000, kHandsAskedEvery = 2, kHeldPause = 40,
                   kStaleState = 200; // milliseconds
constexpr int kBeside = 12;           // pixels
constexpr char kClass[] = "HandsOfTests";

std::atomic<unsigned> idleTicks = 0, pressesTaken = 0, actionsBegun = 0, actionsDone = 0;

void SendButton(DWORD flag) {
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flag;
    SendInput(1, &input, sizeof input);
}

void SendKey(WORD key, WORD letter, DWORD flags) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = letter;
    input.ki.dwFlags = flags;
    SendInput(1, &input, sizeof input);
}

/// What a test holds outlives it, and the next one, or another program, would find a press that never ends.
void LetGo() {
    if (GetAsyncKeyState(VK_LBUTTON) < 0) SendButton(MOUSEEVENTF_LEFTUP);
    for (const WORD key : {VK_CONTROL, VK_SHIFT}) {
        if (GetAsyncKeyState(key) < 0) SendKey(key, 0, KEYEVENTF_KEYUP);
    }
}

/// The test can't go on, and a dialog may stand: what was learnt so far is the last line.
[[noreturn]] void GiveUp(const char* what) {
    std::printf("hands: waited in vain: %s\n", what);
    std::fflush(stdout);
    LetGo();
    TerminateProcess(GetCurrentProcess(), 3);
    std::abort();
}

template <typename Reached>
void WaitUntil(const char* what, Reached reached) {
    for (unsigned waited = 0; !reached(); waited += kHandsAskedEvery) {
        if (waited > kMostWaited) GiveUp(what);
        Sleep(kHandsAskedEvery);
    }
}

void WaitUntilIdle() {
    const unsigned begin = idleTicks;
    WaitUntil("the program takes messages", [&] { return idleTicks - begin >= kIdleTicks; });
}

LRESULT CALLBACK HiddenProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_TIMER) {
        ++idleTicks;
        return 0;
    }
    if (message == kRunAction) {
        const auto action = *reinterpret_cast<std::function<void()>*>(lParam);
        ++actionsBegun; // it may open a dialog, in which the hands go on
        action();
        ++actionsDone;
        return 0;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

/// Wine keeps "the button is up" of a thread's last look for some milliseconds, and a program that is told of
/// a press and looks at once would take it for a click.
void WaitUntilPressIsSeen() {
    for (unsigned waited = 0; GetAsyncKeyState(VK_LBUTTON) >= 0 && waited < kStaleState; ++waited) Sleep(1);
}

LRESULT CALLBACK NoteTaken(int code, WPARAM removed, LPARAM lParam) {
    const auto& message = *reinterpret_cast<const MSG*>(lParam);
    const bool press = message.message == WM_LBUTTONDOWN || message.message == WM_LBUTTONDBLCLK ||
                       message.message == WM_NCLBUTTONDOWN || message.message == WM_NCLBUTTONDBLCLK;
    if (code >= 0 && removed == PM_REMOVE && press) {
        WaitUntilPressIsSeen();
        ++pressesTaken;
    }
    return CallNextHookEx(nullptr, code, removed, lParam);
}

std::wstring Wide(const std::string& cp932) {
    std::wstring wide(cp932.size(), L'\0');
    wide.resize(static_cast<size_t>(MultiByteToWideChar(932, 0, cp932.data(), static_cast<int>(cp932.size()),
                                                        wide.data(), static_cast<int>(wide.size()))));
    return wide;
}

} // namespace

struct HandsState {
    HWND hidden = nullptr;
    HHOOK hook = nullptr;
    bool held = false; ///< the button, as the hands' thread knows
    std::vector<std::function<void()>> steps;

    /// Has an action run in the windows' thread; returns when `counter` counts it.
    void RunAction(std::function<void()> action, const std::atomic<unsigned>& counter) {
        if (held) GiveUp("an action in the midst of a press");
        const unsigned begin = counter;
        PostMessageA(hidden, kRunAction, 0, reinterpret_cast<LPARAM>(&action));
        WaitUntil("an action was run", [&] { return counter != begin; });
    }
};

Hands::Hands(TestDesktop&, workbench::HostWindows& windows)
    : windows_(windows), state_(std::make_unique<HandsState>()) {
    WNDCLASSA windowClass{};
    windowClass.lpfnWndProc = HiddenProcedure;
    windowClass.lpszClassName = kClass;
    RegisterClassA(&windowClass);
    state_->hidden = CreateWindowExA(0, kClass, "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    SetTimer(state_->hidden, kIdleTimer, kIdlePeriod, nullptr);
    state_->hook = SetWindowsHookExA(WH_GETMESSAGE, NoteTaken, nullptr, GetCurrentThreadId());
}

Hands::~Hands() {
    UnhookWindowsHookEx(state_->hook);
    DestroyWindow(state_->hidden);
}

void Hands::MoveTo(std::function<POINT()> place) {
    HandsState& state = *state_;
    state.steps.push_back([&state, place = std::move(place)] {
        POINT at{};
        if (state.held) {
            at = place();
        } else {
            state.RunAction([&] { at = place(); }, actionsDone);
        }
        SetCursorPos(at.x, at.y);
        if (state.held) Sleep(kHeldPause);
    });
}

void Hands::Press() {
    HandsState& state = *state_;
    state.steps.push_back([&state] {
        const unsigned begin = pressesTaken;
        SendButton(MOUSEEVENTF_LEFTDOWN);
        WaitUntil("a press was taken", [&] { return pressesTaken != begin; });
        state.held = true;
        Sleep(kHeldPause);
    });
}

void Hands::Release() {
    HandsState& state = *state_;
    state.steps.push_back([&state] {
        SendButton(MOUSEEVENTF_LEFTUP);
        state.held = false;
        WaitUntilIdle();
    });
}

void Hands::KeyDown(int virtualKey) {
    state_->steps.push_back([virtualKey] { SendKey(static_cast<WORD>(virtualKey), 0, 0); });
}

void Hands::KeyUp(int virtualKey) {
    state_->steps.push_back([virtualKey] {
        SendKey(static_cast<WORD>(virtualKey), 0, KEYEVENTF_KEYUP);
        WaitUntilIdle();
    });
}

void Hands::Type(const std::string& cp932) {
    state_->steps.push_back([text = Wide(cp932)] {
        for (const wchar_t letter : text) {
            SendKey(0, static_cast<WORD>(letter), KEYEVENTF_UNICODE);
            SendKey(0, static_cast<WORD>(letter), KEYEVENTF_UNICODE | KEYEVENTF_KEYUP);
        }
        WaitUntilIdle();
    });
}

void Hands::Do(std::function<void()> action) {
    HandsState& state = *state_;
    state.steps.push_back([&state, action = std::move(action)] {
        state.RunAction(action, actionsBegun);
        WaitUntilIdle();
    });
}

void Hands::Until(const char* what, std::function<bool()> reached) {
    state_->steps.push_back(
        [what, reached = std::move(reached)] { WaitUntil(what, [&] { return reached(); }); });
}

void Hands::MoveUntil(std::function<POINT()> place, const char* what, std::function<bool()> reached) {
    state_->steps.push_back([place = std::move(place), what, reached = std::move(reached)] {
        const POINT at = place();
        unsigned waited = 0;
        do {
            if (waited > kMostWaited) GiveUp(what);
            SetCursorPos(at.x + kBeside, at.y);
            Sleep(kHeldPause);
            SetCursorPos(at.x, at.y);
            Sleep(kHeldPause);
            waited += 2 * kHeldPause;
        } while (!reached());
    });
}

void Hands::Pause(unsigned milliseconds) {
    state_->steps.push_back([milliseconds] { Sleep(milliseconds); });
}

void Hands::Play() {
    Do([this] { windows_.Quit(); });
    std::vector<std::function<void()>> steps;
    steps.swap(state_->steps);
    std::atomic<bool> done = false;
    std::thread hands([&] {
        for (const auto& step : steps) step();
        done = true;
    });
    windows_.Run();
    // The last step still waits for the program to be idle.
    while (!done) {
        windows_.RunWaiting();
        Sleep(kHandsAskedEvery);
    }
    hands.join();
}
