/// Filling the panel's lists from the store.
#pragma once

#include <windows.h>

#include <cstdint>

/// The rows of the record list: with `reset` all anew, else the new ones behind those that are there.  The
/// list goes back to its top.
void RebuildRecordList(HWND panel, bool reset);

/// Lists the records anew as they stand in the files now, where others may have changed them.  A search
/// result stays what it was: it has no other source.
void ListRecordsAnew(HWND panel);

/// The groups beside the current one, and the entry that is no group.
void RebuildGroupCombo(HWND panel);

/// Folders, open ones with their groups and subfolders; selects the current name's row, and makes another
/// name current where that row is gone.  The current group in a closed folder stays current, with the
/// folder's row selected.
void RebuildFolderList(HWND panel);

/// What RebuildFolderList does for the current name, without any rows.
void EnsureCurrentGroup();

/// Builds the index of the folder that is current; nothing for any other current name.  Leaves the parts of
/// the current name in `selFolder`, `selSubFolder` and `selGroup`.
void IndexSelectedFolder();

/// Selects a row of the record list.
void SelectRecordRow(HWND panel, int32_t row);

/// Opens or closes the node of a row of the folder list; 1 if it was one, else 0.  Beyond kExpandedRows the
/// one that was opened first is closed.
int32_t ToggleExpanded(const char* name);
int32_t IsExpanded(const char* name); ///< 1 if the node stands open

/// The name that a row of the folder list stands for: a folder's row gives the folder as a whole.
void NameOfFolderRow(const char* text, char* name /*kNameBytes*/);
