/// The check of a colour that a plug-in gives.
#pragma once

#include "workbench/suites/suite_call.h"

namespace workbench {

/// A value that makes no sense comes from stored data and is refused without a fault; a handle that names
/// nothing is the plug-in's.
HostError CheckColor(SuiteCall& call, const HostColor& color);

} // namespace workbench
