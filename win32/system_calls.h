/// The one table of system calls that all file calls of win32/ go through, so that a test can refuse the Nth
/// call, cut a write short or stop the process there.
///
/// Every entry behaves as the POSIX call it is named after: -1 or null with errno set on failure.  Entries
/// are never null.
#pragma once

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>

#include <cstddef>

struct SystemCalls {
    int (*open)(const char* path, int flags, mode_t mode);
    ssize_t (*read)(int file, void* bytes, size_t count);
    ssize_t (*write)(int file, const void* bytes, size_t count);
    ssize_t (*readAt)(int file, void* bytes, size_t count, off_t offset);
    ssize_t (*writeAt)(int file, const void* bytes, size_t count, off_t offset);
    off_t (*seek)(int file, off_t offset, int origin);
    int (*flush)(int file);                                  ///< bytes and length are on the disk afterwards
    int (*truncate)(int file, off_t length);                 ///< cuts or extends
    int (*lock)(int file, int command, struct flock* range); ///< F_OFD_SETLK and F_OFD_GETLK
    int (*status)(const char* path, struct stat* status);    ///< follows links
    int (*linkStatus)(const char* path, struct stat* status);
    int (*fileStatus)(int file, struct stat* status);
    char* (*realPath)(const char* path); ///< without links, "." and ".."; the caller frees it
    int (*setTimes)(int file, const struct timespec times[2]);
    int (*close)(int file);

    int (*rename)(const char* from, const char* to);  ///< EEXIST if `to` exists
    int (*replace)(const char* from, const char* to); ///< in one step over an existing `to`
    int (*remove)(const char* path);
    int (*makeDirectory)(const char* path, mode_t mode);
    int (*removeDirectory)(const char* path);
    int (*flushDirectory)(const char* path); ///< its entries are on the disk afterwards

    DIR* (*openDirectory)(const char* path);
    dirent* (*nextEntry)(DIR* directory); ///< null with errno 0 at the end
    int (*closeDirectory)(DIR* directory);
};

/// The operating system's own calls.
extern const SystemCalls kSystemCalls;

/// The table in use.  Replaced by tests alone.
extern const SystemCalls* systemCalls;
