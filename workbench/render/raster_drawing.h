/// Images of the document as Cairo's images.
#pragma once

#include <span>

#include "workbench/document/document.h"
#include "workbench/render/cairo_handle.h"

namespace workbench {

/// The colour that a colourized image's art style gives it; null for other images and for a style without a
/// fill.  Gradients and patterns count as black.
const HostColor* ColorizingFill(const Document& document, const Art& raster);

/// Rows of pixels in a shown space of raster_data.h, without gaps, as an image whose colours are weighed with
/// their alpha.
/// @param fill  null, or the light that takes the place of black in the gray spaces
/// @return null for fewer bytes than that, no extent, a side beyond Cairo's, or if memory ran out
CairoSurface ImageOfPixels(std::span<const uint8_t> pixels, int64_t width, int64_t height, int32_t space,
                           const struct Light* fill);

/// The rows of the image that are there, the uppermost first; null if there is nothing to show.
CairoSurface ImageOfRaster(const Document& document, const Art& raster);

} // namespace workbench
