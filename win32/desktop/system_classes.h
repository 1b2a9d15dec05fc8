/// The window classes that the system itself brings.
#pragma once

#include <windows.h>

/// Makes a class known before the program's own; it belongs to no module and stays.
void RegisterSystemClass(const WNDCLASSA& windowClass);

/// Registers the controls and the dialog; defined by win32/controls, called once, before the first class is
/// looked up.
void RegisterControlClasses();
