// Every dialog in both languages: what stands in it, and what it gives back.
#include <cstring>

#include "plugin/dialogs/entry_dialog.h"
#include "plugin/dialogs/folder_dialogs.h"
#include "plugin/dialogs/path_dialog.h"
#include "plugin/dialogs/placement_dialog.h"
#include "plugin/dialogs/search_dialog.h"
#include "plugin/store/record.h"
#include "plugin/store/record_layout.h"
#include "plugin/store/store_names.h"
#include "tests/support/dialog_answers.h"
#include "tests/support/panel_fixture.h"

namespace {

using Names = std::vector<std::string>;

class DialogsTest : public PanelFixture {
protected:
    void SetUp() override {
        PanelFixture::SetUp();
        globals->language = 1;
        for (const char* folder : {"\\P", "\\F\\A.DAT", "\\.git"})
            MakeFolder(folder); // the last two are hidden
        for (const char* group : {"G", "\\F\\A", "\\F\\B", "\\F\\S\\T"}) MakeGroup(group);
    }
    static RecordHeader& Header() { return *reinterpret_cast<RecordHeader*>(BlockBytes(globals->curRecord)); }

    DialogAnswers answers_;
};

RECT PlaceIn(HWND dialog, HWND control) {
    RECT place;
    GetWindowRect(control, &place);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&place), 2);
    return place;
}

// Nothing sticks out of the dialog, and nothing lies on anything else.
void ExpectTidy(HWND dialog) {
    RECT client, common;
    GetClientRect(dialog, &client);
    for (HWND one = GetWindow(dialog, GW_CHILD); one != nullptr; one = GetWindow(one, GW_HWNDNEXT)) {
        const RECT place = PlaceIn(dialog, one);
        EXPECT_FALSE(IsRectEmpty(&place)) << GetDlgCtrlID(one);
        IntersectRect(&common, &client, &place);
        EXPECT_EQ(std::memcmp(&common, &place, sizeof place), 0) << GetDlgCtrlID(one);
        for (HWND other = GetWindow(one, GW_HWNDNEXT); other != nullptr;
             other = GetWindow(other, GW_HWNDNEXT)) {
            const RECT otherPlace = PlaceIn(dialog, other);
            const bool icons =
                GetDlgCtrlID(one) == 12 && GetDlgCtrlID(other) == 13; // larger than their places
            EXPECT_TRUE(icons || !IntersectRect(&common, &place, &otherPlace))
                << GetDlgCtrlID(one) << " on " << GetDlgCtrlID(other);
        }
    }
}

