/// Presses on the panel's two lists, while the button is still down.
///
/// They poll the button without pause and take no messages.
#pragma once

#include <windows.h>

/// Selects the record under the pointer; a drag places it, a second press edits it.
void PressRecordList(HWND panel);

/// Opens or closes the node under the pointer, or shows what it stands for; a second press is its setting.
void PressFolderList(HWND panel);

constexpr int kDragDistance = 5;        ///< pixels on either axis that are no drag yet
constexpr DWORD kDoubleClickTime = 500; ///< milliseconds; not the system's own

/// Whether a press on a folder row is on its triangle; the box's left and right ends are not.
bool IsOnArrow(const RECT& row, const char* text, int x);
