/// Pictures that a drawing links to or holds.
#pragma once

#include "workbench/svg/read_context.h"

namespace workbench {

/// Reads an `image` element onto the top of `container`, within a clipped group if the picture is to fill its
/// box and sticks out: as an image if the address holds a PNG or JPEG, else as placed art.
///
/// A picture that isn't there is placed all the same, so that the drawing keeps its link, if the element
/// tells its size; it counts as "missing image file".  What is no picture, can't be named by a path, or may
/// not be followed is left out and counted by a name of its own.
Art* ReadImage(ReadContext& context, pugi::xml_node element, const Surroundings& here, Art* container);

} // namespace workbench
