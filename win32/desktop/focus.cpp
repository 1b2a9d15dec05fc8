#include "win32/desktop/focus.h"

#include "win32/desktop/visible_area.h"
#include "win32/desktop/window_change.h"

namespace {

HWND active, focus, capture;

void MoveFocus(HWND to) {
    if (focus == to) return;
    const HWND from = focus;
    focus = to;
    if (WindowIfAny(from) != nullptr) SendMessageA(from, WM_KILLFOCUS, reinterpret_cast<WPARAM>(to), 0);
    if (focus == to && WindowIfAny(to) != nullptr)
        SendMessageA(to, WM_SETFOCUS, reinterpret_cast<WPARAM>(from), 0);
}

void RedrawFrame(HWND handle) {
    if (Window* window = WindowIfAny(handle)) InvalidateFrame(*window);
}

bool CanTakeOver(const Window& window) {
    constexpr DWORD kNeeded = WS_VISIBLE;
    return (window.style & (kNeeded | WS_DISABLED)) == kNeeded &&
           (window.extendedStyle & WS_EX_NOACTIVATE) == 0 && !window.beingDestroyed;
}

// Who becomes active when `window` can't be any longer: its owner, else the topmost.
HWND SuccessorOf(const Window& window) {
    const Window* owner = WindowIfAny(window.owner);
    if (owner != nullptr && CanTakeOver(*owner)) return owner->handle;
    for (const Window* each : DesktopWindow().children)
        if (each != &window && CanTakeOver(*each)) return each->handle;
    return nullptr;
}

} // namespace

bool Activate(HWND handle, ActivationCause cause) {
    if (active == handle) return true;
    const HWND former = active;
    if (WindowIfAny(former) != nullptr) {
        RedrawFrame(former);
        SendMessageA(former, WM_ACTIVATE, WA_INACTIVE, reinterpret_cast<LPARAM>(handle));
    }
    Window* window = WindowIfAny(handle);
    if (window == nullptr) {
        active = nullptr;
        MoveFocus(nullptr);
        return handle == nullptr;
    }
    active = handle;
    BringToTop(*window);
    RedrawFrame(handle);
    SendMessageA(handle, WM_ACTIVATE, cause == ActivationCause::Press ? WA_CLICKACTIVE : WA_ACTIVE,
                 reinterpret_cast<LPARAM>(former));
    if (active != handle) return false;
    window = WindowIfAny(handle);
    if (window == nullptr) return false;
    const Window* focused = WindowIfAny(focus);
    if (focused != nullptr && !IsInside(*focused, *window)) MoveFocus(handle);
    return true;
}

void LetGoOf(Window& window) {
    EndCaptureOf(window);
    const HWND handle = window.handle;
    if (active == handle) Activate(SuccessorOf(window), ActivationCause::Program);
    if (active == handle) active = nullptr;
    Window* still = WindowIfAny(handle);
    const Window* focused = WindowIfAny(focus);
    if (still == nullptr || focused == nullptr || !IsInside(*focused, *still)) return;
    Window* parent = IsTopLevel(*still) ? nullptr : still->parent;
    MoveFocus(parent != nullptr && IsUsable(*parent) ? parent->handle : nullptr);
}

void EndCaptureOf(const Window& window) {
    const Window* captured = WindowIfAny(capture);
    if (captured != nullptr && IsInside(*captured, window)) ReleaseCapture();
}

void ForgetFocus() {
    active = focus = capture = nullptr;
}

HWND GetForegroundWindow() {
    return WindowIfAny(active) != nullptr ? active : nullptr;
}

HWND GetActiveWindow() {
    return GetForegroundWindow();
}

BOOL SetForegroundWindow(HWND handle) {
    Window* window = WindowOf(handle);
    if (window == nullptr || window->parent == nullptr) return FALSE;
    return Activate(TopLevelOf(*window).handle, ActivationCause::Program);
}

HWND SetActiveWindow(HWND handle) {
    const HWND former = GetActiveWindow();
    if (handle != nullptr) {
        const Window* window = WindowOf(handle);
        if (window == nullptr || !IsTopLevel(*window) || (window->style & WS_DISABLED) != 0) return nullptr;
    }
    return Activate(handle, ActivationCause::Program) ? former : nullptr;
}

HWND SetFocus(HWND handle) {
    const HWND former = GetFocus();
    if (handle == nullptr) {
        MoveFocus(nullptr);
        return former;
    }
    Window* window = WindowOf(handle);
    if (window == nullptr || window->parent == nullptr || !IsUsable(*window)) return nullptr;
    if (focus == handle) return former;
    const HWND top = TopLevelOf(*window).handle;
    if (active != top && !Activate(top, ActivationCause::Program)) return nullptr;
    if (WindowIfAny(handle) == nullptr) return nullptr;
    MoveFocus(handle);
    return former;
}

HWND GetFocus() {
    return WindowIfAny(focus) != nullptr ? focus : nullptr;
}

HWND SetCapture(HWND handle) {
    const HWND former = GetCapture();
    if (WindowOf(handle) == nullptr) return nullptr;
    capture = handle;
    if (former != nullptr) SendMessageA(former, WM_CAPTURECHANGED, 0, reinterpret_cast<LPARAM>(handle));
    return former;
}

BOOL ReleaseCapture() {
    const HWND former = GetCapture();
    capture = nullptr;
    if (former != nullptr) SendMessageA(former, WM_CAPTURECHANGED, 0, 0);
    return TRUE;
}

HWND GetCapture() {
    return WindowIfAny(capture) != nullptr ? capture : nullptr;
}
