/// What the host plays, also on the plug-in's own request, and what comes back (placement/action_names.h).
#pragma once

#include <array>
#include <cstdint>

#include "suites/basic.h"

/// A parameter of an action as its users know it; names are cp932.
struct ActionParameter {
    uint32_t key; ///< four characters, the first in the highest byte
    const char* english;
    const char* japanese;
};

/// Those of the place action in their order: the centre, width and height of what is placed, in points, and
/// its rotation in radians.
const std::array<ActionParameter, 5>& PlaceActionParameters();

/// Registers both actions, the place action with its five parameters, named in the running language.  What
/// the host refuses is left out.  Always 0.  Needs the host's suites.
HostError RegisterPlaceActions(const HostMessage* message);

/// An action was played: the place action runs with its parameters, the internal one does the command that
/// is pending and ends it.  Failures reach the user as beeps and alerts.  Always 0.
HostError HandleDoAction(HostMessage* message);
