#include "plugin/panel/panel_window.h"

#include <algorithm>

#include "plugin/frame/globals.h"
#include "plugin/host/entry.h"
#include "plugin/panel/paint_controls.h"
#include "plugin/panel/paint_folders.h"
#include "plugin/panel/paint_records.h"
#include "plugin/panel/panel_commands.h"
#include "plugin/panel/panel_controls.h"
#include "plugin/panel/splitter.h"

namespace {

LRESULT PassOn(HWND panel, UINT message, WPARAM wParam, LPARAM lParam) {
    if (!globals || !globals->oldPanelProc) return DefWindowProcA(panel, message, wParam, lParam);
    return CallWindowProcA(globals->oldPanelProc, panel, message, wParam, lParam);
}

/// True for what is painted here alone; an icon button goes on to the host.
bool PaintControl(const DRAWITEMSTRUCT& item) {
    switch (item.CtlID) {
        case kRecordList:
            PaintRecordList(item.hDC, item.hwndItem);
            return true;
        case kFolderList:
            PaintFolderList(item.hDC, item.hwndItem);
            return true;
        case kGroupCombo:
            PaintComboItem(item);
            return true;
        case kOriginControl:
            PaintOriginControl(item);
            return true;
        default:
            PaintIconButton(item);
            return false;
    }
}

constexpr int kPage = 5; ///< lines

void ScrollList(HWND panel, HWND bar, int barId, WPARAM wParam) {
    SCROLLINFO state{};
    state.cbSize = sizeof state;
    state.fMask = SIF_RANGE | SIF_POS;
    GetScrollInfo(bar, SB_CTL, &state);
    const int target = ScrollTarget(state.nPos, {state.nMin, state.nMax}, LOWORD(wParam), HIWORD(wParam));
    if (target == state.nPos) return;
    state.fMask = SIF_POS;
    state.nPos = std::max(state.nMin, std::min(target, state.nMax));
    SetScrollInfo(bar, SB_CTL, &state, TRUE);
    InvalidateRect(GetDlgItem(panel, barId - 1), nullptr, FALSE);
}

/// True if the bar is one of the panel's lists'.
bool HandleScroll(HWND panel, HWND bar, WPARAM wParam) {
    const int id = bar ? GetDlgCtrlID(bar) : 0;
    if (id != kRecordScroll && id != kFolderScroll) return false;
    ScrollList(panel, bar, id, wParam);
    return true;
}

LRESULT ColorStatic(HDC context) {
    SetBkMode(context, TRANSPARENT);
    SetTextColor(context, ThemeColor(globals->panelTextColor));
    return reinterpret_cast<LRESULT>(globals->panelBrush);
}

} // namespace

void TakePanelWindow(HWND panel) {
    const auto ours = reinterpret_cast<INT_PTR>(PanelWindowProc);
    globals->panelWindow = panel;
    if (GetWindowLongPtrA(panel, GWLP_WNDPROC) == ours) return;
    globals->oldPanelProc = reinterpret_cast<WNDPROC>(SetWindowLongPtrA(panel, GWLP_WNDPROC, ours));
}

void GivePanelWindowBack() {
    if (!globals->oldPanelProc || !IsWindow(globals->panelWindow)) return;
    SetWindowLongPtrA(globals->panelWindow, GWLP_WNDPROC, reinterpret_cast<INT_PTR>(globals->oldPanelProc));
}

int ScrollTarget(int position, ScrollRange range, WORD low, WORD high) {
    switch (low) {
        case SB_LINEUP:
            return position - 1;
        case SB_LINEDOWN:
            return position + 1;
        case SB_PAGEUP:
            return position - kPage;
        case SB_PAGEDOWN:
            return position + kPage;
        case SB_THUMBPOSITION:
            return high;
        case SB_TOP:
            return range.minimum;
        case SB_BOTTOM:
            return range.maximum;
        default:
            return position;
    }
}

namespace {

LRESULT Handle(HWND panel, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_COMMAND:
            HandlePanelCommand(panel, LOWORD(wParam));
            return 0;
        case WM_LBUTTONDOWN:
            DragSplitter(panel);
            break;
        case WM_VSCROLL:
            if (HandleScroll(panel, reinterpret_cast<HWND>(lParam), wParam)) return 0;
            break;
        case WM_DRAWITEM:
            if (PaintControl(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam))) return 1;
            break;
        case WM_CTLCOLORSTATIC:
            if (globals->panelBrush) return ColorStatic(reinterpret_cast<HDC>(wParam));
            break;
        default:
            break;
    }
    return PassOn(panel, message, wParam, lParam);
}

} // namespace

LRESULT CALLBACK PanelWindowProc(HWND panel, UINT message, WPARAM wParam, LPARAM lParam) {
    if (!globals) return PassOn(panel, message, wParam, lParam);
    return AtEntry<LRESULT>(0, [=] { return Handle(panel, message, wParam, lParam); });
}
