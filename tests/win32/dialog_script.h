/// Keys at work in a dialog: where the focus goes, which button is the default one, and what the dialog's
/// procedure is told.  Runs over real dialogs too, which is where the expected log comes from.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

#include "control_scripts.h"

/// The bytes of an extended template: labels, edits of one and of more lines, a check box, a group of three
/// buttons, a disabled one, a drop-down list, OK and Cancel.
std::vector<uint8_t> ScriptDialogTemplate();

struct DialogPlace {
    ControlPlace controls;
    INT_PTR (*runDialog)(const std::vector<uint8_t>& dialog, HWND owner, DLGPROC procedure, LPARAM parameter);
};
std::string DialogScript(const DialogPlace& place);
