#include "plugin/dialogs/flyout.h"

#include <windows.h>

#include <cstring>
#include <iterator>

#include "plugin/dialogs/folder_commands.h"
#include "plugin/dialogs/path_dialog.h"
#include "plugin/dialogs/placement_dialog.h"
#include "plugin/frame/globals.h"
#include "plugin/host/entry.h"
#include "plugin/host/held_suites.h"
#include "plugin/host/host_string.h"
#include "plugin/host/suites.h"
#include "plugin/panel/current_place.h"
#include "plugin/panel/panel_commands.h"
#include "plugin/panel/panel_controls.h"
#include "plugin/panel/panel_layout.h"
#include "plugin/store/record_index.h"
#include "plugin/store/store_names.h"

namespace {

struct EntryTexts {
    const char* english;
    const char* japanese;
};

/// By number, from 1; none for a separator.
constexpr EntryTexts kEntries[] = {
    {"Show Icon 32×32", "アイコン表示32*32"},
    {"Show Icon 64×64", "アイコン表示64*64"},
    {"Show List", "リスト表示"},
    {},
    {"By Name", "名前順"},
    {"By Kind", "種類順"},
    {"By Date", "日付順"},
    {},
    {"Search...", "検索..."},
    {},
    {"Add Folder...", "フォルダ追加..."},
    {"Delete Folder...", "フォルダ削除..."},
    {},
    {"Add Group...", "グループ追加..."},
    {"Delete Group...", "グループ削除..."},
    {},
    {"Move Folder...", "フォルダ移動..."},
    {},
    {"DB Path Setting...", "ＤＢパスの設定..."},
    {"Placement Setting...", "配置設定..."},
    {"Layer option", "レイヤーオプション"},
};
static_assert(std::size(kEntries) == kFlyoutEntries);

bool IsSeparator(int32_t entry) {
    return kEntries[entry - 1].english == nullptr;
}

void AppendEntry(FlyoutHandle flyout, int32_t entry) {
    if (IsSeparator(entry)) {
        PanelFlyoutMenuSuite().AppendSeparator(flyout, entry);
        return;
    }
    const EntryTexts& texts = kEntries[entry - 1];
    const char* text = globals->language != 0 ? texts.english : texts.japanese;
    const HostString string(text, std::strlen(text), kEncodingCp932);
    PanelFlyoutMenuSuite().AppendItem(flyout, entry, string.get());
}

void Mark(int32_t entry, bool on) {
    if (globals->flyoutRef) PanelFlyoutMenuSuite().SetItemMark(globals->flyoutRef, entry, on);
}

/// Of three entries one after the other, this one alone.
void MarkOneOfThree(int32_t first, int32_t marked) {
    for (int32_t entry = first; entry < first + 3; ++entry) Mark(entry, entry == marked);
}

void RepaintRecordList() {
    const HWND panel = PanelWindow();
    if (panel) InvalidateRect(GetDlgItem(panel, kRecordList), nullptr, TRUE);
}

void SetView(int32_t entry) {
    MarkOneOfThree(kShowSmallIcons, entry);
    if (!globals->panelRef || entry == globals->toolMode) return;
    globals->toolMode = static_cast<int16_t>(entry);
    // A list of rows is longer than a grid of cells: without this its end could not be scrolled to.
    if (const HWND panel = PanelWindow()) UpdateScrollRange(panel, kRecordList, false);
    RepaintRecordList();
}

void SetSort(int32_t entry) {
    const auto mode = static_cast<int16_t>(entry - kSortByName);
    MarkOneOfThree(kSortByName, entry);
    if (!globals->panelRef || mode == globals->sortMode) return;
    ResortRihList(mode);
    globals->sortMode = mode; // also where there is no list to sort: the next one will be in this order
    RepaintRecordList();
}

void ToggleLayerOption() {
    globals->layerOption = globals->layerOption ? 0 : 1;
    Mark(kLayerEntry, globals->layerOption != 0);
}

void SetDatabasePath(HWND panel) {
    ChooseDatabasePath(panel);
    if (globals->aidbfpath[0] != '\0') NoteRecentRoot();
}

/// What needs no panel; true if the entry was one of these.
bool DoSetting(int32_t entry) {
    switch (entry) {
        case kShowSmallIcons:
        case kShowLargeIcons:
        case kShowList:
            SetView(entry);
            return true;
        case kSortByName:
        case kSortByKind:
        case kSortByDate:
            SetSort(entry);
            return true;
        case kLayerEntry:
            ToggleLayerOption();
            return true;
        default:
            return false;
    }
}

void DoCommand(int32_t entry, HWND panel) {
    switch (entry) {
        case kSearchEntry:
            SearchAndShow(panel);
            break;
        case kAddFolderEntry:
            AddFolder(panel, globals->aidbfname);
            break;
        case kDeleteFolderEntry:
            DeleteFolder(panel, globals->aidbfname);
            break;
        case kAddGroupEntry:
            AddGroup(panel, globals->aidbfname);
            break;
        case kDeleteGroupEntry:
            DeleteGroup(panel, globals->aidbfname);
            break;
        case kMoveEntry:
            MoveOrRename(panel, globals->aidbfname);
            break;
        case kDatabasePathEntry:
            SetDatabasePath(panel);
            break;
        case kPlacementEntry:
            RunPlacementDialog();
            break;
        default:
            break;
    }
}

bool NeedsPanel(int32_t entry) {
    return entry > kShowList && entry != kSortByName && entry != kSortByKind && entry != kSortByDate &&
           entry != kLayerEntry;
}

} // namespace

