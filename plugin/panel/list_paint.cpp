#include "plugin/panel/list_paint.h"

#include "plugin/frame/globals.h"

namespace {

constexpr int kIconSide = 32;

} // namespace

ListPaint::ListPaint(HDC context)
    : context_(context),
      grey_(CreateSolidBrush(kListGrey)),
      sortGrey_(CreateSolidBrush(kSortGrey)),
      white_(CreatePen(PS_SOLID, 0, kListWhite)),
      oldPen_(SelectObject(context, white_)),
      oldFont_(globals->panelFont ? SelectObject(context, globals->panelFont) : nullptr),
      oldMode_(SetBkMode(context, TRANSPARENT)) {}

ListPaint::~ListPaint() {
    SetBkMode(context_, oldMode_);
    if (oldFont_) SelectObject(context_, oldFont_);
    SelectObject(context_, oldPen_);
    DeleteObject(white_);
    DeleteObject(sortGrey_);
    DeleteObject(grey_);
}

void ListPaint::Row(const RECT& line, bool selected) {
    const RECT face = {line.left + 1, line.top + 1, line.right - 1, line.bottom - 1};
    FillRect(context_, &face, selected ? GetSysColorBrush(COLOR_ACTIVECAPTION) : grey_);
    MoveToEx(context_, line.left, line.bottom - 1, nullptr);
    LineTo(context_, line.right, line.bottom - 1);
}

void FillWith(HDC context, const RECT& rectangle, COLORREF color) {
    const HBRUSH brush = CreateSolidBrush(color);
    FillRect(context, &rectangle, brush);
    DeleteObject(brush);
}

COLORREF RowTextColor(bool selected) {
    return GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT);
}

RECT SquareOfLine(const RECT& line) {
    const int side = line.bottom - line.top;
    return {line.left + 1, line.top + 1, line.left + side - 1, line.bottom - 1};
}

POINT CentredIcon(const RECT& rectangle) {
    return {rectangle.left - (rectangle.left - rectangle.right + kIconSide) / 2,
            rectangle.top - (rectangle.top - rectangle.bottom + kIconSide) / 2};
}
