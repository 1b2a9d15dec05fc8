/// Images in the art tree.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "suites/host_types.h"

namespace workbench {

/// An image.  Row 0 is the upper one; pixel (x, y) lies at matrix(x, -y), so that an upright image has
/// its upper left corner at the matrix's translation.
struct RasterData {
    std::string file; ///< linked file, UTF-8; empty: `pixels` holds the data
    HostMatrix matrix{1, 0, 0, 1, 0, 0};
    int32_t width = 0, height = 0;
    int32_t bytesPerPixel = 4;
    std::vector<uint8_t> pixels; ///< 4 bytes a pixel: alpha, red, green, blue, not premultiplied
};

} // namespace workbench
