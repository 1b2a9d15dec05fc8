/// Pixels as bytes (4 a pixel: one unused, red, green, blue, rows from the top) and as Cairo's images.
#pragma once

#include <cstdint>
#include <vector>

#include "workbench/render/cairo_handle.h"

namespace workbench {

/// The bytes of an RGB image surface; nothing if it has no pixels.
std::vector<uint8_t> BytesOfImage(cairo_surface_t* image);

/// An RGB image with these bytes; null if there are too few or memory ran out.
CairoSurface ImageOfBytes(const std::vector<uint8_t>& bytes, int width, int height);

} // namespace workbench
