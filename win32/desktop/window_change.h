/// Changes of windows' places, order and visibility, and what they uncover.
#pragma once

#include "win32/desktop/window.h"

// Flags of WM_WINDOWPOSCHANGED that tell DefWindowProcA about the client area; programs don't give them.
constexpr UINT kClientSizeKept = 0x0800;
constexpr UINT kClientPlaceKept = 0x1000;

/// Brings a top-level window to the front of those that it may be in front of, without a message.
void BringToTop(Window& window);

/// Hides a window that is about to be destroyed.
void HideForDestruction(HWND window);
