// Changing the database by the panel's commands and their dialogs.

#include "plugin/panel/panel_lists.h"
#include "plugin/store/group_file.h"
#include "plugin/store/record.h"
#include "tests/tour/tour.h"

namespace {

using Texts = std::vector<std::string>;
using Files = std::set<std::string>;

bool EntryEnabled(const workbench::HostPanel& panel, int32_t entry) {
    for (const workbench::FlyoutItem& item : panel.flyout->items) {
        if (item.number == entry) return item.enabled;
    }
    return false;
}

class ChangeTour : public Tour {
public:
    /// In a panel that is as wide as a designer has it, so that no button lies over another.
    void BuildThePanel() {
        Tour::BuildThePanel();
        frame().Resize({640, 480});
    }
};

TEST_P(ChangeTour, FoldersAndGroupsFromCradleToGrave) {
    BuildThePanel();
    windows().StartTimers();
    const workbench::HostPanel& hostPanel = *host().panels().front();

    PickFlyout(11).SetText(5, "Plants").PressButton(IDOK).WaitTicks().Play();
    EXPECT_EQ(FilesOnDisk(), (Files{"Plants"}));
    EXPECT_EQ(globals->hasFolders, 1);
    // A name that is taken: a beep, a message, and nothing made.
    PickFlyout(11).Choose(8, "None").SetText(5, "Plants").PressButton(IDOK).Play();
    ASSERT_FALSE(host().alerts().empty());
    EXPECT_NE(host().alerts().back().text.find("\\Plants"), std::string::npos);
    EXPECT_NE(host().alerts().back().text.find("[-1]"), std::string::npos);
    PickFlyout(11).SetText(5, "Bad\\Name").PressButton(IDOK).Play();
    PickFlyout(11).SetText(5, "..").PressButton(IDOK).Play();
    EXPECT_EQ(FilesOnDisk(), (Files{"Plants"}));
    PickFlyout(11).SetText(5, "No").PressButton(IDCANCEL).Play();

    // A group in it, then a second-level folder and a group there.
    PickFlyout(14).Choose(8, "Plants").SetText(5, "Trees").PressButton(IDOK).Play();
    EXPECT_STREQ(globals->aidbfname, "\\Plants\\Trees");
    PickFlyout(11).Choose(8, "Plants").SetText(5, "Moss").PressButton(IDOK).Play();
    EXPECT_EQ(FilesOnDisk(), (Files{"Plants", "Plants/Moss", "Plants/Trees.AID"}));
    EXPECT_EQ(Rows(kFolderList).back(), "Search Result");

    // Renamed by the panel's button, with its data; then moved to the root.
    std::filesystem::create_directories(rootOnDisk() / "Plants" / "Trees.DAT" / "0");
    ClickControl(kGroupSettingButton).SetText(5, "Oaks").PressButton(IDOK).Play();
    EXPECT_EQ(FilesOnDisk(),
              (Files{"Plants", "Plants/Moss", "Plants/Oaks.AID", "Plants/Oaks.DAT", "Plants/Oaks.DAT/0"}));
    ClickControl(kGroupSettingButton).Choose(8, "None").PressButton(IDOK).Play();
    EXPECT_STREQ(globals->aidbfname, "Oaks");
    EXPECT_EQ(FilesOnDisk(), (Files{"Oaks.AID", "Oaks.DAT", "Oaks.DAT/0", "Plants", "Plants/Moss"}));

    // Deleted after a no and a yes.
    WaitTicks().Play();
    EXPECT_TRUE(EntryEnabled(hostPanel, 15));
    host().AnswerNext(false);
    PickFlyout(15).Play();
    EXPECT_TRUE(host().alerts().back().question);
    EXPECT_NE(host().alerts().back().text.find("Oaks"), std::string::npos);
    EXPECT_TRUE(FilesOnDisk().contains("Oaks.AID"));
    host().AnswerNext(true);
    ClickControl(kDeleteGroupButton).Play();
    EXPECT_EQ(FilesOnDisk(), (Files{"Plants", "Plants/Moss"}));

    // What is selected then is a folder; it goes with all that is in it.
    ClickRow(kFolderList, 0).WaitTicks().Play();
    EXPECT_STREQ(globals->aidbfname, "\\Plants\\A Folder is Selected");
    EXPECT_FALSE(EntryEnabled(hostPanel, 15));
    host().AnswerNext(true);
    PickFlyout(12).Play();
    EXPECT_TRUE(FilesOnDisk().empty());
    EXPECT_STREQ(globals->aidbfname, "UNTITLED");
}

TEST_P(ChangeTour, RenamedFolderStaysOpen) {
    std::filesystem::create_directory(rootOnDisk() / "Old");
    MakeGroup("\\Old\\g", {"a", "b"});
    BuildThePanel();
    Play();
    ClickRow(kFolderList, 0).Play();
    ToggleExpanded("\\Old\\$$$\\$$$.$$$");
    if (!IsExpanded("\\Old\\$$$\\$$$.$$$")) ToggleExpanded("\\Old\\$$$\\$$$.$$$");
    ClickControl(kGroupSettingButton).SetText(5, "New").PressButton(IDOK).Play();
    EXPECT_EQ(FilesOnDisk(), (Files{"New", "New/g.AID"}));
    EXPECT_EQ(IsExpanded("\\New\\$$$\\$$$.$$$"), 1);
    EXPECT_EQ(Rows(kFolderList), (Texts{"\\New\\$$$\\$$$.$$$", "\\New\\g", "UNTITLED", "Search Result"}));
    EXPECT_EQ(Records(), (Texts{"a", "b"}));
}

TEST_P(ChangeTour, EditMoveAndDeleteRecords) {
    MakeGroup("A", {"one", "three", "two"});
    MakeGroup("B", {"zero"});
    BuildThePanel();
    Play();
    // A new name sorts elsewhere; the selection follows.
    ClickRow(kRecordList, 0).ClickControl(kSettingButton);
    SetText(7, "zebra").SetText(16, "striped").PressButton(IDOK).Play();
    EXPECT_EQ(Records(), (Texts{"three", "two", "zebra"}));
    EXPECT_EQ(Selected(kRecordList), 2);

    // By a double click, to another group.
    DoubleClickRow(kRecordList, 0).Choose(14, "B").PressButton(IDOK).Play();
    EXPECT_STREQ(globals->aidbfname, "B");
    EXPECT_EQ(Records(), (Texts{"three", "zero"}));
    EXPECT_EQ(Selected(kRecordList), 0);
    EXPECT_EQ(CountRecords("A"), 2u);
    // Cancel changes nothing.
    ClickControl(kSettingButton).SetText(7, "lost").PressButton(IDCANCEL).Play();
    EXPECT_EQ(Records(), (Texts{"three", "zero"}));

    // Delete: no, then yes for both.
    host().AnswerNext(false);
    ClickControl(kDeleteButton).Play();
    EXPECT_EQ(CountRecords("B"), 2u);
    ClickRow(kRecordList, 1).Play();
    for (const char* left : {"three", ""}) {
        host().AnswerNext(true);
        ClickControl(kDeleteButton).Play();
        EXPECT_EQ(Records(), *left ? Texts{left} : Texts{});
        EXPECT_EQ(Selected(kRecordList), *left ? 0 : -1);
    }
    EXPECT_EQ(CountRecords("B"), 0u);
    EXPECT_NE(host().alerts().back().text.find("REC_ID = [1]"), std::string::npos);
    // With nothing selected a beep is all.
    const size_t alerts = host().alerts().size();
    ClickControl(kDeleteButton).Play();
    EXPECT_EQ(host().alerts().size(), alerts);
}

TEST_P(ChangeTour, SearchAndLimit) {
    MakeGroup("A", {"red cat", "blue cat", "red dog"});
    MakeGroup("B", {"green cat"});
    BuildThePanel();
    Play();
    ClickControl(kSearchButton).SetText(5, "cat");
    Do([] { EXPECT_FALSE(IsWindowEnabled(GetDlgItem(TopDialog(), 2))); }).PressButton(1).Play();
    EXPECT_STREQ(globals->aidbfname, "Search Result");
    EXPECT_EQ(Records(), (Texts{"blue cat", "green cat", "red cat"}));
    EXPECT_EQ(Selected(kFolderList), static_cast<int>(Rows(kFolderList).size()) - 1);
    PickFlyout(9).SetText(5, "red").PressButton(2).Play();
    EXPECT_EQ(Records(), (Texts{"red cat"}));
    // The combo goes back to a group.
    Do([&] {
        const HWND combo = control(kGroupCombo);
        SendMessageA(combo, CB_SETCURSEL, 0, 0);
        SendMessageA(panel(), WM_COMMAND, static_cast<WPARAM>(MAKELONG(kGroupCombo, CBN_SELCHANGE)),
                     reinterpret_cast<LPARAM>(combo));
    });
    Play();
    EXPECT_STREQ(globals->aidbfname, "A");
    EXPECT_EQ(Rows(kRecordList).size(), 3u);
}

TEST_P(ChangeTour, OtherDatabaseAndBack) {
    MakeGroup("Here", {"a"});
    const std::filesystem::path other = folder().path() / "other";
    std::filesystem::create_directory(other);
    const std::string here = globals->aidbfpath, there = StorePathOf(other);
    BuildThePanel();
    PickFlyout(19).SetText(5, there).PressButton(IDOK).Play();
    EXPECT_STREQ(globals->aidbfpath, there.c_str());
    EXPECT_EQ(Rows(kFolderList), (Texts{"UNTITLED", "Search Result"}));
    EXPECT_STREQ(globals->aidbfpathEx[0], there.c_str());
    PickFlyout(19).SetText(5, here).PressButton(IDOK).Play();
    EXPECT_EQ(Rows(kFolderList), (Texts{"Here", "Search Result"}));
    EXPECT_STREQ(globals->aidbfpathEx[0], here.c_str());
    EXPECT_STREQ(globals->aidbfpathEx[1], there.c_str());
}

TEST_P(ChangeTour, PlacementSettingsInTheRulersUnit) {
    BuildThePanel();
    PickFlyout(20).Do([this] {
        EXPECT_EQ(TextOf(GetDlgItem(TopDialog(), 9)), "5 mm");
        EXPECT_EQ(TextOf(TopDialog()), Either("Placement Setting", "配置設定"));
    });
    SetText(9, "10").SetText(10, "abc").PressButton(1).Play();
    EXPECT_DOUBLE_EQ(globals->flGrWidth, 28.346456692913385);
    EXPECT_DOUBLE_EQ(globals->flGrHeight, 14.17323);
}

TEST_P(ChangeTour, AboutDialogNamesTheVersion) {
    BuildThePanel();
    Do([this] { plugin().PickMenu(globals->aboutMenuItem); });
    Do([this] { EXPECT_EQ(TextOf(GetDlgItem(TopDialog(), 6)), "Velquorne 2.0.4.0"); });
    PressButton(IDOK).Play();
}

INSTANTIATE_TEST_SUITE_P(Languages, ChangeTour, ::testing::Values(0, 1));

} // namespace
