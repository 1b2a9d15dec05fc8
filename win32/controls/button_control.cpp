#include <algorithm>

#include "win32/controls/control_classes.h"
#include "win32/controls/control_support.h"

namespace {

struct ButtonData {
    HFONT font = nullptr;
    bool checked = false;
    bool pushed = false; ///< looks pressed
    bool focused = false;
    bool pressing = false; ///< the press or the space key began here and hasn't ended
};

constexpr int kCheckBox = 13; ///< pixels on each side

DWORD ButtonTypeOf(HWND window) {
    return StyleOf(window) & kButtonTypeMask;
}

bool IsCheckBox(HWND window) {
    return ButtonTypeOf(window) == BS_CHECKBOX || ButtonTypeOf(window) == BS_AUTOCHECKBOX;
}

void DrawPushButton(HWND window, const ButtonData& data, HDC context) {
    const RECT client = ClientRectangle(window);
    const bool enabled = IsWindowEnabled(window) != 0;
    RECT face = client;
    FillRect(context, &client, ControlColors(window, GetParent(window), WM_CTLCOLORBTN, context));
    if (ButtonTypeOf(window) == BS_DEFPUSHBUTTON && enabled) {
        DrawBorder(context, face, COLOR_WINDOWFRAME);
        InflateRect(&face, -1, -1);
    }
    DrawRaisedFace(context, face, data.pushed);

    const std::string text = TextOf(window);
    RECT place = client;
    if (data.pushed) OffsetRect(&place, 1, 1);
    SetBkMode(context, TRANSPARENT);
    SetTextColor(context, GetSysColor(enabled ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
    DrawTextA(context, text.c_str(), static_cast<int>(text.size()), &place,
              DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    if (!data.focused) return;
    RECT focus = client;
    InflateRect(&focus, -4, -4);
    SetTextColor(context, GetSysColor(COLOR_BTNTEXT));
    DrawFocusRect(context, &focus);
}

void DrawCheckMark(HDC context, const RECT& box, int color) {
    // Two strokes, three pixels high: down to the right, then up.
    constexpr int kTurn = 2, kColumns = 7;
    for (int column = 0; column < kColumns; ++column) {
        const int drop = column <= kTurn ? column : 2 * kTurn - column;
        const int left = box.left + 3 + column, top = box.top + 5 + drop;
        const RECT stroke = {left, top, left + 1, top + 3};
        FillRect(context, &stroke, GetSysColorBrush(color));
    }
}

void DrawCheckBox(HWND window, const ButtonData& data, HDC context) {
    const RECT client = ClientRectangle(window);
    const bool enabled = IsWindowEnabled(window) != 0;
    FillRect(context, &client, ControlColors(window, GetParent(window), WM_CTLCOLORSTATIC, context));
    RECT box = {0, (client.bottom - kCheckBox) / 2, kCheckBox, (client.bottom - kCheckBox) / 2 + kCheckBox};
    const bool isField = enabled && !data.pushed;
    FillRect(context, &box, GetSysColorBrush(isField ? COLOR_WINDOW : COLOR_BTNFACE));
    DrawBorder(context, box, enabled ? COLOR_WINDOWFRAME : COLOR_BTNSHADOW);
    if (data.checked) DrawCheckMark(context, box, enabled ? COLOR_WINDOWTEXT : COLOR_GRAYTEXT);

    const std::string text = TextOf(window);
    const int bytes = static_cast<int>(text.size());
    RECT place = {kCheckBox + 4, 0, client.right, client.bottom};
    SetBkMode(context, TRANSPARENT);
    if (!enabled) SetTextColor(context, GetSysColor(COLOR_GRAYTEXT));
    DrawTextA(context, text.c_str(), bytes, &place, DT_VCENTER | DT_SINGLELINE);
    if (!data.focused || text.empty()) return;
    RECT focus = place;
    DrawTextA(context, text.c_str(), bytes, &focus, DT_CALCRECT | DT_SINGLELINE);
    OffsetRect(&focus, 0, (client.bottom - (focus.bottom - focus.top)) / 2 - focus.top);
    InflateRect(&focus, 1, 1);
    const RECT all = focus;
    IntersectRect(&focus, &all, &client);
    SetTextColor(context, GetSysColor(COLOR_BTNTEXT));
    DrawFocusRect(context, &focus);
}

void DrawByOwner(HWND window, const ButtonData& data, HDC context, UINT action) {
    DRAWITEMSTRUCT item = {};
    item.CtlType = ODT_BUTTON;
    item.CtlID = static_cast<UINT>(GetDlgCtrlID(window));
    item.itemAction = action;
    if (data.pushed) item.itemState |= ODS_SELECTED;
    if (data.focused) item.itemState |= ODS_FOCUS;
    if (!IsWindowEnabled(window)) item.itemState |= ODS_DISABLED;
    item.hwndItem = window;
    item.hDC = context;
    item.rcItem = ClientRectangle(window);
    ControlColors(window, GetParent(window), WM_CTLCOLORBTN, context);
    SendMessageA(GetParent(window), WM_DRAWITEM, item.CtlID, reinterpret_cast<LPARAM>(&item));
}

void Draw(HWND window, const ButtonData& data, HDC context, UINT action) {
    const int saved = SaveDC(context);
    {
        const Selected font(context, data.font);
        const ButtonData now = data; // the owner's answer may destroy the button
        if (ButtonTypeOf(window) == BS_OWNERDRAW)
            DrawByOwner(window, now, context, action);
        else if (IsCheckBox(window))
            DrawCheckBox(window, now, context);
        else
            DrawPushButton(window, now, context);
    }
    RestoreDC(context, saved);
}

// A change of state shows at once, without waiting for the next paint.
void DrawNow(HWND window, const ButtonData& data, UINT action) {
    if (!IsWindowVisible(window)) return;
    const WindowContext context(window);
    Draw(window, data, context.context(), action);
}

void SetPushed(HWND window, ButtonData& data, bool pushed) {
    if (data.pushed == pushed) return;
    data.pushed = pushed;
    DrawNow(window, data, ODA_SELECT);
}

void SetChecked(HWND window, ButtonData& data, bool checked) {
    if (!IsCheckBox(window) || data.checked == checked) return;
    data.checked = checked;
    Redraw(window);
}

void Press(HWND window, ButtonData& data) {
    SetCapture(window);
    SetFocus(window);
    if (DataOf<ButtonData>(window) != &data) return; // gone, by what others do as they lose the focus
    data.pressing = true;
    SendMessageA(window, kButtonSetState, TRUE, 0);
}

// The end of a press: a click if it ends where it began.
void EndPress(HWND window, ButtonData& data, bool inside) {
    if (!data.pressing) return;
    data.pressing = false;
    const bool wasPushed = data.pushed;
    if (!wasPushed) {
        ReleaseCapture();
        return;
    }
    SendMessageA(window, kButtonSetState, FALSE, 0);
    if (DataOf<ButtonData>(window) != &data) return;
    if (inside && ButtonTypeOf(window) == BS_AUTOCHECKBOX) SetChecked(window, data, !data.checked);
    ReleaseCapture();
    if (inside) NotifyParent(window, BN_CLICKED);
}

void LoseCapture(HWND window, ButtonData& data) {
    if (!data.pressing) return;
    data.pressing = false;
    SetPushed(window, data, false);
}

void ChangeFocus(HWND window, ButtonData& data, bool focused) {
    data.focused = focused;
    if (!focused && data.pressing && GetCapture() == window) ReleaseCapture();
    if (ButtonTypeOf(window) == BS_OWNERDRAW) DrawNow(window, data, ODA_FOCUS);
    if (ButtonTypeOf(window) != BS_OWNERDRAW || !focused) Redraw(window);
}

LRESULT DialogCode(HWND window) {
    switch (ButtonTypeOf(window)) {
        case BS_PUSHBUTTON:
            return DLGC_BUTTON | DLGC_UNDEFPUSHBUTTON;
        case BS_DEFPUSHBUTTON:
            return DLGC_BUTTON | DLGC_DEFPUSHBUTTON;
        default:
            return DLGC_BUTTON;
    }
}

void SetType(HWND window, DWORD type, bool repaint) {
    const DWORD style = (StyleOf(window) & ~kButtonTypeMask) | (type & kButtonTypeMask);
    SetWindowLongPtrA(window, GWL_STYLE, static_cast<INT_PTR>(style));
    if (repaint) Redraw(window);
}

// Messages of the pointer and the keys; false for any other.
bool TakeInput(HWND window, ButtonData& data, UINT message, WPARAM wParam, LPARAM lParam) {
    const RECT client = ClientRectangle(window);
    switch (message) {
        case WM_LBUTTONDBLCLK:
            // An owner-drawn button tells of the second press itself, and has no click of it.
            if (ButtonTypeOf(window) == BS_OWNERDRAW) {
                NotifyParent(window, kButtonDoubleClicked);
                return true;
            }
            [[fallthrough]];
        case WM_LBUTTONDOWN:
            Press(window, data);
            return true;
        case WM_LBUTTONUP:
            EndPress(window, data, PtInRect(&client, PointOf(lParam)) != 0);
            return true;
        case WM_MOUSEMOVE:
            if ((wParam & MK_LBUTTON) != 0 && data.pressing && GetCapture() == window)
                SendMessageA(window, kButtonSetState, static_cast<WPARAM>(PtInRect(&client, PointOf(lParam))),
                             0);
            return true;
        case WM_KEYDOWN:
            if (wParam == VK_SPACE && !data.pressing) {
                SetCapture(window);
                data.pressing = true;
                SendMessageA(window, kButtonSetState, TRUE, 0);
            }
            return true;
        case WM_KEYUP:
            if (wParam == VK_SPACE) EndPress(window, data, true);
            return true;
        case WM_CAPTURECHANGED:
            LoseCapture(window, data);
            return true;
        default:
            return false;
    }
}

} // namespace

LRESULT CALLBACK ButtonProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* data = KeepData<ButtonData>(window, message);
    if (data == nullptr) return DefWindowProcA(window, message, wParam, lParam);
    if (TakeInput(window, *data, message, wParam, lParam)) return 0;
    switch (message) {
        case WM_PAINT: {
            const PaintContext paint(window, wParam);
            Draw(window, *data, paint.context(), ODA_DRAWENTIRE);
            return 0;
        }
        case WM_ERASEBKGND:
            return 1;
        case WM_GETDLGCODE:
            return DialogCode(window);
        case WM_SETFONT:
            data->font = FontOf(wParam);
            if (LOWORD(lParam) != 0) Redraw(window);
            return 0;
        case WM_GETFONT:
            return reinterpret_cast<LRESULT>(data->font);
        case WM_SETFOCUS:
        case WM_KILLFOCUS:
            ChangeFocus(window, *data, message == WM_SETFOCUS);
            return 0;
        case WM_ENABLE:
            Redraw(window);
            return 0;
        case WM_SETTEXT: {
            const LRESULT done = DefWindowProcA(window, message, wParam, lParam);
            Redraw(window);
            return done;
        }
        case BM_GETCHECK:
            return IsCheckBox(window) && data->checked ? BST_CHECKED : BST_UNCHECKED;
        case BM_SETCHECK:
            SetChecked(window, *data, wParam != BST_UNCHECKED);
            return 0;
        case BM_GETSTATE:
            return (data->checked ? BST_CHECKED : 0) |
                   static_cast<LRESULT>((data->pushed ? kButtonPushed : 0) |
                                        (data->focused ? kButtonFocus : 0));
        case kButtonSetState:
            SetPushed(window, *data, wParam != 0);
            return 0;
        case kButtonSetStyle:
            SetType(window, static_cast<DWORD>(wParam), lParam != 0);
            return 0;
        case BM_CLICK:
            SendMessageA(window, WM_LBUTTONDOWN, 0, 0);
            SendMessageA(window, WM_LBUTTONUP, 0, 0);
            return 0;
        default:
            return DefWindowProcA(window, message, wParam, lParam);
    }
}
