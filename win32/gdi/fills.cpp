// Rectangles and single pixels.
#include "win32/gdi/context.h"
#include "win32/last_error.h"

namespace {

constexpr uint32_t kWhitePixel = 0xFFFFFF;

bool FillPattern(Context& context, const RECT& rectangle, const Brush& brush, DWORD operation) {
    const uint32_t color = brush.pixel;
    switch (operation) {
        case PATCOPY:
            if (!brush.hollow) ChangePixels(context, rectangle, [=](uint32_t& pixel) { pixel = color; });
            return true;
        case PATINVERT:
            if (!brush.hollow) ChangePixels(context, rectangle, [=](uint32_t& pixel) { pixel ^= color; });
            return true;
        case DSTINVERT:
            ChangePixels(context, rectangle, [](uint32_t& pixel) { pixel ^= kWhitePixel; });
            return true;
        default:
            RefuseLoudly("PatBlt: this operation");
            return false;
    }
}

// A negative extent leads to the left or upwards, and then includes the far edge instead of the near one.
RECT RectangleOfExtent(int64_t x, int64_t y, int64_t width, int64_t height) {
    const int64_t left = width < 0 ? x + width + 1 : x;
    const int64_t top = height < 0 ? y + height + 1 : y;
    return {Near(left), Near(top), Near(left + std::abs(width)), Near(top + std::abs(height))};
}

bool Pattern(Context& context, const RECT& rectangle, const Brush& brush, DWORD operation) {
    const RECT area =
        RectangleOfExtent(rectangle.left, rectangle.top, int64_t{rectangle.right} - rectangle.left,
                          int64_t{rectangle.bottom} - rectangle.top);
    return FillPattern(context, OnSurface(context, area), brush, operation);
}

// A brush, or the number of a system colour plus one.
const Brush* BrushOf(HBRUSH handle) {
    const auto number = reinterpret_cast<uintptr_t>(handle);
    if (number > 0 && number <= 0xFF) handle = GetSysColorBrush(static_cast<int>(number) - 1);
    return ObjectOf<Brush>(handle);
}

} // namespace

BOOL PatBlt(HDC handle, int x, int y, int width, int height, DWORD operation) {
    Context* const context = ContextOf(handle);
    if (context == nullptr) return FALSE;
    const RECT area = RectangleOfExtent(x, y, width, height);
    return FillPattern(*context, OnSurface(*context, area), *context->state.brush, operation);
}

int FillRect(HDC handle, const RECT* rectangle, HBRUSH brushHandle) {
    Context* const context = ContextOf(handle);
    const Brush* const brush = BrushOf(brushHandle);
    if (context == nullptr || rectangle == nullptr || brush == nullptr) return 0;
    return Pattern(*context, *rectangle, *brush, PATCOPY);
}

int FrameRect(HDC handle, const RECT* rectangle, HBRUSH brushHandle) {
    Context* const context = ContextOf(handle);
    const Brush* const brush = BrushOf(brushHandle);
    if (context == nullptr || rectangle == nullptr || brush == nullptr || IsEmpty(*rectangle)) return 0;
    const RECT& r = *rectangle;
    Pattern(*context, {r.left, r.top, r.left + 1, r.bottom}, *brush, PATCOPY);
    Pattern(*context, {r.right - 1, r.top, r.right, r.bottom}, *brush, PATCOPY);
    Pattern(*context, {r.left, r.top, r.right, r.top + 1}, *brush, PATCOPY);
    Pattern(*context, {r.left, r.bottom - 1, r.right, r.bottom}, *brush, PATCOPY);
    return 1;
}

BOOL InvertRect(HDC handle, const RECT* rectangle) {
    Context* const context = ContextOf(handle);
    if (context == nullptr || rectangle == nullptr) return FALSE;
    return Pattern(*context, *rectangle, *context->state.brush, DSTINVERT);
}

BOOL DrawFocusRect(HDC handle, const RECT* rectangle) {
    Context* const context = ContextOf(handle);
    if (context == nullptr || rectangle == nullptr) return FALSE;
    if (IsEmpty(*rectangle)) return TRUE;
    const RECT r = OnSurface(*context, *rectangle);
    // Every other pixel of the screen's raster, so that rectangles that meet go on in one pattern.
    const auto invertDots = [&](const RECT& side) {
        ForEachPart(*context, side, [&](const RECT& part) {
            for (int y = part.top; y < part.bottom; ++y) {
                uint32_t* const row = context->surface->Row(y);
                for (int x = part.left + ((part.left + y) & 1); x < part.right; x += 2) row[x] ^= kWhitePixel;
            }
        });
    };
    invertDots({r.left, r.top, r.right, r.top + 1});
    if (r.bottom - r.top > 1) invertDots({r.left, r.bottom - 1, r.right, r.bottom});
    invertDots({r.left, r.top + 1, r.left + 1, r.bottom - 1});
    if (r.right - r.left > 1) invertDots({r.right - 1, r.top + 1, r.right, r.bottom - 1});
    return TRUE;
}

COLORREF SetPixel(HDC handle, int x, int y, COLORREF color) {
    Context* const context = ContextOf(handle);
    if (context == nullptr) return CLR_INVALID;
    const int onX = Near(int64_t{x} + context->originX), onY = Near(int64_t{y} + context->originY);
    if (!context->MayDraw(onX, onY)) return CLR_INVALID;
    context->surface->Row(onY)[onX] = PixelOf(color);
    context->Touch({onX, onY, onX + 1, onY + 1});
    return color & 0xFFFFFF;
}

COLORREF GetPixel(HDC handle, int x, int y) {
    Context* const context = ContextOf(handle);
    if (context == nullptr) return CLR_INVALID;
    const int onX = Near(int64_t{x} + context->originX), onY = Near(int64_t{y} + context->originY);
    if (!context->MayDraw(onX, onY)) return CLR_INVALID;
    return ColorOf(context->surface->Row(onY)[onX]);
}
