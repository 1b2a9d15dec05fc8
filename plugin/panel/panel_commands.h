/// What the panel's controls do.
#pragma once

#include <windows.h>

#include <cstdint>

/// The action of a control, by its id; nothing for an id that has none.  Refused with a beep while another
/// command is at work (`menuBusy`).
void HandlePanelCommand(HWND panel, int control);

/// Has the host's action do a command of `commandPending`, within which it may change the document; returns
/// when it is done.  Needs the host's suites.
void PlayInternalAction(int command, int32_t row);

/// Edits the record behind a row.
void EditRecordOfRow(HWND panel, int32_t row);

/// Lets the user search and shows the result.  Needs the host's suites.
void SearchAndShow(HWND panel);
