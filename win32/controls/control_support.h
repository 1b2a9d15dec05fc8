/// What the control classes share: their data, what they say to their parents, and the strokes they are drawn
/// with.
#pragma once

#include <windows.h>

#include <string>

#include "win32/controls/control_messages.h"

/// The data that a control keeps in its first extra bytes; null before WM_NCCREATE and after WM_NCDESTROY.
template <class Data>
Data* DataOf(HWND window) {
    return reinterpret_cast<Data*>(GetWindowLongPtrA(window, 0));
}

/// Makes or frees that data at WM_NCCREATE and WM_NCDESTROY; the data at any other message.
template <class Data>
Data* KeepData(HWND window, UINT message) {
    auto* data = DataOf<Data>(window);
    if (message == WM_NCCREATE && data == nullptr) {
        data = new Data();
        SetWindowLongPtrA(window, 0, reinterpret_cast<INT_PTR>(data));
    } else if (message == WM_NCDESTROY) {
        SetWindowLongPtrA(window, 0, 0);
        delete data;
        data = nullptr;
    }
    return data;
}

inline WPARAM PackWParam(int low, int high) {
    return static_cast<DWORD>(MAKELONG(low, high));
}
inline LPARAM PackLParam(int low, int high) {
    return MAKELONG(low, high);
}
inline int LowPart(LPARAM value) {
    return static_cast<SHORT>(LOWORD(value));
}
inline int HighPart(LPARAM value) {
    return static_cast<SHORT>(HIWORD(value));
}
inline POINT PointOf(LPARAM value) {
    return {LowPart(value), HighPart(value)};
}
inline HFONT FontOf(WPARAM value) {
    return reinterpret_cast<HFONT>(value);
}

DWORD StyleOf(HWND window);

/// The window that a control stands in, over all levels; the window itself if it is no child.
HWND TopLevelOf(HWND window);
RECT ClientRectangle(HWND window);
bool IsKeyDown(int virtualKey); ///< as of the message at work
std::string TextOf(HWND window);
void Redraw(HWND window); ///< all of it, erased, when it next paints

/// WM_COMMAND to the parent.  The control may be gone when this returns.
void NotifyParent(HWND control, int code);

/// The brush for a control's background, with text and background colours set in `context`: as the parent
/// answers `message`, a WM_CTLCOLOR..., or Windows' own.  Not the caller's to delete.
HBRUSH ControlColors(HWND control, HWND parent, UINT message, HDC context);

/// A context to paint with, for one WM_PAINT: that of BeginPaint, or the one given in wParam.
class PaintContext {
public:
    PaintContext(HWND window, WPARAM given);
    ~PaintContext();
    PaintContext(const PaintContext&) = delete;
    HDC context() const { return context_; }

private:
    HWND window_;
    bool own_;
    PAINTSTRUCT paint_;
    HDC context_;
};

/// A context of a window's client area, between two paints.
class WindowContext {
public:
    explicit WindowContext(HWND window) : window_(window), context_(GetDC(window)) {}
    ~WindowContext() { ReleaseDC(window_, context_); }
    WindowContext(const WindowContext&) = delete;
    HDC context() const { return context_; }

private:
    HWND window_;
    HDC context_;
};

/// Selects an object for the length of a scope; null selects nothing.
class Selected {
public:
    Selected(HDC context, HGDIOBJ object)
        : context_(context), old_(object != nullptr ? SelectObject(context, object) : nullptr) {}
    ~Selected() {
        if (old_ != nullptr) SelectObject(context_, old_);
    }
    Selected(const Selected&) = delete;

private:
    HDC context_;
    HGDIOBJ old_;
};

/// One pixel wide, inside the rectangle; `color` is COLOR_...
void DrawBorder(HDC context, const RECT& rectangle, int color);
/// Light at left and top, shade at right and bottom, or the other way round when pressed.
void DrawRaisedFace(HDC context, const RECT& rectangle, bool pressed);
/// A triangle in the middle; `direction` is VK_UP or VK_DOWN.
void DrawArrow(HDC context, const RECT& rectangle, int direction, int color);

/// Pixels that a border takes of the control's client area: 2 on each side if the style asks for one that the
/// window's frame doesn't have.
int OwnBorder(HWND window);