void ExpectCentred(HWND dialog) {
    RECT desktop, place;
    GetWindowRect(GetDesktopWindow(), &desktop);
    GetWindowRect(dialog, &place);
    EXPECT_NEAR(place.left + place.right, desktop.left + desktop.right, 2);
    EXPECT_NEAR(place.top + place.bottom, desktop.top + desktop.bottom, 2);
    EXPECT_NE(GetWindowLongPtrA(dialog, GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
}

/// Title and one control's text, Japanese and English; the rest is for the eye.
const struct {
    void (*run)();
    const char* title[2];
    int id;
    const char* text[2];
} kLooks[] = {
    {[] { RunEntryDialog(); }, {"登録", "Velquorne Entry"}, 13, {"グループ：", "Group:"}},
    {[] { RunFolderSetting(); }, {"フォルダの設定", "Folder Setting"}, 7, {"フォルダ：", "Folder:"}},
    {[] { RunGroupSetting(); }, {"グループの設定", "Group Setting"}, 6, {"グループ名：", "Group:"}},
    {[] { RunNewFolder(); }, {"新規フォルダ", "New Folder"}, 2, {"キャンセル", "Cancel"}},
    {[] { RunNewGroup(); }, {"新規グループ", "New Group"}, 7, {"フォルダ：", "Folder:"}},
    {[] { ChooseDatabasePath(nullptr); }, {"ＤＢパスの設定", "Set DB Path"}, 8, {"Ｃ", "C"}},
    {[] { RunSearchDialog(); }, {"検索", "Search Velquorne"}, 2, {"絞込み", "Limit (focus on)"}},
    {[] { RunPlacementDialog(); }, {"配置設定", "Placement Setting"}, 5, {"グリッド", "Snap to Grid"}},
};

} // namespace

TEST_F(DialogsTest, LooksInBothLanguages) {
    globals->curRecord = NewRecord();
    Header().created = 86400 + 60;
    Header().modified = (366 + 365) * 86400u - 60;
    std::strcpy(Header().name, "表ソ"); // second bytes of 0x5C
    for (int language = 0; language < 3; ++language) {
        globals->language = language;
        const size_t text = language == 0 ? 0 : 1;
        for (const auto& look : kLooks) {
            answers_.Next([&](HWND dialog) {
                SCOPED_TRACE(look.title[1]);
                EXPECT_EQ(TextOf(dialog), look.title[text]);
                EXPECT_EQ(TextOf(dialog, look.id), look.text[text]);
                if (&look == kLooks) {
                    EXPECT_EQ(TextOf(dialog, 7), "表ソ");
                    EXPECT_EQ(TextOf(dialog, 18).substr(TextOf(dialog, 18).find(' ')), " 04/01/02 00:01");
                    EXPECT_EQ(TextOf(dialog, 19).substr(TextOf(dialog, 19).find(' ')), " 05/12/31 23:59");
                }
                ExpectTidy(dialog);
                ExpectCentred(dialog);
                // In the search dialog 2 is another button, but a closed dialog is a cancelled one.
                SendMessageA(dialog, WM_CLOSE, 0, 0);
                if (IsWindowVisible(dialog)) Press(dialog, IDCANCEL);
            });
            look.run();
        }
    }
    EXPECT_EQ(globals->findMode, kFindGroup);
    EXPECT_STREQ(globals->aidbfname, "");
}

TEST_F(DialogsTest, EntryListsFollowEachOther) {
    globals->curRecord = NewRecord();
    std::strcpy(globals->entryName, "\\F\\B");
    answers_.Next([](HWND dialog) {
        EXPECT_EQ(EntriesOf(dialog, 10), (Names{"None", "F", "P"}));
        EXPECT_EQ(EntriesOf(dialog, 12), (Names{"None", "S"}));
        EXPECT_EQ(EntriesOf(dialog, 14), (Names{"A", "B"}));
        EXPECT_EQ(TextOf(dialog, 10) + TextOf(dialog, 12) + TextOf(dialog, 14), "FNoneB");
        Choose(dialog, 14, "A");
        SendMessageA(dialog, WM_COMMAND, 10 | CBN_SETFOCUS << 16, 0); // only looked at
        EXPECT_EQ(TextOf(dialog, 14), "A");
        Choose(dialog, 12, "S");
        EXPECT_EQ(EntriesOf(dialog, 14), Names{"T"});
        Choose(dialog, 10, "P");
        EXPECT_EQ(EntriesOf(dialog, 12), Names{"None"});
        EXPECT_EQ(EntriesOf(dialog, 14), Names{"UNTITLED"});
        Type(dialog, 7, "a" + std::string(70, '\x83')); // 62 bytes would end within a letter
        Type(dialog, 8, "kind");
        Type(dialog, 16, "two\r\nlines " + std::string(300, 'x'));
        Press(dialog, 1);
    });
    EXPECT_TRUE(RunEntryDialog());
    EXPECT_STREQ(globals->entryName, "\\P\\UNTITLED");
    EXPECT_EQ(std::strlen(Header().name), 61u);
    EXPECT_STREQ(Header().kind, "kind");
    EXPECT_EQ(std::string(Header().comment), ("two\r\nlines " + std::string(300, 'x')).substr(0, 254));

    std::strcpy(globals->entryName, "G");
    answers_.Next([](HWND dialog) {
        EXPECT_EQ(TextOf(dialog, 10) + TextOf(dialog, 12) + TextOf(dialog, 14), "NoneNoneG");
        Type(dialog, 7, "changed");
        Press(dialog, 2);
    });
    EXPECT_FALSE(RunEntryDialog());
    EXPECT_STREQ(globals->entryName, "G");
    EXPECT_EQ(std::strlen(Header().name), 61u);
}

TEST_F(DialogsTest, SearchSettings) {
    globals->flCnvFnMode = 2;
    std::strcpy(globals->flCnvFnStr, "表");
    globals->flCnvWord = 1;
    SelectGroup("G");
    answers_.Next([](HWND dialog) {
        EXPECT_EQ(EntriesOf(dialog, 4), (Names{"Name", "Kind", "Comments"}));
        EXPECT_EQ(TextOf(dialog, 4) + TextOf(dialog, 5), "Comments表");
        EXPECT_EQ(IsDlgButtonChecked(dialog, 6) + IsDlgButtonChecked(dialog, 7) * 2 +
                      IsDlgButtonChecked(dialog, 8) * 4,
                  4u);
        EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog, 2)));
        Check(dialog, 6, true);
        Type(dialog, 5, "lost");
        Press(dialog, 3);
    });
    EXPECT_FALSE(RunSearchDialog());
    EXPECT_STREQ(globals->flCnvFnStr, "表");
    EXPECT_EQ(globals->flCnvCase, 0);
    answers_.Next([](HWND dialog) {
        Choose(dialog, 4, "Kind");
        Check(dialog, 7, true);
        Type(dialog, 5, std::string(300, 'k'));
        Press(dialog, 1);
    });
    EXPECT_TRUE(RunSearchDialog());
    EXPECT_EQ(globals->flCnvFnMode, 1);
    EXPECT_EQ(globals->flCnvKanji, 1);
    EXPECT_EQ(std::strlen(globals->flCnvFnStr), 254u);
    EXPECT_STREQ(globals->aidbfname, kSearchResult);
    EXPECT_EQ(globals->findMode, kFindSearchResult);
}

