#include <algorithm>
#include <cstring>

#include "win32/controls/control_classes.h"
#include "win32/controls/control_support.h"
#include "win32/controls/edit_input.h"
#include "win32/controls/scroll_state.h"

namespace {

constexpr size_t kNoLimit = 0x7FFFFFFE;

void SetText(HWND window, EditData& data, const char* text) {
    EditText& edit = data.edit;
    edit.text = text != nullptr ? text : "";
    edit.anchor = edit.caret = 0;
    data.firstLine = 0;
    data.offsetX = 0;
    LayOut(window, data);
    Redraw(window);
    if (IsMultiline(window) || IsPartOfCombo(window)) return;
    NotifyParent(window, EN_UPDATE);
    if (DataOf<EditData>(window) == &data) NotifyParent(window, EN_CHANGE);
}

size_t CopyText(const EditData& data, char* out, size_t size) {
    if (out == nullptr || size == 0) return 0;
    const std::string& text = data.edit.text;
    const size_t bytes = WholePlace(text, std::min(size - 1, text.size()));
    std::memcpy(out, text.data(), bytes);
    out[bytes] = '\0';
    return bytes;
}

void Select(HWND window, EditData& data, int start, int end) {
    EditText& edit = data.edit;
    const auto place = [&](int byte) {
        return byte < 0 ? edit.text.size() : WholePlace(edit.text, static_cast<size_t>(byte));
    };
    const size_t from = start < 0 ? edit.caret : place(start);
    MoveCaret(window, data, from, false);
    if (start >= 0) MoveCaret(window, data, place(end), true);
}

LRESULT TellSelection(const EditData& data, DWORD* start, DWORD* end) {
    const auto from = static_cast<DWORD>(SelectionStart(data.edit));
    const auto to = static_cast<DWORD>(SelectionEnd(data.edit));
    if (start != nullptr) *start = from;
    if (end != nullptr) *end = to;
    return from > 0xFFFF || to > 0xFFFF ? -1 : MAKELONG(from, to);
}

LRESULT DialogCode(HWND window, EditData& data, const MSG* message) {
    LRESULT code = DLGC_HASSETSEL | DLGC_WANTCHARS | DLGC_WANTARROWS;
    if (IsMultiline(window)) code |= DLGC_WANTALLKEYS;
    if (message == nullptr) return code;
    data.isInDialog = true;
    const bool closesList =
        message->message == WM_KEYDOWN && (message->wParam == VK_RETURN || message->wParam == VK_ESCAPE);
    if (closesList && IsPartOfCombo(window) && SendMessageA(GetParent(window), CB_GETDROPPEDSTATE, 0, 0) != 0)
        code |= DLGC_WANTALLKEYS;
    return code;
}

void ChangeFocus(HWND window, EditData& data, bool focused) {
    data.isFocused = focused;
    data.leadByte = '\0';
    if (!focused && data.isSelecting) ReleaseCapture();
    Redraw(window);
    NotifyParent(window, focused ? EN_SETFOCUS : EN_KILLFOCUS);
}

void Change(HWND window, EditData& data) {
    LayOut(window, data);
    ShowCaretPlace(window, data);
    Redraw(window);
}

} // namespace

bool IsPartOfCombo(HWND window) {
    char name[sizeof kComboClass + 1] = {};
    return GetClassNameA(GetParent(window), name, sizeof name) != 0 && IsSameClass(name, kComboClass);
}

LRESULT CALLBACK EditProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* data = KeepData<EditData>(window, message);
    if (data == nullptr) return DefWindowProcA(window, message, wParam, lParam);
    if (TakeEditInput(window, *data, message, wParam, lParam)) return 0;
    switch (message) {
        case WM_CREATE: {
            const char* text = reinterpret_cast<const CREATESTRUCTA*>(lParam)->lpszName;
            data->edit.text = text != nullptr ? text : "";
            LayOut(window, *data);
            return 0;
        }
        case WM_PAINT: {
            const PaintContext paint(window, wParam);
            PaintEdit(window, *data, paint.context());
            return 0;
        }
        case WM_ERASEBKGND:
            return 1;
        case WM_GETDLGCODE:
            return DialogCode(window, *data, reinterpret_cast<const MSG*>(lParam));
        case WM_SETFONT:
            data->font = FontOf(wParam);
            Change(window, *data);
            return 0;
        case WM_GETFONT:
            return reinterpret_cast<LRESULT>(data->font);
        case WM_SIZE:
            Change(window, *data);
            return 0;
        case WM_SETFOCUS:
        case WM_KILLFOCUS:
            ChangeFocus(window, *data, message == WM_SETFOCUS);
            return 0;
        case WM_ENABLE:
            Redraw(window);
            return 0;
        case WM_SETTEXT:
            SetText(window, *data, reinterpret_cast<const char*>(lParam));
            return TRUE;
        case WM_GETTEXT:
            return static_cast<LRESULT>(CopyText(*data, reinterpret_cast<char*>(lParam), wParam));
        case WM_GETTEXTLENGTH:
            return static_cast<LRESULT>(data->edit.text.size());
        case EM_GETSEL:
            return TellSelection(*data, reinterpret_cast<DWORD*>(wParam), reinterpret_cast<DWORD*>(lParam));
        case EM_SETSEL:
            Select(window, *data, static_cast<int>(wParam), static_cast<int>(lParam));
            return 1;
        case EM_REPLACESEL:
            InsertText(window, *data, lParam != 0 ? reinterpret_cast<const char*>(lParam) : "", true);
            return 0;
        case EM_LIMITTEXT:
            data->edit.limit = wParam != 0 ? static_cast<size_t>(wParam) : kNoLimit;
            return 0;
        default:
            return DefWindowProcA(window, message, wParam, lParam);
    }
}
