/// Owners of Cairo's reference-counted objects.
#pragma once

#include <cairo.h>

#include <memory>

namespace workbench {

struct CairoRelease {
    void operator()(cairo_t* context) const { cairo_destroy(context); }
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_pattern_t* pattern) const { cairo_pattern_destroy(pattern); }
};
using CairoContext = std::unique_ptr<cairo_t, CairoRelease>;
using CairoSurface = std::unique_ptr<cairo_surface_t, CairoRelease>;
using CairoSource = std::unique_ptr<cairo_pattern_t, CairoRelease>;

} // namespace workbench
