/// The desktop's time, and the moments at which it looks for input.
#pragma once

#include <cstdint>

/// The display's clock, or the machine's while there is none.
uint64_t DesktopMilliseconds();

/// Shows what has been drawn and takes what input is there.
void PollDisplay();

/// As PollDisplay, when nothing else is to do: comes back when there may be input, or after `milliseconds`.
/// Ends the program if nothing could ever come.
void WaitForDisplay(uint32_t milliseconds);
