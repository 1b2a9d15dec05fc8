#include "workbench/render/raster_drawing.h"

#include <cmath>
#include <cstring>

#include "workbench/document/color.h"
#include "workbench/pictures/picture_file.h"

namespace workbench {
namespace {

uint32_t Weighed(uint32_t value, uint32_t alpha) {
    return (value * alpha + 127) / 255;
}

uint32_t Pixel(uint32_t red, uint32_t green, uint32_t blue, uint32_t alpha) {
    return alpha << 24 | Weighed(red, alpha) << 16 | Weighed(green, alpha) << 8 | Weighed(blue, alpha);
}

/// Pixels of one space, alpha behind the colours, to Cairo's.
class PixelReader {
public:
    PixelReader(int32_t space, const Light* fill) : space_(space) {
        // The light of a gray pixel runs from the fill's to the paper's.
        for (uint32_t gray = 0; gray < 256; ++gray) {
            const double share = gray / 255.0;
            const auto light = [&](double dark) {
                return static_cast<uint8_t>(std::lround((dark + (1 - dark) * share) * 255));
            };
            const Light dark = fill ? *fill : Light{};
            tones_[gray][0] = light(dark.red);
            tones_[gray][1] = light(dark.green);
            tones_[gray][2] = light(dark.blue);
        }
    }

    uint32_t Read(const uint8_t* from) const {
        const uint32_t alpha = HasAlpha(space_) ? from[ChannelsOf(space_) - 1] : 255;
        switch (space_) {
            case kSpaceGray:
            case kSpaceGrayAlpha: {
                const auto& tone = tones_[from[0]];
                return Pixel(tone[0], tone[1], tone[2], alpha);
            }
            case kSpaceFour:
            case kSpaceFourAlpha: {
                const uint32_t rest = 255u - from[3];
                const auto light = [rest](uint32_t ink) { return (255 - ink) * rest / 255; };
                return Pixel(light(from[0]), light(from[1]), light(from[2]), alpha);
            }
            default:
                return Pixel(from[0], from[1], from[2], alpha);
        }
    }

private:
    int32_t space_;
    uint8_t tones_[256][3];
};

} // namespace

const HostColor* ColorizingFill(const Document& document, const Art& raster) {
    const auto* data = std::get_if<RasterData>(&raster.data);
    if (!data || !data->Colorized() || !raster.artStyle) return nullptr;
    const ArtStyle* style = const_cast<Document&>(document).Find(raster.artStyle);
    return style && style->paint.fillPaint ? &style->paint.fill : nullptr;
}

CairoSurface ImageOfPixels(std::span<const uint8_t> pixels, int64_t width, int64_t height, int32_t space,
                           const Light* fill) {
    if (!IsShownSpace(space) || width < 1 || height < 1 || width > kMaxPictureSide ||
        height > kMaxPictureSide)
        return nullptr;
    const auto channels = static_cast<size_t>(ChannelsOf(space));
    const auto columns = static_cast<size_t>(width), rows = static_cast<size_t>(height);
    if (pixels.size() < columns * rows * channels) return nullptr;
    CairoSurface image(
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(width), static_cast<int>(height)));
    uint8_t* to = cairo_image_surface_get_data(image.get());
    if (!to) return nullptr;
    cairo_surface_flush(image.get());
    const auto stride = static_cast<size_t>(cairo_image_surface_get_stride(image.get()));
    const PixelReader reader(space, fill);
    const uint8_t* from = pixels.data();
    for (size_t y = 0; y < rows; ++y, to += stride) {
        for (size_t x = 0; x < columns; ++x, from += channels) {
            const uint32_t pixel = reader.Read(from);
            std::memcpy(to + 4 * x, &pixel, 4);
        }
    }
    cairo_surface_mark_dirty(image.get());
    return image;
}

CairoSurface ImageOfRaster(const Document& document, const Art& raster) {
    const auto* data = std::get_if<RasterData>(&raster.data);
    if (!data || !data->file.empty()) return nullptr;
    const HostColor* color = ColorizingFill(document, raster);
    const Light fill = color ? LightOf(document, *color) : Light{};
    return ImageOfPixels(data->pixels, data->Width(), data->RowsKept(), data->record.colorSpace, &fill);
}

} // namespace workbench
