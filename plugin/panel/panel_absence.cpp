#include "plugin/panel/panel_absence.h"

#include "plugin/dialogs/flyout.h"
#include "plugin/frame/globals.h"
#include "plugin/host/suites.h"
#include "plugin/panel/panel_build.h"
#include "plugin/panel/panel_controls.h"
#include "plugin/panel/panel_layout.h"
#include "plugin/panel/panel_window.h"

namespace {

BOOL CALLBACK PaintAnew(HWND window, LPARAM) {
    InvalidateRect(window, nullptr, TRUE);
    return TRUE;
}

/// The window may have been destroyed meanwhile, and its handle may stand for another one.
bool IsPanelThere() {
    const HWND panel = globals->panelWindow;
    return panel && IsWindow(panel) && GetDlgItem(panel, kRecordList) && GetDlgItem(panel, kFolderScroll);
}

} // namespace

void LeavePanel() {
    if (!IsPanelThere()) return;
    GivePanelWindowBack();
    // Of all controls the box alone changes by itself, and nobody would hear of it.
    const HWND combo = GetDlgItem(globals->panelWindow, kGroupCombo);
    SendMessageA(combo, CB_SHOWDROPDOWN, FALSE, 0);
    EnableWindow(combo, FALSE);
}

void ReturnToPanel(HINSTANCE instance) {
    globals->handlersDue = globals->panelRef != nullptr;
    if (!IsPanelThere()) return;
    LoadPanelIcons(instance);
    TakePanelWindow(globals->panelWindow);
    EnableWindow(GetDlgItem(globals->panelWindow, kGroupCombo), TRUE);
    PaintAnew(globals->panelWindow, 0);
    EnumChildWindows(globals->panelWindow, PaintAnew, 0);
}

void ReturnHandlers() {
    if (!globals->handlersDue) return;
    const PanelHandle panel = globals->panelRef;
    const bool flyout = PanelSuite().SetFlyoutHandler(panel, OnFlyoutCommand) == kHostNoError;
    const bool size = PanelSuite().SetSizeHandler(panel, OnPanelResized) == kHostNoError;
    if (!flyout || !size) return;
    globals->handlersDue = 0;
    OnPanelResized(panel);
}
