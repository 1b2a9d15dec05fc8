/// Copying under the names on disk, for the calls that copy and that move to another file system.
#pragma once

#include <string>

/// Copies what `from`, a descriptor, holds, with its times, and flushes it.  The copy appears under its name
/// in one step, in the place of an existing file only if it `replaces`.  -1 with errno set on failure, EEXIST
/// among them; nothing is then left behind.
int CopyToDiskPath(int from, const std::string& diskPath, bool replaces);

/// Whether a file is what a killed process has left of a copy, rather than one that is being made.
bool IsAbandonedCopy(const std::string& diskPath);

/// Removes what killed processes have left of their copies in a folder; no list shows it, and none of it was
/// ever a file of the plug-in.  What is being copied now stays.  True if there was any.
bool RemoveAbandonedCopies(const std::string& folder);
