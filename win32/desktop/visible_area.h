/// Which pixels of the screen a window may draw, and which it has to paint.
///
/// What is to be painted is kept with each window, as far as it was visible when it became invalid; what was
/// hidden becomes invalid when it is uncovered.
#pragma once

#include "win32/desktop/window.h"

enum class Part { Client, Frame }; ///< a window's client area alone, or all of it

/// In screen coordinates: the part of the window, inside of its parents' client areas, without the windows
/// above it, of the siblings those that its style (or being on top) respects, and without its children if
/// WS_CLIPCHILDREN says so.
Region VisibleArea(const Window& window, Part part);

/// The pixels of a window and its children that are shown, in screen coordinates.
Region ShownArea(const Window& window);

/// Makes an area of the screen invalid, as far as it is a window's or its children's.
struct Invalidation {
    bool erase;
    bool frames;      ///< frames that the area touches are drawn anew
    bool allChildren; ///< also of a window with WS_CLIPCHILDREN
};
void InvalidateArea(Window& window, const Region& onScreen, const Invalidation& how);

/// What has been uncovered or moved: frames, backgrounds and children.
void InvalidateUncovered(Window& window, const Region& onScreen);
/// A window without WS_CLIPCHILDREN paints over its children, also over those that have come there since it
/// became invalid; they are painted once more, background and all.
void InvalidateChildrenUnder(Window& window, const Region& painted);
/// The frame alone, if the window has one.
void InvalidateFrame(Window& window);

/// Copies pixels of the screen that have moved by (dx, dy); `onScreen` is where they are now.
void MovePixels(const Region& onScreen, int dx, int dy);

/// The first window, parents before children and upper before lower ones, that has something visible to
/// paint; null if there is none.  Frames that need it are drawn on the way.
Window* FindWindowToPaint();

/// Gives contexts that are held the area that is theirs after windows have changed.
void RefreshHeldContexts();
/// Ends contexts that are held when the desktop closes.
void EndHeldContexts();
