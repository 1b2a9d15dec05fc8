#include "win32/controls/edit_input.h"

#include <algorithm>

#include "win32/codepage_932.h"
#include "win32/controls/clipboard.h"
#include "win32/controls/control_support.h"

namespace {

size_t PlaceAbove(HWND window, const EditData& data, int rows) {
    POINT point = PointOfPlace(window, data, data.edit.caret);
    const auto last = static_cast<int>(data.lines.size()) - 1;
    const int line = static_cast<int>(LineOfPlace(data.lines, data.edit.caret));
    const int wanted = std::clamp(line - rows, 0, last);
    if (wanted == line) return data.edit.caret;
    point.y += (wanted - line) * LineHeight(window, data);
    return PlaceAtPoint(window, data, point);
}

size_t PlaceOfKey(HWND window, const EditData& data, WPARAM key) {
    const std::string& text = data.edit.text;
    const size_t caret = data.edit.caret;
    const bool control = IsKeyDown(VK_CONTROL), many = IsMultiline(window);
    const EditLine line = data.lines[LineOfPlace(data.lines, caret)];
    const int page = static_cast<int>(VisibleLines(window, data));
    switch (key) {
        case VK_UP:
            if (many) return PlaceAbove(window, data, 1);
            [[fallthrough]];
        case VK_LEFT:
            return control ? PreviousWord(text, caret) : PreviousPlace(text, caret);
        case VK_DOWN:
            if (many) return PlaceAbove(window, data, -1);
            [[fallthrough]];
        case VK_RIGHT:
            return control ? NextWord(text, caret) : NextPlace(text, caret);
        case VK_HOME:
            return control ? 0 : line.start;
        case VK_END: {
            if (control) return text.size();
            // The end of a line that goes on below is the start of the next.
            const bool goesOn = line.end < text.size() && text[line.end] != '\r';
            return goesOn && line.end > line.start ? PreviousPlace(text, line.end) : line.end;
        }
        case VK_PRIOR:
            return many ? PlaceAbove(window, data, page) : caret;
        default:
            return many ? PlaceAbove(window, data, -page) : caret;
    }
}

void Copy(const EditData& data) {
    if (data.edit.anchor != data.edit.caret) Clipboard() = SelectedText(data.edit);
}

void Clear(HWND window, EditData& data) {
    if (data.edit.anchor != data.edit.caret) InsertText(window, data, "", false);
}

void Paste(HWND window, EditData& data) {
    std::string text = Clipboard();
    if (!IsMultiline(window)) text = text.substr(0, text.find_first_of("\r\n"));
    if (!text.empty()) InsertText(window, data, text, true);
}

void Delete(HWND window, EditData& data) {
    EditText& edit = data.edit;
    const bool shift = IsKeyDown(VK_SHIFT);
    if (edit.anchor != edit.caret) {
        if (shift) Copy(data);
    } else if (shift) {
        edit.caret = PreviousPlace(edit.text, edit.caret);
    } else {
        edit.caret =
            IsKeyDown(VK_CONTROL) ? PlaceOfKey(window, data, VK_END) : NextPlace(edit.text, edit.caret);
    }
    Clear(window, data);
}

// A multiline edit takes all keys of its dialog, and gives back those that steer it.
bool SteerDialog(HWND window, WPARAM key) {
    const HWND dialog = GetParent(window);
    if (key == VK_ESCAPE) {
        PostMessageA(dialog, WM_CLOSE, 0, 0);
    } else if (key == VK_TAB) {
        PostMessageA(dialog, kNextDialogControl, IsKeyDown(VK_SHIFT), 0);
    } else if (key == VK_RETURN && (StyleOf(window) & ES_WANTRETURN) == 0 && !IsKeyDown(VK_CONTROL)) {
        const LRESULT answer = SendMessageA(dialog, kGetDefaultId, 0, 0);
        const HWND button = HIWORD(answer) == kHasDefaultId ? GetDlgItem(dialog, LOWORD(answer)) : nullptr;
        if (button == nullptr) return true;
        PostMessageA(dialog, kNextDialogControl, reinterpret_cast<WPARAM>(button), TRUE);
        PostMessageA(button, WM_KEYDOWN, VK_RETURN, 0);
    } else {
        return false;
    }
    return true;
}

bool IsComboKey(WPARAM key) {
    return key == VK_UP || key == VK_DOWN || key == VK_PRIOR || key == VK_NEXT || key == VK_F4 ||
           key == VK_RETURN || key == VK_ESCAPE;
}

void TakeKey(HWND window, EditData& data, WPARAM key, LPARAM lParam) {
    if (IsPartOfCombo(window) && IsComboKey(key)) {
        SendMessageA(GetParent(window), WM_KEYDOWN, key, lParam);
        return;
    }
    switch (key) {
        case VK_LEFT:
        case VK_RIGHT:
        case VK_UP:
        case VK_DOWN:
        case VK_HOME:
        case VK_END:
        case VK_PRIOR:
        case VK_NEXT:
            MoveCaret(window, data, PlaceOfKey(window, data, key), IsKeyDown(VK_SHIFT));
            break;
        case VK_DELETE:
            Delete(window, data);
            break;
        default:
            if (data.isInDialog && IsMultiline(window)) SteerDialog(window, key);
            break;
    }
}

void TakeReturn(HWND window, EditData& data, WPARAM letter) {
    if (!IsMultiline(window)) return;
    const bool wanted =
        letter == '\n' || !data.isInDialog || IsKeyDown(VK_CONTROL) || (StyleOf(window) & ES_WANTRETURN) != 0;
    if (wanted) InsertText(window, data, "\r\n", true);
}

void TakeBackspace(HWND window, EditData& data) {
    if (IsKeyDown(VK_CONTROL)) return;
    EditText& edit = data.edit;
    if (edit.anchor == edit.caret) edit.caret = PreviousPlace(edit.text, edit.caret);
    Clear(window, data);
}

void TakeLetter(HWND window, EditData& data, WPARAM wParam) {
    constexpr WPARAM kControlA = 1, kControlC = 3, kControlV = 22, kControlX = 24, kDelete = 127;
    const char letter = static_cast<char>(wParam);
    if (data.leadByte != '\0') {
        const char both[2] = {data.leadByte, letter};
        data.leadByte = '\0';
        InsertText(window, data, std::string_view(both, 2), true);
        return;
    }
    switch (wParam) {
        case '\r':
        case '\n':
            TakeReturn(window, data, wParam);
            return;
        case '\t':
            if (IsMultiline(window) && !data.isInDialog) InsertText(window, data, "\t", true);
            return;
        case VK_BACK:
            TakeBackspace(window, data);
            return;
        case kControlA:
            SendMessageA(window, EM_SETSEL, 0, -1);
            return;
        case kControlC:
            Copy(data);
            return;
        case kControlV:
            Paste(window, data);
            return;
        case kControlX:
            Copy(data);
            Clear(window, data);
            return;
        default:
            break;
    }
    if (IsCp932LeadByte(static_cast<unsigned char>(letter)))
        data.leadByte = letter;
    else if (wParam >= ' ' && wParam != kDelete)
        InsertText(window, data, std::string_view(&letter, 1), true);
}

void Press(HWND window, EditData& data, WPARAM keys, POINT point) {
    SetCapture(window);
    data.isSelecting = true;
    MoveCaret(window, data, PlaceAtPoint(window, data, point), (keys & MK_SHIFT) != 0);
    if (!data.isFocused) SetFocus(window);
}

void SelectWord(HWND window, EditData& data) {
    const std::string& text = data.edit.text;
    const size_t start = PreviousWord(text, NextPlace(text, data.edit.caret));
    const size_t end = NextWord(text, start);
    MoveCaret(window, data, start, false);
    MoveCaret(window, data, end, true);
}

void Turn(HWND window, EditData& data, int delta) {
    constexpr int kLinesPerStep = 3;
    const int last = static_cast<int>(data.lines.size()) - static_cast<int>(VisibleLines(window, data));
    const int wanted = static_cast<int>(data.firstLine) - delta / WHEEL_DELTA * kLinesPerStep;
    data.firstLine = static_cast<size_t>(std::clamp(wanted, 0, std::max(last, 0)));
    Redraw(window);
}

} // namespace

