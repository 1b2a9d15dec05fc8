#include <windows.h>

#include <cerrno>
#include <new>

#include "win32/disk_entry.h"
#include "win32/file_handles.h"
#include "win32/last_error.h"
#include "win32/path_names.h"
#include "win32/share_locks.h"
#include "win32/system_calls.h"

namespace {

constexpr int kNewFileMode = 0666; // less what the user's umask takes away
constexpr int kOpenTries = 10;

HFILE FailFile(DWORD code) {
    SetLastError(code);
    return HFILE_ERROR;
}

bool FailOfErrno(int error) {
    SetLastError(ErrorCodeOfErrno(error));
    return false;
}

// Closes a descriptor that is of no use after a failure, which stays the one that is reported.
void CloseAfterFailure(int file) {
    const int error = errno;
    systemCalls->close(file);
    errno = error;
}

// Another program may replace the file between its opening and its locks: the descriptor then belongs to a
// file without a name, and what is written there is lost.  EAGAIN says so.
int CheckNameOfDescriptor(int file, const char* path) {
    struct stat opened, named;
    if (systemCalls->fileStatus(file, &opened) != 0) return errno;
    if (S_ISDIR(opened.st_mode)) return EISDIR;
    if (systemCalls->status(path, &named) != 0) return errno == ENOENT ? EAGAIN : errno;
    return opened.st_dev == named.st_dev && opened.st_ino == named.st_ino ? 0 : EAGAIN;
}

// A descriptor with its locks, or -1 with errno.
int OpenShared(const char* path, int flags, FileAccess access, FileAccess denied) {
    for (int tries = 0;; ++tries) {
        const int file = systemCalls->open(path, flags | O_NONBLOCK | O_CLOEXEC, kNewFileMode);
        if (file < 0) return -1;
        const int lockError = LockForOpening(file, access, denied);
        const int error = lockError != 0 ? lockError : CheckNameOfDescriptor(file, path);
        if (error == 0) return file;
        systemCalls->close(file);
        errno = error;
        if (lockError != 0 || error != EAGAIN || tries == kOpenTries) return -1;
    }
}

bool SharingOfMode(int mode, FileAccess* denied) {
    switch (mode & 0x70) {
        case OF_SHARE_COMPAT:
        case OF_SHARE_DENY_NONE:
            return true;
        case OF_SHARE_EXCLUSIVE:
            *denied = {.reads = true, .writes = true};
            return true;
        case OF_SHARE_DENY_WRITE:
            denied->writes = true;
            return true;
        case OF_SHARE_DENY_READ:
            denied->reads = true;
            return true;
        default:
            return false;
    }
}

off_t Position(int file) {
    return systemCalls->seek(file, 0, SEEK_CUR);
}

bool CutAtPosition(int file) {
    const off_t position = Position(file);
    if (position < 0 || systemCalls->truncate(file, position) != 0) return FailOfErrno(errno);
    return true;
}

} // namespace

HFILE _lopen(LPCSTR path, int mode) try {
    FileAccess denied;
    const int accessMode = mode & 3;
    if ((mode & ~0x73) != 0 || accessMode == 3 || !SharingOfMode(mode, &denied)) {
        return FailFile(ERROR_INVALID_PARAMETER);
    }
    const auto diskPath = DiskPathOfStorePath(path);
    if (!diskPath) return HFILE_ERROR;
    const FileAccess access = {.reads = accessMode != OF_WRITE, .writes = accessMode != OF_READ};
    // Shared locks need a descriptor that can read.
    const int file = OpenShared(diskPath->c_str(), access.writes ? O_RDWR : O_RDONLY, access, denied);
    if (file < 0) {
        SetErrorOfPath(errno, diskPath->c_str());
        return HFILE_ERROR;
    }
    return HandleOfDescriptor(file);
} catch (const std::bad_alloc&) {
    return FailForMemory(HFILE{HFILE_ERROR});
}

namespace {

// The flags of open, or -1 for what is not offered.
int FlagsOfCreation(DWORD access, DWORD disposition) {
    const int flags = (access & GENERIC_WRITE) != 0 ? O_RDWR : O_RDONLY;
    switch (disposition) {
        case CREATE_NEW:
            return flags | O_CREAT | O_EXCL;
        case OPEN_EXISTING:
            return flags;
        case OPEN_ALWAYS:
            return flags | O_CREAT;
        default:
            return -1;
    }
}

HANDLE FailToOpen(int error, const std::string& diskPath) {
    SetErrorOfPath(error, diskPath.c_str());
    return INVALID_HANDLE_VALUE;
}

} // namespace

