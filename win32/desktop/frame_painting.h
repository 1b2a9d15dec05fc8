/// What DefWindowProcA does with a window's frame.
#pragma once

#include "win32/desktop/window.h"
#include "win32/window_frame.h"

int FrameHitTest(const Window& window, POINT onScreen);
void PaintFrame(const Window& window);

// These two take messages until the button is up.
void DragByCaption(HWND window);
void PressCloseBox(HWND window); ///< WM_CLOSE if it is let go inside
