/// A combo box's data, and its drop list.
#pragma once

#include <windows.h>

#include "win32/controls/list_control.h"

struct ComboData {
    HWND list = nullptr; ///< the popup; its selection is the combo box's
    HWND edit = nullptr; ///< null in a drop-down list
    HFONT font = nullptr;
    int fieldHeight = 0; ///< as CB_SETITEMHEIGHT has it, without the border
    int dropHeight = 0;  ///< what the creation's height leaves for the list
    int settled = -1;    ///< the selection that the list goes back to if it is closed without a choice
    bool isDropped = false;
    bool isFocused = false;
    bool isFitting = false; ///< a size that the combo box gives itself
    char leadByte = '\0';   ///< of a double-byte character whose second byte is still to come
};

constexpr int kComboBorder = 3; ///< pixels around the field, on each side

bool IsOwnerDrawn(HWND combo);
int SelectionOf(const ComboData& data); ///< -1: none
int CountOf(const ComboData& data);

/// The field with its border, and its two parts, in client coordinates.
RECT ComboButton(HWND combo);
RECT ComboField(HWND combo);

/// Gives the window its field's height and the edit its place.
void FitCombo(HWND combo, ComboData& data);

/// Open and close the list, with notifications.  The combo box may be gone when they return.
void OpenCombo(HWND combo, ComboData& data);
void CloseCombo(HWND combo, ComboData& data, bool accepted);

/// Puts an item's text, or none for -1, into the edit; the field is drawn anew.
void ShowComboItem(HWND combo, ComboData& data, int item);

/// By hand, with its notifications: arrows, letters, wheel, a click in the list.  `picked` closes the list.
void ChooseComboItem(HWND combo, ComboData& data, int item, bool picked);

/// Messages of keys and pointer; false for any other.
bool TakeComboInput(HWND combo, ComboData& data, UINT message, WPARAM wParam, LPARAM lParam);

void PaintCombo(HWND combo, const ComboData& data, HDC context);
void DrawComboItem(HWND combo, const ListItemDraw& draw);
