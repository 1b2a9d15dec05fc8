#include "workbench/render/raster_drawing.h"

#include <cstring>

#include "workbench/pictures/picture_file.h"

namespace workbench {
namespace {

uint32_t CairoPixel(const LitPixel& lit) {
    const uint32_t alpha = lit[3];
    const auto weighed = [alpha](uint32_t value) { return (value * alpha + 127) / 255; };
    return alpha << 24 | weighed(lit[0]) << 16 | weighed(lit[1]) << 8 | weighed(lit[2]);
}

/// Of the rows that were never written: all channels 0.
void SetEmptySource(cairo_t* context, int32_t space, const Light& dark) {
    const uint8_t nothing[8]{};
    const LitPixel lit = RasterLight(space, dark).Of(nothing);
    cairo_set_source_rgba(context, lit[0] / 255.0, lit[1] / 255.0, lit[2] / 255.0, lit[3] / 255.0);
}

} // namespace

CairoSurface ImageOfPixels(std::span<const uint8_t> pixels, int64_t width, int64_t height, int32_t space,
                           const Light& dark) {
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
    const RasterLight lights(space, dark);
    const uint8_t* from = pixels.data();
    for (size_t y = 0; y < rows; ++y, to += stride) {
        for (size_t x = 0; x < columns; ++x, from += channels) {
            const uint32_t pixel = CairoPixel(lights.Of(from));
            std::memcpy(to + 4 * x, &pixel, 4);
        }
    }
    cairo_surface_mark_dirty(image.get());
    return image;
}

void DrawRasterPixels(cairo_t* context, const Document& document, const Art& raster, cairo_operator_t blend,
                      double opacity) {
    const auto& data = std::get<RasterData>(raster.data);
    const int32_t space = data.record.colorSpace;
    const auto width = static_cast<double>(data.Width()), height = static_cast<double>(data.Height());
    const auto rows = static_cast<double>(data.RowsKept());
    const Light dark = DarkOf(document, raster);
    cairo_set_operator(context, blend);
    if (rows < height) {
        cairo_save(context);
        cairo_rectangle(context, 0, 0, width, height - rows);
        cairo_clip(context);
        SetEmptySource(context, space, dark);
        cairo_paint_with_alpha(context, opacity);
        cairo_restore(context);
    }
    const CairoSurface image = ImageOfPixels(data.pixels, data.Width(), data.RowsKept(), space, dark);
    if (!image) return;
    cairo_rectangle(context, 0, height - rows, width, rows);
    cairo_clip(context);
    cairo_translate(context, 0, height);
    cairo_scale(context, 1, -1);
    cairo_set_source_surface(context, image.get(), 0, 0);
    cairo_pattern_set_extend(cairo_get_source(context), CAIRO_EXTEND_PAD); // no soft edge
    cairo_paint_with_alpha(context, opacity);
}

} // namespace workbench
