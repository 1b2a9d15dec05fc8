#include <algorithm>
#include <cstring>

#include "win32/controls/combo_data.h"
#include "win32/controls/control_classes.h"
#include "win32/controls/control_support.h"
#include "win32/controls/edit_text.h"

namespace {

constexpr int kListId = 1000, kEditId = 1001;

const ListData& ListOf(const ComboData& data) {
    static const ListData none;
    const auto* list = DataOf<ListData>(data.list);
    return list != nullptr ? *list : none;
}

int FontHeight(HWND window, const ComboData& data) {
    const WindowContext context(window);
    const Selected font(context.context(), data.font);
    TEXTMETRICA metrics = {};
    GetTextMetricsA(context.context(), &metrics);
    return metrics.tmHeight;
}

// The height that the owner wants, for the field (item -1) or the list's items (item 0).
int AskForHeight(HWND window, int item, int height) {
    MEASUREITEMSTRUCT measure = {};
    measure.CtlType = ODT_COMBOBOX;
    measure.CtlID = static_cast<UINT>(GetDlgCtrlID(window));
    measure.itemID = static_cast<UINT>(item);
    measure.itemHeight = static_cast<UINT>(height);
    SendMessageA(GetParent(window), WM_MEASUREITEM, measure.CtlID, reinterpret_cast<LPARAM>(&measure));
    return std::clamp(static_cast<int>(measure.itemHeight), 1, 255);
}

void MeasureByFont(HWND window, ComboData& data) {
    const int height = FontHeight(window, data);
    data.fieldHeight = height + 2;
    SetListItemHeight(data.list, height);
}

void Start(HWND window, ComboData& data, const CREATESTRUCTA& creation) {
    data.list = NewList(window, TopLevelOf(window), true, kListId);
    if ((creation.style & 3) == CBS_DROPDOWN) {
        const DWORD scroll = (static_cast<DWORD>(creation.style) & CBS_AUTOHSCROLL) != 0 ? ES_AUTOHSCROLL : 0;
        const DWORD disabled = static_cast<DWORD>(creation.style) & WS_DISABLED;
        data.edit = CreateWindowExA(0, kEditClass, "", WS_CHILD | WS_VISIBLE | scroll | disabled, 0, 0, 0, 0,
                                    window, reinterpret_cast<HMENU>(static_cast<INT_PTR>(kEditId)),
                                    creation.hInstance, nullptr);
    }
    MeasureByFont(window, data);
    if (IsOwnerDrawn(window)) {
        DrawListByOwner(data.list);
        data.fieldHeight = AskForHeight(window, -1, data.fieldHeight);
        SetListItemHeight(data.list, AskForHeight(window, 0, ListOf(data).itemHeight));
    }
    data.dropHeight = creation.cy - data.fieldHeight - 2 * kComboBorder;
    FitCombo(window, data);
}

// Whoever gives the window another height means the height with its list.
void Resize(HWND window, ComboData& data) {
    if (data.isFitting || data.fieldHeight == 0) return;
    const int height = ClientRectangle(window).bottom;
    const int own = data.fieldHeight + 2 * kComboBorder;
    if (height != own) data.dropHeight = height - own;
    FitCombo(window, data);
}

void SetFont(HWND window, ComboData& data, HFONT font, bool redraw) {
    data.font = font;
    SendMessageA(data.list, WM_SETFONT, reinterpret_cast<WPARAM>(font), 0);
    if (data.edit != nullptr) SendMessageA(data.edit, WM_SETFONT, reinterpret_cast<WPARAM>(font), redraw);
    if (!IsOwnerDrawn(window)) {
        MeasureByFont(window, data);
        FitCombo(window, data);
    }
    if (redraw) Redraw(window);
}

LRESULT SetHeight(HWND window, ComboData& data, int item, int height) {
    if (height <= 0 || height > 255 || item < -1) return CB_ERR;
    if (item >= 0) {
        SetListItemHeight(data.list, height);
        return 0;
    }
    data.fieldHeight = height;
    FitCombo(window, data);
    return 0;
}

const std::string* ItemText(const ComboData& data, WPARAM item) {
    const auto& items = ListOf(data).items;
    return item < items.size() ? &items[item] : nullptr;
}

LRESULT CopyOut(const std::string& text, char* out) {
    std::memcpy(out, text.c_str(), text.size() + 1);
    return static_cast<LRESULT>(text.size());
}

LRESULT InsertItem(ComboData& data, LRESULT at, LPARAM text) {
    if (at < -1 || at > CountOf(data)) return CB_ERR;
    if (at == -1) at = CountOf(data);
    InsertListItem(data.list, static_cast<int>(at), text != 0 ? reinterpret_cast<const char*>(text) : "");
    data.settled = SelectionOf(data);
    return at;
}

LRESULT SelectItem(HWND window, ComboData& data, LRESULT item) {
    if (item < -1 || item >= CountOf(data)) return CB_ERR;
    data.settled = static_cast<int>(item);
    SelectListItem(data.list, data.settled);
    ShowComboItem(window, data, data.settled);
    return item;
}

LRESULT DeleteItem(HWND window, ComboData& data, WPARAM item) {
    if (ItemText(data, item) == nullptr) return CB_ERR;
    DeleteListItem(data.list, static_cast<int>(item));
    data.settled = SelectionOf(data);
    Redraw(window);
    return CountOf(data);
}

LRESULT Find(const ComboData& data, WPARAM after, LPARAM text, bool exact) {
    if (text == 0) return CB_ERR;
    const auto from = static_cast<SHORT>(LOWORD(after));
    return FindListItem(ListOf(data), from, reinterpret_cast<const char*>(text), exact);
}

// The CB_... messages; false for any other.
bool AnswerListMessage(HWND window, ComboData& data, UINT message, WPARAM wParam, LPARAM lParam,
                       LRESULT& answer) {
    const std::string* text = ItemText(data, wParam);
    switch (message) {
        case CB_ADDSTRING:
            answer = InsertItem(data, -1, lParam);
            return true;
        case CB_INSERTSTRING:
            answer = InsertItem(data, static_cast<LRESULT>(wParam), lParam);
            return true;
        case CB_DELETESTRING:
            answer = DeleteItem(window, data, wParam);
            return true;
        case CB_RESETCONTENT:
            SetListItems(data.list, {});
            data.settled = -1;
            ShowComboItem(window, data, -1);
            answer = 0;
            return true;
        case CB_GETCOUNT:
            answer = CountOf(data);
            return true;
        case CB_GETCURSEL:
            answer = SelectionOf(data);
            return true;
        case CB_SETCURSEL:
            answer = SelectItem(window, data, static_cast<int>(wParam));
            return true;
        case CB_GETLBTEXT:
            answer = text != nullptr ? CopyOut(*text, reinterpret_cast<char*>(lParam)) : CB_ERR;
            return true;
        case CB_GETLBTEXTLEN:
            answer = text != nullptr ? static_cast<LRESULT>(text->size()) : CB_ERR;
            return true;
        case CB_FINDSTRINGEXACT:
            answer = Find(data, wParam, lParam, true);
            return true;
        case CB_SELECTSTRING:
            answer = Find(data, wParam, lParam, false);
            if (answer >= 0) SelectItem(window, data, answer);
            return true;
        default:
            return false;
    }
}

bool AnswerFieldMessage(HWND window, ComboData& data, UINT message, WPARAM wParam, LPARAM lParam,
                        LRESULT& answer) {
    switch (message) {
        case CB_LIMITTEXT:
            if (data.edit != nullptr) SendMessageA(data.edit, EM_LIMITTEXT, wParam, lParam);
            answer = TRUE;
            return true;
        case CB_SHOWDROPDOWN:
            if (wParam != 0)
                OpenCombo(window, data);
            else if (data.isDropped)
                CloseCombo(window, data, false);
            answer = TRUE;
            return true;
        case CB_GETDROPPEDSTATE:
            answer = data.isDropped;
            return true;
        case CB_SETITEMHEIGHT:
            answer = SetHeight(window, data, static_cast<int>(wParam), static_cast<int>(lParam));
            return true;
        case CB_GETITEMHEIGHT:
            answer = static_cast<int>(wParam) == -1 ? data.fieldHeight : ListOf(data).itemHeight;
            return true;
        default:
            return false;
    }
}

LRESULT CopyText(const ComboData& data, char* out, size_t size) {
    if (data.edit != nullptr) return SendMessageA(data.edit, WM_GETTEXT, size, reinterpret_cast<LPARAM>(out));
    if (out == nullptr || size == 0) return 0;
    const std::string* text = ItemText(data, static_cast<WPARAM>(SelectionOf(data)));
    const std::string_view all = text != nullptr ? std::string_view(*text) : std::string_view();
    const std::string part(all.substr(0, WholePlace(all, std::min(size - 1, all.size()))));
    return CopyOut(part, out);
}

LRESULT TextLength(const ComboData& data) {
    if (data.edit != nullptr) return SendMessageA(data.edit, WM_GETTEXTLENGTH, 0, 0);
    const std::string* text = ItemText(data, static_cast<WPARAM>(SelectionOf(data)));
    return text != nullptr ? static_cast<LRESULT>(text->size()) : 0;
}

// Focus stands in the edit, if there is one, else in the combo box itself.
void ChangeFocus(HWND window, ComboData& data, bool focused) {
    if (focused == data.isFocused) return;
    if (!focused) CloseCombo(window, data, false);
    if (DataOf<ComboData>(window) != &data) return;
    data.isFocused = focused;
    Redraw(window);
    NotifyParent(window, focused ? CBN_SETFOCUS : CBN_KILLFOCUS);
}

void TakeEditCommand(HWND window, ComboData& data, int code) {
    switch (code) {
        case EN_SETFOCUS:
            ChangeFocus(window, data, true);
            break;
        case EN_KILLFOCUS:
            ChangeFocus(window, data, false);
            break;
        case EN_UPDATE:
            // What is typed is no item, even where it reads like one.
            data.settled = -1;
            SelectListItem(data.list, -1);
            NotifyParent(window, CBN_EDITUPDATE);
            break;
        case kEditTextFull:
            NotifyParent(window, kComboTextFull);
            break;
        case EN_CHANGE:
            NotifyParent(window, CBN_EDITCHANGE);
            break;
        default:
            break;
    }
}

void TakeCommand(HWND window, ComboData& data, int code, HWND from) {
    if (from == data.edit) {
        TakeEditCommand(window, data, code);
        return;
    }
    if (from != data.list) return;
    if (code == kListSelected)
        ChooseComboItem(window, data, SelectionOf(data), true);
    else if (code == kListCancelled)
        CloseCombo(window, data, false);
}

LRESULT DialogCode(const ComboData& data, const MSG* message) {
    LRESULT code = DLGC_WANTARROWS | DLGC_WANTCHARS;
    const bool closesList = message != nullptr && message->message == WM_KEYDOWN &&
                            (message->wParam == VK_RETURN || message->wParam == VK_ESCAPE);
    if (closesList && data.isDropped) code |= DLGC_WANTALLKEYS;
    return code;
}

} // namespace

