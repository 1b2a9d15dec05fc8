#include "win32/shell_folder.h"

#include <pwd.h>
#include <shlobj.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>

#include "win32/path_names.h"
#include "win32/system_calls.h"

struct ITEMIDLIST {
    char path[MAX_PATH]; // cp932; empty if the folder has no such path
};

namespace {

constexpr size_t kMostSettings = 0x10000; ///< bytes of user-dirs.dirs, which has about ten lines

std::string& ChosenFolder() {
    static std::string folder;
    return folder;
}

std::string Environment(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::string HomeFolder() {
    const std::string home = Environment("HOME");
    if (!home.empty()) return home;
    const passwd* user = ::getpwuid(::getuid());
    return user != nullptr && user->pw_dir != nullptr ? user->pw_dir : "/";
}

// The value of `XDG_DOCUMENTS_DIR="$HOME/..."`, a line in the manner of the shell: a backslash takes the next
// character as it is, and $HOME stands at the beginning alone.
std::string UnquotedFolder(std::string_view line, const std::string& home) {
    const size_t open = line.find('"');
    if (open == std::string_view::npos) return "";
    std::string value;
    size_t i = open + 1;
    if (line.compare(i, 5, "$HOME") == 0) {
        value = home;
        i += 5;
    }
    for (; i < line.size() && line[i] != '"'; ++i) {
        if (line[i] == '\\' && i + 1 < line.size()) ++i;
        value.push_back(line[i]);
    }
    if (i >= line.size() || value.empty() || value[0] != '/') return "";
    return value;
}

// As much of a small file as can be read.
std::string TextOfFile(const std::string& path) {
    std::string text(kMostSettings, '\0');
    size_t done = 0;
    const int file = systemCalls->open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK, 0);
    while (file >= 0 && done < text.size()) {
        const ssize_t part = systemCalls->read(file, text.data() + done, text.size() - done);
        if (part < 0 && errno == EINTR) continue;
        if (part <= 0) break;
        done += static_cast<size_t>(part);
    }
    if (file >= 0) systemCalls->close(file);
    text.resize(done);
    return text;
}

std::string FolderOfDesktop(const std::string& home) {
    std::string configuration = Environment("XDG_CONFIG_HOME");
    if (configuration.empty() || configuration[0] != '/') configuration = home + "/.config";
    const std::string text = TextOfFile(configuration + "/user-dirs.dirs");
    std::string found;
    for (std::string_view rest = text; !rest.empty();) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        const size_t start = line.find_first_not_of(" \t");
        if (start == std::string_view::npos || line.compare(start, 18, "XDG_DOCUMENTS_DIR=") != 0) continue;
        const std::string folder = UnquotedFolder(line, home);
        if (!folder.empty()) found = folder;
    }
    return found;
}

} // namespace

std::string DocumentsFolder() {
    if (!ChosenFolder().empty()) return ChosenFolder();
    const std::string home = HomeFolder();
    const std::string folder = FolderOfDesktop(home);
    return folder.empty() ? home + "/Documents" : folder;
}

void SetDocumentsFolder(const char* utf8Path) {
    ChosenFolder() = utf8Path != nullptr ? utf8Path : "";
}

ITEMIDLIST* NewItemList(const std::string& path) {
    auto* list = static_cast<ITEMIDLIST*>(std::calloc(1, sizeof(ITEMIDLIST)));
    if (list != nullptr && path.size() < MAX_PATH) std::memcpy(list->path, path.c_str(), path.size());
    return list;
}

HRESULT SHGetSpecialFolderLocation(HWND /*owner*/, int folder, LPITEMIDLIST* list) try {
    *list = nullptr;
    if (folder != CSIDL_PERSONAL) return E_INVALIDARG;
    const std::string documents = DocumentsFolder();
    // On Windows the folder is always there.  If it can't be made, who uses it finds out.
    systemCalls->makeDirectory(documents.c_str(), 0777);
    const std::string path = StorePathOfUtf8(documents).path;
    *list = NewItemList(path);
    return *list != nullptr ? S_OK : E_OUTOFMEMORY;
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

BOOL SHGetPathFromIDListA(LPCITEMIDLIST list, LPSTR path) {
    *path = '\0';
    if (list == nullptr || list->path[0] == '\0') return FALSE;
    std::memcpy(path, list->path, sizeof list->path);
    return TRUE;
}

void CoTaskMemFree(LPVOID block) {
    std::free(block);
}
