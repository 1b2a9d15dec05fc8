/// Hands at work on one control at a time: what the control then tells its parent, one line for each thing.
///
/// The scripts use Windows' calls alone, so that they run over the real controls too: that is where the
/// expected logs come from.
#pragma once

#include <windows.h>

#include <string>

/// Where a script runs: the names of the classes, and the keys that are held.
struct ControlPlace {
    const char* prefix;                  ///< before every class name
    void (*holdKey)(int key, bool down); ///< seen by GetKeyState when it returns
    void (*wait)(unsigned milliseconds); ///< with messages and timers going on
};

std::string ButtonScript(const ControlPlace& place);
std::string EditScript(const ControlPlace& place);
std::string MultilineScript(const ControlPlace& place);
std::string DropDownListScript(const ControlPlace& place);
std::string DropDownScript(const ControlPlace& place);
std::string ScrollBarScript(const ControlPlace& place);
