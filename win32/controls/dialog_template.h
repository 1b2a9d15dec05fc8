/// Dialog templates as the resource compiler writes them: DIALOG and DIALOGEX.
///
/// The bytes are untrusted.  Whatever leads outside of them, and a class, a menu or a text that can't be
/// served, makes the whole template unreadable.
#pragma once

#include <windows.h>

#include <cstddef>
#include <string>
#include <vector>

/// Places and sizes are dialog units; texts are cp932.
struct DialogItem {
    DWORD style = 0, extendedStyle = 0;
    int x = 0, y = 0, width = 0, height = 0;
    int id = 0;
    std::string className;
    std::string title;
    WORD titleNumber = 0; ///< of an icon, in place of a title; 0: none
};

struct DialogTemplate {
    DWORD style = 0, extendedStyle = 0;
    int x = 0, y = 0, width = 0, height = 0;
    std::string title;
    int pointSize = 0; ///< 0: the system's font
    int weight = 0;
    bool isItalic = false;
    BYTE charset = DEFAULT_CHARSET;
    std::string face;
    std::vector<DialogItem> items;
};

bool ReadDialogTemplate(const void* bytes, size_t count, DialogTemplate& dialog);
