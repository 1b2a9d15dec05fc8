#include "win32/desktop/input_queue.h"

#include <cstdlib>
#include <deque>

#include "win32/desktop/desktop_clock.h"
#include "win32/desktop/focus.h"
#include "win32/desktop/hit_test.h"
#include "win32/desktop/input_state.h"
#include "win32/display.h"

namespace {

enum class InputKind { Pointer, Button, Wheel, Key, Letter };

struct Input {
    InputKind kind;
    POINT pointer;
    int value; // virtual key, steps of the wheel or byte of a letter
    bool down;
    uint64_t time;
};

constexpr UINT kDoubleClickMilliseconds = 500;
constexpr int kDoubleClickDistance = 4; // the box's width and height, around the first press
constexpr LPARAM kWasDown = LPARAM{1} << 30;
constexpr LPARAM kGoesUp = LPARAM{1} << 31;
constexpr LPARAM kAltIsDown = LPARAM{1} << 29;

struct Press {
    HWND window;
    int button;
    POINT pointer;
    uint64_t time;
};

struct TakenInput {
    bool down[256];
    bool toggled[256];
    POINT pointer;
    Press lastPress;
};

std::deque<Input> inputs;
TakenInput taken;

void QueueInput(InputKind kind, int value, bool down) {
    const Input input = {kind, Hands().pointer, value, down, DesktopMilliseconds()};
    // The way of the pointer matters to nobody, only where it is.
    if (kind == InputKind::Pointer && !inputs.empty() && inputs.back().kind == kind) inputs.pop_back();
    inputs.push_back(input);
}

void ChangeHand(int key, bool down) {
    if (down && !Hands().down[key]) Hands().pressedSinceAsked[key] = true;
    Hands().down[key] = down;
}

WPARAM ButtonsAndKeys() {
    return static_cast<WPARAM>(
        (taken.down[VK_LBUTTON] ? MK_LBUTTON : 0) | (taken.down[VK_RBUTTON] ? MK_RBUTTON : 0) |
        (taken.down[VK_SHIFT] ? MK_SHIFT : 0) | (taken.down[VK_CONTROL] ? MK_CONTROL : 0));
}

void NoteKey(const Input& input) {
    if (input.down && !taken.down[input.value]) taken.toggled[input.value] = !taken.toggled[input.value];
    taken.down[input.value] = input.down;
}

UINT MessageOf(const Input& input) {
    if (input.kind == InputKind::Pointer) return WM_MOUSEMOVE;
    if (input.kind == InputKind::Wheel) return WM_MOUSEWHEEL;
    if (input.value == VK_LBUTTON) return input.down ? WM_LBUTTONDOWN : WM_LBUTTONUP;
    return input.down ? WM_RBUTTONDOWN : WM_RBUTTONUP;
}

// Whether this press is the second half of a double click; if not, it may be the first.
bool IsSecondPress(HWND window, const Input& input) {
    const Press& last = taken.lastPress;
    const bool second = last.window == window && last.button == input.value &&
                        input.time - last.time <= kDoubleClickMilliseconds &&
                        std::abs(last.pointer.x - input.pointer.x) <= kDoubleClickDistance / 2 &&
                        std::abs(last.pointer.y - input.pointer.y) <= kDoubleClickDistance / 2;
    taken.lastPress = second ? Press{} : Press{window, input.value, input.pointer, input.time};
    return second;
}

// Asks the window whether a press makes its top-level window active.  False if the press is eaten.
bool ActivateByPress(const HitWindow& hit, UINT message) {
    Window* window = WindowIfAny(hit.window);
    if (window == nullptr || window->parent == nullptr || hit.code == HTERROR) return true;
    if (hit.window == GetActiveWindow()) return true;
    const HWND top = TopLevelOf(*window).handle;
    const LRESULT answer = SendMessageA(hit.window, WM_MOUSEACTIVATE, reinterpret_cast<WPARAM>(top),
                                        MAKELONG(hit.code, message));
    if (answer != MA_NOACTIVATE && answer != MA_NOACTIVATEANDEAT) {
        Window* still = WindowIfAny(top);
        if (still != nullptr && (still->style & WS_DISABLED) == 0) Activate(top, ActivationCause::Press);
    }
    return answer != MA_ACTIVATEANDEAT && answer != MA_NOACTIVATEANDEAT;
}

// A press on a window that a dialog has disabled brings the dialog to the front.
void ShowWhoDisables(HWND disabled) {
    Window* window = WindowIfAny(disabled);
    if (window == nullptr) return;
    for (const Window* each : DesktopWindow().children) {
        if (each->owner != window->handle || (each->style & (WS_VISIBLE | WS_DISABLED)) != WS_VISIBLE)
            continue;
        Activate(each->handle, ActivationCause::Program);
        return;
    }
}

void FillPointerMessage(MSG& message, HWND window, UINT number, const Input& input) {
    message.hwnd = window;
    message.message = number;
    message.wParam = ButtonsAndKeys();
    if (input.kind == InputKind::Wheel)
        message.wParam |= static_cast<WPARAM>(static_cast<WORD>(input.value * WHEEL_DELTA)) << 16;
    POINT place = input.pointer;
    if (input.kind != InputKind::Wheel) ScreenToClient(window, &place); // the wheel's is of the screen
    message.lParam = MAKELONG(place.x, place.y);
}

void MakeNonClient(MSG& message, int code, POINT pointer) {
    message.message -= UINT{WM_MOUSEMOVE - WM_NCMOUSEMOVE};
    message.wParam = static_cast<WPARAM>(code);
    message.lParam = MAKELONG(pointer.x, pointer.y);
}

bool TakePointerMessage(const Input& input, MSG& message) {
    UINT number = MessageOf(input);
    const HWND captor = GetCapture();
    const HitWindow hit = captor != nullptr ? HitWindow{captor, HTCLIENT} : FindHit(input.pointer);
    const bool press = input.kind == InputKind::Button && input.down;
    if (captor == nullptr) {
        if (press && !ActivateByPress(hit, number)) return false;
        if (WindowIfAny(hit.window) != nullptr)
            SendMessageA(hit.window, WM_SETCURSOR, reinterpret_cast<WPARAM>(hit.window),
                         MAKELONG(hit.code, number));
    }
    const Window* window = WindowIfAny(hit.window);
    if (window == nullptr || window->parent == nullptr) return false;
    if (hit.code == HTERROR) {
        if (press) ShowWhoDisables(hit.window);
        return false;
    }
    const bool doubles = (window->windowClass->style & CS_DBLCLKS) != 0 || hit.code != HTCLIENT;
    if (press && IsSecondPress(hit.window, input) && doubles && input.value == VK_LBUTTON)
        number = WM_LBUTTONDBLCLK;
    FillPointerMessage(message, hit.window, number, input);
    if (hit.code != HTCLIENT && input.kind != InputKind::Wheel)
        MakeNonClient(message, hit.code, input.pointer);
    return true;
}

bool TakeKeyMessage(const Input& input, bool wasDown, MSG& message) {
    const HWND focus = GetFocus();
    const bool alt = taken.down[VK_MENU];
    message.hwnd = focus != nullptr ? focus : GetActiveWindow();
    if (message.hwnd == nullptr) return false;
    const bool system = focus == nullptr || (alt && !taken.down[VK_CONTROL]);
    message.message = system       ? (input.down ? WM_SYSKEYDOWN : WM_SYSKEYUP)
                      : input.down ? WM_KEYDOWN
                                   : WM_KEYUP;
    message.wParam = static_cast<WPARAM>(input.value);
    message.lParam = 1;
    if (alt) message.lParam |= kAltIsDown;
    if (wasDown || !input.down) message.lParam |= kWasDown;
    if (!input.down) message.lParam |= kGoesUp;
    return true;
}

bool TakeLetterMessage(const Input& input, MSG& message) {
    message.hwnd = GetFocus();
    message.message = WM_CHAR;
    message.wParam = static_cast<WPARAM>(input.value);
    message.lParam = 1;
    return message.hwnd != nullptr;
}

bool MakeMessage(const Input& input, MSG& message) {
    message = {};
    taken.pointer = input.pointer;
    message.time = static_cast<DWORD>(input.time);
    message.pt = input.pointer;
    const bool hasKey = input.kind == InputKind::Button || input.kind == InputKind::Key;
    const bool wasDown = hasKey && taken.down[input.value];
    if (hasKey) NoteKey(input);
    if (input.kind == InputKind::Key) return TakeKeyMessage(input, wasDown, message);
    if (input.kind == InputKind::Letter) return TakeLetterMessage(input, message);
    return TakePointerMessage(input, message);
}

} // namespace

