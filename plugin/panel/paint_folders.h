/// The folder list's face.
#pragma once

#include <windows.h>

#include <cstdint>

/// Paints the background and all rows in sight.
void PaintFolderList(HDC context, HWND control);

/// Paints one row; nothing if it is out of sight.
void PaintFolderRow(HDC context, HWND control, int32_t row, bool selected);

/// How a row of the folder list looks, from its text.
struct FolderRowLook {
    int indent;      ///< pixels
    bool isGroup;    ///< a page; else a triangle
    char shown[256]; ///< the part of the name that is shown
};
FolderRowLook LookOfFolderRow(const char* text);
