/// SVG's clip paths as clipped groups.
#pragma once

#include <vector>

#include "workbench/svg/path_data.h"
#include "workbench/svg/read_context.h"

namespace workbench {

/// The clipPath element of an id, and those that clip it in turn; empty if there is none.
std::vector<pugi::xml_node> ClipLinks(ReadContext& context, std::string_view id);

/// Puts the outlines of a clipPath on top of `group` and makes it a clipped group.  Several shapes become one
/// compound path.  A clip path without any shape leaves nothing visible: the group is hidden.
/// @param here  of the clipped element
void AddClip(ReadContext& context, pugi::xml_node clip, const Surroundings& here, Art* group);

/// Adds the exact extent of what `art` draws, without line widths and clips, as `matrix` maps it.
void AddExtentOf(const Art& art, const HostMatrix& matrix, Box* box);

} // namespace workbench
