/// The dialog of SHBrowseForFolderA: a list of folders to walk through.
///
/// A click marks a folder of the list, a double click or the right arrow goes into it, ".." or the left arrow
/// up.  OK picks the marked folder, or the one that the list shows.  The path that it would pick stands above
/// the list.
#pragma once

// The ids of the dialog's controls; its buttons are IDOK and IDCANCEL.
constexpr int kFolderDialogTitle = 100;
constexpr int kFolderDialogPath = 101; ///< a static: the path that OK picks
constexpr int kFolderDialogList = 102; ///< of class kListClass, see win32/controls/list_control.h
