#include <cstring>
#include <string_view>

#include "win32/codepage_932.h"
#include "win32/desktop/focus.h"
#include "win32/desktop/visible_area.h"

namespace {

constexpr int kWordBytes = static_cast<int>(sizeof(INT_PTR));

bool HasExtra(const Window& window, int index) {
    return index >= 0 && static_cast<size_t>(index) + kWordBytes <= window.extra.size();
}

INT_PTR RefuseIndex() {
    SetLastError(ERROR_INVALID_INDEX);
    return 0;
}

} // namespace

INT_PTR GetWindowLongPtrA(HWND handle, int index) {
    const Window* window = WindowOf(handle);
    if (window == nullptr) return 0;
    switch (index) {
        case GWLP_WNDPROC:
            return reinterpret_cast<INT_PTR>(window->procedure);
        case GWLP_HINSTANCE:
            return reinterpret_cast<INT_PTR>(window->instance);
        case GWLP_HWNDPARENT:
            return reinterpret_cast<INT_PTR>(IsTopLevel(*window) ? window->owner : GetParent(handle));
        case GWLP_ID:
            return window->id;
        case GWL_STYLE:
            return static_cast<INT_PTR>(window->style);
        case GWL_EXSTYLE:
            return static_cast<INT_PTR>(window->extendedStyle);
        case GWLP_USERDATA:
            return window->userData;
        default:
            break;
    }
    if (!HasExtra(*window, index)) return RefuseIndex();
    INT_PTR value;
    std::memcpy(&value, window->extra.data() + index, sizeof value);
    return value;
}

INT_PTR SetWindowLongPtrA(HWND handle, int index, INT_PTR value) {
    Window* window = WindowOf(handle);
    if (window == nullptr || window->parent == nullptr) return 0;
    const INT_PTR old = GetWindowLongPtrA(handle, index);
    switch (index) {
        case GWLP_WNDPROC:
            window->procedure = reinterpret_cast<WNDPROC>(value);
            return old;
        case GWLP_HINSTANCE:
            window->instance = reinterpret_cast<HINSTANCE>(value);
            return old;
        case GWLP_ID:
            window->id = value;
            return old;
        case GWL_STYLE:
            window->style = static_cast<DWORD>(value);
            RefreshHeldContexts();
            return old;
        case GWL_EXSTYLE: // on top or not goes by SetWindowPos alone
            window->extendedStyle =
                (static_cast<DWORD>(value) & ~WS_EX_TOPMOST) | (window->extendedStyle & WS_EX_TOPMOST);
            return old;
        case GWLP_USERDATA:
            window->userData = value;
            return old;
        default:
            break;
    }
    if (!HasExtra(*window, index)) return RefuseIndex();
    std::memcpy(window->extra.data() + index, &value, sizeof value);
    return old;
}

BOOL SetWindowTextA(HWND handle, LPCSTR text) {
    if (WindowOf(handle) == nullptr) return FALSE;
    return SendMessageA(handle, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text != nullptr ? text : "")) > 0;
}

int GetWindowTextA(HWND handle, LPSTR text, int size) {
    if (size <= 0) return 0;
    text[0] = 0;
    if (WindowOf(handle) == nullptr) return 0;
    return static_cast<int>(
        SendMessageA(handle, WM_GETTEXT, static_cast<WPARAM>(size), reinterpret_cast<LPARAM>(text)));
}

int GetWindowTextLengthA(HWND handle) {
    if (WindowOf(handle) == nullptr) return 0;
    return static_cast<int>(SendMessageA(handle, WM_GETTEXTLENGTH, 0, 0));
}

int GetClassNameA(HWND handle, LPSTR name, int size) {
    const Window* window = WindowOf(handle);
    if (window == nullptr || size <= 0) return 0;
    const std::string& full = window->windowClass->name;
    const size_t bytes = std::min(full.size(), static_cast<size_t>(size) - 1);
    std::memcpy(name, full.data(), bytes);
    name[bytes] = 0;
    return static_cast<int>(bytes);
}

BOOL EnableWindow(HWND handle, BOOL enable) {
    Window* window = WindowOf(handle);
    if (window == nullptr || window->parent == nullptr) return FALSE;
    const BOOL disabled = (window->style & WS_DISABLED) != 0;
    if (disabled == !enable) return disabled;
    if (enable) {
        window->style &= ~WS_DISABLED;
    } else {
        window->style |= WS_DISABLED;
        if (GetFocus() == handle) SetFocus(nullptr);
        if ((window = WindowIfAny(handle)) != nullptr) EndCaptureOf(*window);
    }
    if (WindowIfAny(handle) != nullptr)
        SendMessageA(handle, WM_ENABLE, static_cast<WPARAM>(enable ? TRUE : FALSE), 0);
    return disabled;
}

BOOL IsWindowEnabled(HWND handle) {
    const Window* window = WindowOf(handle);
    return window != nullptr && (window->style & WS_DISABLED) == 0;
}

BOOL IsWindowVisible(HWND handle) {
    const Window* window = WindowOf(handle);
    return window != nullptr && IsShown(*window);
}

BOOL IsWindow(HWND handle) {
    return WindowIfAny(handle) != nullptr;
}
