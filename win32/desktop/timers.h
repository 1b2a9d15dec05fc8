/// Timers, which become messages when a program asks for one and nothing else is to do.
#pragma once

#include <windows.h>

#include <cstdint>

/// The timer that has been due the longest, as WM_TIMER; it is due again after its period from now.
bool TakeTimerMessage(MSG& message, bool remove);

/// Milliseconds to the next one, 0 if one is due; kWaitForever (win32/display.h) without any.
uint32_t MillisecondsToTimer();

/// Whether WM_TIMER with this procedure belongs to a timer that is there.
bool IsTimerProcedure(LPARAM procedure);

void KillTimersOf(HWND window);
void KillAllTimers();
int CountTimers();
