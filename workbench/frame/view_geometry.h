/// The arithmetic of a document's view on a canvas.  Pixels run down from the canvas's left top corner, art
/// units (points) up.  A view's bounds are exactly what the canvas shows.
#pragma once

#include <windows.h>

#include "workbench/document/document.h"

namespace workbench {

constexpr double kSmallestZoom = 0.02, kLargestZoom = 64;

HostPoint ArtPointOf(const View& view, POINT pixel);
POINT PixelOf(const View& view, const HostPoint& point); ///< rounded down, held within 16 bits

/// The smallest rectangle of pixels around a rectangle of art, at least one pixel.
RECT PixelsOf(const View& view, const HostRect& rect);

/// Makes the left top corner and the zoom the view's; the canvas is `size` pixels.
void SetView(View& view, const HostPoint& leftTop, double zoom, SIZE size);

/// The zoom, held within its limits, with the art at `pixel` staying there.
void ZoomAbout(View& view, double zoom, POINT pixel, SIZE size);

/// The next of the usual zooms, each half again or a third more than the one below; 100 % is one.  Without
/// limits.
double NextZoom(double zoom, bool larger);

/// The whole page in the middle, as large as fits with a margin, but not above 100 %.
void ShowPage(View& view, const HostRect& page, SIZE size);

/// A document's page; a letter's if its own has no extent that can be shown.
HostRect UsablePage(const Document& document);

/// Where the view can go: the page with as much room again on each side.
HostRect WorldOf(const HostRect& page);

/// Moves the view by pixels, right and down being positive, and holds it within the world; along an axis on
/// which it is larger than the world, in its middle.
void Scroll(View& view, const HostRect& world, double dx, double dy, SIZE size);

/// A scroll bar's numbers, in pixels: from 0, `page` of `length` are seen, from `position` on.
struct ScrollNumbers {
    int length, page, position;
};
ScrollNumbers HorizontalNumbers(const View& view, const HostRect& world);
ScrollNumbers VerticalNumbers(const View& view, const HostRect& world);

} // namespace workbench
