#include "win32/disk_entry.h"

#include <cerrno>
#include <new>

#include "win32/system_calls.h"

bool ReadDiskEntry(const char* diskPath, DiskEntry* entry) {
    struct stat status;
    if (systemCalls->linkStatus(diskPath, &status) != 0) return false;
    *entry = {};
    if (S_ISLNK(status.st_mode)) {
        entry->attributes |= FILE_ATTRIBUTE_REPARSE_POINT;
        struct stat target;
        if (systemCalls->status(diskPath, &target) == 0) status = target;
    }
    const bool directory = S_ISDIR(status.st_mode);
    entry->attributes |= directory ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_ARCHIVE;
    if (!directory && (status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) {
        entry->attributes |= FILE_ATTRIBUTE_READONLY;
    }
    entry->created = FileTimeOfTimespec(status.st_ctim);
    entry->accessed = FileTimeOfTimespec(status.st_atim);
    entry->written = FileTimeOfTimespec(status.st_mtim);
    entry->bytes = directory ? 0 : static_cast<uint64_t>(status.st_size);
    return true;
}

std::string FolderOf(const std::string& diskPath) {
    const size_t slash = diskPath.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : diskPath.substr(0, slash);
}

int FlushFolderOf(const std::string& diskPath) try {
    return systemCalls->flushDirectory(FolderOf(diskPath).c_str());
} catch (const std::bad_alloc&) {
    errno = ENOMEM;
    return -1;
}
