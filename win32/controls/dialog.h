/// Dialogs: how one runs, and what its window knows.
#pragma once

#include <windows.h>

#include <vector>

#include "win32/controls/dialog_template.h"

/// Lives as long as the call that runs the dialog.
struct DialogData {
    HWND window = nullptr;
    HFONT font = nullptr;
    SIZE units = {8, 16}; ///< pixels of 4 dialog units across and of 8 down
    HWND focus = nullptr; ///< the control that has it, or had it when the dialog was last active
    int defaultId = 0;    ///< of the button that Enter means while no button has the focus; 0: none
    HWND disabledOwner = nullptr;
    bool hasEnded = false;
    INT_PTR result = 0;
};

/// A dialog's data; null for any other window.
DialogData* DialogDataOf(HWND window);

/// Runs a dialog until EndDialog, and returns its result: -1 if it can't be made, 0 if the owner is no window
/// or the dialog is destroyed under its own feet.
INT_PTR RunDialog(HINSTANCE instance, const DialogTemplate& dialog, HWND owner, DLGPROC procedure,
                  LPARAM parameter);

/// The child of `dialog` that `window` is, or lies in; null for none.
HWND ControlOf(HWND dialog, HWND window);

/// The control that Tab, or Shift and Tab, leads to from `from` (null: the dialog's start); null for none.
HWND NextTabControl(HWND dialog, HWND from, bool backwards);
/// The same for the arrows, within a group.
HWND NextGroupControl(HWND dialog, HWND from, bool backwards);

/// Gives a control the focus as keys do: all of an edit's text is then selected.
void FocusControl(HWND control);

/// Makes the default button the one that has the focus, or the dialog's own.
void UpdateDefaultButton(DialogData& data);

/// Does what a key means to a dialog; false if the message is for the control itself.
bool TakeDialogKey(HWND dialog, const MSG& message);
