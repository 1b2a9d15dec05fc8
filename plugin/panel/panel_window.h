/// The panel's window procedure, which stands in front of the host's.
#pragma once

#include <windows.h>

/// Takes commands, presses, scrolling and painting of the panel's controls; all else goes on to the host's
/// procedure.  Acquires the suites where it needs them.
LRESULT CALLBACK PanelWindowProc(HWND panel, UINT message, WPARAM wParam, LPARAM lParam);

/// Puts the procedure in front of the host's, once.
void TakePanelWindow(HWND panel);

/// Gives the window that was taken the host's procedure back, if it is still there; its controls stay.
void GivePanelWindowBack();

/// The new position of a scroll bar for a notification; `low` and `high` are the halves of its wParam.  Not
/// limited to the range.
struct ScrollRange {
    int minimum, maximum;
};
int ScrollTarget(int position, ScrollRange range, WORD low, WORD high);
