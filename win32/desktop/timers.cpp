#include "win32/desktop/timers.h"

#include <algorithm>
#include <vector>

#include "win32/desktop/desktop_clock.h"
#include "win32/desktop/window.h"
#include "win32/display.h"

namespace {

constexpr UINT kLongestPeriod = 0x7FFFFFFF;

struct Timer {
    HWND window;
    UINT_PTR number;
    UINT period; // milliseconds
    uint64_t due;
    TIMERPROC procedure;
};

std::vector<Timer> timers;

std::vector<Timer>::iterator FindTimer(HWND window, UINT_PTR number) {
    return std::find_if(timers.begin(), timers.end(),
                        [&](const Timer& each) { return each.window == window && each.number == number; });
}

std::vector<Timer>::iterator NextTimer() {
    return std::min_element(timers.begin(), timers.end(),
                            [](const Timer& first, const Timer& second) { return first.due < second.due; });
}

// The numbers of timers without a window are the system's own.
UINT_PTR FreeNumber() {
    static UINT_PTR last = 0x100;
    while (FindTimer(nullptr, ++last) != timers.end()) {
    }
    return last;
}

} // namespace

UINT_PTR SetTimer(HWND window, UINT_PTR number, UINT milliseconds, TIMERPROC procedure) {
    if (window != nullptr && WindowOf(window) == nullptr) return 0;
    auto timer = FindTimer(window, number);
    if (timer == timers.end()) {
        if (window == nullptr) number = FreeNumber();
        timer = timers.insert(timers.end(), {window, number, 0, 0, nullptr});
    }
    timer->period = std::clamp<UINT>(milliseconds, USER_TIMER_MINIMUM, kLongestPeriod);
    timer->due = DesktopMilliseconds() + timer->period;
    timer->procedure = procedure;
    return window == nullptr ? number : number != 0 ? number : 1;
}

BOOL KillTimer(HWND window, UINT_PTR number) {
    const auto timer = FindTimer(window, number);
    if (timer == timers.end()) return FALSE;
    timers.erase(timer);
    return TRUE;
}

bool TakeTimerMessage(MSG& message, bool remove) {
    const auto timer = NextTimer();
    const uint64_t now = DesktopMilliseconds();
    if (timer == timers.end() || timer->due > now) return false;
    message.hwnd = timer->window;
    message.message = WM_TIMER;
    message.wParam = timer->number;
    message.lParam = reinterpret_cast<LPARAM>(timer->procedure);
    if (remove) timer->due = now + timer->period;
    return true;
}

uint32_t MillisecondsToTimer() {
    const auto timer = NextTimer();
    if (timer == timers.end()) return kWaitForever;
    const uint64_t now = DesktopMilliseconds();
    return timer->due > now ? static_cast<uint32_t>(timer->due - now) : 0;
}

bool IsTimerProcedure(LPARAM procedure) {
    return std::any_of(timers.begin(), timers.end(), [&](const Timer& each) {
        return reinterpret_cast<LPARAM>(each.procedure) == procedure;
    });
}

void KillTimersOf(HWND window) {
    std::erase_if(timers, [&](const Timer& each) { return each.window == window; });
}

void KillAllTimers() {
    timers.clear();
}

int CountTimers() {
    return static_cast<int>(timers.size());
}
