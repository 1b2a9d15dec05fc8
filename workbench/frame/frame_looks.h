/// What the windows of the host have in common: font, colours by theme, texts.
#pragma once

#include <windows.h>

#include <string>

#include "workbench/suites/frame_objects.h"

namespace workbench {

constexpr int kBarHeight = 24; ///< of the menu bar and of a panel's title

struct FrameColors {
    COLORREF face, text, disabledText, strip, border, highlight, highlightText;
};

/// The colours of a theme's own parts, also those that a plug-in gets to see.
FrameColors ColorsOf(const Theme& theme);
Theme LightTheme(); ///< 0xF0 with black text
Theme DarkTheme();  ///< 0x32 with 0xDC

/// The interface's font, made at the first call and kept until DropFrameFont.
HFONT FrameFont();
void DropFrameFont();

/// Windows take cp932; what it can't hold becomes '?'.
std::string WindowText(const std::string& utf8);

void FillColor(HDC context, const RECT& rectangle, COLORREF color);
void FrameColor(HDC context, const RECT& rectangle, COLORREF color);

/// One line, vertically centred, `left` pixels from the rectangle's left edge.
void DrawLine(HDC context, RECT rectangle, int left, const std::string& utf8, COLORREF color);
int TextWidth(HDC context, const std::string& utf8); ///< in FrameFont

/// Registers a window class of the host's once; windows are of this module.
void RegisterFrameClass(const char* name, WNDPROC procedure, int extraBytes = sizeof(void*));

/// The object behind a window: the last parameter of its CreateWindowExA.
template <typename Object>
Object* ObjectOf(HWND window, UINT message, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        SetWindowLongPtrA(
            window, GWLP_USERDATA,
            reinterpret_cast<INT_PTR>(reinterpret_cast<CREATESTRUCTA*>(lParam)->lpCreateParams));
    }
    return reinterpret_cast<Object*>(GetWindowLongPtrA(window, GWLP_USERDATA));
}

} // namespace workbench
