/// The panel's flyout menu.
#pragma once

#include <cstdint>

#include "suites/host_types.h"

/// Makes the menu with its marks; its enabled state follows at the next tick of the timer.
void BuildFlyoutMenu();

/// The host's flyout handler: acquires the suites by itself.
void OnFlyoutCommand(PanelHandle panel, int32_t entry);

/// Enables and disables the entries that depend on the current name and on `hasFolders`.
void UpdateFlyoutState();
