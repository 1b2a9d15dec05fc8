/// Where a pattern lies on the page.
#pragma once

#include "suites/host_types.h"

namespace workbench {

/// Pattern space (the tile's lower left corner at the origin) to art coordinates: scale, reflection, shear,
/// rotation, shift, then the use's matrix.  A scale of 0 counts as 1.
HostMatrix PatternToArt(const HostPatternUse& use);

} // namespace workbench
