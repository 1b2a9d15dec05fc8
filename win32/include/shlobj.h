/// The documents folder, as Windows' shell names it; see <windows.h> for what is offered and how.
#pragma once

#include <windows.h>

struct ITEMIDLIST; ///< freed with CoTaskMemFree
using LPITEMIDLIST = ITEMIDLIST*;
using LPCITEMIDLIST = const ITEMIDLIST*;

#define CSIDL_PERSONAL 0x0005

extern "C" {

/// Any folder but CSIDL_PERSONAL is refused (E_INVALIDARG).  The folder is the desktop's documents folder,
/// see win32/shell_folder.h.
HRESULT SHGetSpecialFolderLocation(HWND owner, int folder, LPITEMIDLIST* list);

/// The folder's path in cp932, at most MAX_PATH - 1 bytes and a NUL; FALSE if it has no cp932 form or is
/// longer.
BOOL SHGetPathFromIDListA(LPCITEMIDLIST list, LPSTR path);

} // extern "C"
