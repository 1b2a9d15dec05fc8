/// From a stored path object to a path of the document.
#pragma once

#include <cstdint>
#include <span>

#include "plugin/rebuild/load_state.h"

/// Makes a path in the innermost open container: blend, pending tags, paint, segments, closed flag.  Tags
/// come first, so that a path with a stored layer title moves while it is still empty.  Segments are moved by
/// the placement offset unless the path belongs to a pattern.  An object too short for a path is passed over.
/// @param object  in host order, the header included
/// @return kStop, after a beep, if the host refuses the path or its paint
LoadStep LoadArtPathProcess(LoadState& load, std::span<uint8_t> object);
