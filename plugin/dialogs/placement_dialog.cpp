#include "plugin/dialogs/placement_dialog.h"

#include <windows.h>

#include <cstdint>

#include "plugin/dialogs/dialog_texts.h"
#include "plugin/dialogs/measure.h"
#include "plugin/frame/globals.h"
#include "plugin/host/entry.h"

namespace {

constexpr UINT kPlacementDialog = 16153;

enum PlacementControl : int { kSet = 1, kCancelPlacement = 2, kAcross = 9, kDown = 10 };

/// A check box and its field.
struct SnapBox {
    int control;
    int32_t Globals::*field;
};
constexpr SnapBox kSnapBoxes[] = {
    {5, &Globals::flUseGrid},
    {6, &Globals::flUseFcur},
    {7, &Globals::flUseFcrs},
    {8, &Globals::flUseFops},
};

/// An edit and its field.
struct Spacing {
    int control;
    double Globals::*field;
};
constexpr Spacing kSpacings[] = {{kAcross, &Globals::flGrWidth}, {kDown, &Globals::flGrHeight}};

void ShowSnapSettings(HWND dialog) {
    for (const SnapBox& box : kSnapBoxes)
        CheckDlgButton(dialog, box.control, globals->*box.field != 0 ? BST_CHECKED : BST_UNCHECKED);
    for (const Spacing& spacing : kSpacings) {
        char text[kMeasureBytes];
        FormatMeasure(globals->*spacing.field, text);
        SetDlgItemTextA(dialog, spacing.control, text);
    }
}

void TakeSnapSettings(HWND dialog) {
    for (const SnapBox& box : kSnapBoxes)
        globals->*box.field = IsDlgButtonChecked(dialog, box.control) == BST_CHECKED ? 1 : 0;
    for (const Spacing& spacing : kSpacings) {
        char text[kMeasureBytes];
        double points = 0;
        ReadText(dialog, spacing.control, text, kMeasureBytes - 1);
        ParseMeasure(text, &points);
        if (points > 0) globals->*spacing.field = points;
    }
}

INT_PTR CALLBACK PlacementDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
    switch (message) {
        case WM_INITDIALOG:
            CentreDialog(dialog);
            ShowSnapSettings(dialog);
            return TRUE;
        case WM_COMMAND:
            if (LOWORD(wParam) == kSet) TakeSnapSettings(dialog);
            if (LOWORD(wParam) == kSet || LOWORD(wParam) == kCancelPlacement)
                EndDialog(dialog, LOWORD(wParam));
            return TRUE;
        default:
            return FALSE;
    }
}

} // namespace

bool RunPlacementDialog() {
    return RunDialog(kPlacementDialog, DialogEntry<PlacementDialogProc>) == kSet;
}
