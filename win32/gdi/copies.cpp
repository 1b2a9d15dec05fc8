// Pixels from one place to another.
#include <cstring>
#include <new>

#include "win32/gdi/context.h"
#include "win32/last_error.h"

namespace {

// Puts pixels of `rows` (stride in pixels) on the surface; (left, top) of `area` is the first of them.
void PutRows(Context& context, const RECT& area, const uint32_t* rows, size_t stride) {
    ForEachPart(context, area, [&](const RECT& part) {
        for (int y = part.top; y < part.bottom; ++y) {
            const uint32_t* const from = rows + static_cast<size_t>(y - area.top) * stride +
                                         static_cast<size_t>(part.left - area.left);
            std::memcpy(context.surface->Row(y) + part.left, from,
                        static_cast<size_t>(part.right - part.left) * sizeof *from);
        }
    });
}

void CopyArea(Context& context, const RECT& area, Context& source, int sourceX, int sourceY) {
    const Surface& surface = *source.surface;
    // What is outside of the source's surface isn't copied.
    const RECT from = Common({sourceX, sourceY, Near(int64_t{sourceX} + area.right - area.left),
                              Near(int64_t{sourceY} + area.bottom - area.top)},
                             {0, 0, surface.width, surface.height});
    if (IsEmpty(from)) return;
    const RECT to = Moved(from, int64_t{area.left} - sourceX, int64_t{area.top} - sourceY);
    const uint32_t* rows = surface.Row(from.top) + from.left;
    auto stride = static_cast<size_t>(surface.width);
    std::vector<uint32_t> copy;
    if (context.surface == source.surface && !IsEmpty(Common(from, to))) {
        const auto width = static_cast<size_t>(from.right - from.left);
        for (int y = from.top; y < from.bottom; ++y) {
            const uint32_t* const row = surface.Row(y) + from.left;
            copy.insert(copy.end(), row, row + width);
        }
        rows = copy.data();
        stride = width;
    }
    PutRows(context, to, rows, stride);
}

} // namespace

BOOL BitBlt(HDC handle, int x, int y, int width, int height, HDC sourceHandle, int sourceX, int sourceY,
            DWORD operation) {
    Context* const context = ContextOf(handle);
    Context* const source = ContextOf(sourceHandle);
    if (context == nullptr || source == nullptr) return FALSE;
    if (operation != SRCCOPY || width < 0 || height < 0) {
        RefuseLoudly("BitBlt: this operation or extent");
        return FALSE;
    }
    const RECT area =
        OnSurface(*context, {Near(x), Near(y), Near(int64_t{x} + width), Near(int64_t{y} + height)});
    try {
        CopyArea(*context, area, *source, Near(int64_t{sourceX} + source->originX),
                 Near(int64_t{sourceY} + source->originY));
    } catch (const std::bad_alloc&) {
        return FailForMemory(FALSE);
    }
    return TRUE;
}

int SetDIBitsToDevice(HDC handle, int x, int y, DWORD width, DWORD height, int sourceX, int sourceY,
                      UINT firstLine, UINT lines, const void* bits, const BITMAPINFO* information,
                      UINT colorUse) {
    Context* const context = ContextOf(handle);
    if (context == nullptr || bits == nullptr || information == nullptr) return 0;
    const BITMAPINFOHEADER& header = information->bmiHeader;
    const int64_t rowCount = std::abs(int64_t{header.biHeight});
    if (header.biBitCount != 32 || header.biCompression != BI_RGB || header.biPlanes != 1 ||
        colorUse != DIB_RGB_COLORS || firstLine != 0 || lines != rowCount || header.biWidth <= 0) {
        RefuseLoudly("SetDIBitsToDevice: other than the whole of a bitmap of 32 bits");
        return 0;
    }
    // The source's place is that of its lower left corner, as seen from the bitmap's.
    const bool topDown = header.biHeight < 0;
    const int64_t bitmapWidth = header.biWidth;
    const int64_t top = rowCount - sourceY - int64_t{height};
    const RECT from = Common({Near(sourceX), Near(top), Near(sourceX + int64_t{width}), Near(top + height)},
                             {0, 0, header.biWidth, Near(rowCount)});
    if (IsEmpty(from)) return static_cast<int>(lines);
    const RECT to = OnSurface(*context, Moved(from, int64_t{x} - sourceX, int64_t{y} - top));
    ForEachPart(*context, to, [&](const RECT& part) {
        for (int py = part.top; py < part.bottom; ++py) {
            const int64_t row = int64_t{py} - to.top + from.top;
            const int64_t line = topDown ? row : rowCount - 1 - row;
            const int64_t first = line * bitmapWidth + from.left + (part.left - to.left);
            const auto* const source = static_cast<const uint8_t*>(bits) + first * 4;
            uint32_t* const target = context->surface->Row(py) + part.left;
            const auto count = static_cast<size_t>(part.right - part.left);
            std::memcpy(target, source, count * 4); // blue, green, red, unused: a little-endian pixel
            for (size_t i = 0; i < count; ++i) target[i] &= 0xFFFFFF;
        }
    });
    return static_cast<int>(lines);
}
