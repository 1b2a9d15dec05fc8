#include "plugin/dialogs/place_controls.h"

#include <cstring>

#include "plugin/dialogs/dialog_texts.h"
#include "plugin/dialogs/place_lists.h"
#include "plugin/frame/globals.h"
#include "plugin/store/store_names.h"

namespace {

void AddToControl(void* control, const char* entry) {
    SendMessageA(static_cast<HWND>(control), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry));
}

HWND Emptied(HWND dialog, int list) {
    const HWND control = GetDlgItem(dialog, list);
    SendMessageA(control, CB_RESETCONTENT, 0, 0);
    return control;
}

void Select(HWND control, int entry) {
    SendMessageA(control, CB_SETCURSEL, static_cast<WPARAM>(entry), 0);
}

} // namespace

void ReadList(HWND dialog, int list, char* text) {
    ReadText(dialog, list, text, kMostPartBytes);
}

void ReadFolderOfList(HWND dialog, int list, char* text) {
    ReadList(dialog, list, text);
    if (std::strcmp(text, kNoFolder) == 0) text[0] = '\0';
}

bool FillFolderList(HWND dialog, int list, const char* folder) {
    const HWND control = Emptied(dialog, list);
    const int selected = ListFolderEntries(folder, AddToControl, control);
    Select(control, selected);
    return selected != 0;
}

void FillSubFolderList(HWND dialog, const PlaceLists& lists, bool takeText) {
    if (takeText) ReadFolderOfList(dialog, lists.folder, globals->selFolder);
    const HWND control = Emptied(dialog, lists.subFolder);
    const int selected =
        ListSubFolderEntries(globals->selFolder, globals->selSubFolder, AddToControl, control);
    Select(control, selected);
    if (selected == 0) globals->selSubFolder[0] = '\0';
    if (lists.group != 0) FillGroupList(dialog, lists, false);
}

void FillGroupList(HWND dialog, const PlaceLists& lists, bool takeText) {
    if (takeText) ReadFolderOfList(dialog, lists.subFolder, globals->selSubFolder);
    const HWND control = Emptied(dialog, lists.group);
    Select(control, ListGroupEntries(globals->selFolder, globals->selSubFolder, globals->selGroup,
                                     AddToControl, control));
}
