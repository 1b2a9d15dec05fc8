/// The panel's flyout menu.
#pragma once

#include <cstdint>

#include "suites/host_types.h"

/// The menu's entries by their numbers, which the host hands back.  Those that aren't named are separators.
enum FlyoutEntry : int32_t {
    kShowSmallIcons = 1,
    kShowLargeIcons = 2,
    kShowList = 3,
    kSortByName = 5,
    kSortByKind = 6,
    kSortByDate = 7,
    kSearchEntry = 9,
    kAddFolderEntry = 11,
    kDeleteFolderEntry = 12,
    kAddGroupEntry = 14,
    kDeleteGroupEntry = 15,
    kMoveEntry = 17,
    kDatabasePathEntry = 19,
    kPlacementEntry = 20,
    kLayerEntry = 21,
    kFlyoutEntries = 21,
};

/// Makes the menu with its marks; its enabled state follows at the next tick of the timer.  A menu that the
/// host refuses leaves none, an entry that it refuses is left out.  Needs the host's suites.
void BuildFlyoutMenu();

/// The host's flyout handler: acquires the suites by itself.  Refused with a beep while `menuBusy`.
void OnFlyoutCommand(PanelHandle panel, int32_t entry);

/// Enables and disables the entries that depend on the current name and on `hasFolders`.  Needs the host's
/// suites.
void UpdateFlyoutState();

/// Which of the three entries that are ever disabled can be picked.
struct FlyoutState {
    bool addFolder, deleteFolder, deleteGroup;
};
FlyoutState FlyoutStateOf(const char* currentName, bool hasFolders);
