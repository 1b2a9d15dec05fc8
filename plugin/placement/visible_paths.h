/// The paths that the pointer can snap to, one after the other.
#pragma once

#include <cstdint>

#include "suites/host_types.h"

/// Where a walk over the paths of all visible layers stands.  Zeroed, it stands before the first.
struct VisiblePaths {
    int32_t layerCount, nextLayer;
    ArtHandle root; ///< of the layer that is walked; none: before a layer
    ArtHandle art;
    int32_t kind;
};

/// The next path in paint order from the top, layer by layer, none at the end.  Members of groups and
/// compound paths count, those of other art don't; neither do locks, nor what hides or guides single paths.
/// Nesting costs no stack.  An error of the host ends the walk; `path` is none then.
HostError NextVisiblePath(VisiblePaths& walk, ArtHandle& path);
