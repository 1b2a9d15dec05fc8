/// Gradient meshes as Cairo draws them.
#pragma once

#include "workbench/document/document.h"
#include "workbench/render/cairo_handle.h"

namespace workbench {

/// One Coons patch for each patch of the mesh, in the mesh's own coordinates; transparent around it.  Null
/// for a mesh without a net, and for one with points too far out for a page.  Colours are mixed as light
/// between the corners of a patch.
CairoSource MeshSource(const Document& document, const MeshData& mesh);

} // namespace workbench
