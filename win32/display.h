/// Where the desktop's pixels go, and where its clock, pointer, keys and letters come from.
///
/// There is one desktop in each process.  It is open from OpenDesktop to CloseDesktop; before and after, it
/// has no size, nothing is seen, input is at rest, and time is the machine's.
#pragma once

#include <windows.h>

#include <cstdint>

constexpr uint32_t kWaitForever = 0xFFFFFFFF;

/// The other end of the desktop: a window of the machine's own screen, or nothing at all (headless).
class Display {
public:
    virtual ~Display() = default;

    /// What GetTickCount, timers, double clicks and messages go by.  Never runs backwards.
    virtual uint64_t Milliseconds() = 0;

    /// The date that goes with it, in UTC since 1970, for GetSystemTime and its like, which then take local
    /// time for UTC; negative: the machine's date.
    virtual int64_t UnixMilliseconds() { return -1; }

    /// Hands on what input is there, by the calls below, and returns at once.  The program asks often, from
    /// loops that wait for a button to go up.
    virtual void Poll() = 0;

    /// Returns when there may be input, which Poll then hands on, or after `milliseconds` (kWaitForever: no
    /// end).  The program has nothing else to do.
    virtual void Wait(uint32_t milliseconds) = 0;

    /// The program sleeps; input may come in the meantime.
    virtual void Sleep(uint32_t milliseconds) = 0;

    /// Shows what has changed of the frame buffer since the last call.
    virtual void Present(const RECT& changed) = 0;

    virtual void ShowCursor(HCURSOR cursor) = 0; ///< null: none
    virtual void MovePointer(int x, int y) = 0;  ///< the program put it there
};

/// `display` is not owned and must live until CloseDesktop.
void OpenDesktop(Display* display, int width, int height);

/// Destroys what windows are left, without a message to them.
void CloseDesktop();

/// Null while the desktop isn't open.
Display* OpenDisplay();

/// The screen has another size from now on; all is painted anew.
void ResizeDesktop(int width, int height);

/// The desktop's pixels, 0x00RRGGBB, top row first, without gaps; valid until it changes its size.
struct FrameBuffer {
    int width, height;
    const uint32_t* pixels;
};
FrameBuffer DesktopPixels();

// Input, in the order in which it happens.  Posted to windows as messages, and seen at once by
// GetAsyncKeyState and GetCursorPos.
void InputPointer(int x, int y);
void InputButton(int virtualKey, bool down); ///< VK_LBUTTON, VK_RBUTTON, where the pointer is
void InputWheel(int steps);                  ///< positive: away from the user
void InputKey(int virtualKey, bool down);
void InputText(const char* cp932); ///< letters, after the keys that made them
