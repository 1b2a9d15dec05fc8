/// Folders as Windows' shell names and picks them; see <windows.h> for what is offered and how.
#pragma once

#include <windows.h>

struct ITEMIDLIST; ///< freed with CoTaskMemFree
using LPITEMIDLIST = ITEMIDLIST*;
using LPCITEMIDLIST = const ITEMIDLIST*;

#define CSIDL_PERSONAL 0x0005

using BFFCALLBACK = int(CALLBACK*)(HWND window, UINT message, LPARAM lParam, LPARAM data);

struct BROWSEINFOA {
    HWND hwndOwner;
    LPCITEMIDLIST pidlRoot; ///< null
    LPSTR pszDisplayName;   ///< out, MAX_PATH: the last component
    LPCSTR lpszTitle;
    UINT ulFlags;     ///< BIF_RETURNONLYFSDIRS
    BFFCALLBACK lpfn; ///< may be null
    LPARAM lParam;    ///< for lpfn
    int iImage;
};
#define BIF_RETURNONLYFSDIRS 0x0001
#define BFFM_INITIALIZED 1
#define BFFM_SETSELECTIONA (WM_USER + 102) ///< wParam 1: lParam is a path

extern "C" {

/// Any folder but CSIDL_PERSONAL is refused (E_INVALIDARG).  The folder is the desktop's documents folder,
/// see win32/shell_folder.h.
HRESULT SHGetSpecialFolderLocation(HWND owner, int folder, LPITEMIDLIST* list);

/// The folder's path in cp932, at most MAX_PATH - 1 bytes and a NUL; FALSE if it has no cp932 form or is
/// longer.
BOOL SHGetPathFromIDListA(LPCITEMIDLIST list, LPSTR path);

/// A dialog of the layer's own in which the user picks a folder, or none: null.
LPITEMIDLIST SHBrowseForFolderA(BROWSEINFOA* information);

} // extern "C"
