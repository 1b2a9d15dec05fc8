/// The windows of the desktop, as this room's files share them.
///
/// A window's handle is looked up in a table, with a number that tells its place's former windows from it, so
/// that a stale handle leads nowhere.  Every message can destroy any window: who sends one must look up again
/// what it uses afterwards.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

#include "win32/desktop/region.h"

struct WindowClass {
    std::string name; ///< as it was registered; compared without case
    UINT style;
    WNDPROC procedure;
    int extraBytes;
    HINSTANCE instance;
    HCURSOR cursor;
    HBRUSH background;
    int windows; ///< how many of it are there
};

struct Window {
    HWND handle = nullptr;
    WindowClass* windowClass = nullptr;
    Window* parent = nullptr; ///< null for the desktop alone, which is the parent of top-level windows
    HWND owner = nullptr;
    std::vector<Window*> children; ///< the topmost first
    DWORD style = 0;
    DWORD extendedStyle = 0;
    RECT place = {}; ///< with its frame, from the left top of the parent's client area
    WNDPROC procedure = nullptr;
    HINSTANCE instance = nullptr;
    INT_PTR id = 0;
    INT_PTR userData = 0;
    std::vector<uint8_t> extra;
    std::string text;
    Region invalid;              ///< of the client area, in client coordinates
    bool eraseInvalid = false;   ///< before it is painted, its background is
    bool frameInvalid = false;   ///< the frame is to be drawn
    bool sizeAnnounced = false;  ///< WM_SIZE and WM_MOVE have told the first place
    bool beingDestroyed = false; ///< its messages of destruction have begun
};

/// Null, with the error set, for a handle that leads to no window.
Window* WindowOf(HWND handle);
/// Null for such a handle, without an error.
Window* WindowIfAny(HWND handle);

/// The window behind all others, with the screen's size.  Made when it is first asked for.
Window& DesktopWindow();

/// A new window of a class, in no tree yet; null if there are 65,000 already.
Window* AddWindow(WindowClass& windowClass);
/// Takes a window out of its tree and frees it; its children must be gone.
void RemoveWindow(Window& window);
/// Frees all windows but the desktop, without a message.
void RemoveAllWindows();
int CountWindows(); ///< without the desktop

/// Finds a class by a name of any case, the system's last; null if there is none.
WindowClass* FindWindowClass(const char* name);
/// The class of the desktop itself.
WindowClass& DesktopClass();

inline bool IsTopLevel(const Window& window) {
    return window.parent != nullptr && window.parent->parent == nullptr;
}
inline bool IsChildStyle(const Window& window) {
    return (window.style & (WS_CHILD | WS_POPUP)) == WS_CHILD;
}
/// It and all its parents have WS_VISIBLE.
bool IsShown(const Window& window);
/// Neither it nor a parent has WS_DISABLED.
bool IsUsable(const Window& window);
/// The top-level window that a window belongs to; itself if it is one.
Window& TopLevelOf(Window& window);
bool IsInside(const Window& window, const Window& ancestor); ///< also if they are the same

RECT FrameOnScreen(const Window& window);
RECT ClientOnScreen(const Window& window);

inline RECT Moved(const RECT& rectangle, int dx, int dy) {
    return {rectangle.left + dx, rectangle.top + dy, rectangle.right + dx, rectangle.bottom + dy};
}
inline bool Holds(const RECT& rectangle, int x, int y) {
    return x >= rectangle.left && x < rectangle.right && y >= rectangle.top && y < rectangle.bottom;
}
