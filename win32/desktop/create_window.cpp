#include <algorithm>

#include "win32/desktop/focus.h"
#include "win32/desktop/message_queue.h"
#include "win32/desktop/timers.h"
#include "win32/desktop/visible_area.h"
#include "win32/desktop/window.h"
#include "win32/desktop/window_change.h"
#include "win32/desktop/z_order.h"

namespace {

constexpr int kDefaultLeft = 40, kDefaultTop = 40, kDefaultWidth = 640, kDefaultHeight = 480;

bool IsOverlapped(DWORD style) {
    return (style & (WS_CHILD | WS_POPUP)) == 0;
}

DWORD CompletedStyle(DWORD style) {
    if (IsOverlapped(style)) style |= WS_CAPTION;
    if ((style & WS_CHILD) == 0 || (style & WS_POPUP) != 0) style |= WS_CLIPSIBLINGS;
    return style;
}

RECT PlaceOf(const CREATESTRUCTA& wanted) {
    const int left = wanted.x == CW_USEDEFAULT ? kDefaultLeft : wanted.x;
    const int top = wanted.x == CW_USEDEFAULT || wanted.y == CW_USEDEFAULT ? kDefaultTop : wanted.y;
    const int width = wanted.cx == CW_USEDEFAULT ? kDefaultWidth : std::max(wanted.cx, 0);
    const int height =
        wanted.cx == CW_USEDEFAULT || wanted.cy == CW_USEDEFAULT ? kDefaultHeight : std::max(wanted.cy, 0);
    return {left, top, left + width, top + height};
}

// Children join behind their siblings, top-level windows in front.
void JoinTree(Window& window, Window& parent) {
    window.parent = &parent;
    parent.children.push_back(&window);
    if (IsTopLevel(window)) PlaceInOrder(window, HWND_TOP);
}

// What children share is in `wanted`, whose style is complete.
Window* MakeWindow(WindowClass& windowClass, const CREATESTRUCTA& wanted, Window& parent, Window* owner) {
    Window* window = AddWindow(windowClass);
    if (window == nullptr) return nullptr;
    window->owner = owner != nullptr ? owner->handle : nullptr;
    window->style = static_cast<DWORD>(wanted.style) & ~WS_VISIBLE;
    window->extendedStyle = wanted.dwExStyle;
    window->place = PlaceOf(wanted);
    window->procedure = windowClass.procedure;
    window->instance = wanted.hInstance;
    if ((window->style & WS_CHILD) != 0) window->id = reinterpret_cast<INT_PTR>(wanted.hMenu);
    window->extra.resize(static_cast<size_t>(windowClass.extraBytes));
    window->sizeAnnounced = !IsOverlapped(window->style);
    JoinTree(*window, parent);
    return window;
}

// WM_NCCREATE, WM_CREATE and the first size; false if the window is not to be, or gone.
bool AnnounceCreation(HWND handle, CREATESTRUCTA& wanted) {
    const auto parameter = reinterpret_cast<LPARAM>(&wanted);
    if (SendMessageA(handle, WM_NCCREATE, 0, parameter) == 0) {
        if (Window* window = WindowIfAny(handle)) RemoveWindow(*window);
        return false;
    }
    if (WindowIfAny(handle) == nullptr) return false;
    if (SendMessageA(handle, WM_CREATE, 0, parameter) == -1) {
        DestroyWindow(handle);
        return false;
    }
    const Window* window = WindowIfAny(handle);
    if (window == nullptr) return false;
    if (!window->sizeAnnounced) return true;
    const RECT client = ClientOnScreen(*window);
    const RECT around = ClientOnScreen(*window->parent);
    SendMessageA(handle, WM_SIZE, SIZE_RESTORED,
                 MAKELONG(client.right - client.left, client.bottom - client.top));
    SendMessageA(handle, WM_MOVE, 0, MAKELONG(client.left - around.left, client.top - around.top));
    return WindowIfAny(handle) != nullptr;
}

std::vector<HWND> HandlesOf(const std::vector<Window*>& windows) {
    std::vector<HWND> handles;
    for (const Window* window : windows) handles.push_back(window->handle);
    return handles;
}

void AnnounceDestruction(HWND handle) {
    Window* window = WindowIfAny(handle);
    if (window == nullptr) return;
    window->beingDestroyed = true;
    LetGoOf(*window);
    SendMessageA(handle, WM_DESTROY, 0, 0);
    window = WindowIfAny(handle);
    if (window == nullptr) return;
    for (const HWND child : HandlesOf(window->children)) AnnounceDestruction(child);
}

void FreeWindow(HWND handle) {
    Window* window = WindowIfAny(handle);
    if (window == nullptr) return;
    for (const HWND child : HandlesOf(window->children)) FreeWindow(child);
    SendMessageA(handle, WM_NCDESTROY, 0, 0);
    ForgetMessagesOf(handle);
    KillTimersOf(handle);
    window = WindowIfAny(handle);
    if (window == nullptr) return;
    while (!window->children.empty()) FreeWindow(window->children.front()->handle); // made meanwhile
    RemoveWindow(*window);
}

} // namespace

HWND CreateWindowExA(DWORD extendedStyle, LPCSTR className, LPCSTR title, DWORD style, int x, int y,
                     int width, int height, HWND parentHandle, HMENU menuOrId, HINSTANCE instance,
                     LPVOID parameter) {
    WindowClass* windowClass = FindWindowClass(className);
    if (windowClass == nullptr) {
        SetLastError(ERROR_CANNOT_FIND_WND_CLASS);
        return nullptr;
    }
    const bool child = (style & (WS_CHILD | WS_POPUP)) == WS_CHILD;
    Window* given = WindowIfAny(parentHandle);
    if (given == nullptr && (child || parentHandle != nullptr)) {
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
        return nullptr;
    }
    CREATESTRUCTA wanted = {parameter,
                            instance,
                            menuOrId,
                            parentHandle,
                            height,
                            width,
                            y,
                            x,
                            static_cast<LONG>(CompletedStyle(style)),
                            title,
                            className,
                            extendedStyle};
    Window* owner = child || given == nullptr || given->parent == nullptr ? nullptr : &TopLevelOf(*given);
    Window* window = MakeWindow(*windowClass, wanted, child ? *given : DesktopWindow(), owner);
    if (window == nullptr) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    wanted.x = window->place.left;
    wanted.y = window->place.top;
    wanted.cx = window->place.right - window->place.left;
    wanted.cy = window->place.bottom - window->place.top;
    const HWND handle = window->handle;
    if (!AnnounceCreation(handle, wanted)) return nullptr;
    if ((style & WS_VISIBLE) != 0) ShowWindow(handle, SW_SHOW);
    return WindowIfAny(handle) != nullptr ? handle : nullptr;
}

BOOL DestroyWindow(HWND handle) {
    Window* window = WindowOf(handle);
    if (window == nullptr || window->parent == nullptr) return FALSE;
    if (window->beingDestroyed) return TRUE;
    HideForDestruction(handle);
    window = WindowIfAny(handle);
    if (window == nullptr) return TRUE;
    for (const HWND owned : HandlesOf(OwnedWindows(*window))) DestroyWindow(owned);
    AnnounceDestruction(handle);
    FreeWindow(handle);
    RefreshHeldContexts();
    return TRUE;
}
