/// What hands have done and the program hasn't taken yet, in their order.
#pragma once

#include <windows.h>

/// Takes input up to the first that makes a message: for the window with the focus, the one with the capture
/// or the one under the pointer.  Sends what belongs to it on the way: WM_NCHITTEST, WM_MOUSEACTIVATE with
/// what follows, WM_SETCURSOR.  False when no input is left.
bool TakeInputMessage(MSG& message);

/// The state of a key as of the last input taken.
bool IsKeyTaken(int virtualKey);
/// The pointer's place when the last input message was made.
POINT MessagePosition();

void ForgetInput(); ///< all keys up, the pointer at (0, 0)
