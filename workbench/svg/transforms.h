/// Affine maps and how SVG writes them.
///
/// Maps are HostMatrix, in SVG's own order of the six numbers.
#pragma once

#include <string_view>

#include "workbench/document/matrix.h"

namespace workbench {

inline constexpr HostMatrix kIdentity{1, 0, 0, 1, 0, 0};

double Determinant(const HostMatrix& matrix);
bool IsFinite(const HostMatrix& matrix);

/// False if there is none, or only one with values that aren't finite.
bool Invert(const HostMatrix& matrix, HostMatrix* inverse);

/// The factor for lengths that have no direction: sqrt |det|.
double MeanScale(const HostMatrix& matrix);

/// Whether lengths in different directions are scaled by visibly (more than a hundredth) different factors.
bool IsUneven(const HostMatrix& matrix);

/// A list of matrix, translate, scale, rotate, skewX and skewY.  Angles may say "deg" and lengths "px".
/// False, with the identity, if the list has a fault: the element then has no transform.
bool ParseTransform(std::string_view text, HostMatrix* matrix);

struct ViewBox {
    double x = 0, y = 0, width = 0, height = 0;
};

/// False if the text isn't four numbers with positive sizes: such a box counts as absent.
bool ParseViewBox(std::string_view text, ViewBox* box);

/// The map from the content of a view box to its viewport (x, y, width, height in the outer space) by a
/// preserveAspectRatio attribute; empty means "xMidYMid meet".
HostMatrix FitViewBox(const ViewBox& box, const ViewBox& viewport, std::string_view aspectRatio);

} // namespace workbench
