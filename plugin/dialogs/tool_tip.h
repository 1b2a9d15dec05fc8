/// The tool tip under the pointer.
///
/// It is drawn straight on the screen; what it covers is kept in `globals->toolTip` and put back when it
/// goes.
#pragma once

#include <windows.h>

#include <cstddef>

/// Shows, moves or hides the tip for what the pointer is on; null hides it.
void UpdateToolTip(HWND panel);

/// Forgets the tip without giving back what it covers.
void DropToolTip();

/// The text for a control of the panel in the running language, by what is current; empty for one that has
/// none.
const char* ToolTipOfControl(int control);

/// A record's name as a tip shows it: cut to fit, with blanks for control characters.
void MakeTipOfName(const char* name, char* text /*kToolTipBytes*/);
