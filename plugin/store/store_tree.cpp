#include "plugin/store/store_tree.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "plugin/store/cp932.h"
#include "plugin/store/store_names.h"

namespace {

constexpr uint64_t kCountBytes = 4;

struct Row {
    char text[kRowBytes];
};
static_assert(sizeof(Row) == kRowBytes);

Row* RowsOf(MemoryHandle rows) {
    return reinterpret_cast<Row*>(BlockBytes(rows) + kCountBytes);
}

void SetRowCount(MemoryHandle rows, int32_t count) {
    std::memcpy(BlockBytes(rows), &count, sizeof count);
}

// Rows in the order in which they come.  Once memory has run out, nothing is added and Finish gives null.
class RowCollector {
public:
    RowCollector() : rows_(NewHandle(kCountBytes, kSmallGrain)) {}

    void Add(const char* text) {
        const int32_t count = RowCount(rows_.get());
        if (rows_.get() == nullptr || count == INT32_MAX) return;
        const uint64_t bytes = kCountBytes + (static_cast<uint64_t>(count) + 1) * kRowBytes;
        const MemoryHandle grown = ResizeHandle(rows_.get(), bytes, kSmallGrain);
        if (grown == nullptr) {
            FreeHandle(rows_.get());
            return;
        }
        rows_.get() = grown;
        CopyText(RowsOf(grown)[count].text, kRowBytes, text);
        SetRowCount(grown, count + 1);
    }

    // Memory ran out elsewhere, so that the rows aren't whole.
    void Fail() { FreeHandle(rows_.get()); }

    // A row that is inserted in front of the first one that is greater comes to stand where a stable sort
    // puts it, because CompareStoreNames orders any two texts consistently.
    MemoryHandle Finish() {
        Row* rows = rows_.get() != nullptr ? RowsOf(rows_.get()) : nullptr;
        std::stable_sort(rows, rows + RowCount(rows_.get()),
                         [](const Row& a, const Row& b) { return CompareStoreNames(a.text, b.text) < 0; });
        return rows_.Release();
    }

private:
    HandleOwner rows_;
};

// Calls `visit` for each entry of a directory but itself and the one above.
template <typename Visit>
void ForEachEntry(RowCollector& rows, const char* directory, Visit visit) {
    char pattern[kFullPathBytes];
    JoinRootAndPath(directory, "*", pattern);
    WIN32_FIND_DATAA entry;
    const HANDLE search = FindFirstFileA(pattern, &entry);
    if (search == INVALID_HANDLE_VALUE) {
        if (GetLastError() == ERROR_NOT_ENOUGH_MEMORY) rows.Fail();
        return;
    }
    do {
        const char* name = entry.cFileName;
        if (std::strcmp(name, ".") != 0 && std::strcmp(name, "..") != 0) visit(entry);
    } while (FindNextFileA(search, &entry));
    if (GetLastError() == ERROR_NOT_ENOUGH_MEMORY) rows.Fail();
    FindClose(search);
}

bool IsDirectory(const WIN32_FIND_DATAA& entry) {
    return (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool IsLink(const WIN32_FIND_DATAA& entry) {
    return (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

void AddGroupOfFile(RowCollector& rows, const char* prefix, const char* name) {
    char text[kFullPathBytes];
    std::snprintf(text, sizeof text, "%s%s%s", prefix, prefix[0] != '\0' ? "\\" : "", name);
    const char* suffix = FindPart(text, kGroupSuffix);
    if (suffix == nullptr || suffix == text) return;
    text[suffix - text] = '\0';
    if (std::strcmp(text, kSearchResult) != 0) rows.Add(text);
}

// `prefix` is the directory's path below the root, as row texts have it in front.
void WalkGroups(RowCollector& rows, const char* root, const char* prefix, bool deep, bool behindLink) {
    char directory[kFullPathBytes];
    if (prefix[0] == '\0') {
        CopyText(directory, sizeof directory, root);
    } else {
        JoinRootAndPath(root, prefix, directory);
    }
    ForEachEntry(rows, directory, [&](const WIN32_FIND_DATAA& entry) {
        if (!IsDirectory(entry)) {
            AddGroupOfFile(rows, prefix, entry.cFileName);
            return;
        }
        if (!deep || entry.cFileName[0] == '.' || (behindLink && IsLink(entry))) return;
        // Rows from so deep would be cut in the middle of a folder's name, and name nothing.
        char below[kRowBytes];
        const int length = std::snprintf(below, sizeof below, "%s\\%s", prefix, entry.cFileName);
        if (length < 0 || length >= kRowBytes) return;
        WalkGroups(rows, root, below, deep, behindLink || IsLink(entry));
    });
}

} // namespace

int32_t RowCount(MemoryHandle rows) {
    int32_t count = 0;
    if (rows != nullptr) std::memcpy(&count, BlockBytes(rows), sizeof count);
    return count;
}

char* RowText(MemoryHandle rows, int32_t index) {
    return RowsOf(rows)[index].text;
}

MemoryHandle ListFolders(const char* root) {
    RowCollector rows;
    ForEachEntry(rows, root, [&rows](const WIN32_FIND_DATAA& entry) {
        if (!IsDirectory(entry) || IsHiddenFolderName(entry.cFileName)) return;
        char text[kFullPathBytes];
        std::snprintf(text, sizeof text, "\\%s\\%s\\%s", entry.cFileName, kFolderRowPart, kFolderRowGroup);
        rows.Add(text);
    });
    return rows.Finish();
}

MemoryHandle ListSubFolders(const char* root, const char* folder) {
    RowCollector rows;
    if (folder == nullptr || folder[0] == '\0') return rows.Finish();
    char directory[kFullPathBytes];
    JoinRootAndPath(root, folder, directory);
    ForEachEntry(rows, directory, [&rows, folder](const WIN32_FIND_DATAA& entry) {
        if (!IsDirectory(entry) || IsHiddenFolderName(entry.cFileName)) return;
        char text[kFullPathBytes + kRowBytes];
        std::snprintf(text, sizeof text, "\\%s\\%s\\%s", folder, entry.cFileName, kFolderRowGroup);
        rows.Add(text);
    });
    return rows.Finish();
}

MemoryHandle ListGroups(const char* root, const char* folder, const char* subFolder) {
    RowCollector rows;
    char prefix[kRowBytes] = "";
    bool deep = folder == nullptr;
    if (folder != nullptr && folder[0] != '\0') {
        deep = subFolder == nullptr;
        const bool inSubFolder = subFolder != nullptr && subFolder[0] != '\0';
        std::snprintf(prefix, sizeof prefix, "\\%s%s%s", folder, inSubFolder ? "\\" : "",
                      inSubFolder ? subFolder : "");
    }
    WalkGroups(rows, root, prefix, deep, false);
    return rows.Finish();
}
