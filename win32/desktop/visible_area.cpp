#include "win32/desktop/visible_area.h"

#include "win32/gdi/screen_context.h"
#include "win32/window_frame.h"

namespace {

bool RespectsSiblings(const Window& window) {
    return IsTopLevel(window) || (window.style & WS_CLIPSIBLINGS) != 0;
}

void SubtractSiblingsAbove(Region& area, const Window& window) {
    for (const Window* sibling : window.parent->children) {
        if (sibling == &window) return;
        if ((sibling->style & WS_VISIBLE) != 0) area.Subtract(FrameOnScreen(*sibling));
    }
}

void SubtractChildren(Region& area, const Window& window) {
    Region children;
    for (const Window* child : window.children)
        if ((child->style & WS_VISIBLE) != 0) children.Add(Region(FrameOnScreen(*child)));
    children.Intersect(ClientOnScreen(window)); // they never cover the frame
    area.Subtract(children);
}

// The desktop has no procedure that would paint it later.
void PaintDesktop(const Region& onScreen) {
    const Region visible = [&] {
        Region area = VisibleArea(DesktopWindow(), Part::Client);
        area.Intersect(onScreen);
        return area;
    }();
    if (visible.IsEmpty()) return;
    const HDC context = NewScreenContext(0, 0, visible.Copy());
    const RECT box = visible.Box();
    FillRect(context, &box, GetSysColorBrush(COLOR_BACKGROUND));
    EndScreenContext(context);
}

// Whether some of what is invalid can be seen; what can't be is forgotten.
bool HasVisibleInvalid(Window& window) {
    if (window.invalid.IsEmpty()) return false;
    const RECT client = ClientOnScreen(window);
    Region visible = VisibleArea(window, Part::Client);
    visible.Move(-client.left, -client.top);
    window.invalid.Intersect(visible);
    return !window.invalid.IsEmpty();
}

Window* FindToPaintIn(Window& window) {
    if ((window.style & WS_VISIBLE) == 0) return nullptr;
    if (window.frameInvalid || HasVisibleInvalid(window)) return &window;
    for (Window* child : window.children)
        if (Window* found = FindToPaintIn(*child)) return found;
    return nullptr;
}

} // namespace

Region VisibleArea(const Window& window, Part part) {
    if (!IsShown(window)) return {};
    Region area(part == Part::Client ? ClientOnScreen(window) : FrameOnScreen(window));
    if ((window.style & WS_CLIPCHILDREN) != 0) SubtractChildren(area, window);
    for (const Window* at = &window; at->parent != nullptr; at = at->parent) {
        if (RespectsSiblings(*at)) SubtractSiblingsAbove(area, *at);
        area.Intersect(ClientOnScreen(*at->parent));
    }
    return area;
}

Region ShownArea(const Window& window) {
    if (!IsShown(window)) return {};
    Region area(FrameOnScreen(window));
    for (const Window* at = &window; at->parent != nullptr; at = at->parent) {
        if (RespectsSiblings(*at)) SubtractSiblingsAbove(area, *at);
        area.Intersect(ClientOnScreen(*at->parent));
    }
    return area;
}

void InvalidateArea(Window& window, const Region& onScreen, const Invalidation& how) {
    if ((window.style & WS_VISIBLE) == 0) return;
    const RECT client = ClientOnScreen(window);
    Region area = onScreen;
    area.Intersect(FrameOnScreen(window));
    if (area.IsEmpty()) return;
    if (how.frames) {
        Region frame = area;
        frame.Subtract(client);
        if (!frame.IsEmpty()) window.frameInvalid = true;
    }
    area.Intersect(client);
    if (window.parent == nullptr) {
        PaintDesktop(area);
    } else {
        Region own = VisibleArea(window, Part::Client);
        own.Intersect(area);
        own.Move(-client.left, -client.top);
        if (!own.IsEmpty() && how.erase) window.eraseInvalid = true;
        window.invalid.Add(own);
    }
    if ((window.style & WS_CLIPCHILDREN) != 0 && !how.allChildren) return;
    // Who draws over its children draws over their frames as well.
    const Invalidation inside = {.erase = how.erase, .frames = true, .allChildren = how.allChildren};
    for (Window* child : window.children) InvalidateArea(*child, area, inside);
}

void InvalidateUncovered(Window& window, const Region& onScreen) {
    if (!IsShown(window)) return;
    InvalidateArea(window, onScreen, {.erase = true, .frames = true, .allChildren = true});
}

void InvalidateChildrenUnder(Window& window, const Region& painted) {
    if (painted.IsEmpty()) return;
    for (Window* child : window.children) {
        const RECT client = ClientOnScreen(*child);
        Region known = child->invalid;
        known.Move(client.left, client.top);
        Region lost = painted;
        lost.Subtract(known);
        known.Intersect(painted);
        if (!known.IsEmpty()) child->eraseInvalid = true;
        InvalidateUncovered(*child, lost);
        InvalidateChildrenUnder(*child, known);
    }
}

void InvalidateFrame(Window& window) {
    const RECT frame = FrameOnScreen(window);
    const RECT client = ClientOnScreen(window);
    if (client.top != frame.top || client.left != frame.left) window.frameInvalid = true;
}

void MovePixels(const Region& onScreen, int dx, int dy) {
    if (onScreen.IsEmpty()) return;
    const RECT box = onScreen.Box();
    const HDC context = NewScreenContext(0, 0, onScreen.Copy());
    BitBlt(context, box.left, box.top, box.right - box.left, box.bottom - box.top, context, box.left - dx,
           box.top - dy, SRCCOPY);
    EndScreenContext(context);
}

Window* FindWindowToPaint() {
    for (;;) {
        Window* found = nullptr;
        for (Window* window : DesktopWindow().children)
            if ((found = FindToPaintIn(*window)) != nullptr) break;
        if (found == nullptr || !found->frameInvalid) return found;
        found->frameInvalid = false;
        SendMessageA(found->handle, WM_NCPAINT, 1, 0);
    }
}
