/// Gradients and patterns as Cairo sources.
#pragma once

#include <cairo.h>

#include <functional>

#include "workbench/document/document.h"

namespace workbench {

/// Draws an art object in pattern space; the renderer hands itself in, since a pattern's art can be any art.
using DrawMember = std::function<void(cairo_t*, const Art&)>;

/// Makes `color` the context's source for a paint that covers at most `extents` (in the context's user
/// space: left, top, right, bottom with top and bottom in any order).  False if there is nothing to paint
/// with: a missing gradient or pattern, or a pattern without art.
bool SetPaintSource(cairo_t* context, const Document& document, const HostColor& color,
                    const HostRect& extents, const DrawMember& drawMember);

} // namespace workbench
