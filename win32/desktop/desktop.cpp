#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "win32/desktop/desktop_clock.h"
#include "win32/desktop/focus.h"
#include "win32/desktop/input_queue.h"
#include "win32/desktop/message_queue.h"
#include "win32/desktop/timers.h"
#include "win32/desktop/visible_area.h"
#include "win32/display.h"
#include "win32/gdi/screen_context.h"
#include "win32/object_counts.h"

namespace {

Display* openDisplay;

void PaintAnew() {
    RefreshHeldContexts();
    InvalidateUncovered(DesktopWindow(), Region(DesktopWindow().place));
}

void PresentChanges(Display& display) {
    RECT changed;
    if (TakeScreenChanges(changed)) display.Present(changed);
}

uint64_t MachineMilliseconds() {
    timespec now = {};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<uint64_t>(now.tv_sec) * 1000 + static_cast<uint64_t>(now.tv_nsec) / 1000000;
}

void SleepOnMachine(uint32_t milliseconds) {
    timespec rest = {static_cast<time_t>(milliseconds / 1000),
                     static_cast<long>(milliseconds % 1000) * 1000000};
    while (nanosleep(&rest, &rest) != 0 && errno == EINTR) {
    }
}

} // namespace

void OpenDesktop(Display* display, int width, int height) {
    openDisplay = display;
    ResizeScreen(width, height);
    PaintAnew();
}

void CloseDesktop() {
    EndHeldContexts();
    KillAllTimers();
    ForgetMessages();
    ForgetFocus();
    RemoveAllWindows();
    ForgetInput();
    SetCursor(nullptr);
    ResizeScreen(0, 0);
    openDisplay = nullptr;
}

Display* OpenDisplay() {
    return openDisplay;
}

void ResizeDesktop(int width, int height) {
    ResizeScreen(width, height);
    PaintAnew();
    std::vector<HWND> windows;
    for (const Window* window : DesktopWindow().children) windows.push_back(window->handle);
    for (const HWND window : windows)
        if (WindowIfAny(window) != nullptr)
            SendMessageA(window, WM_DISPLAYCHANGE, 32, MAKELONG(width, height));
}

FrameBuffer DesktopPixels() {
    return ScreenPixels();
}

uint64_t DesktopMilliseconds() {
    return openDisplay != nullptr ? openDisplay->Milliseconds() : MachineMilliseconds();
}

void PollDisplay() {
    if (openDisplay == nullptr) return;
    PresentChanges(*openDisplay);
    openDisplay->Poll();
}

void WaitForDisplay(uint32_t milliseconds) {
    if (openDisplay != nullptr) {
        PresentChanges(*openDisplay);
        openDisplay->Wait(milliseconds);
        if (openDisplay != nullptr) openDisplay->Poll();
        return;
    }
    if (milliseconds == kWaitForever) {
        std::fputs("win32: the program waits for messages, and there is no display they could come from\n",
                   stderr);
        std::abort();
    }
    SleepOnMachine(milliseconds);
}

void Sleep(DWORD milliseconds) {
    if (openDisplay == nullptr) {
        SleepOnMachine(milliseconds);
        return;
    }
    PresentChanges(*openDisplay);
    openDisplay->Sleep(milliseconds);
}

DWORD GetTickCount() {
    return static_cast<DWORD>(DesktopMilliseconds());
}

ObjectCounts CountObjects() {
    const DrawingCounts drawing = CountDrawingObjects();
    return {.windows = CountWindows(),
            .timers = CountTimers(),
            .contexts = drawing.contexts,
            .brushes = drawing.brushes,
            .pens = drawing.pens,
            .fonts = drawing.fonts,
            .bitmaps = drawing.bitmaps};
}