bool TakeInputMessage(MSG& message) {
    while (!inputs.empty()) {
        const Input input = inputs.front();
        inputs.pop_front();
        Hands().polled = false;
        if (MakeMessage(input, message)) return true;
    }
    return false;
}

bool IsKeyTaken(int virtualKey) {
    return virtualKey >= 0 && virtualKey < 256 && taken.down[virtualKey];
}

POINT MessagePosition() {
    return taken.pointer;
}

void ForgetInput() {
    inputs.clear();
    taken = {};
    Hands() = {};
}

SHORT GetKeyState(int key) {
    if (key < 0 || key > 255) return 0;
    const bool down = Hands().polled ? Hands().down[key] : taken.down[key];
    return static_cast<SHORT>((down ? 0x8000 : 0) | (taken.toggled[key] ? 1 : 0));
}

UINT GetDoubleClickTime() {
    return kDoubleClickMilliseconds;
}

void InputPointer(int x, int y) {
    Hands().pointer = {x, y};
    QueueInput(InputKind::Pointer, 0, false);
}

void InputButton(int virtualKey, bool down) {
    if (virtualKey != VK_LBUTTON && virtualKey != VK_RBUTTON) return;
    ChangeHand(virtualKey, down);
    QueueInput(InputKind::Button, virtualKey, down);
}

void InputWheel(int steps) {
    QueueInput(InputKind::Wheel, steps, false);
}

void InputKey(int virtualKey, bool down) {
    if (virtualKey < 1 || virtualKey > 254) return;
    ChangeHand(virtualKey, down);
    QueueInput(InputKind::Key, virtualKey, down);
}

void InputText(const char* cp932) {
    for (; *cp932 != 0; ++cp932) QueueInput(InputKind::Letter, static_cast<unsigned char>(*cp932), true);
}
