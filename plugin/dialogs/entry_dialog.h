/// The dialog that names a record and says where it goes, and the edit of a stored record.
///
/// The dialog works on `curRecord` and `entryName` alone.  Needs the host's suites.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

/// Numbers of the dialog's children that a user fills in; its buttons are IDOK and IDCANCEL.
enum EntryControl : int { kEntryName = 7, kEntryKind = 8, kEntryGroup = 14, kEntryComment = 16 };

constexpr size_t kEntryNameBytes = 62;     ///< taken of a name or kind; the NUL not counted
constexpr size_t kEntryCommentBytes = 254; ///< likewise

/// Shows `curRecord`, a converted record, and `entryName`.  True for "Register": name, kind and comment are
/// in `curRecord` then, the chosen group in `entryName`.
bool RunEntryDialog();

/// Reads a record, lets the user edit it, and stores it: in its place, or moved to the end of another group
/// with its data directory.  The panel's lists follow.  A record that another program has changed or moved
/// while the dialog stood is left alone, with a message.  Always 0.
int32_t EditRecord(HWND panel, const char* groupName, int32_t recordNumber);
