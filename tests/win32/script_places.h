/// Where scripts of controls and dialogs run here, and what they are expected to log.
#pragma once

#include <string>

#include "control_scripts.h"

extern const ControlPlace kScriptPlace; ///< needs an open desktop

/// One part of control_logs.txt, which the real controls wrote when they ran the same scripts.
std::string ExpectedLog(const std::string& name);
