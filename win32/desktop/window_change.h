/// Changes of windows' places, order and visibility, and what they uncover.
#pragma once

#include "win32/desktop/window.h"

/// Brings a top-level window to the front of those that it may be in front of, without a message.
void BringToTop(Window& window);

/// Hides a window that is about to be destroyed.
void HideForDestruction(HWND window);
