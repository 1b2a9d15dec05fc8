#include <algorithm>

#include "win32/desktop/hit_test.h"
#include "win32/desktop/window.h"

namespace {

// What WindowFromPoint asks, in its order: children before their parents, upper ones before lower ones.
void CollectUnder(const Window& parent, POINT point, std::vector<HWND>& found) {
    for (const Window* window : parent.children) {
        const bool taken = (window->style & WS_VISIBLE) != 0 &&
                           (IsTopLevel(*window) || (window->style & WS_DISABLED) == 0) &&
                           Holds(FrameOnScreen(*window), point.x, point.y);
        if (!taken) continue;
        if ((window->style & WS_DISABLED) == 0 && Holds(ClientOnScreen(*window), point.x, point.y))
            CollectUnder(*window, point, found);
        found.push_back(window->handle);
    }
}

void CollectDescendants(const Window& parent, std::vector<HWND>& found) {
    for (const Window* window : parent.children) {
        found.push_back(window->handle);
        CollectDescendants(*window, found);
    }
}

// The screen position of a client area's left top; of the screen itself 0, 0.
bool OriginOf(HWND handle, POINT& origin) {
    origin = {};
    if (handle == nullptr) return true;
    const Window* window = WindowOf(handle);
    if (window == nullptr) return false;
    const RECT client = ClientOnScreen(*window);
    origin = {client.left, client.top};
    return true;
}

} // namespace

HitWindow FindHit(POINT point) {
    std::vector<HWND> candidates;
    CollectUnder(DesktopWindow(), point, candidates);
    for (const HWND handle : candidates) {
        const Window* window = WindowIfAny(handle);
        if (window == nullptr) continue;
        if ((window->style & WS_DISABLED) != 0) return {handle, HTERROR};
        const LRESULT code = SendMessageA(handle, WM_NCHITTEST, 0, MAKELONG(point.x, point.y));
        if (code != HTTRANSPARENT) return {handle, static_cast<int>(code)};
    }
    return {DesktopWindow().handle, HTCLIENT};
}

HWND WindowFromPoint(POINT point) {
    return FindHit(point).window;
}

BOOL GetWindowRect(HWND handle, RECT* rectangle) {
    const Window* window = WindowOf(handle);
    if (window == nullptr) return FALSE;
    *rectangle = FrameOnScreen(*window);
    return TRUE;
}

BOOL GetClientRect(HWND handle, RECT* rectangle) {
    const Window* window = WindowOf(handle);
    if (window == nullptr) return FALSE;
    const RECT client = ClientOnScreen(*window);
    *rectangle = {0, 0, client.right - client.left, client.bottom - client.top};
    return TRUE;
}

HWND GetParent(HWND handle) {
    const Window* window = WindowOf(handle);
    if (window == nullptr || window->parent == nullptr) return nullptr;
    if ((window->style & WS_POPUP) != 0) return window->owner;
    return (window->style & WS_CHILD) != 0 ? window->parent->handle : nullptr;
}

HWND GetWindow(HWND handle, UINT relation) {
    const Window* window = WindowOf(handle);
    if (window == nullptr) return nullptr;
    if (relation == GW_CHILD) return window->children.empty() ? nullptr : window->children.front()->handle;
    if (relation == GW_OWNER) return WindowIfAny(window->owner) != nullptr ? window->owner : nullptr;
    if (window->parent == nullptr) return nullptr;
    const std::vector<Window*>& siblings = window->parent->children;
    const auto place = std::find(siblings.begin(), siblings.end(), window);
    switch (relation) {
        case GW_HWNDFIRST:
            return siblings.front()->handle;
        case GW_HWNDLAST:
            return siblings.back()->handle;
        case GW_HWNDNEXT:
            return place + 1 != siblings.end() ? (*(place + 1))->handle : nullptr;
        case GW_HWNDPREV:
            return place != siblings.begin() ? (*(place - 1))->handle : nullptr;
        default:
            SetLastError(ERROR_INVALID_PARAMETER);
            return nullptr;
    }
}

HWND GetTopWindow(HWND handle) {
    return GetWindow(handle != nullptr ? handle : GetDesktopWindow(), GW_CHILD);
}

HWND GetDesktopWindow() {
    return DesktopWindow().handle;
}

BOOL EnumChildWindows(HWND parent, WNDENUMPROC each, LPARAM parameter) {
    const Window* window = parent != nullptr ? WindowOf(parent) : &DesktopWindow();
    if (window == nullptr) return FALSE;
    std::vector<HWND> found;
    CollectDescendants(*window, found);
    for (const HWND handle : found)
        if (WindowIfAny(handle) != nullptr && !each(handle, parameter)) return FALSE;
    return TRUE;
}

HWND GetDlgItem(HWND parent, int id) {
    const Window* window = WindowOf(parent);
    if (window == nullptr) return nullptr;
    for (const Window* child : window->children)
        if (static_cast<int>(child->id) == id) return child->handle;
    return nullptr;
}

int GetDlgCtrlID(HWND handle) {
    const Window* window = WindowOf(handle);
    return window != nullptr ? static_cast<int>(window->id) : 0;
}

int MapWindowPoints(HWND from, HWND to, POINT* points, UINT count) {
    POINT first, second;
    if (!OriginOf(from, first) || !OriginOf(to, second)) return 0;
    const int dx = first.x - second.x;
    const int dy = first.y - second.y;
    for (UINT at = 0; at < count; ++at) {
        points[at].x += dx;
        points[at].y += dy;
    }
    return MAKELONG(dx, dy);
}

BOOL ScreenToClient(HWND handle, POINT* point) {
    if (WindowOf(handle) == nullptr) return FALSE;
    MapWindowPoints(nullptr, handle, point, 1);
    return TRUE;
}

BOOL ClientToScreen(HWND handle, POINT* point) {
    if (WindowOf(handle) == nullptr) return FALSE;
    MapWindowPoints(handle, nullptr, point, 1);
    return TRUE;
}
