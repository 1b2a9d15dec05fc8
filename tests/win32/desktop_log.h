/// Windows that write down the messages they get.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

/// A class whose procedure notes the messages that tests look at, and passes all on to DefWindowProcA.
void RegisterLogClass();
void ForgetLogClass();

/// A window of that class, noted under a name that must stay.
HWND MakeLogged(const char* name, DWORD extendedStyle, DWORD style, const RECT& place, HWND parent);

/// What has been noted since the last call.
std::vector<std::string> TakeLog();

/// Takes and dispatches messages until none is left and the script of hands is at its end.
class HeadlessDisplay;
void Pump(HeadlessDisplay& hands);
