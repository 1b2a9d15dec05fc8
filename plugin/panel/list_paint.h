/// What the painters of the two lists share.
#pragma once

#include <windows.h>

#include "plugin/panel/list_grid.h"

constexpr COLORREF kListGrey = RGB(0xEE, 0xEE, 0xEE); ///< the record list, and rows that aren't selected
constexpr COLORREF kFolderListGrey = RGB(0xF4, 0xF4, 0xF4);
constexpr COLORREF kSortGrey = RGB(0xCC, 0xCC, 0xCC); ///< also around an icon cell
constexpr COLORREF kListWhite = RGB(0xFF, 0xFF, 0xFF);

/// The brushes and the pen of one paint, the panel's font and see-through text: put into a context and taken
/// out again at the end of the scope.
class ListPaint {
public:
    explicit ListPaint(HDC context);
    ~ListPaint();
    ListPaint(const ListPaint&) = delete;
    ListPaint& operator=(const ListPaint&) = delete;

    HDC context() const { return context_; }
    HBRUSH grey() const { return grey_; }
    HBRUSH sortGrey() const { return sortGrey_; }

    /// What a row of the list form has behind its text, and the line under it.  `line` reaches one pixel
    /// beyond the row at its bottom.
    void Row(const RECT& line, bool selected);

private:
    HDC context_;
    HBRUSH grey_, sortGrey_;
    HPEN white_;
    HGDIOBJ oldPen_, oldFont_;
    int oldMode_;
};

void FillWith(HDC context, const RECT& rectangle, COLORREF color);
COLORREF RowTextColor(bool selected);

/// The square at the left of a line, as high as the line but for a pixel on each side.
RECT SquareOfLine(const RECT& line);

/// Where an icon's left top corner goes so that its middle is the rectangle's.
POINT CentredIcon(const RECT& rectangle);
