#include <algorithm>

#include "win32/controls/control_classes.h"
#include "win32/controls/control_support.h"

namespace {

struct StaticData {
    HFONT font = nullptr;
    HICON icon = nullptr;
};

DWORD StaticTypeOf(HWND window) {
    return StyleOf(window) & kStaticTypeMask;
}

void PaintText(HWND window, const StaticData& data, HDC context) {
    RECT client = ClientRectangle(window);
    const Selected font(context, data.font);
    FillRect(context, &client, ControlColors(window, GetParent(window), WM_CTLCOLORSTATIC, context));
    const DWORD type = StaticTypeOf(window);
    UINT format = DT_WORDBREAK;
    if (type == SS_CENTER) format |= DT_CENTER;
    if (type == SS_RIGHT) format |= DT_RIGHT;
    if ((StyleOf(window) & kStaticNoPrefix) != 0) format |= DT_NOPREFIX;
    if (!IsWindowEnabled(window)) SetTextColor(context, GetSysColor(COLOR_GRAYTEXT));
    SetBkMode(context, TRANSPARENT);
    const std::string text = TextOf(window);
    DrawTextA(context, text.c_str(), static_cast<int>(text.size()), &client, format);
}

void PaintOwnerDrawn(HWND window, const StaticData& data, HDC context) {
    const Selected font(context, data.font);
    DRAWITEMSTRUCT item = {};
    item.CtlType = ODT_STATIC;
    item.CtlID = static_cast<UINT>(GetDlgCtrlID(window));
    item.itemAction = ODA_DRAWENTIRE;
    item.itemState = IsWindowEnabled(window) ? 0 : ODS_DISABLED;
    item.hwndItem = window;
    item.hDC = context;
    item.rcItem = ClientRectangle(window);
    ControlColors(window, GetParent(window), WM_CTLCOLORSTATIC, context);
    SendMessageA(GetParent(window), WM_DRAWITEM, item.CtlID, reinterpret_cast<LPARAM>(&item));
}

void Paint(HWND window, const StaticData& data, WPARAM given) {
    const PaintContext paint(window, given);
    const HDC context = paint.context();
    const int saved = SaveDC(context);
    const RECT client = ClientRectangle(window);
    switch (StaticTypeOf(window)) {
        case SS_OWNERDRAW:
            PaintOwnerDrawn(window, data, context);
            break;
        case SS_BLACKFRAME:
            ControlColors(window, GetParent(window), WM_CTLCOLORSTATIC, context);
            DrawBorder(context, client, COLOR_WINDOWFRAME);
            break;
        case SS_ICON:
            FillRect(context, &client, ControlColors(window, GetParent(window), WM_CTLCOLORSTATIC, context));
            if (data.icon != nullptr)
                DrawIconEx(context, 0, 0, data.icon, client.right, client.bottom, 0, nullptr, DI_NORMAL);
            break;
        default:
            PaintText(window, data, context);
            break;
    }
    RestoreDC(context, saved);
}

HICON SetIcon(HWND window, StaticData& data, HICON icon) {
    const HICON old = data.icon;
    if (StaticTypeOf(window) != SS_ICON) return nullptr;
    data.icon = icon;
    if (icon != nullptr)
        SetWindowPos(window, nullptr, 0, 0, GetSystemMetrics(SM_CXICON), GetSystemMetrics(SM_CYICON),
                     SWP_NOACTIVATE | SWP_NOMOVE | SWP_NOZORDER);
    Redraw(window);
    return old;
}

bool ShowsText(HWND window) {
    const DWORD type = StaticTypeOf(window);
    return type == SS_LEFT || type == SS_CENTER || type == SS_RIGHT;
}

} // namespace

LRESULT CALLBACK StaticProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* data = KeepData<StaticData>(window, message);
    if (data == nullptr) return DefWindowProcA(window, message, wParam, lParam);
    switch (message) {
        case WM_PAINT:
            Paint(window, *data, wParam);
            return 0;
        case WM_NCHITTEST:
            // A press on a label that tells nobody is the parent's.
            return (StyleOf(window) & SS_NOTIFY) != 0 ? HTCLIENT : HTTRANSPARENT;
        case WM_ERASEBKGND:
            return 1;
        case WM_GETDLGCODE:
            return DLGC_STATIC;
        case WM_SETFONT:
            data->font = FontOf(wParam);
            if (LOWORD(lParam) != 0) Redraw(window);
            return 0;
        case WM_GETFONT:
            return reinterpret_cast<LRESULT>(data->font);
        case STM_SETICON:
            return reinterpret_cast<LRESULT>(SetIcon(window, *data, reinterpret_cast<HICON>(wParam)));
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
            if ((StyleOf(window) & SS_NOTIFY) != 0)
                NotifyParent(window, message == WM_LBUTTONDOWN ? STN_CLICKED : STN_DBLCLK);
            return 0;
        case WM_ENABLE:
            Redraw(window);
            UpdateWindow(window);
            if ((StyleOf(window) & SS_NOTIFY) != 0)
                NotifyParent(window, wParam != 0 ? kStaticEnabled : kStaticDisabled);
            return 0;
        case WM_SETTEXT: {
            const LRESULT done = DefWindowProcA(window, message, wParam, lParam);
            if (ShowsText(window)) Redraw(window);
            return done;
        }
        default:
            return DefWindowProcA(window, message, wParam, lParam);
    }
}
