/// The lists of folders, subfolders and groups as controls of a dialog.  They work on `selFolder`,
/// `selSubFolder` and `selGroup`.
#pragma once

#include <windows.h>

/// The numbers of a dialog's lists; 0 is none.
struct PlaceLists {
    int folder, subFolder, group;
};

constexpr size_t kMostPartBytes = 78; ///< taken from a control

/// Fills the folder list and selects `folder`; false if "None" is selected.
bool FillFolderList(HWND dialog, int list, const char* folder);

/// Fill the lists below another one.  With `takeText` what the list above says is taken first.
void FillSubFolderList(HWND dialog, const PlaceLists& lists, bool takeText);
void FillGroupList(HWND dialog, const PlaceLists& lists, bool takeText);

/// The selected entry, kPartBytes; empty if there is none.
void ReadList(HWND dialog, int list, char* text);

/// The same, with an empty text for "None".
void ReadFolderOfList(HWND dialog, int list, char* text);
