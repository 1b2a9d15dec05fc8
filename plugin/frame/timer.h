/// The poll of all that the host doesn't report.
#pragma once

#include "suites/basic.h"

constexpr int32_t kTimerPeriod = 12; ///< sixtieths of a second

/// A tick: notes the basic interface that callbacks acquire the suites with, at every tick, so that it is
/// never an old one; then the front document's view and window, whether there are folders, the flyout's
/// state and the tool tip.  A tick that comes within another one, from the message loop of a dialog, only
/// notes the interface.  Needs the host's suites.
HostError OnTimer(HostMessage* message);
