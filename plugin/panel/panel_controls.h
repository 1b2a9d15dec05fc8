/// The panel's child windows by their numbers, which are their ids too, and the icons of its buttons.
#pragma once

#include <windows.h>

enum PanelControl : int {
    kNewButton = 1,
    kDeleteButton = 2,
    kSettingButton = 3,
    kGroupCombo = 4,
    kSeparator = 5,
    kOriginControl = 6,
    kNewFolderButton = 11,
    kNewGroupButton = 12,
    kDeleteGroupButton = 13,
    kGroupSettingButton = 14,
    kSearchButton = 15,
    kFolderListButton = 16,
    kRecordList = 1001,
    kRecordScroll = 1002,
    kFolderList = 1003,
    kFolderScroll = 1004,
};

/// Places in `globals->panelIcons`.  A button's window text is the number of its icon.
enum PanelIcon : int {
    kNewIcon = 0,
    kDeleteIcon = 1,
    kSettingIcon = 2,
    kNewFolderIcon = 3,
    kNewGroupIcon = 4,
    kSearchIcon = 5,
    kFoldersShownIcon = 6,
    kFoldersHiddenIcon = 7,
    kDarkIcons = 10, ///< further: for a dark interface
};

/// Makes a number a control's window text, which has it painted again.
void ShowControlNumber(HWND panel, int control, int number);

/// The pointer in a window's client coordinates.
POINT PointerIn(HWND window);

/// The number that is a control's window text.
int ControlNumber(HWND control);

/// A colour as the host's theme gives it.
COLORREF ThemeColor(const double* color /*4*/);
