/// What an entry of the file system is, in Windows' terms.
#pragma once

#include <windows.h>

#include <ctime>

struct DiskEntry {
    DWORD attributes = 0;
    FILETIME created = {}, accessed = {}, written = {};
    uint64_t bytes = 0;
};

/// Of a link, what it leads to, with REPARSE_POINT added; a link that leads nowhere counts as a file.  False
/// with errno set if there is no such entry.
bool ReadDiskEntry(const char* diskPath, DiskEntry* entry);

FILETIME FileTimeOfTimespec(const timespec& time);
