#include "win32/copy_file.h"

#include <windows.h>

#include <unistd.h>

#include <array>
#include <cerrno>
#include <memory>
#include <new>
#include <string>
#include <string_view>

#include "win32/disk_entry.h"
#include "win32/file_handles.h"
#include "win32/last_error.h"
#include "win32/path_names.h"
#include "win32/share_locks.h"
#include "win32/system_calls.h"

namespace {

// How the name of a copy in the making begins: no list shows it, because the hourglass has no cp932 form.
constexpr std::string_view kWorkPrefix = ".\u23F3";
constexpr int kMostWorkFiles = 1000; ///< that killed processes with our number can have left in a folder

std::string WorkPathBeside(const std::string& target) {
    static unsigned count = 0;
    const size_t slash = target.rfind('/');
    const std::string folder = slash == std::string::npos ? "" : target.substr(0, slash + 1);
    return folder + std::string(kWorkPrefix) + std::to_string(::getpid()) + "-" + std::to_string(++count);
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

// A new file beside the target, held by locks so that nobody takes it for one that was left behind.
int OpenWorkFile(const std::string& target, std::string& workPath) {
    for (int tries = 0; tries < kMostWorkFiles; ++tries) {
        workPath = WorkPathBeside(target);
        const int file = systemCalls->open(workPath.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (file < 0 && errno == EEXIST) continue;
        if (file >= 0) LockForOpening(file, {.writes = true}, {.reads = true, .writes = true});
        return file;
    }
    errno = EBUSY;
    return -1;
}

int FillWorkFile(int from, int to) {
    struct stat status = {};
    int result = systemCalls->fileStatus(from, &status);
    if (result == 0) result = CopyBytes(from, to);
    const timespec times[2] = {status.st_atim, status.st_mtim};
    if (result == 0) result = systemCalls->setTimes(to, times);
    if (result == 0) result = systemCalls->flush(to);
    const int error = errno;
    if (systemCalls->close(to) != 0 && result == 0) return -1;
    errno = error;
    return result;
}

} // namespace

int CopyToDiskPath(int from, const std::string& diskPath, bool replaces) try {
    std::string workPath;
    const int file = OpenWorkFile(diskPath, workPath);
    if (file < 0) return -1;
    int result = FillWorkFile(from, file);
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

bool IsAbandonedCopy(const std::string& diskPath) {
    const size_t slash = diskPath.rfind('/');
    const size_t name = slash == std::string::npos ? 0 : slash + 1;
    return std::string_view(diskPath).substr(name).starts_with(kWorkPrefix) &&
           RemovalLock(diskPath.c_str()).granted();
}

bool RemoveAbandonedCopies(const std::string& folder) try {
    const std::unique_ptr<DIR, int (*)(DIR*)> directory(systemCalls->openDirectory(folder.c_str()),
                                                        systemCalls->closeDirectory);
    if (directory == nullptr) return false;
    bool removed = false;
    while (const dirent* entry = systemCalls->nextEntry(directory.get())) {
        if (!std::string_view(entry->d_name).starts_with(kWorkPrefix)) continue;
        const std::string path = folder + "/" + entry->d_name;
        const RemovalLock lock(path.c_str());
        if (lock.granted() && systemCalls->remove(path.c_str()) == 0) removed = true;
    }
    return removed;
} catch (const std::bad_alloc&) {
    return false;
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
