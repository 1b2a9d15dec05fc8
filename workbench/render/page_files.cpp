#include "workbench/render/page_files.h"

#include <cairo-pdf.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "workbench/render/art_renderer.h"
#include "workbench/render/cairo_handle.h"

namespace workbench {
namespace {

cairo_status_t AppendBytes(void* closure, const unsigned char* bytes, unsigned int count) {
    auto* out = static_cast<std::vector<uint8_t>*>(closure);
    out->insert(out->end(), bytes, bytes + count);
    return CAIRO_STATUS_SUCCESS;
}

/// The page's upper left corner at (0, 0), y down.
void MapPage(cairo_t* context, const HostRect& page, double scale) {
    cairo_scale(context, scale, -scale);
    cairo_translate(context, -page.left, -page.top);
}

struct PageSize {
    double width, height, scale;
    bool usable;
};

PageSize SizeOf(const Document& document, double scale, double largestSide) {
    const double width = document.page.right - document.page.left;
    const double height = document.page.top - document.page.bottom;
    const bool usable = std::isfinite(width) && std::isfinite(height) && width > 0 && height > 0;
    const double largest = std::max(width, height);
    if (usable && largest * scale > largestSide) scale = largestSide / largest;
    return {width, height, scale, usable};
}

CairoSurface DrawImage(const Document& document, double scale, int largestSide) {
    const PageSize size = SizeOf(document, scale, largestSide);
    if (!size.usable) return nullptr;
    const int columns = std::max(1, static_cast<int>(std::lround(size.width * size.scale)));
    const int rows = std::max(1, static_cast<int>(std::lround(size.height * size.scale)));
    CairoSurface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, columns, rows));
    const CairoContext context(cairo_create(surface.get()));
    cairo_set_source_rgb(context.get(), 1, 1, 1);
    cairo_paint(context.get());
    MapPage(context.get(), document.page, size.scale);
    DrawDocument(context.get(), document);
    if (cairo_status(context.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
    return surface;
}

std::vector<uint8_t> PngOfSurface(cairo_surface_t* surface, std::string* error) {
    std::vector<uint8_t> bytes;
    const cairo_status_t status = cairo_surface_write_to_png_stream(surface, AppendBytes, &bytes);
    if (status == CAIRO_STATUS_SUCCESS) return bytes;
    *error = cairo_status_to_string(status);
    return {};
}

} // namespace

PagePicture DrawPage(const Document& document, double scale, int largestSide) {
    const CairoSurface surface = DrawImage(document, scale, largestSide);
    PagePicture picture;
    if (!surface) return picture;
    cairo_surface_flush(surface.get());
    picture.width = cairo_image_surface_get_width(surface.get());
    picture.height = cairo_image_surface_get_height(surface.get());
    const auto stride = static_cast<size_t>(cairo_image_surface_get_stride(surface.get()));
    const uint8_t* from = cairo_image_surface_get_data(surface.get());
    picture.pixels.reserve(static_cast<size_t>(picture.width) * static_cast<size_t>(picture.height) * 4);
    for (int y = 0; y < picture.height; ++y, from += stride) {
        for (int x = 0; x < picture.width; ++x) {
            uint32_t pixel;
            std::memcpy(&pixel, from + 4 * x, 4);
            picture.pixels.insert(picture.pixels.end(),
                                  {0, static_cast<uint8_t>(pixel >> 16), static_cast<uint8_t>(pixel >> 8),
                                   static_cast<uint8_t>(pixel)});
        }
    }
    return picture;
}

std::vector<uint8_t> PngOfPage(const Document& document, double scale, std::string* error) {
    const CairoSurface surface = DrawImage(document, scale, 16384);
    if (!surface) {
        *error = "the page has no size that can be drawn";
        return {};
    }
    return PngOfSurface(surface.get(), error);
}

std::vector<uint8_t> PngOfPicture(const PagePicture& picture, std::string* error) {
    const CairoSurface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, picture.width, picture.height));
    uint8_t* pixels = cairo_image_surface_get_data(surface.get());
    const auto width = static_cast<size_t>(picture.width), height = static_cast<size_t>(picture.height);
    if (!pixels || picture.pixels.size() < width * height * 4) {
        *error = "the picture has no pixels";
        return {};
    }
    cairo_surface_flush(surface.get());
    const auto stride = static_cast<size_t>(cairo_image_surface_get_stride(surface.get()));
    for (size_t y = 0; y < height; ++y) {
        for (size_t x = 0; x < width; ++x) {
            const uint8_t* from = &picture.pixels[(y * width + x) * 4];
            const uint32_t pixel = uint32_t{from[1]} << 16 | uint32_t{from[2]} << 8 | from[3];
            std::memcpy(pixels + y * stride + x * 4, &pixel, 4);
        }
    }
    cairo_surface_mark_dirty(surface.get());
    return PngOfSurface(surface.get(), error);
}

std::vector<uint8_t> PdfOfPage(const Document& document, std::string* error) {
    const PageSize size = SizeOf(document, 1, INFINITY);
    if (!size.usable) {
        *error = "the page has no size that can be drawn";
        return {};
    }
    std::vector<uint8_t> bytes;
    const CairoSurface surface(
        cairo_pdf_surface_create_for_stream(AppendBytes, &bytes, size.width, size.height));
    if (!document.title.empty())
        cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_TITLE, document.title.c_str());
    {
        const CairoContext context(cairo_create(surface.get()));
        MapPage(context.get(), document.page, 1);
        DrawDocument(context.get(), document);
        cairo_show_page(context.get());
        if (cairo_status(context.get()) != CAIRO_STATUS_SUCCESS) {
            *error = cairo_status_to_string(cairo_status(context.get()));
            return {};
        }
    }
    cairo_surface_finish(surface.get());
    const cairo_status_t status = cairo_surface_status(surface.get());
    if (status == CAIRO_STATUS_SUCCESS) return bytes;
    *error = cairo_status_to_string(status);
    return {};
}

} // namespace workbench
