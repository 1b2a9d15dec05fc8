#include "plugin/dialogs/path_dialog.h"

#include <shlobj.h>

#include <cstring>

#include "plugin/dialogs/dialog_texts.h"
#include "plugin/dialogs/folder_commands.h"
#include "plugin/frame/globals.h"
#include "plugin/host/entry.h"
#include "plugin/store/store_names.h"

namespace {

constexpr UINT kPathDialog = 16157;
constexpr size_t kMostPathBytes = 254;

enum PathControl : int { kTakePath = 1, kCancelPath = 2, kPath = 5, kBrowse = 7, kClear = 8 };

void ShowRoots(HWND dialog) {
    SendDlgItemMessageA(dialog, kPath, CB_LIMITTEXT, kMostPathBytes, 0);
    for (const auto& root : globals->aidbfpathEx) {
        if (root[0] == '\0') break;
        SendDlgItemMessageA(dialog, kPath, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(root));
    }
    SetDlgItemTextA(dialog, kPath, globals->aidbfpath);
}

int CALLBACK OnPicker(HWND picker, UINT message, LPARAM, LPARAM start) {
    if (message == BFFM_INITIALIZED) SendMessageA(picker, BFFM_SETSELECTIONA, TRUE, start);
    return 0;
}

// A path that a field can't hold is none that could be chosen.
void BrowseForFolder(HWND dialog) {
    char start[kNameBytes];
    ReadText(dialog, kPath, start, kMostPathBytes);
    if (start[0] == '\0') GetDatabaseRoot(start);
    char name[MAX_PATH] = "";
    BROWSEINFOA information{};
    information.hwndOwner = dialog;
    information.pszDisplayName = name;
    information.lpszTitle = globals->language != 0 ? "DB Path Setting" : "ＤＢパスの設定";
    information.ulFlags = BIF_RETURNONLYFSDIRS;
    information.lpfn = OnPicker;
    information.lParam = reinterpret_cast<LPARAM>(start);
    const LPITEMIDLIST list = SHBrowseForFolderA(&information);
    if (list == nullptr) return;
    char path[MAX_PATH] = "";
    const bool named = SHGetPathFromIDListA(list, path) && std::strlen(path) <= kMostPathBytes;
    CoTaskMemFree(list);
    if (named)
        SetDlgItemTextA(dialog, kPath, path);
    else
        PlainBeep();
}

void OnPathCommand(HWND dialog, int control) {
    switch (control) {
        case kTakePath:
            ReadText(dialog, kPath, globals->aidbfpath, kMostPathBytes);
            EndDialog(dialog, kTakePath);
            break;
        case kCancelPath:
            EndDialog(dialog, kCancelPath);
            break;
        case kBrowse:
            BrowseForFolder(dialog);
            break;
        case kClear:
            SetDlgItemTextA(dialog, kPath, "");
            break;
        default:
            break;
    }
}

INT_PTR CALLBACK DatabasePathProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
    switch (message) {
        case WM_INITDIALOG:
            CentreDialog(dialog);
            ShowRoots(dialog);
            return TRUE;
        case WM_COMMAND:
            OnPathCommand(dialog, LOWORD(wParam));
            return TRUE;
        default:
            return FALSE;
    }
}

} // namespace

int32_t ChooseDatabasePath(HWND panel) {
    if (RunDialog(kPathDialog, DialogEntry<DatabasePathProc>) != kTakePath) return -1;
    SelectGroup("");
    globals->hasFolders = kNotKnown;
    RefreshAfterFolderChange(panel);
    return 0;
}

void NoteRecentRoot() {
    if (globals->aidbfpath[0] == '\0') return;
    int place = 0;
    while (place < kRecentRoots - 1 && std::strcmp(globals->aidbfpathEx[place], globals->aidbfpath) != 0)
        ++place;
    for (; place > 0; --place) std::strcpy(globals->aidbfpathEx[place], globals->aidbfpathEx[place - 1]);
    std::strcpy(globals->aidbfpathEx[0], globals->aidbfpath);
}
