#include "workbench/render/cairo_pixels.h"

#include <cstring>

namespace workbench {

std::vector<uint8_t> BytesOfImage(cairo_surface_t* image) {
    cairo_surface_flush(image);
    const uint8_t* from = cairo_image_surface_get_data(image);
    if (!from) return {};
    const auto width = static_cast<size_t>(cairo_image_surface_get_width(image));
    const auto height = static_cast<size_t>(cairo_image_surface_get_height(image));
    const auto stride = static_cast<size_t>(cairo_image_surface_get_stride(image));
    std::vector<uint8_t> bytes(width * height * 4);
    uint8_t* to = bytes.data();
    for (size_t y = 0; y < height; ++y, from += stride) {
        for (size_t x = 0; x < width; ++x, to += 4) {
            uint32_t pixel;
            std::memcpy(&pixel, from + 4 * x, 4);
            to[1] = static_cast<uint8_t>(pixel >> 16);
            to[2] = static_cast<uint8_t>(pixel >> 8);
            to[3] = static_cast<uint8_t>(pixel);
        }
    }
    return bytes;
}

CairoSurface ImageOfBytes(const std::vector<uint8_t>& bytes, int width, int height) {
    CairoSurface image(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height));
    uint8_t* to = cairo_image_surface_get_data(image.get());
    const auto columns = static_cast<size_t>(width), rows = static_cast<size_t>(height);
    if (!to || bytes.size() < columns * rows * 4) return nullptr;
    cairo_surface_flush(image.get());
    const auto stride = static_cast<size_t>(cairo_image_surface_get_stride(image.get()));
    const uint8_t* from = bytes.data();
    for (size_t y = 0; y < rows; ++y, to += stride) {
        for (size_t x = 0; x < columns; ++x, from += 4) {
            const uint32_t pixel = uint32_t{from[1]} << 16 | uint32_t{from[2]} << 8 | from[3];
            std::memcpy(to + 4 * x, &pixel, 4);
        }
    }
    cairo_surface_mark_dirty(image.get());
    return image;
}

} // namespace workbench
