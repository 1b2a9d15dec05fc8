#include "workbench/frame/view_geometry.h"

#include <algorithm>
#include <cmath>

namespace workbench {

namespace {

constexpr int kPageMargin = 24; ///< pixels around a page that was fitted
constexpr double kFarthest = 1e7;

LONG WholePixel(double value) {
    return static_cast<LONG>(std::clamp(std::floor(value), -32768.0, 32767.0));
}

int WholeNumber(double value) {
    return static_cast<int>(std::lround(std::clamp(value, 0.0, 1e9)));
}

/// A start from which `extent` lies within [first, last], or in its middle.
double Hold(double start, double extent, double first, double last) {
    if (extent >= last - first) return (first + last - extent) / 2;
    return std::clamp(start, first, last - extent);
}

} // namespace

HostPoint ArtPointOf(const View& view, POINT pixel) {
    return {view.bounds.left + pixel.x / view.zoom, view.bounds.top - pixel.y / view.zoom};
}

POINT PixelOf(const View& view, const HostPoint& point) {
    return {WholePixel((point.x - view.bounds.left) * view.zoom),
            WholePixel((view.bounds.top - point.y) * view.zoom)};
}

RECT PixelsOf(const View& view, const HostRect& rect) {
    const POINT leftTop = PixelOf(view, {rect.left, rect.top});
    const POINT rightBottom = PixelOf(view, {rect.right, rect.bottom});
    return {leftTop.x, leftTop.y, rightBottom.x + 1, rightBottom.y + 1};
}

void SetView(View& view, const HostPoint& leftTop, double zoom, SIZE size) {
    view.zoom = zoom;
    view.bounds = {leftTop.x, leftTop.y, leftTop.x + size.cx / zoom, leftTop.y - size.cy / zoom};
}

void ZoomAbout(View& view, double zoom, POINT pixel, SIZE size) {
    zoom = std::clamp(zoom, kSmallestZoom, kLargestZoom);
    const HostPoint fixed = ArtPointOf(view, pixel);
    SetView(view, {fixed.x - pixel.x / zoom, fixed.y + pixel.y / zoom}, zoom, size);
}

double NextZoom(double zoom, bool larger) {
    constexpr double kLittle = 1e-6; // what rounding may have added
    if (!larger) return 1 / NextZoom(1 / zoom, true);
    for (double power = std::exp2(std::floor(std::log2(zoom)));; power *= 2) {
        for (const double usual : {power, power < 1 ? power * 4 / 3 : power * 1.5}) {
            if (usual > zoom * (1 + kLittle)) return usual;
        }
    }
}

void ShowPage(View& view, const HostRect& page, SIZE size) {
    const double width = page.right - page.left, height = page.top - page.bottom;
    const double fit = std::min(std::max<LONG>(size.cx - 2 * kPageMargin, 1) / width,
                                std::max<LONG>(size.cy - 2 * kPageMargin, 1) / height);
    const double zoom = std::clamp(fit, kSmallestZoom, 1.0);
    SetView(view,
            {(page.left + page.right) / 2 - size.cx / zoom / 2,
             (page.top + page.bottom) / 2 + size.cy / zoom / 2},
            zoom, size);
}

HostRect UsablePage(const Document& document) {
    const HostRect& page = document.page;
    bool usable = page.right - page.left >= 1 && page.top - page.bottom >= 1;
    for (const double value : {page.left, page.top, page.right, page.bottom})
        usable = usable && std::abs(value) <= kFarthest;
    return usable ? page : HostRect{0, 792, 612, 0};
}

HostRect WorldOf(const HostRect& page) {
    const double width = page.right - page.left, height = page.top - page.bottom;
    return {page.left - width, page.top + height, page.right + width, page.bottom - height};
}

void Scroll(View& view, const HostRect& world, double dx, double dy, SIZE size) {
    const double left = view.bounds.left + dx / view.zoom;
    const double bottom = view.bounds.bottom - dy / view.zoom;
    const double width = size.cx / view.zoom, height = size.cy / view.zoom;
    const double heldBottom = Hold(bottom, height, world.bottom, world.top);
    SetView(view, {Hold(left, width, world.left, world.right), heldBottom + height}, view.zoom, size);
}

ScrollNumbers HorizontalNumbers(const View& view, const HostRect& world) {
    return {WholeNumber((world.right - world.left) * view.zoom),
            WholeNumber((view.bounds.right - view.bounds.left) * view.zoom),
            WholeNumber((view.bounds.left - world.left) * view.zoom)};
}

ScrollNumbers VerticalNumbers(const View& view, const HostRect& world) {
    return {WholeNumber((world.top - world.bottom) * view.zoom),
            WholeNumber((view.bounds.top - view.bounds.bottom) * view.zoom),
            WholeNumber((world.top - view.bounds.top) * view.zoom)};
}

} // namespace workbench
