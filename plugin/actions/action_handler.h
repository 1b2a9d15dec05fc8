/// What the host plays, also on the plug-in's own request, and what comes back (placement/action_names.h).
#pragma once

#include "suites/basic.h"

/// Registers both actions, the place action with its five parameters, named in the running language.  What
/// the host refuses is left out.  Always 0.  Needs the host's suites.
HostError RegisterPlaceActions(const HostMessage* message);

/// An action was played: the place action runs with its parameters, the internal one does the command that
/// is pending and ends it.  Failures reach the user as beeps and alerts.  Always 0.
HostError HandleDoAction(HostMessage* message);
