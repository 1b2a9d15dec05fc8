#include "win32/last_error.h"

#include <windows.h>

#include <cerrno>
#include <cstdio>
#include <new>
#include <string>

#include "win32/system_calls.h"

namespace {
thread_local DWORD lastError = ERROR_SUCCESS;
}

DWORD GetLastError() {
    return lastError;
}
void SetLastError(DWORD code) {
    lastError = code;
}

unsigned ErrorCodeOfErrno(int error) {
    switch (error) {
        case 0:
            return ERROR_SUCCESS;
        case ENOENT:
            return ERROR_FILE_NOT_FOUND;
        case ENOTDIR:
        case ELOOP:
            return ERROR_PATH_NOT_FOUND;
        case EACCES:
        case EPERM:
        case EISDIR:
            return ERROR_ACCESS_DENIED;
        case EEXIST:
            return ERROR_ALREADY_EXISTS;
        case ENOTEMPTY:
            return ERROR_DIR_NOT_EMPTY;
        case EMFILE:
        case ENFILE:
            return ERROR_TOO_MANY_OPEN_FILES;
        case EBADF:
            return ERROR_INVALID_HANDLE;
        case ENOMEM:
            return ERROR_NOT_ENOUGH_MEMORY;
        case EXDEV:
            return ERROR_NOT_SAME_DEVICE;
        case EROFS:
            return ERROR_WRITE_PROTECT;
        case EAGAIN:
        case EBUSY:
        case ETXTBSY:
            return ERROR_SHARING_VIOLATION;
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
            return ERROR_DISK_FULL;
        case ENAMETOOLONG:
            return ERROR_FILENAME_EXCED_RANGE;
        case EILSEQ:
            return ERROR_INVALID_NAME;
        case EINVAL:
            return ERROR_INVALID_PARAMETER;
        case ENOTSUP:
        case ENOSYS:
        case ENOLCK:
            return ERROR_NOT_SUPPORTED;
        case EIO:
            return ERROR_IO_DEVICE;
        default:
            return ERROR_GEN_FAILURE;
    }
}

void SetErrorOfPath(int error, const char* diskPath) try {
    SetLastError(ErrorCodeOfErrno(error));
    if (error != ENOENT) return;
    const std::string path = diskPath;
    const size_t slash = path.rfind('/');
    if (slash == std::string::npos || slash == 0) return;
    struct stat folder;
    if (systemCalls->status(path.substr(0, slash).c_str(), &folder) != 0) SetLastError(ERROR_PATH_NOT_FOUND);
} catch (const std::bad_alloc&) {
    SetErrorOfMemory();
}

void SetErrorOfMemory() {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
}

void RefuseLoudly(const char* what) {
    std::fprintf(stderr, "win32: not offered: %s\n", what);
    SetLastError(ERROR_NOT_SUPPORTED);
}
