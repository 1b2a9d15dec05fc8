/// The database's folders and groups as row lists.
///
/// A row list is a block with a signed 32-bit count and that many rows of 256 bytes, each a text with a NUL,
/// ordered by CompareStoreNames, equal rows in the order in which the directory gave them.  The caller frees
/// it.  A directory that can't be read gives an empty list.  Null means that memory ran out; RowCount takes
/// it as an empty list.
#pragma once

#include <cstdint>

#include "plugin/store/memory_handle.h"

constexpr int kRowBytes = 256;

int32_t RowCount(MemoryHandle rows);

/// The text of row `index`, 0 to RowCount - 1; it may be changed in place.
char* RowText(MemoryHandle rows, int32_t index);

/// The top folders of `root`, each as `\Folder\$$$\$$$.$$$`.
MemoryHandle ListFolders(const char* root);

/// The visible folders in `folder`, each as `\Folder\Sub\$$$.$$$`; none for an empty folder.
MemoryHandle ListSubFolders(const char* root, const char* folder);

/// Group names.  Null and empty differ:
///
/// | folder | subFolder | groups of                              |
/// |--------|-----------|-----------------------------------------|
/// | null   | any       | the root and everything below it        |
/// | empty  | any       | the root alone                          |
/// | given  | null      | the folder and everything below it      |
/// | given  | empty     | the folder alone                        |
/// | given  | given     | the subfolder alone                     |
///
/// "Everything below" follows a link to a directory, but no link behind it, so that a circle of links ends.
MemoryHandle ListGroups(const char* root, const char* folder, const char* subFolder);
