/// The dialogs that name a folder or a group.  They change nothing on disk.
///
/// Each is true for OK, with the place in `selFolder`, `selSubFolder` and `selGroup`; New Group leaves it in
/// `aidbfname` instead.
#pragma once

bool RunFolderSetting();
bool RunGroupSetting();
bool RunNewFolder();
bool RunNewGroup();
