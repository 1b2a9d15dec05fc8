/// From a plug-in note to plug-in art around a group that was rebuilt as ordinary art.
#pragma once

#include <cstdint>
#include <span>

#include "plugin/rebuild/load_state.h"

/// Makes the note's plug-in art in `pluginParent` with `pluginEditGroup` as what it is computed from. Without
/// such a group, with a note of another shape or a data size beyond 255, and with a name that none of the
/// host's plug-in groups has, the group stays what it is.
void LoadArtPluginProcess(LoadState& load, std::span<uint8_t> note);
