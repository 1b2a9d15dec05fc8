/// Making the panel: once, when the host says that it has started.
#pragma once

#include <windows.h>

#include "suites/host_types.h"

/// Makes the host's panel with its flyout, fills its window and shows it.  Needs the host's suites.  A panel
/// that is there already is left alone.
/// @return the host's refusal of the panel, which leaves none; or the first refusal of what belongs to it,
///         which leaves the panel without that
HostError CreatePanel(PluginHandle plugin);

/// Takes over a window: its procedure, colours, font, icons, the controls and their contents.
void BuildPanel(HWND panel);

/// Loads the icons of its buttons, which live no longer than the module.
void LoadPanelIcons(HINSTANCE instance);

/// Frees what BuildPanel made for painting and forgets the host's procedure: when the window is gone.
void FreePanelObjects();
