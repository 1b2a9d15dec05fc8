/// What the suites of placed files and of images share; for this room alone.
#pragma once

#include <string>

#include "workbench/suites/host_state.h"

namespace workbench {

/// Paths go out in the form of the platform that plug-ins know: with backslashes.  kHostNotFound for none,
/// and for one that has both separators in it.
HostError PutFile(const std::string& file, HostText& path);

} // namespace workbench
