/// What an entry of the file system is, in Windows' terms.
#pragma once

#include <windows.h>

#include <ctime>
#include <string>

struct DiskEntry {
    DWORD attributes = 0;
    FILETIME created = {}, accessed = {}, written = {};
    uint64_t bytes = 0;
};

/// Of a link, what it leads to, with REPARSE_POINT added; a link that leads nowhere counts as a file.  False
/// with errno set if there is no such entry.
bool ReadDiskEntry(const char* diskPath, DiskEntry* entry);

std::string FolderOf(const std::string& diskPath);

/// Brings the names in a file's folder to the disk; 0 or -1 with errno.  Throws nothing.
int FlushFolderOf(const std::string& diskPath);

FILETIME FileTimeOfTimespec(const timespec& time);
