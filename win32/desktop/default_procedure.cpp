#include <algorithm>
#include <cstring>
#include <string_view>

#include "win32/codepage_932.h"
#include "win32/desktop/frame_painting.h"
#include "win32/desktop/visible_area.h"
#include "win32/desktop/window_change.h"

namespace {

LRESULT TakeText(Window& window, LPARAM text) {
    // A number instead of a text is a resource, which concerns a control's own procedure.
    const bool number = static_cast<uintptr_t>(text) < 0x10000;
    window.text = number ? "" : reinterpret_cast<const char*>(text);
    if (HasCaption(window.style)) InvalidateFrame(window);
    return TRUE;
}

LRESULT GiveText(const Window& window, WPARAM size, LPARAM target) {
    if (size == 0) return 0;
    std::string_view rest = window.text;
    size_t bytes = 0;
    while (const size_t unit = Cp932UnitBytes(rest)) {
        if (bytes + unit > size - 1) break;
        bytes += unit;
        rest.remove_prefix(unit);
    }
    const auto text = reinterpret_cast<char*>(target);
    std::memcpy(text, window.text.data(), bytes);
    text[bytes] = 0;
    return static_cast<LRESULT>(bytes);
}

LRESULT EraseBackground(const Window& window, WPARAM context) {
    HBRUSH brush = window.windowClass->background;
    if (brush == nullptr) return FALSE;
    RECT client;
    GetClientRect(window.handle, &client);
    FillRect(reinterpret_cast<HDC>(context), &client, brush);
    return TRUE;
}

LRESULT Paint(HWND window) {
    PAINTSTRUCT paint;
    BeginPaint(window, &paint);
    EndPaint(window, &paint);
    return 0;
}

void AnnouncePlace(const Window& window, const WINDOWPOS& position) {
    const HWND handle = window.handle;
    const RECT client = ClientOnScreen(window);
    const RECT around = ClientOnScreen(*window.parent);
    if ((position.flags & kClientPlaceKept) == 0)
        SendMessageA(handle, WM_MOVE, 0, MAKELONG(client.left - around.left, client.top - around.top));
    if ((position.flags & kClientSizeKept) == 0)
        SendMessageA(handle, WM_SIZE, SIZE_RESTORED,
                     MAKELONG(client.right - client.left, client.bottom - client.top));
}

LRESULT ChooseCursor(const Window& window, WPARAM under, LPARAM where) {
    const auto code = static_cast<SHORT>(LOWORD(where));
    if (IsChildStyle(window)) {
        const Window* parent = window.parent;
        if (parent->parent != nullptr && SendMessageA(parent->handle, WM_SETCURSOR, under, where) != 0)
            return TRUE;
        if (WindowIfAny(reinterpret_cast<HWND>(under)) != &window) return FALSE;
    }
    if (code != HTCLIENT) {
        SetCursor(LoadCursorA(nullptr, IDC_ARROW));
        return TRUE;
    }
    // A parent that is asked for its child doesn't impose its own cursor.
    const Window* asked = WindowIfAny(reinterpret_cast<HWND>(under));
    if (asked != &window || window.windowClass->cursor == nullptr) return FALSE;
    SetCursor(window.windowClass->cursor);
    return TRUE;
}

LRESULT AnswerPress(const Window& window, WPARAM top, LPARAM where) {
    if ((window.extendedStyle & WS_EX_NOACTIVATE) != 0) return MA_NOACTIVATE;
    if (IsChildStyle(window)) {
        const LRESULT answer = SendMessageA(window.parent->handle, WM_MOUSEACTIVATE, top, where);
        if (answer != 0) return answer;
    }
    return MA_ACTIVATE;
}

LRESULT ControlColors(UINT message, WPARAM context) {
    const bool field = message == WM_CTLCOLOREDIT || message == WM_CTLCOLORLISTBOX;
    const int color = message == WM_CTLCOLORSCROLLBAR ? COLOR_SCROLLBAR
                      : field                         ? COLOR_WINDOW
                                                      : COLOR_BTNFACE;
    const auto target = reinterpret_cast<HDC>(context);
    SetTextColor(target, GetSysColor(COLOR_WINDOWTEXT));
    SetBkColor(target, GetSysColor(color));
    return reinterpret_cast<LRESULT>(GetSysColorBrush(color));
}

LRESULT ProcessSystemKey(HWND window, WPARAM key) {
    if (key != VK_F4 || GetKeyState(VK_MENU) >= 0) return 0;
    Window* from = WindowIfAny(window);
    if (from != nullptr) PostMessageA(TopLevelOf(*from).handle, WM_CLOSE, 0, 0);
    return 0;
}

LRESULT ProcessFrameMessage(Window& window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_NCHITTEST:
            return FrameHitTest(window,
                                {static_cast<SHORT>(LOWORD(lParam)), static_cast<SHORT>(HIWORD(lParam))});
        case WM_NCPAINT:
            PaintFrame(window);
            return 0;
        case WM_NCLBUTTONDOWN:
        case WM_NCLBUTTONDBLCLK:
            if (wParam == HTCAPTION) DragByCaption(window.handle);
            if (wParam == HTCLOSE) PressCloseBox(window.handle);
            return 0;
        default:
            return 0;
    }
}

LRESULT ProcessInputMessage(const Window& window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_SETCURSOR:
            return ChooseCursor(window, wParam, lParam);
        case WM_MOUSEACTIVATE:
            return AnswerPress(window, wParam, lParam);
        case WM_MOUSEWHEEL:
            return IsChildStyle(window) ? SendMessageA(window.parent->handle, message, wParam, lParam) : 0;
        case WM_SYSKEYDOWN:
            return ProcessSystemKey(window.handle, wParam);
        default:
            return 0;
    }
}

} // namespace

LRESULT DefWindowProcA(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
    Window* window = WindowOf(handle);
    if (window == nullptr) return 0;
    switch (message) {
        case WM_NCCREATE:
            TakeText(*window, reinterpret_cast<LPARAM>(reinterpret_cast<CREATESTRUCTA*>(lParam)->lpszName));
            return TRUE;
        case WM_SETTEXT:
            return TakeText(*window, lParam);
        case WM_GETTEXT:
            return GiveText(*window, wParam, lParam);
        case WM_GETTEXTLENGTH:
            return static_cast<LRESULT>(window->text.size());
        case WM_CLOSE:
            DestroyWindow(handle);
            return 0;
        case WM_PAINT:
            return Paint(handle);
        case WM_ERASEBKGND:
            return EraseBackground(*window, wParam);
        case WM_ACTIVATE:
            if (LOWORD(wParam) != WA_INACTIVE) SetFocus(handle);
            return 0;
        case WM_WINDOWPOSCHANGED:
            AnnouncePlace(*window, *reinterpret_cast<const WINDOWPOS*>(lParam));
            return 0;
        default:
            break;
    }
    if (message >= WM_CTLCOLOREDIT && message <= WM_CTLCOLORSTATIC) return ControlColors(message, wParam);
    const bool frame = message == WM_NCHITTEST || message == WM_NCPAINT || message == WM_NCLBUTTONDOWN ||
                       message == WM_NCLBUTTONDBLCLK;
    return frame ? ProcessFrameMessage(*window, message, wParam, lParam)
                 : ProcessInputMessage(*window, message, wParam, lParam);
}
