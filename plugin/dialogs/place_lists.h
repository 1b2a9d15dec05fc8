/// What the dialogs' lists of folders, subfolders and groups hold, without a window.
///
/// Entries go to `add` with `list` one by one, in the order of the database's lists; the result is the
/// position of the one that is selected.  Texts are cp932, parts of names.
#pragma once

using AddEntry = void (*)(void* list, const char* entry);

/// "None" and the top folders; selected is `folder`, or else "None".
int ListFolderEntries(const char* folder, AddEntry add, void* list);

/// "None" and the subfolders of a folder; selected is `subFolder`, or else "None".
int ListSubFolderEntries(const char* folder, const char* subFolder, AddEntry add, void* list);

/// The groups directly in a folder, a subfolder or the root, or "UNTITLED" where there is none; selected is
/// `group`, or else the first.
int ListGroupEntries(const char* folder, const char* subFolder, const char* group, AddEntry add, void* list);
