/// Gradient meshes in SVG, which has no word for them.
///
/// A mesh is a group with the attribute `vlq:mesh="grid I J MARK"`, or "ring", that holds
/// - `<vlq:vertex at="X Y" color="COLOUR" edges="..."/>` for each vertex, by i, then j; `edges` has x, y and
///   the flag of its four spokes, forward in i, forward in j, back in i, back in j, 0 where there is no edge;
/// - `<vlq:edge points="X Y ..."/>` for each edge, first those along i, by their start, then those along j;
/// - paths that show other programs about the same picture.
/// MARK is MarkOf the paths: if another program changed them, the group is read as they are.
#pragma once

#include <string>

#include "workbench/svg/read_context.h"
#include "workbench/svg/svg_text.h"

namespace workbench {

/// Appends the group; `nature` is what stands in its tag besides.
void WriteMesh(WriteContext& context, const MeshData& mesh, const std::string& nature, std::string* markup);

/// False if the element is no mesh, or not one any more.
bool IsMesh(const ReadContext& context, pugi::xml_node element);

/// Reads a group that IsMesh onto the top of `container`; null if it is damaged, which is counted: then its
/// picture can still be read.
Art* ReadMesh(ReadContext& context, pugi::xml_node element, const Surroundings& here, Art* container);

} // namespace workbench
