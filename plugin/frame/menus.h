/// The plug-in's entries in the host's menus.
///
/// All of it needs the host's suites.
#pragma once

#include "suites/basic.h"

/// Adds the panel's entry to the window menu and the about entry beside those of other plug-ins of the maker,
/// whose submenu is made if it is missing.
/// @return 0, or the host's refusal of one of the two entries or of the count of its menu groups
HostError AddMenus();

/// A pick: shows or hides the panel, or shows the about dialog.
HostError OnMenuGo(HostMessage* message);

/// A menu is about to be shown: the panel's entry is marked while the panel is.
HostError OnMenuUpdate(HostMessage* message);
