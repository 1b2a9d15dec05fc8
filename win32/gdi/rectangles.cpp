// The arithmetic of rectangles, and of sizes.
#include <cstdint>

#include "win32/gdi/surface.h"

namespace {

// Both wrap, as on Windows.
LONG Sum(LONG a, LONG b) {
    return static_cast<LONG>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}
LONG Difference(LONG a, LONG b) {
    return static_cast<LONG>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}

} // namespace

BOOL SetRect(RECT* rectangle, int left, int top, int right, int bottom) {
    if (rectangle == nullptr) return FALSE;
    *rectangle = {left, top, right, bottom};
    return TRUE;
}

BOOL SetRectEmpty(RECT* rectangle) {
    return SetRect(rectangle, 0, 0, 0, 0);
}

BOOL InflateRect(RECT* rectangle, int dx, int dy) {
    if (rectangle == nullptr) return FALSE;
    return SetRect(rectangle, Difference(rectangle->left, dx), Difference(rectangle->top, dy),
                   Sum(rectangle->right, dx), Sum(rectangle->bottom, dy));
}

BOOL OffsetRect(RECT* rectangle, int dx, int dy) {
    if (rectangle == nullptr) return FALSE;
    return SetRect(rectangle, Sum(rectangle->left, dx), Sum(rectangle->top, dy), Sum(rectangle->right, dx),
                   Sum(rectangle->bottom, dy));
}

BOOL PtInRect(const RECT* rectangle, POINT point) {
    return rectangle != nullptr && Contains(*rectangle, point.x, point.y);
}

BOOL IntersectRect(RECT* result, const RECT* first, const RECT* second) {
    if (result == nullptr || first == nullptr || second == nullptr) return FALSE;
    const RECT common = Common(*first, *second);
    const bool empty = IsEmpty(*first) || IsEmpty(*second) || IsEmpty(common);
    *result = empty ? RECT{} : common;
    return !empty;
}

BOOL IsRectEmpty(const RECT* rectangle) {
    return rectangle == nullptr || IsEmpty(*rectangle);
}

int MulDiv(int number, int numerator, int denominator) {
    if (denominator == 0) return -1;
    const int64_t product = int64_t{number} * numerator;
    const int64_t divisor = denominator;
    const int64_t half = std::abs(divisor) / 2;
    const int64_t magnitude = (std::abs(product) + half) / std::abs(divisor);
    const int64_t result = (product < 0) != (divisor < 0) ? -magnitude : magnitude;
    if (result > INT32_MAX || result < INT32_MIN) return -1;
    return static_cast<int>(result);
}
