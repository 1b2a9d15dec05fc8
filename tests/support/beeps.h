/// Whether the plug-in beeped.
#pragma once

#include <optional>

/// Beeps since the program began; nothing where the platform doesn't tell.
std::optional<unsigned> BeepsSoFar();
