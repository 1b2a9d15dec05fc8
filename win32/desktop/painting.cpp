#include <vector>

#include "win32/desktop/visible_area.h"
#include "win32/gdi/screen_context.h"

namespace {

// A context that a program holds.  A window's follows the window.
struct HeldContext {
    HDC context;
    HWND window; // null: the screen
    Part part;
    bool painting;      // between BeginPaint and EndPaint
    Region paintedPart; // then: of the client area, in client coordinates
};
std::vector<HeldContext>& HeldContexts() {
    static std::vector<HeldContext> held;
    return held;
}

RECT PartOnScreen(const Window& window, Part part) {
    return part == Part::Client ? ClientOnScreen(window) : FrameOnScreen(window);
}

Region AreaOf(const HeldContext& held, const Window& window) {
    Region area = VisibleArea(window, held.part);
    if (held.painting) {
        const RECT origin = PartOnScreen(window, held.part);
        Region limit = held.paintedPart;
        limit.Move(origin.left, origin.top);
        area.Intersect(limit);
    }
    return area;
}

HDC HoldContext(Window* window, Part part, const Region* paintedPart) {
    HeldContext held = {nullptr, nullptr, part, paintedPart != nullptr, {}};
    RECT origin = {};
    Region area(DesktopWindow().place);
    if (window != nullptr) {
        held.window = window->handle;
        if (paintedPart != nullptr) held.paintedPart = *paintedPart;
        origin = PartOnScreen(*window, part);
        area = AreaOf(held, *window);
    }
    held.context = NewScreenContext(origin.left, origin.top, area.Copy());
    if (held.context != nullptr) HeldContexts().push_back(held);
    return held.context;
}

bool EndContext(HDC context, bool painting) {
    std::vector<HeldContext>& all = HeldContexts();
    for (size_t at = 0; at < all.size(); ++at) {
        if (all[at].context != context || all[at].painting != painting) continue;
        all.erase(all.begin() + static_cast<ptrdiff_t>(at));
        return EndScreenContext(context);
    }
    return false;
}

HDC ContextOf(HWND handle, Part part) {
    if (handle == nullptr) return HoldContext(nullptr, part, nullptr);
    Window* window = WindowOf(handle);
    if (window == nullptr) return nullptr;
    return HoldContext(window->parent == nullptr ? nullptr : window, part, nullptr);
}

void PaintWithChildren(HWND handle) {
    Window* window = WindowIfAny(handle);
    if (window == nullptr || (window->style & WS_VISIBLE) == 0) return;
    if (window->frameInvalid) {
        window->frameInvalid = false;
        SendMessageA(handle, WM_NCPAINT, 1, 0);
        window = WindowIfAny(handle);
    }
    if (window != nullptr && !window->invalid.IsEmpty()) SendMessageA(handle, WM_PAINT, 0, 0);
    window = WindowIfAny(handle);
    if (window == nullptr) return;
    std::vector<HWND> children;
    for (const Window* child : window->children) children.push_back(child->handle);
    for (const HWND child : children) PaintWithChildren(child);
}

} // namespace

void RefreshHeldContexts() {
    for (const HeldContext& held : HeldContexts()) {
        if (held.window == nullptr) continue;
        const Window* window = WindowIfAny(held.window);
        const RECT origin = window != nullptr ? PartOnScreen(*window, held.part) : RECT{};
        const Region area = window != nullptr ? AreaOf(held, *window) : Region();
        SetScreenContextRegion(held.context, origin.left, origin.top, area.Copy());
    }
}

void EndHeldContexts() {
    for (const HeldContext& held : HeldContexts()) EndScreenContext(held.context);
    HeldContexts().clear();
}

HDC GetDC(HWND window) {
    return ContextOf(window, Part::Client);
}

HDC GetWindowDC(HWND window) {
    return ContextOf(window, Part::Frame);
}

int ReleaseDC(HWND /*window*/, HDC context) {
    return EndContext(context, false);
}

HDC BeginPaint(HWND handle, PAINTSTRUCT* paint) {
    *paint = {};
    Window* window = WindowOf(handle);
    if (window != nullptr && window->frameInvalid) {
        window->frameInvalid = false;
        SendMessageA(handle, WM_NCPAINT, 1, 0);
        window = WindowOf(handle);
    }
    if (window == nullptr) return nullptr;
    Region part = window->invalid;
    const RECT origin = ClientOnScreen(*window);
    Region visible = VisibleArea(*window, Part::Client);
    visible.Move(-origin.left, -origin.top);
    part.Intersect(visible);
    const bool erase = window->eraseInvalid && !part.IsEmpty();
    window->invalid.Clear();
    window->eraseInvalid = false;
    Region onScreen = part;
    onScreen.Move(origin.left, origin.top);
    if ((window->style & WS_CLIPCHILDREN) == 0) InvalidateChildrenUnder(*window, onScreen);
    paint->rcPaint = part.Box();
    paint->hdc = HoldContext(window, Part::Client, &part);
    if (erase) {
        const auto context = reinterpret_cast<WPARAM>(paint->hdc);
        paint->fErase = SendMessageA(handle, WM_ERASEBKGND, context, 0) == 0;
    }
    return paint->hdc;
}

BOOL EndPaint(HWND /*window*/, const PAINTSTRUCT* paint) {
    EndContext(paint->hdc, true);
    return TRUE;
}

BOOL InvalidateRect(HWND handle, const RECT* rectangle, BOOL erase) {
    const Invalidation how = {.erase = erase != FALSE, .frames = false, .allChildren = false};
    if (handle == nullptr) {
        InvalidateUncovered(DesktopWindow(), Region(DesktopWindow().place));
        return TRUE;
    }
    Window* window = WindowOf(handle);
    if (window == nullptr) return FALSE;
    if (!IsShown(*window)) return TRUE;
    const RECT client = ClientOnScreen(*window);
    RECT area = client;
    if (rectangle != nullptr) area = Moved(*rectangle, client.left, client.top);
    Region onScreen(area);
    onScreen.Intersect(client);
    InvalidateArea(*window, onScreen, how);
    return TRUE;
}

BOOL ValidateRect(HWND handle, const RECT* rectangle) {
    Window* window = WindowOf(handle);
    if (window == nullptr) return FALSE;
    if (rectangle == nullptr) {
        window->invalid.Clear();
    } else {
        window->invalid.Subtract(*rectangle);
    }
    if (window->invalid.IsEmpty()) window->eraseInvalid = false;
    return TRUE;
}

BOOL UpdateWindow(HWND handle) {
    Window* window = WindowOf(handle);
    if (window == nullptr) return FALSE;
    if (!IsShown(*window)) return TRUE;
    // A parent that draws over its children would otherwise wipe out, later, what is painted now.
    for (Window* at = window->parent; at != nullptr; at = at->parent) {
        if ((at->style & WS_CLIPCHILDREN) != 0) continue;
        const RECT origin = ClientOnScreen(*at);
        Region shown = ShownArea(*window);
        shown.Move(-origin.left, -origin.top);
        at->invalid.Subtract(shown);
    }
    PaintWithChildren(handle);
    return TRUE;
}
