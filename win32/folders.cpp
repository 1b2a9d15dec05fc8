#include <windows.h>

#include <cerrno>
#include <new>

#include "win32/copy_file.h"
#include "win32/disk_entry.h"
#include "win32/last_error.h"
#include "win32/path_names.h"
#include "win32/share_locks.h"
#include "win32/system_calls.h"

namespace {

BOOL FailFolder(DWORD code) {
    SetLastError(code);
    return FALSE;
}

BOOL FailOnPath(const std::string& diskPath) {
    SetErrorOfPath(errno, diskPath.c_str());
    return FALSE;
}

bool LeadsToDirectory(const std::string& diskPath) {
    struct stat target;
    return systemCalls->status(diskPath.c_str(), &target) == 0 && S_ISDIR(target.st_mode);
}

bool IsLink(const std::string& diskPath) {
    struct stat link;
    return systemCalls->linkStatus(diskPath.c_str(), &link) == 0 && S_ISLNK(link.st_mode);
}

int FlushFoldersOf(const std::string& from, const std::string& to) {
    if (FlushFolderOf(to) != 0) return -1;
    return FolderOf(from) == FolderOf(to) ? 0 : FlushFolderOf(from);
}

bool MoveByCopy(const std::string& from, const std::string& to, bool replaces) {
    const int file = systemCalls->open(from.c_str(), O_RDONLY | O_CLOEXEC, 0);
    if (file < 0) return FailOnPath(from);
    const int result = CopyToDiskPath(file, to, replaces);
    const int error = errno;
    systemCalls->close(file);
    if (result != 0) {
        SetErrorOfPath(error, to.c_str());
        return false;
    }
    return systemCalls->remove(from.c_str()) == 0 || FailOnPath(from);
}

// Without the flush that WRITE_THROUGH asks for.
bool MoveOnDisk(const char* from, const std::string& source, const std::string& target, DWORD flags) {
    const bool replaces = (flags & MOVEFILE_REPLACE_EXISTING) != 0;
    const RemovalLock targetLock(target.c_str());
    if (replaces && !targetLock.granted()) return FailFolder(ERROR_ACCESS_DENIED);
    const auto move = replaces ? systemCalls->replace : systemCalls->rename;
    if (move(source.c_str(), target.c_str()) == 0) return true;
    const int error = errno;
    if (error == ENOENT && GetFileAttributesA(from) != INVALID_FILE_ATTRIBUTES)
        return FailFolder(ERROR_PATH_NOT_FOUND);
    if (error != EXDEV) {
        SetErrorOfPath(error, source.c_str());
        return false;
    }
    if ((flags & MOVEFILE_COPY_ALLOWED) == 0 || LeadsToDirectory(source))
        return FailFolder(ERROR_NOT_SAME_DEVICE);
    return MoveByCopy(source, target, replaces);
}

} // namespace

DWORD GetFileAttributesA(LPCSTR path) try {
    const auto diskPath = DiskPathOfStorePath(path);
    if (!diskPath) return INVALID_FILE_ATTRIBUTES;
    DiskEntry entry;
    if (!ReadDiskEntry(diskPath->c_str(), &entry)) {
        FailOnPath(*diskPath);
        return INVALID_FILE_ATTRIBUTES;
    }
    return entry.attributes;
} catch (const std::bad_alloc&) {
    return FailForMemory(INVALID_FILE_ATTRIBUTES);
}

BOOL CreateDirectoryA(LPCSTR path, SECURITY_ATTRIBUTES* security) try {
    if (security != nullptr) {
        RefuseLoudly("CreateDirectoryA with security attributes");
        return FALSE;
    }
    const auto diskPath = DiskPathOfStorePath(path);
    if (!diskPath) return FALSE;
    if (systemCalls->makeDirectory(diskPath->c_str(), 0777) == 0)
        return FlushFolderOf(*diskPath) == 0 ? TRUE : FailOnPath(*diskPath);
    return errno == ENOENT ? FailFolder(ERROR_PATH_NOT_FOUND) : FailOnPath(*diskPath);
} catch (const std::bad_alloc&) {
    return FailForMemory(FALSE);
}

BOOL RemoveDirectoryA(LPCSTR path) try {
    const auto diskPath = DiskPathOfStorePath(path);
    if (!diskPath) return FALSE;
    int result = systemCalls->removeDirectory(diskPath->c_str());
    if (result != 0 && (errno == ENOTEMPTY || errno == EEXIST)) {
        const int error = errno;
        if (RemoveAbandonedCopies(*diskPath))
            result = systemCalls->removeDirectory(diskPath->c_str());
        else
            errno = error;
    }
    if (result == 0) return TRUE;
    if (errno == EEXIST) return FailFolder(ERROR_DIR_NOT_EMPTY);
    if (errno != ENOTDIR) return FailOnPath(*diskPath);
    if (!IsLink(*diskPath) || !LeadsToDirectory(*diskPath)) return FailFolder(ERROR_DIRECTORY);
    return systemCalls->remove(diskPath->c_str()) == 0 ? TRUE : FailOnPath(*diskPath);
} catch (const std::bad_alloc&) {
    return FailForMemory(FALSE);
}

BOOL DeleteFileA(LPCSTR path) try {
    const auto diskPath = DiskPathOfStorePath(path);
    if (!diskPath) return FALSE;
    if (IsLink(*diskPath) && LeadsToDirectory(*diskPath)) return FailFolder(ERROR_ACCESS_DENIED);
    const RemovalLock lock(diskPath->c_str());
    if (!lock.granted()) return FailFolder(ERROR_SHARING_VIOLATION);
    return systemCalls->remove(diskPath->c_str()) == 0 ? TRUE : FailOnPath(*diskPath);
} catch (const std::bad_alloc&) {
    return FailForMemory(FALSE);
}

BOOL MoveFileA(LPCSTR from, LPCSTR to) {
    return MoveFileExA(from, to, MOVEFILE_COPY_ALLOWED);
}

BOOL MoveFileExA(LPCSTR from, LPCSTR to, DWORD flags) try {
    constexpr DWORD kOffered = MOVEFILE_REPLACE_EXISTING | MOVEFILE_COPY_ALLOWED | MOVEFILE_WRITE_THROUGH;
    if ((flags & ~kOffered) != 0 || to == nullptr) {
        RefuseLoudly("MoveFileExA with other flags or without a target");
        return FALSE;
    }
    const auto source = DiskPathOfStorePath(from);
    if (!source) return FALSE;
    const auto target = DiskPathOfStorePath(to);
    if (!target) return FALSE;
    const bool replaces = (flags & MOVEFILE_REPLACE_EXISTING) != 0;
    // As on Windows only files are replaced.
    if (replaces && *source != *target && LeadsToDirectory(*target)) return FailFolder(ERROR_ACCESS_DENIED);
    const RemovalLock sourceLock(source->c_str());
    if (!sourceLock.granted()) return FailFolder(ERROR_SHARING_VIOLATION);
    if (*source == *target) {
        if (GetFileAttributesA(from) == INVALID_FILE_ATTRIBUTES) return FALSE;
    } else if (!MoveOnDisk(from, *source, *target, flags)) {
        return FALSE;
    }
    if ((flags & MOVEFILE_WRITE_THROUGH) != 0 && FlushFoldersOf(*source, *target) != 0)
        return FailOnPath(*target);
    return TRUE;
} catch (const std::bad_alloc&) {
    return FailForMemory(FALSE);
}
