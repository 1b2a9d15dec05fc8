/// What the pixels of an image look like.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "workbench/document/color.h"
#include "workbench/document/document.h"

namespace workbench {

/// Red, green, blue and alpha, not weighed.
using LitPixel = std::array<uint8_t, 4>;

/// Turns pixels of one shown space into lights.
class RasterLight {
public:
    /// @param dark  what takes the place of black in the gray spaces
    RasterLight(int32_t space, const Light& dark);

    LitPixel Of(const uint8_t* pixel) const;

private:
    int32_t space_;
    std::array<LitPixel, 256> tones_;
};

/// What takes the place of an image's black: the fill of the style of a colourized image, which counts as
/// black where it is a gradient or pattern; else black.
Light DarkOf(const Document& document, const Art& raster);

/// The rows of an image that are there as lights, four bytes a pixel; nothing for an image that isn't shown.
std::vector<uint8_t> LitPixels(const Document& document, const Art& raster);

} // namespace workbench
