/// An edit control's data, and how its text lies in its window.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "win32/controls/edit_text.h"

struct EditData {
    EditText edit;
    HFONT font = nullptr;
    bool isFocused = false;
    bool isSelecting = false; ///< by the pointer, with the button down
    bool isInDialog = false;  ///< a dialog asked for its keys
    char leadByte = '\0';     ///< of a double-byte character whose second byte is still to come
    int offsetX = 0;          ///< pixels that are scrolled out to the left
    size_t firstLine = 0;     ///< the line at the top
    std::vector<EditLine> lines = {{0, 0}};
};

bool IsMultiline(HWND window);
bool IsPartOfCombo(HWND window);

/// The text's rectangle in the client area.
RECT TextRectangle(HWND window);
int LineHeight(HWND window, const EditData& data);
size_t VisibleLines(HWND window, const EditData& data); ///< at least 1

/// Whether all of the text can be seen without scrolling.
bool TextFitsWindow(HWND window, const EditData& data);

/// Breaks the lines anew, after a change of text, font or size.
void LayOut(HWND window, EditData& data);
/// Scrolls as little as shows the caret.
void ShowCaretPlace(HWND window, EditData& data);

POINT PointOfPlace(HWND window, const EditData& data, size_t place); ///< left top, client coordinates
size_t PlaceAtPoint(HWND window, const EditData& data, POINT point);

void PaintEdit(HWND window, const EditData& data, HDC context);
