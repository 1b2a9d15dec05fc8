/// What draws art into pixels.  The suites are given a painter, so that they need no drawing library.
#pragma once

#include <cstdint>
#include <memory>

#include "workbench/document/document.h"

namespace workbench {

/// An off-screen picture that keeps its own form of pixels between draws.
class PaintSurface {
public:
    virtual ~PaintSurface() = default;

    virtual void Fill(const Document& document, const HostColor& color) = 0;

    /// Draws `art` with all its members over what is there.  `artToPixels` maps art coordinates (y up) to
    /// pixels (y down).
    virtual void Draw(const Document& document, const Art& art, const HostMatrix& artToPixels) = 0;

    /// Rows from the top; 4 bytes a pixel: one unused (0), red, green, blue.  The memory is the surface's and
    /// stands until the next call.
    virtual const uint8_t* Pixels(int32_t* rowPixels) = 0;
};

class Painter {
public:
    virtual ~Painter() = default;

    /// Null if the size is not above 0 or memory ran out.
    virtual std::unique_ptr<PaintSurface> NewSurface(int32_t width, int32_t height) = 0;
};

} // namespace workbench
