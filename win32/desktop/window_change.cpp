#include "win32/desktop/window_change.h"

#include <algorithm>

#include "win32/desktop/focus.h"
#include "win32/desktop/visible_area.h"
#include "win32/desktop/z_order.h"

namespace {

constexpr UINT kNothingChanged = SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER;

// What can be seen of a window before it changes; afterwards it tells what must be painted.
class VisibleChange {
public:
    explicit VisibleChange(const Window& window)
        : handle_(window.handle),
          shown_(ShownArea(window)),
          frame_(FrameOnScreen(window)),
          client_(ClientOnScreen(window)) {}

    // Sends nothing, so all windows are still there.
    void Finish() const {
        Window& window = *WindowIfAny(handle_);
        const Region now = ShownArea(window);
        Region kept = KeptPixels(window, now);
        const int dx = FrameOnScreen(window).left - frame_.left;
        const int dy = FrameOnScreen(window).top - frame_.top;
        if (dx != 0 || dy != 0) MovePixels(kept, dx, dy);
        Region fresh = now;
        fresh.Subtract(kept);
        InvalidateUncovered(window, fresh);
        Region uncovered = shown_;
        uncovered.Subtract(now);
        InvalidateUncovered(*window.parent, uncovered);
    }

private:
    // The area, where it is now, whose pixels were the window's before as well.
    Region KeptPixels(const Window& window, const Region& now) const {
        const RECT frame = FrameOnScreen(window);
        const RECT client = ClientOnScreen(window);
        const auto width = [](const RECT& box) { return box.right - box.left; };
        const auto height = [](const RECT& box) { return box.bottom - box.top; };
        const bool wider = width(frame) != width(frame_);
        const bool higher = height(frame) != height(frame_);
        const bool sized = wider || higher;
        const UINT style = window.windowClass->style;
        if ((wider && (style & CS_HREDRAW) != 0) || (higher && (style & CS_VREDRAW) != 0)) return {};
        Region kept = shown_;
        if (sized) kept.Intersect(client_); // the frame is drawn anew
        kept.Move(frame.left - frame_.left, frame.top - frame_.top);
        if (sized) kept.Intersect(client);
        kept.Intersect(now);
        return kept;
    }

    HWND handle_;
    Region shown_;
    RECT frame_, client_;
};

// A window and those that come to the front with it.
class VisibleChanges {
public:
    explicit VisibleChanges(const Window& window) { Add(window); }
    void Finish() const {
        RefreshHeldContexts();
        for (const VisibleChange& each : changes_) each.Finish();
    }

private:
    void Add(const Window& window) {
        changes_.emplace_back(window);
        if (!IsTopLevel(window)) return;
        for (const Window* owned : OwnedWindows(window)) Add(*owned);
    }
    std::vector<VisibleChange> changes_;
};

bool SameRect(const RECT& first, const RECT& second) {
    return first.left == second.left && first.top == second.top && first.right == second.right &&
           first.bottom == second.bottom;
}

RECT NewPlace(const Window& window, int x, int y, int width, int height, UINT flags) {
    RECT place = window.place;
    if ((flags & SWP_NOMOVE) == 0) place = Moved(place, x - place.left, y - place.top);
    if ((flags & SWP_NOSIZE) == 0) {
        place.right = place.left + std::max(width, 0);
        place.bottom = place.top + std::max(height, 0);
    }
    return place;
}

// Changes the window itself; the flags then tell what has changed.
UINT ApplyChange(Window& window, HWND behind, const RECT& place, UINT flags) {
    const RECT client = ClientOnScreen(window);
    const bool visible = (window.style & WS_VISIBLE) != 0;
    const RECT old = window.place;
    window.place = place;
    if ((flags & SWP_SHOWWINDOW) != 0) window.style |= WS_VISIBLE;
    if ((flags & SWP_HIDEWINDOW) != 0) window.style &= ~WS_VISIBLE;
    if ((flags & SWP_NOZORDER) == 0 && !PlaceInOrder(window, behind)) flags |= SWP_NOZORDER;
    if (old.left == place.left && old.top == place.top) flags |= SWP_NOMOVE;
    if (old.right - old.left == place.right - place.left && old.bottom - old.top == place.bottom - place.top)
        flags |= SWP_NOSIZE;
    if (visible == ((window.style & WS_VISIBLE) != 0)) flags &= ~UINT{SWP_SHOWWINDOW | SWP_HIDEWINDOW};
    const RECT now = ClientOnScreen(window);
    if (now.left == client.left && now.top == client.top) flags |= kClientPlaceKept;
    if (SameRect(Moved(now, client.left - now.left, client.top - now.top), client)) flags |= kClientSizeKept;
    return flags;
}

void AnnounceChange(HWND handle, HWND behind, UINT flags) {
    Window* window = WindowIfAny(handle);
    if (window == nullptr) return;
    const bool changed = (flags & kNothingChanged) != kNothingChanged ||
                         (flags & (SWP_SHOWWINDOW | SWP_HIDEWINDOW | SWP_FRAMECHANGED)) != 0;
    if (!changed) return;
    const RECT& place = window->place;
    WINDOWPOS position = {
        handle, behind, place.left, place.top, place.right - place.left, place.bottom - place.top, flags};
    SendMessageA(handle, WM_WINDOWPOSCHANGED, 0, reinterpret_cast<LPARAM>(&position));
}

// Overlapped windows learn of their first size when they are first shown.
void AnnounceFirstSize(HWND handle) {
    Window* window = WindowIfAny(handle);
    if (window == nullptr || window->sizeAnnounced) return;
    window->sizeAnnounced = true;
    const RECT client = ClientOnScreen(*window);
    SendMessageA(handle, WM_SIZE, SIZE_RESTORED,
                 MAKELONG(client.right - client.left, client.bottom - client.top));
    SendMessageA(handle, WM_MOVE, 0, MAKELONG(client.left, client.top));
}

UINT ShowFlags(const Window& window, int command) {
    UINT flags = SWP_NOMOVE | SWP_NOSIZE;
    if (command == SW_HIDE) return flags | SWP_HIDEWINDOW | SWP_NOACTIVATE | SWP_NOZORDER;
    flags |= SWP_SHOWWINDOW;
    if (command == SW_SHOWNA || command == SW_SHOWNOACTIVATE) flags |= SWP_NOACTIVATE;
    if (IsChildStyle(window)) flags |= SWP_NOACTIVATE | SWP_NOZORDER;
    return flags;
}

} // namespace

