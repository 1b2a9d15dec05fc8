/// Keys and pointer of an edit control, and the changes that they make.
#pragma once

#include <windows.h>

#include <string_view>

#include "win32/controls/edit_view.h"

/// Puts text in place of the selection, with the notifications of a change by hand.  The control may be gone
/// when this returns.
void InsertText(HWND window, EditData& data, std::string_view text, bool limited);

/// Moves the caret; with `extend` the selection's other end stays.
void MoveCaret(HWND window, EditData& data, size_t place, bool extend);

/// Messages of pointer, keys and clipboard; false for any other.
bool TakeEditInput(HWND window, EditData& data, UINT message, WPARAM wParam, LPARAM lParam);
