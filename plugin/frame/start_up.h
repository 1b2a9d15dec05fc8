/// Bringing the plug-in up and taking it down.
///
/// All of it needs the block of state and the host's suites.
#pragma once

#include "suites/basic.h"

/// Fills the fresh block of state: the defaults of a first start, the cursors, the curve tables, and over
/// them the preferences; then hangs the plug-in into the host's menus, timer, notifiers and actions.  There
/// is no panel yet: the host isn't ready for one before it says that it has started.
/// @return 0 or the first error, which ends it; ShutDown may follow all the same
HostError StartUp(const HostMessage* message);

/// Takes the panel and its flyout down, writes the preferences if they were read, and frees every drawing
/// object and memory block that `globals` holds; the block of state itself is the caller's.
void ShutDown();

/// Before the host unloads the module, and when it has loaded it again, perhaps at another address: gives up
/// and takes again what points into the module, code and resources.  All else in `globals` stays as it is.
/// Neither needs the host's suites.
void Leave();
void Return();

/// Handler of PluginMain.  When the host says that it has started, notes the basic interface that callbacks
/// outside of a message acquire the suites with, and makes the panel.
HostError OnNotify(HostMessage* message);