bool IsOwnerDrawn(HWND combo) {
    return (StyleOf(combo) & CBS_OWNERDRAWFIXED) != 0;
}

int SelectionOf(const ComboData& data) {
    return ListOf(data).selected;
}

int CountOf(const ComboData& data) {
    return static_cast<int>(ListOf(data).items.size());
}

LRESULT CALLBACK ComboProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* data = KeepData<ComboData>(window, message);
    if (data == nullptr) return DefWindowProcA(window, message, wParam, lParam);
    LRESULT answer = 0;
    if (TakeComboInput(window, *data, message, wParam, lParam) ||
        AnswerListMessage(window, *data, message, wParam, lParam, answer) ||
        AnswerFieldMessage(window, *data, message, wParam, lParam, answer))
        return answer;
    switch (message) {
        case WM_CREATE:
            Start(window, *data, *reinterpret_cast<const CREATESTRUCTA*>(lParam));
            return 0;
        case WM_DESTROY:
            DestroyWindow(data->list);
            return 0;
        case WM_SIZE:
            Resize(window, *data);
            return 0;
        case WM_PAINT: {
            const PaintContext paint(window, wParam);
            PaintCombo(window, *data, paint.context());
            return 0;
        }
        case WM_ERASEBKGND:
            return 1;
        case WM_GETDLGCODE:
            return DialogCode(*data, reinterpret_cast<const MSG*>(lParam));
        case WM_SETFONT:
            SetFont(window, *data, FontOf(wParam), LOWORD(lParam) != 0);
            return 0;
        case WM_GETFONT:
            return reinterpret_cast<LRESULT>(data->font);
        case WM_SETFOCUS:
            if (data->edit != nullptr)
                SetFocus(data->edit);
            else
                ChangeFocus(window, *data, true);
            return 0;
        case WM_KILLFOCUS:
            if (data->edit == nullptr) ChangeFocus(window, *data, false);
            return 0;
        case WM_ENABLE:
            if (data->edit != nullptr) EnableWindow(data->edit, wParam != 0);
            Redraw(window);
            return 0;
        case WM_COMMAND:
            TakeCommand(window, *data, HIWORD(wParam), reinterpret_cast<HWND>(lParam));
            return 0;
        case kDrawListItem:
            DrawComboItem(window, *reinterpret_cast<const ListItemDraw*>(wParam));
            return 0;
        case WM_CTLCOLOREDIT:
        case WM_CTLCOLORSTATIC:
            return SendMessageA(GetParent(window), message, wParam, lParam);
        case WM_CTLCOLORLISTBOX:
            return SendMessageA(GetParent(window), message, wParam, lParam);
        case WM_SETTEXT:
            if (data->edit == nullptr) return CB_ERR;
            return SendMessageA(data->edit, message, wParam, lParam);
        case WM_GETTEXT:
            return CopyText(*data, reinterpret_cast<char*>(lParam), wParam);
        case WM_GETTEXTLENGTH:
            return TextLength(*data);
        default:
            return DefWindowProcA(window, message, wParam, lParam);
    }
}
