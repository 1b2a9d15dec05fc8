#include "win32/controls/folder_dialog.h"

#include <shlobj.h>

#include <algorithm>
#include <cstring>
#include <deque>
#include <string>
#include <utility>

#include "win32/codepage_932.h"
#include "win32/controls/control_classes.h"
#include "win32/controls/control_support.h"
#include "win32/controls/dialog.h"
#include "win32/controls/list_control.h"
#include "win32/path_names.h"
#include "win32/shell_folder.h"

namespace {

constexpr char kParentFolder[] = "..";

struct Browsing {
    const BROWSEINFOA* information;
    std::string folder; ///< that the list shows; cp932, without a backslash at its end but for the root's
};

Browsing* BrowsingOf(HWND dialog) {
    return reinterpret_cast<Browsing*>(GetWindowLongPtrA(dialog, DWLP_USER));
}

// Where the last component begins behind its backslash; 0 if the path has none.
size_t LastComponent(const std::string& path) {
    size_t start = 0;
    for (size_t i = 0; i < path.size(); i += Cp932UnitBytes(std::string_view(path).substr(i)))
        if (path[i] == '\\') start = i + 1;
    return start;
}

bool HasParent(const std::string& folder) {
    return LastComponent(folder) > 0 && folder.size() > 1;
}

std::string ParentOf(const std::string& folder) {
    const size_t start = LastComponent(folder);
    return folder.substr(0, std::max<size_t>(start - 1, 1));
}

std::string Inside(const std::string& folder, const std::string& name) {
    const bool isRoot = LastComponent(folder) == folder.size();
    return folder + (isRoot ? "" : "\\") + name;
}

bool IsFolder(const std::string& path) {
    const DWORD attributes = GetFileAttributesA(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

std::deque<std::string> FoldersIn(const std::string& folder) {
    std::deque<std::string> names;
    WIN32_FIND_DATAA entry;
    const HANDLE search = FindFirstFileA(Inside(folder, "*").c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE) return names;
    do {
        const std::string name = entry.cFileName;
        const bool isFolder = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        if (isFolder && name != "." && name != kParentFolder) names.push_back(name);
    } while (FindNextFileA(search, &entry));
    FindClose(search);
    std::sort(names.begin(), names.end());
    return names;
}

std::string MarkedName(HWND dialog) {
    const auto* list = DataOf<ListData>(GetDlgItem(dialog, kFolderDialogList));
    const bool isMarked = list != nullptr && list->selected >= 0;
    return isMarked ? list->items[static_cast<size_t>(list->selected)] : "";
}

// What OK picks.
std::string PickedPath(HWND dialog) {
    const std::string name = MarkedName(dialog), folder = BrowsingOf(dialog)->folder;
    return name.empty() || name == kParentFolder ? folder : Inside(folder, name);
}

void ShowPickedPath(HWND dialog) {
    SetDlgItemTextA(dialog, kFolderDialogPath, PickedPath(dialog).c_str());
}

void ShowFolder(HWND dialog, const std::string& folder) {
    // A path that no caller can take leads nowhere.
    if (folder.size() >= MAX_PATH || !IsFolder(folder)) {
        MessageBeep(0);
        return;
    }
    BrowsingOf(dialog)->folder = folder;
    const HWND list = GetDlgItem(dialog, kFolderDialogList);
    std::deque<std::string> names = FoldersIn(folder);
    if (HasParent(folder)) names.insert(names.begin(), kParentFolder);
    SetListItems(list, std::move(names));
    ShowPickedPath(dialog);
}

void GoUp(HWND dialog) {
    const std::string from = BrowsingOf(dialog)->folder;
    if (!HasParent(from)) return;
    ShowFolder(dialog, ParentOf(from));
    // The folder that was left is marked, as a place to go on from.
    const HWND list = GetDlgItem(dialog, kFolderDialogList);
    const auto& items = DataOf<ListData>(list)->items;
    const auto found = std::find(items.begin(), items.end(), from.substr(LastComponent(from)));
    if (found != items.end()) SelectListItem(list, static_cast<int>(found - items.begin()));
    ShowPickedPath(dialog);
}

void GoIn(HWND dialog) {
    if (MarkedName(dialog) == kParentFolder)
        GoUp(dialog);
    else
        ShowFolder(dialog, PickedPath(dialog));
}

void TakeListCommand(HWND dialog, int code) {
    if (code == kListSelected) ShowPickedPath(dialog);
    if (code == kListDoubleClicked) GoIn(dialog);
    if (code == kListLeft) GoUp(dialog);
}

// Trailing backslashes count for nothing.
std::string WithoutTail(std::string path) {
    while (path.size() > 1 && LastComponent(path) == path.size()) path.pop_back();
    return path;
}

void Start(HWND dialog, Browsing& browsing) {
    SetWindowLongPtrA(dialog, DWLP_USER, reinterpret_cast<INT_PTR>(&browsing));
    const BROWSEINFOA& information = *browsing.information;
    SetDlgItemTextA(dialog, kFolderDialogTitle,
                    information.lpszTitle != nullptr ? information.lpszTitle : "");
    const std::string documents = WithoutTail(StorePathOfUtf8(DocumentsFolder()).path);
    ShowFolder(dialog, IsFolder(documents) ? documents : "\\");
    if (information.lpfn != nullptr) information.lpfn(dialog, BFFM_INITIALIZED, 0, information.lParam);
}

INT_PTR CALLBACK FolderDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_INITDIALOG:
            Start(dialog, *reinterpret_cast<Browsing*>(lParam));
            return TRUE;
        case BFFM_SETSELECTIONA:
            if (wParam == 0 || lParam == 0) return FALSE;
            if (const std::string path = WithoutTail(reinterpret_cast<const char*>(lParam)); IsFolder(path))
                ShowFolder(dialog, path);
            return TRUE;
        case WM_COMMAND:
            if (LOWORD(wParam) == kFolderDialogList) TakeListCommand(dialog, HIWORD(wParam));
            if (LOWORD(wParam) == IDOK) {
                BrowsingOf(dialog)->folder = PickedPath(dialog);
                EndDialog(dialog, IDOK);
            }
            if (LOWORD(wParam) == IDCANCEL) EndDialog(dialog, IDCANCEL);
            return TRUE;
        default:
            return FALSE;
    }
}

DialogItem Item(const char* className, int id, const char* title, DWORD style, RECT place) {
    DialogItem item;
    item.className = className;
    item.id = id;
    item.title = title;
    item.style = style | WS_CHILD | WS_VISIBLE;
    item.x = place.left;
    item.y = place.top;
    item.width = place.right - place.left;
    item.height = place.bottom - place.top;
    return item;
}

DialogTemplate FolderDialogTemplate() {
    DialogTemplate dialog;
    dialog.style = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_CENTER | DS_MODALFRAME | DS_SETFONT;
    dialog.width = 240;
    dialog.height = 200;
    dialog.title = "Browse for Folder";
    dialog.pointSize = 9;
    dialog.charset = SHIFTJIS_CHARSET;
    dialog.face = "MS UI Gothic";
    constexpr DWORD kButton = WS_TABSTOP | BS_PUSHBUTTON;
    dialog.items = {Item(kStaticClass, kFolderDialogTitle, "", SS_LEFT | kStaticNoPrefix, {8, 7, 232, 17}),
                    Item(kStaticClass, kFolderDialogPath, "", SS_LEFT | kStaticNoPrefix, {8, 19, 232, 37}),
                    Item(kListClass, kFolderDialogList, "", WS_TABSTOP | WS_CLIPCHILDREN, {8, 40, 232, 172}),
                    Item(kButtonClass, IDOK, "OK", WS_TABSTOP | BS_DEFPUSHBUTTON, {108, 179, 166, 193}),
                    Item(kButtonClass, IDCANCEL, "Cancel", kButton, {172, 179, 232, 193})};
    return dialog;
}

} // namespace

LPITEMIDLIST SHBrowseForFolderA(BROWSEINFOA* information) {
    if (information == nullptr) return nullptr;
    Browsing browsing = {information, "\\"};
    const auto parameter = reinterpret_cast<LPARAM>(&browsing);
    if (RunDialog(nullptr, FolderDialogTemplate(), information->hwndOwner, FolderDialogProc, parameter) !=
        IDOK)
        return nullptr;
    const std::string name = browsing.folder.substr(LastComponent(browsing.folder));
    if (browsing.folder.size() >= MAX_PATH) return nullptr;
    if (information->pszDisplayName != nullptr)
        std::memcpy(information->pszDisplayName, name.c_str(), name.size() + 1);
    return NewItemList(browsing.folder);
}