void MoveCaret(HWND window, EditData& data, size_t place, bool extend) {
    data.edit.caret = place;
    if (!extend) data.edit.anchor = place;
    ShowCaretPlace(window, data);
    Redraw(window);
}

void InsertText(HWND window, EditData& data, std::string_view text, bool limited) {
    const EditText before = data.edit;
    bool fits = ReplaceSelection(data.edit, text, limited);
    LayOut(window, data);
    // A field that doesn't scroll takes no more than it can show.
    while (limited && !text.empty() && !TextFitsWindow(window, data)) {
        fits = false;
        text = text.substr(0, PreviousPlace(text, text.size()));
        data.edit = before;
        ReplaceSelection(data.edit, text, limited);
        LayOut(window, data);
    }
    if (!fits) NotifyParent(window, kEditTextFull);
    if (DataOf<EditData>(window) != &data) return;
    NotifyParent(window, EN_UPDATE);
    if (DataOf<EditData>(window) != &data) return;
    ShowCaretPlace(window, data);
    Redraw(window);
    NotifyParent(window, EN_CHANGE);
}

bool TakeEditInput(HWND window, EditData& data, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_KEYDOWN:
            TakeKey(window, data, wParam, lParam);
            return true;
        case WM_CHAR:
            TakeLetter(window, data, wParam);
            return true;
        case WM_LBUTTONDOWN:
            Press(window, data, wParam, PointOf(lParam));
            return true;
        case WM_LBUTTONDBLCLK:
            SelectWord(window, data);
            return true;
        case WM_MOUSEMOVE:
            if (data.isSelecting) MoveCaret(window, data, PlaceAtPoint(window, data, PointOf(lParam)), true);
            return true;
        case WM_LBUTTONUP:
            if (data.isSelecting) ReleaseCapture();
            return true;
        case WM_CAPTURECHANGED:
            data.isSelecting = false;
            return true;
        case WM_MOUSEWHEEL:
            if (IsPartOfCombo(window))
                SendMessageA(GetParent(window), message, wParam, lParam);
            else if (IsMultiline(window))
                Turn(window, data, HighPart(static_cast<LPARAM>(wParam)));
            return true;
        case kCut:
            Copy(data);
            Clear(window, data);
            return true;
        case kCopy:
            Copy(data);
            return true;
        case kPaste:
            Paste(window, data);
            return true;
        case kClear:
            Clear(window, data);
            return true;
        default:
            return false;
    }
}
