/// From outlines and style to paths of the document.
#pragma once

#include "workbench/svg/path_data.h"
#include "workbench/svg/read_context.h"

namespace workbench {

/// Reads a shape onto the top of `container`: a path, a compound path if it has several outlines, or a group
/// of two where fill and stroke can't share one object (different opacities, or the fill above the stroke).
/// @param here  the element's own: its transform is in, its style computed
/// @return null if it draws nothing at all
Art* ReadShape(ReadContext& context, pugi::xml_node element, ElementKind kind, const Surroundings& here,
               Art* container);

/// One path, or a compound path with the first outline at the bottom, all members of one style.
/// @param subpaths  in art coordinates
/// @param compound  a compound path even of one outline
/// @return null for no outlines or when the bounds are reached
Art* MakePathArt(ReadContext& context, Subpaths subpaths, const HostPathStyle& style, const Blend& blend,
                 Art* container, bool compound = false);

/// False if numbers come out that no page can hold; the shape is then left out and counted.
bool ToArt(ReadContext& context, const HostMatrix& matrix, Subpaths* subpaths);

/// The paint of a clipping path that is neither filled nor stroked.
HostPathStyle ClippingStyle(bool evenOdd);

/// The whole paint of a shape's element; `fillOpacity` and `strokeOpacity` can be null.
HostPathStyle ReadPathStyle(ReadContext& context, pugi::xml_node element, const Surroundings& here,
                            const Box& box, double* fillOpacity, double* strokeOpacity);

/// Name, tags, art style, lock and visibility.
void SetNature(ReadContext& context, pugi::xml_node element, const Surroundings& here, Art& art);

/// Opacity and blending mode of the element as a whole.
Blend ReadBlend(ReadContext& context, pugi::xml_node element, const ComputedStyle& style);

} // namespace workbench
