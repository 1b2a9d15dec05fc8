/// The frames that the desktop draws around windows, in pixels.
///
/// From outside to inside: a line of one pixel around a window with WS_CAPTION, WS_BORDER, WS_DLGFRAME or
/// WS_THICKFRAME; with WS_CAPTION the title above the rest; with WS_EX_CLIENTEDGE a sunken edge.
#pragma once

#include <windows.h>

constexpr int kBorderWidth = 1;
constexpr int kCaptionHeight = 20;
constexpr int kClientEdgeWidth = 2;

constexpr bool HasCaption(DWORD style) {
    return (style & WS_CAPTION) == WS_CAPTION;
}

/// The client area of a window whose outer rectangle is `frame`, in the same coordinates; of a window that is
/// too small for its frame, without width or height.
inline RECT ClientOfFrame(const RECT& frame, DWORD style, DWORD extendedStyle) {
    const int border = (style & (WS_CAPTION | WS_THICKFRAME)) != 0 ? kBorderWidth : 0;
    const int all = border + ((extendedStyle & WS_EX_CLIENTEDGE) != 0 ? kClientEdgeWidth : 0);
    RECT client = {frame.left + all, frame.top + all + (HasCaption(style) ? kCaptionHeight : 0),
                   frame.right - all, frame.bottom - all};
    if (client.right < client.left) client.right = client.left;
    if (client.bottom < client.top) client.bottom = client.top;
    return client;
}

/// The outer rectangle of a window with such a client area.
inline RECT FrameOfClient(const RECT& client, DWORD style, DWORD extendedStyle) {
    const RECT insets = ClientOfFrame({0, 0, 1000, 1000}, style, extendedStyle);
    return {client.left - insets.left, client.top - insets.top, client.right + 1000 - insets.right,
            client.bottom + 1000 - insets.bottom};
}

/// The close box of a window that has WS_SYSMENU, in the coordinates of its outer rectangle.
inline RECT CloseBoxOfFrame(const RECT& frame) {
    const int right = frame.right - kBorderWidth - 2;
    const int top = frame.top + kBorderWidth + 2;
    return {right - (kCaptionHeight - 4), top, right, top + kCaptionHeight - 4};
}
