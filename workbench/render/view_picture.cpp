#include "workbench/render/view_picture.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "workbench/render/art_renderer.h"
#include "workbench/render/cairo_handle.h"

namespace workbench {

namespace {

constexpr double kDeskGrey = 0.78, kEdgeGrey = 0.45;

void DrawSheet(cairo_t* context, const HostRect& page, double zoom) {
    cairo_set_source_rgb(context, kDeskGrey, kDeskGrey, kDeskGrey);
    cairo_paint(context);
    cairo_rectangle(context, page.left, page.bottom, page.right - page.left, page.top - page.bottom);
    cairo_set_source_rgb(context, 1, 1, 1);
    cairo_fill_preserve(context);
    cairo_set_source_rgb(context, kEdgeGrey, kEdgeGrey, kEdgeGrey);
    cairo_set_line_width(context, 1 / zoom);
    cairo_stroke(context);
}

} // namespace

void DrawView(const Document& document, const View& view, int width, int height, uint32_t* pixels,
              const std::function<void(size_t done, size_t of)>& progress) {
    if (width <= 0 || height <= 0) return;
    const CairoSurface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height));
    const CairoContext context(cairo_create(surface.get()));
    cairo_scale(context.get(), view.zoom, -view.zoom);
    cairo_translate(context.get(), -view.bounds.left, -view.bounds.top);
    DrawSheet(context.get(), document.page, view.zoom);
    DrawDocument(context.get(), document, progress);
    cairo_surface_flush(surface.get());
    const unsigned char* rows = cairo_image_surface_get_data(surface.get());
    if (!rows || cairo_status(context.get()) != CAIRO_STATUS_SUCCESS) return;
    const int stride = cairo_image_surface_get_stride(surface.get());
    for (int y = 0; y < height; ++y) {
        const auto* row = reinterpret_cast<const uint32_t*>(rows + static_cast<std::ptrdiff_t>(y) * stride);
        std::transform(row, row + width, pixels + static_cast<std::ptrdiff_t>(y) * width,
                       [](uint32_t pixel) { return pixel & 0x00FFFFFF; });
    }
}

bool PaintsWithin(const Document& document, const Art& art, const HostPoint& point, double reach) {
    constexpr int kSide = 7; // pixels of the square
    if (!std::isfinite(reach) || reach <= 0) return false;
    std::array<uint32_t, kSide * kSide> pixels{};
    const CairoSurface surface(cairo_image_surface_create_for_data(
        reinterpret_cast<unsigned char*>(pixels.data()), CAIRO_FORMAT_ARGB32, kSide, kSide, kSide * 4));
    {
        const CairoContext context(cairo_create(surface.get()));
        const double scale = kSide / (2 * reach);
        cairo_scale(context.get(), scale, -scale);
        cairo_translate(context.get(), -(point.x - reach), -(point.y + reach));
        DrawArt(context.get(), document, art);
    }
    cairo_surface_flush(surface.get());
    return std::ranges::any_of(pixels, [](uint32_t pixel) { return pixel >> 24 != 0; });
}

} // namespace workbench