HANDLE CreateFileA(LPCSTR path, DWORD access, DWORD sharing, SECURITY_ATTRIBUTES* security, DWORD disposition,
                   DWORD attributes, HANDLE pattern) try {
    const int flags = FlagsOfCreation(access, disposition);
    const bool offered = (access & ~GENERIC_WRITE) == GENERIC_READ &&
                         (sharing & ~DWORD{FILE_SHARE_READ | FILE_SHARE_WRITE}) == 0 && flags >= 0;
    if (!offered || security != nullptr || pattern != nullptr || attributes != FILE_ATTRIBUTE_NORMAL) {
        RefuseLoudly("CreateFileA with other arguments");
        return INVALID_HANDLE_VALUE;
    }
    const auto diskPath = DiskPathOfStorePath(path);
    if (!diskPath) return INVALID_HANDLE_VALUE;
    const FileAccess wanted = {.reads = true, .writes = (access & GENERIC_WRITE) != 0};
    const FileAccess denied = {.reads = (sharing & FILE_SHARE_READ) == 0,
                               .writes = (sharing & FILE_SHARE_WRITE) == 0};
    // Most files are there, so making one is the second try.
    int file =
        disposition == OPEN_ALWAYS ? OpenShared(diskPath->c_str(), flags & ~O_CREAT, wanted, denied) : -1;
    const bool existed = file >= 0;
    if (!existed && (disposition != OPEN_ALWAYS || errno == ENOENT))
        file = OpenShared(diskPath->c_str(), flags, wanted, denied);
    if (file < 0) return FailToOpen(errno, *diskPath);
    if (disposition != OPEN_EXISTING && !existed && FlushFolderOf(*diskPath) != 0) {
        CloseAfterFailure(file);
        return FailToOpen(errno, *diskPath);
    }
    SetLastError(existed ? ERROR_ALREADY_EXISTS : ERROR_SUCCESS);
    return reinterpret_cast<HANDLE>(static_cast<intptr_t>(HandleOfDescriptor(file)));
} catch (const std::bad_alloc&) {
    return FailForMemory(INVALID_HANDLE_VALUE);
}

BOOL CloseHandle(HANDLE handle) {
    return _lclose(static_cast<HFILE>(reinterpret_cast<intptr_t>(handle))) == 0 ? TRUE : FALSE;
}

HFILE _lcreat(LPCSTR path, int attributes) try {
    if (attributes != 0) {
        RefuseLoudly("_lcreat with attributes");
        return HFILE_ERROR;
    }
    const auto diskPath = DiskPathOfStorePath(path);
    if (!diskPath) return HFILE_ERROR;
    // Emptied only when the locks are held: another program may deny it.
    const int file = OpenShared(diskPath->c_str(), O_RDWR | O_CREAT, {.reads = true, .writes = true}, {});
    if (file < 0) {
        SetErrorOfPath(errno, diskPath->c_str());
        return HFILE_ERROR;
    }
    if (systemCalls->truncate(file, 0) != 0) {
        CloseAfterFailure(file);
        return FailFile(ErrorCodeOfErrno(errno));
    }
    return HandleOfDescriptor(file);
} catch (const std::bad_alloc&) {
    return FailForMemory(HFILE{HFILE_ERROR});
}

UINT _lread(HFILE handle, LPVOID buffer, UINT bytes) {
    const int file = DescriptorOfHandle(handle);
    UINT done = 0;
    while (done < bytes) {
        const ssize_t part = systemCalls->read(file, static_cast<char*>(buffer) + done, bytes - done);
        if (part < 0 && errno == EINTR) continue;
        if (part < 0) return static_cast<UINT>(FailFile(ErrorCodeOfErrno(errno)));
        if (part == 0) break;
        done += static_cast<UINT>(part);
    }
    return done;
}

UINT _lwrite(HFILE handle, LPCCH buffer, UINT bytes) {
    const int file = DescriptorOfHandle(handle);
    if (bytes == 0) return CutAtPosition(file) ? 0 : static_cast<UINT>(HFILE_ERROR);
    UINT done = 0;
    while (done < bytes) {
        const ssize_t part = systemCalls->write(file, buffer + done, bytes - done);
        if (part < 0 && errno == EINTR) continue;
        if (part <= 0) {
            SetLastError(part < 0 ? ErrorCodeOfErrno(errno) : ERROR_DISK_FULL);
            return done > 0 ? done : static_cast<UINT>(HFILE_ERROR);
        }
        done += static_cast<UINT>(part);
    }
    return done;
}

