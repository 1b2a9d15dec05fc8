#include "plugin/store/store_names.h"

#include <windows.h>

#include <shlobj.h>

#include <cstdio>
#include <cstring>

#include "plugin/frame/globals.h"
#include "plugin/store/cp932.h"

namespace {

constexpr size_t kComponentBytes = 256;
constexpr size_t kDataFolderBytes = 200;
constexpr size_t kSuffixBytes = 4;
static_assert(sizeof kGroupSuffix == kSuffixBytes + 1 && sizeof kDataSuffix == kSuffixBytes + 1);

// Empty if the system doesn't say.
void GetDocumentsFolder(char* out /*MAX_PATH*/) {
    out[0] = '\0';
    LPITEMIDLIST list = nullptr;
    if (FAILED(SHGetSpecialFolderLocation(nullptr, CSIDL_PERSONAL, &list)) || list == nullptr) return;
    if (!SHGetPathFromIDListA(list, out)) out[0] = '\0';
    CoTaskMemFree(list);
}

void DropTrailingBackslash(char* text) {
    char* last = nullptr;
    for (char* at = text; *at != '\0'; at += CharacterBytes(at)) last = at;
    if (last != nullptr && *last == '\\') *last = '\0';
}

void AppendAndMakeFolder(char* path, const char* name) {
    std::strcat(path, name);
    CreateDirectoryA(path, nullptr);
}

// A suffix whose dot is the second byte of a double-byte character is none.
bool EndsWith(const char* text, const char* suffix) {
    while (*text != '\0' && std::strcmp(text, suffix) != 0) text += CharacterBytes(text);
    return *text != '\0';
}

// Copies the component that begins at `text`; returns where it ends, at a backslash or at the NUL.
const char* TakeComponent(const char* text, char* component /*kComponentBytes*/) {
    size_t length = 0;
    bool fits = true;
    while (*text != '\0' && *text != '\\') {
        const size_t bytes = CharacterBytes(text);
        fits = fits && length + bytes < kComponentBytes;
        if (fits) {
            std::memcpy(component + length, text, bytes);
            length += bytes;
        }
        text += bytes;
    }
    component[length] = '\0';
    return text;
}

// One character as CompareStoreNames weighs it: its bytes, the first one more significant.
struct Weight {
    uint8_t first, second;
};

Weight WeightOfCharacter(const char* text) {
    const auto first = static_cast<uint8_t>(text[0]);
    if (CharacterBytes(text) == 2) return {first, static_cast<uint8_t>(text[1])};
    if (first >= 'A' && first <= 'Z') return {static_cast<uint8_t>(first - 'A' + 'a'), 0};
    if (first == '\\') return {0xFF, 0};
    return {first, 0};
}

int CompareWeights(Weight a, Weight b) {
    return a.first != b.first ? int{a.first} - int{b.first} : int{a.second} - int{b.second};
}

} // namespace

int32_t GetHostDataFolder(char* out256) {
    char path[MAX_PATH + 32];
    GetDocumentsFolder(path);
    if (path[0] != '\0') {
        DropTrailingBackslash(path);
        AppendAndMakeFolder(path, "\\Adobe");
        AppendAndMakeFolder(path, "\\Illustrator");
    }
    CopyText(out256, kDataFolderBytes + 1, path);
    return 0;
}

int32_t GetDatabaseRoot(char* out256) {
    // Asked for by every operation, so the system is asked for its folders only if they matter.
    if (globals->aidbfpath[0] != '\0') {
        CopyText(out256, kNameBytes, globals->aidbfpath);
    } else {
        GetHostDataFolder(out256);
        if (out256[0] != '\0') std::strcat(out256, "\\Velquorne");
    }
    // Whoever holds the database's lock has a file open in it.
    if (out256[0] != '\0' && globals->storeLockDepth == 0) CreateDirectoryA(out256, nullptr);
    return 0;
}

void JoinRootAndPath(const char* root, const char* path, char* outFullPath) {
    outFullPath[0] = '\0';
    if (root[0] == '\0') return;
    const int length =
        std::snprintf(outFullPath, kFullPathBytes, "%s%s%s", root, path[0] == '\\' ? "" : "\\", path);
    if (length < 0 || static_cast<size_t>(length) >= kFullPathBytes) outFullPath[0] = '\0';
}

