#include "workbench/frame/frame_looks.h"

#include <algorithm>

#include "workbench/suites/text_encoding.h"

namespace workbench {

namespace {

HFONT frameFont = nullptr;

Theme GreyTheme(bool dark, int panel, int text) {
    Theme theme{.dark = dark};
    std::fill(theme.panel + 1, theme.panel + 4, panel / 255.0);
    std::fill(theme.text + 1, theme.text + 4, text / 255.0);
    return theme;
}

COLORREF Grey(int value) {
    return RGB(value, value, value);
}

} // namespace

Theme LightTheme() {
    return GreyTheme(false, 0xF0, 0);
}

Theme DarkTheme() {
    return GreyTheme(true, 0x32, 0xDC);
}

FrameColors ColorsOf(const Theme& theme) {
    const COLORREF highlight = GetSysColor(COLOR_HIGHLIGHT);
    const COLORREF onHighlight = GetSysColor(COLOR_HIGHLIGHTTEXT);
    if (theme.dark)
        return {Grey(0x32), Grey(0xDC), Grey(0x80), Grey(0x48), Grey(0x18), highlight, onHighlight};
    return {Grey(0xF0), Grey(0), Grey(0x90), Grey(0xDA), Grey(0xA0), highlight, onHighlight};
}

HFONT FrameFont() {
    if (!frameFont) {
        frameFont = CreateFontA(-12, 0, 0, 0, FW_NORMAL, 0, 0, 0, SHIFTJIS_CHARSET, 0, 0, 0, 0, "Arial");
    }
    return frameFont;
}

void DropFrameFont() {
    if (frameFont) DeleteObject(frameFont);
    frameFont = nullptr;
}

std::string WindowText(const std::string& utf8) {
    return EncodeText(utf8, kEncodingCp932).value_or("");
}

void FillColor(HDC context, const RECT& rectangle, COLORREF color) {
    const HBRUSH brush = CreateSolidBrush(color);
    FillRect(context, &rectangle, brush);
    DeleteObject(brush);
}

void FrameColor(HDC context, const RECT& rectangle, COLORREF color) {
    const HBRUSH brush = CreateSolidBrush(color);
    FrameRect(context, &rectangle, brush);
    DeleteObject(brush);
}

void DrawLine(HDC context, RECT rectangle, int left, const std::string& utf8, COLORREF color) {
    rectangle.left += left;
    const std::string text = WindowText(utf8);
    const HGDIOBJ old = SelectObject(context, FrameFont());
    SetBkMode(context, TRANSPARENT);
    SetTextColor(context, color);
    DrawTextA(context, text.c_str(), static_cast<int>(text.size()), &rectangle,
              DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
    SelectObject(context, old);
}

int TextWidth(HDC context, const std::string& utf8) {
    const std::string text = WindowText(utf8);
    const HGDIOBJ old = SelectObject(context, FrameFont());
    SIZE size{};
    GetTextExtentPoint32A(context, text.c_str(), static_cast<int>(text.size()), &size);
    SelectObject(context, old);
    return size.cx;
}

void RegisterFrameClass(const char* name, WNDPROC procedure, int extraBytes) {
    WNDCLASSA windowClass{};
    windowClass.lpfnWndProc = procedure;
    windowClass.cbWndExtra = extraBytes;
    windowClass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    windowClass.lpszClassName = name;
    RegisterClassA(&windowClass); // a second time it fails, and the first one holds
}

} // namespace workbench
