#include <windows.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <new>
#include <string>

#include "win32/codepage_932.h"
#include "win32/disk_entry.h"
#include "win32/last_error.h"
#include "win32/path_names.h"
#include "win32/system_calls.h"

namespace {

struct Listing {
    DIR* directory; // null: there was one entry, and it has been given
    std::string folder;
};

Listing* ListingOfHandle(HANDLE handle) {
    return handle == nullptr || handle == INVALID_HANDLE_VALUE ? nullptr : static_cast<Listing*>(handle);
}

HANDLE FailListing(DWORD code) {
    SetLastError(code);
    return INVALID_HANDLE_VALUE;
}

void FillEntry(const DiskEntry& entry, const std::string& name, WIN32_FIND_DATAA* data) {
    *data = {};
    data->dwFileAttributes = entry.attributes;
    data->ftCreationTime = entry.created;
    data->ftLastAccessTime = entry.accessed;
    data->ftLastWriteTime = entry.written;
    data->nFileSizeHigh = static_cast<DWORD>(entry.bytes >> 32);
    data->nFileSizeLow = static_cast<DWORD>(entry.bytes);
    if ((entry.attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) data->dwReserved0 = IO_REPARSE_TAG_SYMLINK;
    std::memcpy(data->cFileName, name.c_str(), name.size() + 1);
}

enum class Description { kGiven, kLeftOut, kFailed };

// Left out is an entry that has no name that the plug-in could write, or is gone again.  One that only can't
// be looked at must not be missing from a list that claims to be whole.
Description DescribeEntry(const std::string& folder, const char* diskName, WIN32_FIND_DATAA* data) {
    const auto name = StoreNameOfDiskName(diskName);
    if (!name || name->size() >= MAX_PATH) return Description::kLeftOut;
    if (!IsAllowedStoreName(*name) && *name != "." && *name != "..") return Description::kLeftOut;
    DiskEntry entry;
    if (!ReadDiskEntry((folder + "/" + diskName).c_str(), &entry))
        return errno == ENOENT ? Description::kLeftOut : Description::kFailed;
    FillEntry(entry, *name, data);
    return Description::kGiven;
}

// False with GetLastError set, at the end or when the directory can't be read on.
bool NextListed(Listing& search, WIN32_FIND_DATAA* data) try {
    while (search.directory != nullptr) {
        const dirent* entry = systemCalls->nextEntry(search.directory);
        if (entry == nullptr) {
            SetLastError(errno == 0 ? ERROR_NO_MORE_FILES : ErrorCodeOfErrno(errno));
            return false;
        }
        const Description description = DescribeEntry(search.folder, entry->d_name, data);
        if (description == Description::kGiven) return true;
        if (description == Description::kFailed) {
            SetLastError(ErrorCodeOfErrno(errno));
            return false;
        }
    }
    SetLastError(ERROR_NO_MORE_FILES);
    return false;
} catch (const std::bad_alloc&) {
    return FailForMemory(false);
}

HANDLE ListFolder(const std::string& folder, WIN32_FIND_DATAA* data) {
    const auto diskPath = folder.empty() ? std::string(".") : DiskPathOfStorePath(folder.c_str());
    if (!diskPath) return INVALID_HANDLE_VALUE;
    std::unique_ptr<Listing> search(new Listing{nullptr, *diskPath});
    search->directory = systemCalls->openDirectory(diskPath->c_str());
    if (search->directory == nullptr) {
        return FailListing(errno == ENOENT || errno == ENOTDIR ? ERROR_PATH_NOT_FOUND
                                                               : ErrorCodeOfErrno(errno));
    }
    if (NextListed(*search, data)) return search.release();
    const DWORD error = GetLastError();
    FindClose(search.release());
    return FailListing(error == ERROR_NO_MORE_FILES ? ERROR_FILE_NOT_FOUND : error);
}

HANDLE DescribeOne(const char* path, WIN32_FIND_DATAA* data) {
    const auto diskPath = DiskPathOfStorePath(path);
    if (!diskPath) return INVALID_HANDLE_VALUE;
    DiskEntry entry;
    if (!ReadDiskEntry(diskPath->c_str(), &entry)) {
        SetErrorOfPath(errno, diskPath->c_str());
        return INVALID_HANDLE_VALUE;
    }
    const auto name = StoreNameOfDiskName(diskPath->substr(diskPath->rfind('/') + 1));
    if (!name || name->size() >= MAX_PATH) return FailListing(ERROR_FILE_NOT_FOUND);
    FillEntry(entry, *name, data);
    return new Listing{nullptr, ""};
}

// Where the last component begins.
size_t LastComponent(std::string_view path) {
    size_t last = 0;
    for (size_t i = 0; i < path.size(); i += Cp932UnitBytes(path.substr(i))) {
        if (path[i] == '\\') last = i + 1;
    }
    return last;
}

} // namespace

HANDLE FindFirstFileA(LPCSTR pattern, WIN32_FIND_DATAA* data) try {
    const std::string path = pattern != nullptr ? pattern : "";
    const size_t last = LastComponent(path);
    const std::string component = path.substr(last);
    if (component == "*" || component == "*.*") return ListFolder(path.substr(0, last), data);
    if (component.empty()) return FailListing(ERROR_FILE_NOT_FOUND);
    if (component.find_first_of("*?") != std::string::npos) {
        RefuseLoudly("FindFirstFileA with a pattern other than * and *.*");
        return INVALID_HANDLE_VALUE;
    }
    return DescribeOne(path.c_str(), data);
} catch (const std::bad_alloc&) {
    return FailForMemory(INVALID_HANDLE_VALUE);
}

BOOL FindNextFileA(HANDLE handle, WIN32_FIND_DATAA* data) {
    Listing* search = ListingOfHandle(handle);
    if (search == nullptr) {
        SetLastError(ERROR_INVALID_HANDLE);
        return FALSE;
    }
    return NextListed(*search, data) ? TRUE : FALSE;
}

BOOL FindClose(HANDLE handle) {
    Listing* search = ListingOfHandle(handle);
    if (search == nullptr) {
        SetLastError(ERROR_INVALID_HANDLE);
        return FALSE;
    }
    if (search->directory != nullptr) systemCalls->closeDirectory(search->directory);
    delete search;
    return TRUE;
}
