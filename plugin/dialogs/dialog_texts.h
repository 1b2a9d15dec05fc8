/// What dialogs and commands have in common: the language's resources, questions, messages, the window they
/// stand over.
///
/// Needs the host's suites.
#pragma once

#include <windows.h>

#include <cstddef>

constexpr int kResourceText = 255; ///< bytes of a text from the resources, its NUL among them

/// The plug-in's module, for its resources; null if the host doesn't tell.
HINSTANCE ModuleInstance();

/// The number of a resource that exists in two languages, from its Japanese number: 16251 gives 17251 unless
/// the language is Japanese.
UINT LanguageResource(UINT japanese);

/// A text of the string table in the running language, by its Japanese number.
void LoadText(UINT japanese, char* text /*kResourceText*/);

/// Runs a dialog of the running language, by its Japanese number, over the host's application window.
INT_PTR RunDialog(UINT japanese, DLGPROC procedure);

/// Centres a dialog on the desktop and makes it the topmost window.
void CentreDialog(HWND dialog);

/// Asks by the host's alert; cp932.
bool AskYesNo(const char* question);
