/// Where the browser stands, and the window that it stands in.
#pragma once

#include <windows.h>

/// Puts the parts of `aidbfname` into `selFolder`, `selSubFolder` and `selGroup`.
void SplitCurrentName();

/// The panel's window; null if there is no panel or its window is gone.  Needs the host's suites.
HWND PanelWindow();
