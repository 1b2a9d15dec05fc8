#include "plugin/dialogs/search_dialog.h"

#include <windows.h>

#include <cstdio>

#include "plugin/dialogs/dialog_texts.h"
#include "plugin/frame/globals.h"
#include "plugin/host/entry.h"
#include "plugin/store/record.h"
#include "plugin/store/search.h"

namespace {

constexpr UINT kSearchDialog = 16154;
constexpr UINT kFirstFieldText = 16101;
constexpr UINT kEnglishFieldText = 17101;
constexpr int kFieldTexts = 3;
constexpr int kFieldTextBytes = 62;
constexpr int kEnglish = 1; ///< the one language whose fields have English names
constexpr char kLeftOut = '-';
constexpr size_t kMostSearchBytes = 254;

enum SearchControl : int { kStartSearch = 1, kLimit = 2, kCancelSearch = 3, kField = 4, kText = 5 };
constexpr int kFound = 1; ///< results of the dialog
constexpr int kNoSearch = 2;

/// A check box and its field.
struct SearchBox {
    int control;
    int16_t Globals::*field;
};
constexpr SearchBox kSearchBoxes[] = {
    {6, &Globals::flCnvCase},
    {7, &Globals::flCnvKanji},
    {8, &Globals::flCnvWord},
};

void FillFields(HWND dialog) {
    const UINT first = globals->language == kEnglish ? kEnglishFieldText : kFirstFieldText;
    const HINSTANCE module = ModuleInstance();
    for (UINT field = 0; field < kFieldTexts; ++field) {
        char text[kFieldTextBytes] = "";
        if (module != nullptr) LoadStringA(module, first + field, text, kFieldTextBytes);
        if (text[0] != kLeftOut)
            SendDlgItemMessageA(dialog, kField, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
    }
    const int mode = globals->flCnvFnMode;
    SendDlgItemMessageA(dialog, kField, CB_SETCURSEL,
                        static_cast<WPARAM>(mode >= 0 && mode < kFieldTexts ? mode : 0), 0);
}

void ShowSearchSettings(HWND dialog) {
    const bool canLimit = globals->findMode != kFindGroup && CountRecords(globals->aidbfname) > 1;
    EnableWindow(GetDlgItem(dialog, kLimit), canLimit ? TRUE : FALSE);
    FillFields(dialog);
    SetDlgItemTextA(dialog, kText, globals->flCnvFnStr);
    for (const SearchBox& box : kSearchBoxes)
        CheckDlgButton(dialog, box.control, globals->*box.field != 0 ? BST_CHECKED : BST_UNCHECKED);
}

void TakeSearchSettings(HWND dialog) {
    const LRESULT field = SendDlgItemMessageA(dialog, kField, CB_GETCURSEL, 0, 0);
    if (field != CB_ERR) globals->flCnvFnMode = static_cast<int16_t>(field);
    ReadText(dialog, kText, globals->flCnvFnStr, kMostSearchBytes);
    for (const SearchBox& box : kSearchBoxes)
        globals->*box.field = IsDlgButtonChecked(dialog, box.control) == BST_CHECKED ? 1 : 0;
}

/// What is told when the dialog has gone, which stands above all other windows.
struct Outcome {
    int32_t unsearched = 0; ///< groups
    int32_t unread = 0;     ///< objects of the result
};

// A person who doesn't find something has to know that it may be there all the same.
void TellMissed(int32_t missed, const char* japanese, const char* english) {
    char message[kMessageBytes];
    std::snprintf(message, sizeof message, globals->language == 0 ? japanese : english,
                  static_cast<int>(missed));
    TellUser(message);
}

// Escape, as the system translates it, is the press of button 2, which isn't the one that cancels here.
bool IsByEscape() {
    return GetKeyState(VK_ESCAPE) < 0;
}

void OnSearchCommand(HWND dialog, int control) {
    if (control == kCancelSearch || (control == kLimit && IsByEscape())) {
        EndDialog(dialog, kNoSearch);
        return;
    }
    if (control != kStartSearch && control != kLimit) return;
    TakeSearchSettings(dialog);
    Outcome& outcome = *reinterpret_cast<Outcome*>(GetWindowLongPtrA(dialog, DWLP_USER));
    (control == kStartSearch ? outcome.unsearched : outcome.unread) =
        control == kStartSearch ? RunSearch() : RunLimit();
    EndDialog(dialog, kFound);
}

INT_PTR CALLBACK SearchDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_INITDIALOG:
            SetWindowLongPtrA(dialog, DWLP_USER, lParam);
            CentreDialog(dialog);
            ShowSearchSettings(dialog);
            SetFocus(GetDlgItem(dialog, kText));
            return FALSE; // the focus is set
        case WM_COMMAND:
            OnSearchCommand(dialog, LOWORD(wParam));
            return TRUE;
        case WM_CLOSE:
            EndDialog(dialog, kNoSearch);
            return TRUE;
        default:
            return FALSE;
    }
}

} // namespace

bool RunSearchDialog() {
    Outcome outcome;
    const bool found =
        RunDialog(kSearchDialog, DialogEntry<SearchDialogProc>, reinterpret_cast<LPARAM>(&outcome)) == kFound;
    if (outcome.unsearched > 0)
        TellMissed(outcome.unsearched, "検索できないグループがありました。[%d]",
                   "Some groups could not be searched to their end. [%d]");
    if (outcome.unread > 0)
        TellMissed(outcome.unread, "読めないオブジェクトがあり、結果から除きました。[%d]",
                   "Some objects could not be read and are left out. [%d]");
    return found;
}
