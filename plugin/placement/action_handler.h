/// The plug-in's actions: what the host plays, also on the plug-in's own request, and what comes back.
///
/// Whatever changes a document runs inside the host's call for an action.  The panel puts its command into
/// `commandPending` and plays kInternalAction.
#pragma once

#include "suites/basic.h"

inline constexpr char kInternalAction[] = "VELQUORNE_INTERNAL_ACTION";
inline constexpr char kPlaceAction[] = "VELQUORNE_PLACE";

/// The word that an action was registered with comes back with it.
constexpr int32_t kInternalWord = 0;
constexpr int32_t kPlaceWord = 2001;

/// Registers both actions, the place action with its five parameters, named in the running language.  What
/// the host refuses is left out.  Always 0.  Needs the host's suites.
HostError RegisterPlaceActions(const HostMessage* message);

/// An action was played: the internal one ends whatever command is pending.  Placing and registering don't
/// exist yet, so no command does anything else, and neither does the place action.  Always 0.
HostError HandleDoAction(HostMessage* message);
