/// The dialog that names a record and says where it goes, and the edit of a stored record.
///
/// The dialog works on `curRecord` and `entryName` alone.  Needs the host's suites.
#pragma once

#include <windows.h>

#include <cstdint>

/// Shows `curRecord`, a converted record, and `entryName`.  True for "Register": name, kind and comment are
/// in `curRecord` then, the chosen group in `entryName`.
bool RunEntryDialog();

/// Reads a record, lets the user edit it, and stores it: in its place, or moved to the end of another group
/// with its data directory.  The panel's lists follow.  A record that another program has changed or moved
/// while the dialog stood is left alone, with a message.  Always 0.
int32_t EditRecord(HWND panel, const char* groupName, int32_t recordNumber);
