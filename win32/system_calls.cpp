#include "win32/system_calls.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace {

int OpenFile(const char* path, int flags, mode_t mode) {
    return ::open(path, flags, mode);
}

char* RealPath(const char* path) {
    return ::realpath(path, nullptr);
}

int LockRange(int file, int command, struct flock* range) {
    return ::fcntl(file, command, range);
}

// Where the file system can't rename without overwriting, a second link does the same for files.  What is
// left, directories and file systems without links, is looked at first: another program that makes the target
// in between is not seen.
int RenameWithoutSupport(const char* from, const char* to) {
    if (::link(from, to) == 0) return ::unlink(from);
    if (errno == EEXIST) return -1;
    struct stat target;
    if (::lstat(to, &target) == 0) {
        errno = EEXIST;
        return -1;
    }
    return ::rename(from, to);
}

int RenameToNew(const char* from, const char* to) {
    if (::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) return 0;
    if (errno != EINVAL && errno != ENOSYS && errno != ENOTSUP) return -1;
    return RenameWithoutSupport(from, to);
}

int FlushDirectory(const char* path) {
    const int directory = ::open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (directory < 0) return -1;
    int result = ::fsync(directory);
    // Some file systems keep entries safe by themselves and know no such call.
    if (result != 0 && (errno == EINVAL || errno == ENOTSUP)) result = 0;
    const int error = errno;
    ::close(directory);
    errno = error;
    return result;
}

dirent* NextEntry(DIR* directory) {
    errno = 0;
    return ::readdir(directory);
}

} // namespace

const SystemCalls kSystemCalls = {
    .open = OpenFile,
    .read = ::read,
    .write = ::write,
    .readAt = ::pread,
    .writeAt = ::pwrite,
    .seek = ::lseek,
    .flush = ::fdatasync, // with the length, without the time of the last write
    .truncate = ::ftruncate,
    .lock = LockRange,
    .status = ::stat,
    .linkStatus = ::lstat,
    .fileStatus = ::fstat,
    .realPath = RealPath,
    .setTimes = ::futimens,
    .close = ::close,
    .rename = RenameToNew,
    .replace = ::rename,
    .remove = ::unlink,
    .makeDirectory = ::mkdir,
    .removeDirectory = ::rmdir,
    .flushDirectory = FlushDirectory,
    .openDirectory = ::opendir,
    .nextEntry = NextEntry,
    .closeDirectory = ::closedir,
};

const SystemCalls* systemCalls = &kSystemCalls;