void BuildFlyoutMenu() {
    globals->lastGroupSeen[0] = '\0';
    globals->hasFolders = kNotKnown;
    globals->lastHasFolders = kNotKnown;
    if (PanelFlyoutMenuSuite().CreateFlyout(&globals->flyoutRef) != kHostNoError) {
        globals->flyoutRef = nullptr;
        return;
    }
    for (int32_t entry = 1; entry <= kFlyoutEntries; ++entry) AppendEntry(globals->flyoutRef, entry);
    MarkOneOfThree(kShowSmallIcons, globals->toolMode);
    MarkOneOfThree(kSortByName, globals->sortMode + kSortByName);
    Mark(kLayerEntry, globals->layerOption != 0);
}

namespace {

void DoEntry(int32_t entry) {
    const HeldSuites suites;
    if (!suites.held() || DoSetting(entry)) return;
    if (const HWND panel = PanelWindow()) DoCommand(entry, panel);
}

} // namespace

void OnFlyoutCommand(PanelHandle, int32_t entry) {
    if (!globals) return;
    if (globals->menuBusy) {
        MessageBeep(0);
        return;
    }
    if (entry < 1 || entry > kFlyoutEntries || IsSeparator(entry)) return;
    if (NeedsPanel(entry) && !globals->panelRef) return;
    AtEntry([=] { DoEntry(entry); });
}

FlyoutState FlyoutStateOf(const char* currentName, bool hasFolders) {
    char folder[kPartBytes], subFolder[kPartBytes], group[kPartBytes];
    SplitGroupName(currentName, folder, subFolder, group);
    const bool isSearch = std::strcmp(group, kSearchResult) == 0;
    const bool isGroup = !isSearch && std::strcmp(group, kFolderSelected) != 0;
    const bool inFolder = !isSearch && folder[0] != '\0';
    const bool inSubFolder = !isSearch && subFolder[0] != '\0';
    if (isGroup) return {hasFolders, inSubFolder, true};
    return {true, inFolder || inSubFolder, false};
}

void UpdateFlyoutState() {
    const FlyoutState state = FlyoutStateOf(globals->aidbfname, globals->hasFolders == 1);
    const AIPanelFlyoutMenuSuite& suite = PanelFlyoutMenuSuite();
    suite.SetItemEnabled(globals->flyoutRef, kAddFolderEntry, state.addFolder);
    suite.SetItemEnabled(globals->flyoutRef, kDeleteFolderEntry, state.deleteFolder);
    suite.SetItemEnabled(globals->flyoutRef, kDeleteGroupEntry, state.deleteGroup);
}
