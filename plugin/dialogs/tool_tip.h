/// The tool tip under the pointer.
#pragma once

#include <windows.h>

/// Shows, moves or hides the tip for what the pointer is on; null hides it.
void UpdateToolTip(HWND panel);

/// Forgets the tip without giving back what it covers.
void DropToolTip();
