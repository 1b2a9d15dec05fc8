/// Which window is above which.
///
/// Among top-level windows those with WS_EX_TOPMOST are above the others, and an owned window is above its
/// owner.  The order of a parent's children is that of Window::children.
#pragma once

#include "win32/desktop/window.h"

/// Puts a window behind another sibling, or at a place that HWND_TOP and its like name, as near as the rules
/// allow; its owned windows that would be below it come right above it.  True if anything has changed.
bool PlaceInOrder(Window& window, HWND behind);

/// The windows that have this owner, the topmost first.
std::vector<Window*> OwnedWindows(const Window& owner);
