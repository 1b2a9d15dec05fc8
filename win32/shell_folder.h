/// The user's documents folder, which <shlobj.h> gives to the plug-in.
#pragma once

#include <string>

/// The folder that was set, else the desktop's own: XDG_DOCUMENTS_DIR of user-dirs.dirs in the configuration
/// folder, else Documents in the home folder.  UTF-8, absolute.
std::string DocumentsFolder();

/// Sets another folder, UTF-8 and absolute, for tests and the command line; null or empty goes back to the
/// desktop's own.
void SetDocumentsFolder(const char* utf8Path);

/// A list of items that leads to a folder, cp932; its path is empty if that is longer than MAX_PATH - 1
/// bytes.  Null if memory ran out; freed with CoTaskMemFree.
struct ITEMIDLIST* NewItemList(const std::string& path);