BOOL ReadFile(HANDLE handle, LPVOID bytes, DWORD count, LPDWORD done, OVERLAPPED* at) {
    const int file = DescriptorOfHandle(reinterpret_cast<intptr_t>(handle));
    const uint64_t place = uint64_t{at->OffsetHigh} << 32 | at->Offset;
    *done = 0;
    while (*done < count) {
        const ssize_t part = systemCalls->readAt(file, static_cast<char*>(bytes) + *done, count - *done,
                                                 static_cast<off_t>(place + *done));
        if (part < 0 && errno == EINTR) continue;
        if (part < 0) return FailOfErrno(errno);
        if (part == 0) break;
        *done += static_cast<DWORD>(part);
    }
    if (*done > 0 || count == 0) return TRUE;
    SetLastError(ERROR_HANDLE_EOF);
    return FALSE;
}

BOOL WriteFile(HANDLE handle, LPCVOID bytes, DWORD count, LPDWORD done, OVERLAPPED* at) {
    const int file = DescriptorOfHandle(reinterpret_cast<intptr_t>(handle));
    const uint64_t place = uint64_t{at->OffsetHigh} << 32 | at->Offset;
    *done = 0;
    while (*done < count) {
        const ssize_t part = systemCalls->writeAt(file, static_cast<const char*>(bytes) + *done,
                                                  count - *done, static_cast<off_t>(place + *done));
        if (part < 0 && errno == EINTR) continue;
        if (part < 0) return FailOfErrno(errno);
        if (part == 0) return FailOfErrno(ENOSPC);
        *done += static_cast<DWORD>(part);
    }
    return TRUE;
}

BOOL GetFileInformationByHandle(HANDLE handle, BY_HANDLE_FILE_INFORMATION* information) {
    struct stat status;
    if (systemCalls->fileStatus(DescriptorOfHandle(reinterpret_cast<intptr_t>(handle)), &status) != 0)
        return FailOfErrno(errno);
    const auto index = static_cast<uint64_t>(status.st_ino);
    const auto bytes = static_cast<uint64_t>(status.st_size);
    const auto volume = static_cast<uint64_t>(status.st_dev);
    *information = {.dwFileAttributes = FILE_ATTRIBUTE_ARCHIVE,
                    .ftCreationTime = FileTimeOfTimespec(status.st_ctim),
                    .ftLastAccessTime = FileTimeOfTimespec(status.st_atim),
                    .ftLastWriteTime = FileTimeOfTimespec(status.st_mtim),
                    .dwVolumeSerialNumber = static_cast<DWORD>(volume ^ volume >> 32),
                    .nFileSizeHigh = static_cast<DWORD>(bytes >> 32),
                    .nFileSizeLow = static_cast<DWORD>(bytes),
                    .nNumberOfLinks = static_cast<DWORD>(status.st_nlink),
                    .nFileIndexHigh = static_cast<DWORD>(index >> 32),
                    .nFileIndexLow = static_cast<DWORD>(index)};
    return TRUE;
}

LONG _llseek(HFILE handle, LONG offset, int origin) {
    const int file = DescriptorOfHandle(handle);
    if (origin < FILE_BEGIN || origin > FILE_END) return FailFile(ERROR_INVALID_PARAMETER);
    const off_t before = Position(file);
    if (before < 0) return FailFile(ErrorCodeOfErrno(errno));
    const int origins[] = {SEEK_SET, SEEK_CUR, SEEK_END};
    const off_t position = systemCalls->seek(file, offset, origins[origin]);
    if (position < 0) return FailFile(errno == EINVAL ? ERROR_NEGATIVE_SEEK : ErrorCodeOfErrno(errno));
    if (position > INT32_MAX) {
        systemCalls->seek(file, before, SEEK_SET);
        return FailFile(ERROR_INVALID_PARAMETER);
    }
    return static_cast<LONG>(position);
}

HFILE _lclose(HFILE handle) {
    const int file = DescriptorOfHandle(handle);
    // After EINTR the descriptor is gone all the same on Linux.
    if (systemCalls->close(file) == 0 || errno == EINTR) return 0;
    return FailFile(ErrorCodeOfErrno(errno));
}

BOOL FlushFileBuffers(HANDLE handle) {
    const int file = DescriptorOfHandle(reinterpret_cast<intptr_t>(handle));
    return systemCalls->flush(file) == 0 ? TRUE : FailOfErrno(errno);
}

BOOL SetEndOfFile(HANDLE handle) {
    return CutAtPosition(DescriptorOfHandle(reinterpret_cast<intptr_t>(handle))) ? TRUE : FALSE;
}
