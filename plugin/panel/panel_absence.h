/// The panel while the module is away: the host may unload it and load it again, at another address, while
/// the panel's window stands.
#pragma once

#include <windows.h>

/// Before the module goes: nothing of the panel points into it any more, and nothing that a user can do
/// changes the panel's controls.  Calls no suite.
void LeavePanel();

/// When the module is back: the window works as it did before and is painted anew.  Calls no suite; what the
/// host has to be told follows with ReturnHandlers.
void ReturnToPanel(HINSTANCE instance);

/// With the next use of the host's suites: gives the host the panel's handlers again, and the panel its
/// layout, for it may have been resized meanwhile.  Does nothing if the host has them; where it refuses one,
/// the next call tries again.
void ReturnHandlers();
