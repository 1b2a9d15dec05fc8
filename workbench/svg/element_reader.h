/// The walk over the elements that draw.
#pragma once

#include "workbench/svg/read_context.h"
#include "workbench/svg/transforms.h"

namespace workbench {

/// Reads an element with all its members onto the top of `container`.
/// @param around  of its parent; the style is the parent's
/// @return what was made, or null: nothing to draw, or not an element that draws
Art* ReadElement(ReadContext& context, pugi::xml_node element, const Surroundings& around, Art* container);

/// Reads the members of `parent`, in file order, each on top of the one before it.
/// @param inside  the parent's own: its transform is in, its style computed
void ReadMembers(ReadContext& context, pugi::xml_node parent, const Surroundings& inside, Art* container);

/// Cuts a viewport's members off at its edges, if any of them sticks out.
/// @param place   of the viewport, in the user space of `around`
void ClipToViewport(ReadContext& context, const ViewBox& place, const Surroundings& around, Art* group);

/// What `element` finds around its own members: its transform and its style over its parent's.
Surroundings Enter(ReadContext& context, pugi::xml_node element, const Surroundings& around);

} // namespace workbench
