#include "plugin/dialogs/about_dialog.h"

#include <cstdio>

#include "plugin/dialogs/dialog_texts.h"
#include "plugin/frame/globals.h"
#include "plugin/host/entry.h"

namespace {

constexpr UINT kAboutDialog = 16050;
constexpr int kVersionLabel = 6;

void ShowVersion(HWND dialog) {
    char text[sizeof globals->product + sizeof globals->version];
    std::snprintf(text, sizeof text, "%s %s", globals->product, globals->version);
    SetDlgItemTextA(dialog, kVersionLabel, text);
}

INT_PTR CALLBACK AboutProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
    switch (message) {
        case WM_INITDIALOG:
            CentreDialog(dialog);
            ShowVersion(dialog);
            return TRUE;
        case WM_COMMAND:
            // Escape and the title's button come as a cancel that the dialog has no button for.
            if (LOWORD(wParam) != IDOK && LOWORD(wParam) != IDCANCEL) return FALSE;
            EndDialog(dialog, LOWORD(wParam));
            return TRUE;
        default:
            return FALSE;
    }
}

} // namespace

INT_PTR ShowAboutDialog() {
    return RunDialog(kAboutDialog, DialogEntry<AboutProcedure>);
}
