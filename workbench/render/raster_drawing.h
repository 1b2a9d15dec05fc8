/// Pixels as Cairo's images.
#pragma once

#include <span>

#include "workbench/document/raster_light.h"
#include "workbench/render/cairo_handle.h"

namespace workbench {

/// Rows of pixels in a shown space of raster_data.h, without gaps, as an image whose colours are weighed with
/// their alpha.  Null for fewer bytes than that, no extent, a side beyond Cairo's, or if memory ran out.
CairoSurface ImageOfPixels(std::span<const uint8_t> pixels, int64_t width, int64_t height, int32_t space,
                           const Light& dark = {});

/// Draws an image of a shown space whose data lies in the document, in a space with a unit for each pixel and
/// its lower left corner at (0, 0), y up.
void DrawRasterPixels(cairo_t* context, const Document& document, const Art& raster, cairo_operator_t blend,
                      double opacity);

} // namespace workbench
