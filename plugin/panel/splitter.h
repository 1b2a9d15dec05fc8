/// The border between the panel's two lists.
#pragma once

#include <windows.h>

/// With the left button down: drags the border until the button is up, if the pointer is on it.  Polls
/// without pause and takes no messages; true if the border was taken.
bool DragSplitter(HWND panel);

/// The folder list's rectangle and the gap beside it, in the panel's coordinates.
RECT SplitterSpan(HWND panel);

/// Whether a press takes the border: at the right end of the span, over its height, all edges included.
bool IsOnSplitter(const RECT& span, POINT press);
