/// Making, deleting, moving and renaming folders and groups, with their questions, messages and beeps, and
/// the panel brought up to date.
///
/// `name` is `aidbfname` or a copy of it.  Needs the host's suites.  0 is success or the user's no.
#pragma once

#include <windows.h>

#include <cstdint>

/// 0 if nothing stands at the place of `selFolder`, `selSubFolder` and `selGroup`, else -1, after a beep and,
/// with `showMessage`, a message.
int32_t CheckNewPlaceFree(bool showMessage);

int32_t AddFolder(HWND panel, const char* name); ///< also a Windows error code
int32_t AddGroup(HWND panel, const char* name);
int32_t DeleteFolder(HWND panel, const char* name); ///< also a Windows error code
int32_t DeleteGroup(HWND panel, const char* name);
int32_t MoveOrRename(HWND panel, const char* name); ///< of the group or folder that the name stands for

/// Lists the folders, the groups and the records anew.
void RefreshAfterFolderChange(HWND panel);
