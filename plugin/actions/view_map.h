/// Between pixels of the document's window and art units, and the outline that a drag draws there.
///
/// Pixels count from the window's client corner, y growing downward; art's y grows upward.
#pragma once

#include <windows.h>

#include <cstdint>

#include "suites/host_types.h"

/// How the view lies in the window; fixed for one drag.
struct ViewMap {
    HostRect bounds;          ///< of the view, in art units
    double zoom;              ///< pixels for each point, above 0
    int32_t offsetX, offsetY; ///< pixel of the view's top left corner
};

/// All room in the window beyond the view's own pixels counts as lying left of and above the view.
ViewMap MapOfView(const HostRect& bounds, double zoom, int width, int height);

HostPoint PixelToArt(const ViewMap& map, POINT pixel);
POINT ArtToPixel(const ViewMap& map, const HostPoint& point); ///< cut toward zero

/// Draws the rectangle's four sides with the pen and mode of the context; nothing if it has no width.
void DrawOutlineRect(HDC context, const RECT& rectangle);

/// Where a record's bounds fall, in art units, when `point` of the pointer is the point that `originMode`
/// names (modes other than 0 to 8 act as 0).  The bounds are the header's: Fixed, in host order.
struct FixedRect {
    int32_t left, top, right, bottom;
};
HostRect OutlineOfRecord(const FixedRect& bounds, int16_t originMode, const HostPoint& point);
