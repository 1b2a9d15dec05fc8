/// JPEG files to pixels.
#pragma once

#include <cstdint>
#include <span>

#include "workbench/render/cairo_handle.h"

namespace workbench {

/// An RGB image; null for bytes that are no JPEG, end before the picture does, or ask for more passes over it
/// than any picture needs.  The size in its header must have been checked before.
CairoSurface ImageOfJpeg(std::span<const uint8_t> bytes);

} // namespace workbench
