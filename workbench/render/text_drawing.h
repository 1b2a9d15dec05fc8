/// Letters as outlines for the renderer's own paint.
#pragma once

#include <cairo.h>

#include <functional>

#include "workbench/document/document.h"

namespace workbench {

/// Makes the outlines of letters that share their paint the context's path, a number of letters at a time,
/// and calls `paint` for each with that paint.
void DrawLetters(cairo_t* context, const Document& document, const Art& frame,
                 const std::function<void(const HostPathStyle&)>& paint);

} // namespace workbench
