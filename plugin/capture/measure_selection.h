/// The box of what is selected.
#pragma once

#include "suites/host_types.h"

/// All four sides of a selection rectangle to which nothing was added.
constexpr double kNothingMeasured = 65535.0;

/// Measures the selected art of all captured layers; replaces `curRecord` by an empty record.
///
/// Groups and compound paths count by their members; guides and paths without segments don't count.
/// @param bounds      out, art units; kNothingMeasured on all sides if nothing is selected
/// @param hostBounds  paths by the host's bounds, which go by control points; else by their curves, of
///                    which 64 points a piece are taken, rounded through a 32-bit float.  Art of other
///                    kinds always goes by the host's bounds.
void MeasureSelection(HostRect* bounds, bool hostBounds);

/// The box of a path's curves, by the curve tables of `globals`; false if the path can't be read or has no
/// segments.
bool CurveBounds(ArtHandle path, HostRect* bounds);
