/// Which window the pointer is on.
#pragma once

#include <windows.h>

struct HitWindow {
    HWND window;
    int code; ///< what the window answered to WM_NCHITTEST; HTERROR for a disabled top-level window
};

/// Children before parents, upper windows before lower ones; a disabled child is passed over, and who answers
/// HTTRANSPARENT too.  The desktop if no other window is there.
HitWindow FindHit(POINT point);
