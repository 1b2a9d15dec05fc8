/// The geometry of SVG's shape elements.
#pragma once

#include "workbench/svg/path_data.h"
#include "workbench/svg/read_context.h"

namespace workbench {

/// The outlines of a shape in its user space; empty if its sizes say that nothing is drawn.  Damaged path
/// data is counted and gives what comes before the damage.
Subpaths ShapeGeometry(ReadContext& context, pugi::xml_node element, ElementKind kind,
                       const Surroundings& here);

} // namespace workbench