int32_t MakeGroupPath(const char* name, uint8_t* outPascal, bool dataDirectory) {
    const char* suffix = dataDirectory ? kDataSuffix : kGroupSuffix;
    char* text = reinterpret_cast<char*>(outPascal) + 1;
    size_t length = std::strlen(name);
    const size_t leading = dataDirectory && name[0] != '\\' ? 1 : 0;
    const bool hasSuffix = EndsWith(name, suffix);
    const size_t added = leading + (hasSuffix ? 0 : kSuffixBytes);
    if (length + added > 255) {
        std::memset(outPascal, 0, 2);
        return 0;
    }
    if (leading != 0) text[0] = '\\';
    std::memcpy(text + leading, name, length);
    length += leading;
    if (!hasSuffix) {
        std::memcpy(text + length, suffix, kSuffixBytes);
        length += kSuffixBytes;
    }
    text[length] = '\0';
    outPascal[0] = static_cast<uint8_t>(length);
    return 0;
}

void SplitGroupName(const char* name, char* folder, char* subFolder, char* group) {
    folder[0] = subFolder[0] = group[0] = '\0';
    if (name[0] != '\\') {
        CopyText(group, kPartBytes, name);
        return;
    }
    char parts[3][kPartBytes] = {};
    const char* rest = name + 1;
    for (int place = 0; place < 3 && *rest != '\0'; ++place) {
        char component[kComponentBytes];
        rest = TakeComponent(rest, component);
        CopyText(parts[place], kPartBytes, component);
        if (*rest == '\\') ++rest;
    }
    if (parts[2][0] != '\0') {
        CopyText(folder, kPartBytes, parts[0]);
        CopyText(subFolder, kPartBytes, parts[1]);
        CopyText(group, kPartBytes, parts[2]);
    } else if (parts[1][0] != '\0') {
        CopyText(folder, kPartBytes, parts[0]);
        CopyText(group, kPartBytes, parts[1]);
    } else {
        CopyText(group, kPartBytes, parts[0]);
    }
}

void JoinGroupName(char* folder, char* subFolder, const char* group, char* out256) {
    if (std::strcmp(group, kSearchResult) == 0) {
        CopyText(out256, kNameBytes, group);
        return;
    }
    if (std::strcmp(folder, kNoFolder) == 0) folder[0] = '\0';
    if (std::strcmp(subFolder, kNoFolder) == 0) subFolder[0] = '\0';
    if (folder[0] == '\0' && subFolder[0] == '\0') {
        CopyText(out256, kNameBytes, group);
    } else if (folder[0] != '\0' && subFolder[0] != '\0') {
        std::snprintf(out256, kNameBytes, "\\%s\\%s\\%s", folder, subFolder, group);
    } else {
        std::snprintf(out256, kNameBytes, "\\%s\\%s", folder[0] != '\0' ? folder : subFolder, group);
    }
}

int32_t SelectGroup(const char* name) {
    if (std::strcmp(name, globals->aidbfname) == 0) return 0;
    CopyText(globals->aidbfname, kNameBytes, name);
    FreeHandle(globals->curRecord);
    FreeHandle(globals->rihList);
    globals->curRecordNo = -1;
    char folder[kPartBytes], subFolder[kPartBytes], group[kPartBytes];
    SplitGroupName(globals->aidbfname, folder, subFolder, group);
    globals->findMode = kFindGroup;
    if (std::strcmp(group, kSearchResult) == 0) globals->findMode = kFindSearchResult;
    if (std::strcmp(group, kFolderSelected) == 0) globals->findMode = kFindFolder;
    return 0;
}

int16_t CompareStoreNames(const char* a, const char* b) {
    while (*a != '\0' && *b != '\0') {
        const int difference = CompareWeights(WeightOfCharacter(a), WeightOfCharacter(b));
        if (difference != 0) return static_cast<int16_t>(difference);
        // Characters of equal weight are equally wide.
        a += CharacterBytes(a);
        b += CharacterBytes(b);
    }
    if (*b != '\0') return 1;
    return *a != '\0' ? int16_t{-1} : int16_t{0};
}

bool IsHiddenFolderName(const char* name) {
    return name[0] == '.' || FindPart(name, kDataSuffix) != nullptr ||
           FindPart(name, kImageFolder) != nullptr || FindPart(name, kTrashFolder) != nullptr;
}
