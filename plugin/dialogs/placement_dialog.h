/// The settings of snapping and the grid.
#pragma once

/// True if the user set them.
bool RunPlacementDialog();
