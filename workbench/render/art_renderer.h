/// Draws art into a Cairo context: pixels, PDF pages, recordings.
#pragma once

#include <cairo.h>

#include <functional>

#include "workbench/document/document.h"

namespace workbench {

/// Draws one art object with all its members.  The context's matrix maps art coordinates (y up) to the
/// target.  Hidden art and guides aren't drawn.  The context is left as it was.
void DrawArt(cairo_t* context, const Document& document, const Art& art);

/// Draws all visible layers, the lowest first.
void DrawDocument(cairo_t* context, const Document& document);

/// The same, member by member: each time before one is drawn, `progress` gets how many are done, and of how
/// many.
void DrawDocument(cairo_t* context, const Document& document,
                  const std::function<void(size_t done, size_t of)>& progress);

/// The Cairo form of a matrix; an all-zero one for a matrix with values that are not finite.
cairo_matrix_t CairoMatrix(const HostMatrix& matrix);

} // namespace workbench
