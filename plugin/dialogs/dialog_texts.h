/// What dialogs and commands have in common: the language's resources, questions, messages, the window they
/// stand over, and texts that come out of controls.
///
/// Needs the host's suites.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

constexpr int kResourceText = 255; ///< bytes of a text from the resources, its NUL among them
constexpr int kMessageBytes = 800; ///< of a text from the resources with a name of a place in it

/// The plug-in's module, for its resources; null if the host doesn't tell.
HINSTANCE ModuleInstance();

/// The number of a resource that exists in two languages, from its Japanese number: 16251 gives 17251 unless
/// the language is Japanese.
UINT LanguageResource(UINT japanese);

/// A text of the string table in the running language, by its Japanese number; empty if there is none.
void LoadText(UINT japanese, char* text /*kResourceText*/);

/// The same with its "%s" and "%d" filled in.
void LoadMessage(UINT japanese, const char* name, int32_t number, char* message /*kMessageBytes*/);

/// Runs a dialog of the running language, by its Japanese number, over the host's application window.  -1 if
/// it can't be shown; the procedure finds `parameter` in WM_INITDIALOG.
INT_PTR RunDialog(UINT japanese, DLGPROC procedure, LPARAM parameter = 0);

/// Centres a dialog on the desktop and makes it the topmost window.
void CentreDialog(HWND dialog);

/// The text of a control, cut to `most` bytes and never within a character.
/// @param text  `most` + 1 bytes
void ReadText(HWND dialog, int control, char* text, size_t most);

/// Asks by the host's alert; cp932.
bool AskYesNo(const char* question);

/// Tells by the host's alert; cp932.
void TellUser(const char* message);

/// A beep that stands for no sound in particular.
void PlainBeep();
