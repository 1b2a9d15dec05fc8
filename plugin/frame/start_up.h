/// Bringing the plug-in up and taking it down, and the host's calls while it runs.
///
/// All of it needs the block of state and the host's suites.
#pragma once

#include "suites/basic.h"

/// Fills the fresh block of state: the defaults of a first start, the curve tables, and over them the
/// preferences.
/// @return 0 or the first error
HostError StartUp(const HostMessage* message);

/// Writes the preferences and frees every memory block that `globals` holds; the block of state itself is the
/// caller's.
void ShutDown();

/// Handlers of PluginMain.  They note the basic interface that callbacks outside of a message acquire the
/// suites with: at every tick, so that it is never an old one, and when the host says that it has started.
HostError OnTimer(HostMessage* message);
HostError OnNotify(HostMessage* message);
