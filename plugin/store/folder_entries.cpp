#include "plugin/store/folder_entries.h"

#include <cstring>

#include "plugin/frame/globals.h"
#include "plugin/store/store_names.h"

namespace {

constexpr DWORD kSharedAccess = FILE_SHARE_READ | FILE_SHARE_WRITE;

class Search {
public:
    explicit Search(const std::string& directory)
        : handle_(FindFirstFileA(JoinPath(directory, "*").c_str(), &entry)) {}
    ~Search() {
        if (handle_ != INVALID_HANDLE_VALUE) FindClose(handle_);
    }
    Search(const Search&) = delete;
    Search& operator=(const Search&) = delete;

    bool begun() const { return handle_ != INVALID_HANDLE_VALUE; }
    bool Next() { return FindNextFileA(handle_, &entry) != FALSE; }

    WIN32_FIND_DATAA entry;

private:
    HANDLE handle_;
};

EntryState StateOfAttributes(DWORD attributes) {
    if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) return EntryState::kLink;
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? EntryState::kDirectory : EntryState::kFile;
}

bool IsMissing(DWORD reason) {
    return reason == ERROR_FILE_NOT_FOUND || reason == ERROR_PATH_NOT_FOUND;
}

HANDLE OpenFile(const std::string& path, DWORD access, DWORD disposition) {
    return CreateFileA(path.c_str(), access, access == GENERIC_READ ? kSharedAccess : 0, nullptr, disposition,
                       FILE_ATTRIBUTE_NORMAL, nullptr);
}

} // namespace

EntryState StateOfEntry(const std::string& path) {
    const DWORD attributes = GetFileAttributesA(path.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES) return StateOfAttributes(attributes);
    return IsMissing(GetLastError()) ? EntryState::kMissing : EntryState::kUnknown;
}

bool ListFolder(const std::string& directory, std::vector<FolderEntry>& entries) {
    entries.clear();
    Search search(directory);
    if (!search.begun()) return IsMissing(GetLastError());
    do {
        const std::string name = search.entry.cFileName;
        if (name == "." || name == "..") continue;
        const DWORD attributes = search.entry.dwFileAttributes;
        entries.push_back(
            {name, StateOfAttributes(attributes), (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0});
    } while (search.Next());
    return GetLastError() == ERROR_NO_MORE_FILES;
}

bool FlushFolder(const std::string& directory) {
    std::vector<FolderEntry> entries;
    if (!ListFolder(directory, entries)) return false;
    for (const FolderEntry& entry : entries) {
        if (entry.state != EntryState::kDirectory) continue; // a file may be open somewhere
        const std::string path = JoinPath(directory, entry.name);
        return MoveFileExA(path.c_str(), path.c_str(), MOVEFILE_WRITE_THROUGH) != FALSE;
    }
    return true;
}

bool MakeFolder(const std::string& path) {
    return CreateDirectoryA(path.c_str(), nullptr) || StateOfEntry(path) == EntryState::kDirectory;
}

bool WriteWholeFile(const std::string& path, std::string_view bytes) {
    if (!DeleteFileA(path.c_str()) && !IsMissing(GetLastError())) return false;
    const HANDLE file = OpenFile(path, GENERIC_READ | GENERIC_WRITE, CREATE_NEW);
    if (file == INVALID_HANDLE_VALUE) {
        DeleteFileA(path.c_str()); // made, perhaps, but its name couldn't be brought to the disk
        return false;
    }
    OVERLAPPED start{};
    DWORD done = 0;
    const auto count = static_cast<DWORD>(bytes.size());
    const bool written =
        WriteFile(file, bytes.data(), count, &done, &start) && done == count && FlushFileBuffers(file);
    if (CloseHandle(file) && written) return true;
    DeleteFileA(path.c_str());
    return false;
}

bool ReadWholeFile(const std::string& path, size_t most, std::string& bytes) {
    if (StateOfEntry(path) != EntryState::kFile) return false;
    bytes.reserve(most); // nothing may throw while the file is open
    const HANDLE file = OpenFile(path, GENERIC_READ, OPEN_EXISTING);
    if (file == INVALID_HANDLE_VALUE) return false;
    BY_HANDLE_FILE_INFORMATION information;
    bool read = GetFileInformationByHandle(file, &information) && information.nFileSizeHigh == 0 &&
                information.nFileSizeLow <= most;
    if (read) {
        OVERLAPPED start{};
        DWORD done = 0;
        bytes.resize(information.nFileSizeLow);
        read = bytes.empty() || (ReadFile(file, bytes.data(), information.nFileSizeLow, &done, &start) &&
                                 done == bytes.size());
    }
    CloseHandle(file);
    return read;
}

std::string PathInRoot(std::string_view relative) {
    char root[kNameBytes];
    GetDatabaseRoot(root);
    if (root[0] == '\0' || relative.empty()) return {};
    return std::string(root).append(relative);
}

std::string JoinPath(std::string_view directory, std::string_view name) {
    return std::string(directory).append("\\").append(name);
}

std::string DataDirectoryOf(const char* groupName) {
    uint8_t relative[kPascalPathBytes];
    MakeGroupPath(groupName, relative, true);
    return PathInRoot({reinterpret_cast<const char*>(relative) + 1, relative[0]});
}

std::string RecordDirectoryOf(const char* groupName, int32_t number) {
    const std::string data = DataDirectoryOf(groupName);
    return data.empty() ? data : JoinPath(data, std::to_string(number));
}

std::string ImageFolderPath() {
    return PathInRoot(std::string("\\") + kImageFolder);
}
