#include "win32/desktop/input_state.h"

#include "win32/desktop/desktop_clock.h"
#include "win32/display.h"

namespace {
HCURSOR cursor;
}

HandState& Hands() {
    static HandState hands;
    return hands;
}

SHORT GetAsyncKeyState(int key) {
    PollDisplay();
    if (key < 0 || key > 255) return 0;
    HandState& hands = Hands();
    const bool pressed = hands.pressedSinceAsked[key];
    hands.pressedSinceAsked[key] = false;
    hands.polled = true;
    return static_cast<SHORT>((hands.down[key] ? 0x8000 : 0) | (pressed ? 1 : 0));
}

BOOL GetCursorPos(POINT* point) {
    PollDisplay();
    *point = Hands().pointer;
    return TRUE;
}

BOOL SetCursorPos(int x, int y) {
    if (Display* display = OpenDisplay()) display->MovePointer(x, y);
    InputPointer(x, y);
    return TRUE;
}

HCURSOR SetCursor(HCURSOR wanted) {
    const HCURSOR former = cursor;
    if (wanted == former) return former;
    cursor = wanted;
    if (Display* display = OpenDisplay()) display->ShowCursor(wanted);
    return former;
}
