/// What draws art into pixels.  The suites are given one, so that they need no drawing library.
#pragma once

#include <cstdint>
#include <vector>

#include "workbench/document/document.h"

namespace workbench {

/// Rows from the top; 4 bytes a pixel: one unused, red, green, blue.
struct PixelPort {
    int32_t width = 0, height = 0;
    int32_t rowPixels = 0;
    std::vector<uint8_t> pixels;
};

class Painter {
public:
    virtual ~Painter() = default;

    /// Draws `art` with all its members over what the port holds.  `artToPixels` maps art coordinates (y up)
    /// to pixels of the port (y down).
    virtual void Draw(const Document& document, const Art& art, const HostMatrix& artToPixels,
                      PixelPort& port) = 0;
};

} // namespace workbench
