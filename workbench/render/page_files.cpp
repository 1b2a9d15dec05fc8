#include "workbench/render/page_files.h"

#include <cairo-pdf.h>

#include <algorithm>
#include <cmath>

#include "workbench/render/art_renderer.h"
#include "workbench/render/cairo_pixels.h"

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
    picture.width = cairo_image_surface_get_width(surface.get());
    picture.height = cairo_image_surface_get_height(surface.get());
    picture.pixels = BytesOfImage(surface.get());
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
    const CairoSurface surface = ImageOfBytes(picture.pixels, picture.width, picture.height);
    if (!surface) {
        *error = "the picture has no pixels";
        return {};
    }
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
