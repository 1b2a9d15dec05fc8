/// Pixels to draw on, and the little arithmetic of rectangles that all of drawing needs.
#pragma once

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <vector>

/// 0x00RRGGBB, top row first, without gaps.
struct Surface {
    int width = 0, height = 0;
    std::vector<uint32_t> pixels;

    uint32_t* Row(int y) { return pixels.data() + static_cast<size_t>(y) * static_cast<size_t>(width); }
    const uint32_t* Row(int y) const { return const_cast<Surface*>(this)->Row(y); }
};

/// Coordinates are cut to these limits before anything is added to them, as Windows has 27 bits for them.
constexpr int kFarthest = 1 << 27;
inline int Near(int64_t coordinate) {
    return static_cast<int>(std::clamp<int64_t>(coordinate, -kFarthest, kFarthest));
}

inline bool IsEmpty(const RECT& rectangle) {
    return rectangle.right <= rectangle.left || rectangle.bottom <= rectangle.top;
}
inline bool Contains(const RECT& rectangle, int x, int y) {
    return x >= rectangle.left && x < rectangle.right && y >= rectangle.top && y < rectangle.bottom;
}
inline bool IsWithin(const RECT& inner, const RECT& outer) {
    return inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
           inner.bottom <= outer.bottom;
}
inline RECT Common(const RECT& a, const RECT& b) {
    return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
            std::min(a.bottom, b.bottom)};
}
/// Moved, each edge within the limits above.
inline RECT Moved(const RECT& rectangle, int64_t dx, int64_t dy) {
    return {Near(rectangle.left + dx), Near(rectangle.top + dy), Near(rectangle.right + dx),
            Near(rectangle.bottom + dy)};
}

inline uint32_t PixelOf(COLORREF color) {
    return (color & 0xFF) << 16 | (color & 0xFF00) | (color >> 16 & 0xFF);
}
inline COLORREF ColorOf(uint32_t pixel) {
    return PixelOf(pixel); // the same exchange of red and blue
}
