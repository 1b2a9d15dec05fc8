/// Who is active, who has the keys and who has the pointer.
#pragma once

#include "win32/desktop/window.h"

/// What WM_ACTIVATE tells: by the program, or by a press.
enum class ActivationCause { Program, Press };

/// Makes a top-level window the active one and brings it to the front; with null none is active.  False if it
/// is gone afterwards or another one became active meanwhile.
bool Activate(HWND window, ActivationCause cause);

/// A window that was active, or had the focus, has been hidden or will be destroyed: another one takes over.
void LetGoOf(Window& window);

/// Ends the capture if the window or a child of it has it.
void EndCaptureOf(const Window& window);

void ForgetFocus(); ///< when the desktop closes
