/// The plug-in's one entry.
#pragma once

#include "suites/basic.h"

/// Called by the host for everything: start-up and shut-down, unload and reload, menu picks, timer ticks,
/// notifiers, actions.  `caller` and `selector` are those of suites/basic.h; what the plug-in doesn't know
/// does nothing and gives 0.  All suites are held for the length of a call, but for "SP Access", where the
/// host is about to unload the module or has just loaded it.  Any failure that the user doesn't know of yet
/// is shown in an alert and then returned.
///
/// Without a block of state, before start-up and after shut-down, only start-up does anything.
extern "C" __attribute__((visibility("default"))) HostError PluginMain(const char* caller,
                                                                       const char* selector,
                                                                       HostMessage* message);
