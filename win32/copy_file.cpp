#include "win32/copy_file.h"

#include <windows.h>

#include <unistd.h>

#include <array>
#include <cerrno>
#include <new>
#include <string>

#include "win32/disk_entry.h"
#include "win32/file_handles.h"
#include "win32/last_error.h"
#include "win32/path_names.h"
#include "win32/share_locks.h"
#include "win32/system_calls.h"

namespace {

// A name beside the target that no list shows, because its hourglass has no cp932 form.
std::string WorkPathBeside(const std::string& target) {
    static unsigned count = 0;
    const size_t slash = target.rfind('/');
    const std::string folder = slash == std::string::npos ? "" : target.substr(0, slash + 1);
    return folder + ".\u23F3" + std::to_string(::getpid()) + "-" + std::to_string(++count);
}

// The loops return -1 with errno set on the first failure.

int WriteAll(int file, const char* bytes, size_t count) {
    while (count > 0) {
        const ssize_t part = systemCalls->write(file, bytes, count);
        if (part < 0 && errno == EINTR) continue;
        if (part == 0) errno = ENOSPC;
        if (part <= 0) return -1;
        bytes += part;
        count -= static_cast<size_t>(part);
    }
    return 0;
}

int CopyBytes(int from, int to) {
    std::array<char, 0x10000> buffer;
    for (;;) {
        const ssize_t part = systemCalls->read(from, buffer.data(), buffer.size());
        if (part < 0 && errno == EINTR) continue;
        if (part <= 0) return static_cast<int>(part);
        if (WriteAll(to, buffer.data(), static_cast<size_t>(part)) != 0) return -1;
    }
}

int FillWorkFile(int from, const std::string& workPath) {
    struct stat status;
    if (systemCalls->fileStatus(from, &status) != 0) return -1;
    const int to = systemCalls->open(workPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (to < 0) return -1;
    const timespec times[2] = {status.st_atim, status.st_mtim};
    int result = CopyBytes(from, to);
    if (result == 0) result = systemCalls->setTimes(to, times);
    if (result == 0) result = systemCalls->flush(to);
    const int error = errno;
    if (systemCalls->close(to) != 0 && result == 0) return -1;
    errno = error;
    return result;
}

} // namespace

int CopyToDiskPath(int from, const std::string& diskPath, bool replaces) try {
    const std::string workPath = WorkPathBeside(diskPath);
    int result = FillWorkFile(from, workPath);
    if (result == 0) {
        const auto move = replaces ? systemCalls->replace : systemCalls->rename;
        result = move(workPath.c_str(), diskPath.c_str());
    }
    if (result != 0) {
        const int error = errno;
        systemCalls->remove(workPath.c_str());
        errno = error;
        return -1;
    }
    return FlushFolderOf(diskPath);
} catch (const std::bad_alloc&) { // before anything was made
    errno = ENOMEM;
    return -1;
}

BOOL CopyFileA(LPCSTR from, LPCSTR to, BOOL failIfExists) try {
    const auto source = DiskPathOfStorePath(from);
    if (!source) return FALSE;
    const auto target = DiskPathOfStorePath(to);
    if (!target) return FALSE;
    struct stat status;
    if (systemCalls->status(target->c_str(), &status) == 0) {
        if (failIfExists || S_ISDIR(status.st_mode)) {
            SetLastError(failIfExists ? ERROR_FILE_EXISTS : ERROR_ACCESS_DENIED);
            return FALSE;
        }
    }
    const HFILE file = _lopen(from, OF_READ | OF_SHARE_DENY_NONE);
    if (file == HFILE_ERROR) return FALSE;
    const RemovalLock lock(target->c_str());
    if (!lock.granted()) {
        _lclose(file);
        SetLastError(ERROR_SHARING_VIOLATION);
        return FALSE;
    }
    const int result = CopyToDiskPath(DescriptorOfHandle(file), *target, !failIfExists);
    const int error = errno;
    _lclose(file);
    if (result == 0) return TRUE;
    if (error == EEXIST) {
        SetLastError(ERROR_FILE_EXISTS);
    } else {
        SetErrorOfPath(error, target->c_str());
    }
    return FALSE;
} catch (const std::bad_alloc&) {
    return FailForMemory(FALSE);
}
