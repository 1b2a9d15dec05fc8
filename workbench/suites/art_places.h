/// Where art may be made and moved to, for the suites that make some.
#pragma once

#include "workbench/suites/suite_call.h"

namespace workbench {

/// A fault for a paint order that doesn't exist or doesn't go with the prep art.
HostError CheckPaintOrder(SuiteCall& call, int32_t paintOrder, const Art* prep);

/// Passes `error`, what the document said of a place, on.  A refused place is the plug-in's fault, unless the
/// layer is hidden or locked.
HostError Placed(SuiteCall& call, HostError error, int32_t paintOrder, const Art* prep);

} // namespace workbench
