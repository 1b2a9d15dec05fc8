/// Device contexts over the desktop's frame buffer, for the windows that own a part of it.
#pragma once

#include <cairo.h>
#include <windows.h>

#include "win32/display.h"

/// Gives the frame buffer a size; all black.
void ResizeScreen(int width, int height);
FrameBuffer ScreenPixels();

/// A context whose point (0, 0) is (originX, originY) of the screen, clipped to `visible`, in screen
/// coordinates, which it takes over.
HDC NewScreenContext(int originX, int originY, cairo_region_t* visible);

/// Ends such a context; objects that are selected into it stay their owners'.  False for any other handle.
bool EndScreenContext(HDC context);

/// Changes what is visible of it, as when windows move while it is held.
void SetScreenContextRegion(HDC context, int originX, int originY, cairo_region_t* visible);

/// The smallest rectangle around what was drawn on the screen since the last call; false if nothing was.
bool TakeScreenChanges(RECT& changed);

/// Counts for object_counts.h.
struct DrawingCounts {
    int contexts, brushes, pens, fonts, bitmaps;
};
DrawingCounts CountDrawingObjects();