TEST_F(DialogsTest, PlacementSettings) {
    host().SetRulerUnit(workbench::RulerUnit::kMillimetre);
    globals->flUseFcur = 0;
    answers_.Next([](HWND dialog) {
        EXPECT_EQ(TextOf(dialog, 9), "5 mm");
        EXPECT_FALSE(IsDlgButtonChecked(dialog, 6));
        Check(dialog, 5, false);
        Check(dialog, 6, true);
        Type(dialog, 9, "1 in");
        Type(dialog, 10, "-5 mm");
        Press(dialog, 1);
    });
    const double before = globals->flGrHeight;
    EXPECT_TRUE(RunPlacementDialog());
    EXPECT_EQ(globals->flUseGrid * 2 + globals->flUseFcur, 1);
    EXPECT_EQ(globals->flGrWidth, 72);
    EXPECT_EQ(globals->flGrHeight, before);
}

TEST_F(DialogsTest, RootsAreChosenAndRemembered) {
    const std::string first = globals->aidbfpath, second = StorePathOf(rootOnDisk() / "P");
    NoteRecentRoot();
    BuildThePanel();
    answers_.Next([&](HWND dialog) {
        EXPECT_EQ(EntriesOf(dialog, 5), Names{first});
        EXPECT_EQ(TextOf(dialog, 5), first);
        Press(dialog, 8);
        EXPECT_EQ(TextOf(dialog, 5), "");
        Type(dialog, 5, second);
        Press(dialog, 1);
    });
    EXPECT_EQ(ChooseDatabasePath(panel()), 0);
    EXPECT_EQ(globals->aidbfpath, second);
    EXPECT_STREQ(globals->aidbfname, "UNTITLED");
    EXPECT_EQ(globals->hasFolders, kNotKnown);
    for (const char* root : {"a", "b", "c", "a", "d", "e"}) {
        std::strcpy(globals->aidbfpath, root);
        NoteRecentRoot();
    }
    Names roots;
    for (const auto& root : globals->aidbfpathEx) roots.emplace_back(root);
    EXPECT_EQ(roots, (Names{"e", "d", "a", "c", "b"}));
    std::strcpy(globals->aidbfpath, first.c_str());
}
