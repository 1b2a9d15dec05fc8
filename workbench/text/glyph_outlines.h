/// The outlines of letters for drawing.
#pragma once

#include <cairo.h>
#include <pango/pango.h>

#include "suites/host_types.h"

namespace workbench {

/// Appends the outline of a glyph to the context's path.
/// @param font    at the size that everything is shaped at
/// @param toUser  of an outline with an em of 1, y up
void AppendGlyph(cairo_t* context, PangoFont* font, PangoGlyph glyph, const HostMatrix& toUser);

} // namespace workbench