void BringToTop(Window& window) {
    const VisibleChanges changes(window);
    if (PlaceInOrder(window, HWND_TOP)) changes.Finish();
}

BOOL SetWindowPos(HWND handle, HWND behind, int x, int y, int width, int height, UINT flags) {
    Window* window = WindowOf(handle);
    if (window == nullptr || window->parent == nullptr) return FALSE;
    const VisibleChanges changes(*window);
    flags = ApplyChange(*window, behind, NewPlace(*window, x, y, width, height, flags), flags);
    changes.Finish();
    if ((flags & SWP_HIDEWINDOW) != 0) EndCaptureOf(*window);
    if ((flags & (SWP_NOACTIVATE | SWP_HIDEWINDOW)) == 0 && IsTopLevel(*window) &&
        (window->style & WS_VISIBLE) != 0)
        Activate(handle, ActivationCause::Program);
    AnnounceChange(handle, behind, flags);
    if ((flags & SWP_SHOWWINDOW) != 0) AnnounceFirstSize(handle);
    return TRUE;
}

BOOL MoveWindow(HWND window, int x, int y, int width, int height, BOOL /*repaint*/) {
    return SetWindowPos(window, nullptr, x, y, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
}

BOOL ShowWindow(HWND handle, int command) {
    Window* window = WindowOf(handle);
    if (window == nullptr || window->parent == nullptr) return FALSE;
    const BOOL visible = (window->style & WS_VISIBLE) != 0;
    const BOOL show = command != SW_HIDE;
    if (visible == show) return visible;
    SendMessageA(handle, WM_SHOWWINDOW, static_cast<WPARAM>(show), 0);
    window = WindowIfAny(handle);
    if (window == nullptr) return visible;
    if (!IsTopLevel(*window) && !IsShown(*window->parent)) {
        window->style ^= WS_VISIBLE;
    } else {
        SetWindowPos(handle, HWND_TOP, 0, 0, 0, 0, ShowFlags(*window, command));
    }
    window = WindowIfAny(handle);
    if (window != nullptr && !show) LetGoOf(*window);
    return visible;
}

void HideForDestruction(HWND handle) {
    Window* window = WindowIfAny(handle);
    if (window == nullptr || (window->style & WS_VISIBLE) == 0) return;
    if (IsChildStyle(*window)) {
        ShowWindow(handle, SW_HIDE);
        return;
    }
    SetWindowPos(handle, nullptr, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_HIDEWINDOW);
}
