#include "win32/gdi/icon.h"

#include "win32/gdi/context.h"
#include "win32/last_error.h"

namespace {

struct Icon : GdiObject {
    static constexpr ObjectKind kKind = ObjectKind::kIcon;
    Icon() : GdiObject(kKind) {}
    IconPicture picture;
};

void PutIconPixel(uint32_t& pixel, const IconPicture& picture, size_t index) {
    const uint32_t color = picture.pixels[index];
    if (!picture.hasAlpha) {
        pixel = picture.keepsBelow[index] != 0 ? pixel ^ color : color;
        return;
    }
    const uint32_t alpha = color >> 24;
    const auto channel = [&](int shift) {
        const uint32_t below = pixel >> shift & 0xFF, above = color >> shift & 0xFF;
        return (below * (255 - alpha) + above * alpha + 127) / 255 << shift;
    };
    pixel = channel(16) | channel(8) | channel(0);
}

void DrawPicture(Context& context, const RECT& area, const IconPicture& picture) {
    const int64_t width = int64_t{area.right} - area.left, height = int64_t{area.bottom} - area.top;
    ForEachPart(context, area, [&](const RECT& part) {
        for (int y = part.top; y < part.bottom; ++y) {
            uint32_t* const row = context.surface->Row(y);
            const int64_t line = (int64_t{y} - area.top) * picture.height / height;
            for (int x = part.left; x < part.right; ++x) {
                const int64_t column = (int64_t{x} - area.left) * picture.width / width;
                PutIconPixel(row[x], picture, static_cast<size_t>(line * picture.width + column));
            }
        }
    });
}

} // namespace

HICON AddIcon(IconPicture picture) {
    auto icon = std::make_unique<Icon>();
    icon->picture = std::move(picture);
    const HGDIOBJ handle = AddObject(std::move(icon));
    GiveToSystem(handle);
    return static_cast<HICON>(handle);
}

void RemoveIcon(HICON handle) {
    if (Icon* const icon = ObjectOf<Icon>(handle)) RemoveObject(icon);
}

const IconPicture* PictureOfIcon(HICON handle) {
    const Icon* const icon = ObjectOf<Icon>(handle);
    return icon == nullptr ? nullptr : &icon->picture;
}

BOOL DrawIconEx(HDC handle, int x, int y, HICON icon, int width, int height, UINT step, HBRUSH background,
                UINT flags) {
    Context* const context = ContextOf(handle);
    const IconPicture* const picture = PictureOfIcon(icon);
    if (context == nullptr || picture == nullptr) {
        SetLastError(ERROR_INVALID_HANDLE);
        return FALSE;
    }
    if (flags != DI_NORMAL || step != 0 || background != nullptr || width < 0 || height < 0) {
        RefuseLoudly("DrawIconEx: steps, a background, flags or negative sizes");
        return FALSE;
    }
    // 0 stands for the picture's own size.
    if (width == 0) width = picture->width;
    if (height == 0) height = picture->height;
    const RECT area = {Near(x), Near(y), Near(int64_t{x} + width), Near(int64_t{y} + height)};
    DrawPicture(*context, OnSurface(*context, area), *picture);
    return TRUE;
}

BOOL DrawIcon(HDC handle, int x, int y, HICON icon) {
    return DrawIconEx(handle, x, y, icon, GetSystemMetrics(SM_CXICON), GetSystemMetrics(SM_CYICON), 0,
                      nullptr, DI_NORMAL);
}
