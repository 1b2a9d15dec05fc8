/// A menu that pops up: for the menu bar and a panel's flyout.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "workbench/suites/frame_objects.h"

namespace workbench {

struct PopupItem {
    int number = 0; ///< not 0
    std::string text;
    bool separator = false, marked = false, enabled = true;
    std::vector<PopupItem> items; ///< of a submenu
};

constexpr int kPopupRow = 22;
constexpr int kPopupSeparator = 9;

/// Shows the menu with its left top at a point of the screen, moved so that it fits, and takes the mouse and
/// the keys until the user picks an item or leaves.  The number of the item, 0 for none.
int RunPopupMenu(HWND owner, POINT at, const std::vector<PopupItem>& items, const Theme& theme);

/// Where an item of the open menu stands, on the screen; empty if no menu is open or has no such item.  For
/// scripts of hands.
RECT PopupItemRect(int number);

} // namespace workbench
