#include "plugin/actions/view_map.h"

#include <limits>

#include "plugin/host/suites.h"

namespace {

constexpr double kFixedOne = 65536.0;

/// Cut toward zero, and held within the range: a far point must not become one nearby.
int32_t CutToPixel(double value) {
    constexpr double kMost = std::numeric_limits<int32_t>::max() / 4;
    if (!(value > -kMost)) return static_cast<int32_t>(-kMost);
    if (!(value < kMost)) return static_cast<int32_t>(kMost);
    return static_cast<int32_t>(value);
}

} // namespace

ViewMap MapOfView(const HostRect& bounds, double zoom, int width, int height) {
    return {.bounds = bounds,
            .zoom = zoom,
            .offsetX = CutToPixel(width - (bounds.right - bounds.left) * zoom),
            .offsetY = CutToPixel(height - (bounds.top - bounds.bottom) * zoom)};
}

HostPoint PixelToArt(const ViewMap& map, POINT pixel) {
    return {(pixel.x - map.offsetX) / map.zoom + map.bounds.left,
            map.bounds.top - (pixel.y - map.offsetY) / map.zoom};
}

POINT ArtToPixel(const ViewMap& map, const HostPoint& point) {
    return {CutToPixel((point.x - map.bounds.left) * map.zoom + map.offsetX),
            CutToPixel((map.bounds.top - point.y) * map.zoom + map.offsetY)};
}

void DrawOutlineRect(HDC context, const RECT& rectangle) {
    if (rectangle.left == rectangle.right) return;
    MoveToEx(context, rectangle.left, rectangle.top, nullptr);
    LineTo(context, rectangle.right, rectangle.top);
    LineTo(context, rectangle.right, rectangle.bottom);
    LineTo(context, rectangle.left, rectangle.bottom);
    LineTo(context, rectangle.left, rectangle.top);
}

HostRect OutlineOfRecord(const FixedRect& bounds, int16_t originMode, const HostPoint& point) {
    const HostRect record{bounds.left / kFixedOne, bounds.top / kFixedOne, bounds.right / kFixedOne,
                          bounds.bottom / kFixedOne};
    const int16_t mode = originMode >= 0 && originMode <= 8 ? originMode : int16_t{0};
    const int column = mode / 3, row = mode % 3; // left to right, top to bottom
    const double x = column == 0   ? 0
                     : column == 1 ? (record.left - record.right) / 2
                                   : record.left - record.right;
    const double y = row == 0 ? record.bottom - record.top : row == 1 ? (record.bottom - record.top) / 2 : 0;
    HostRect outline = record;
    RealMathSuite().OffsetRect(&outline, -record.left, -record.bottom);
    outline = {outline.left + point.x, outline.top + point.y, outline.right + point.x,
               outline.bottom + point.y};
    RealMathSuite().OffsetRect(&outline, x, y);
    return outline;
}
