// Changing the database by the panel's commands and their dialogs.

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

// Which command each button and entry stands for; what the commands do is tried at their own.
TEST_P(ChangeTour, GroupsAndFoldersFromCradleToGrave) {
    BuildThePanel();
    windows().StartTimers();
    const workbench::HostPanel& hostPanel = *host().panels().front();
    PickFlyout(11).SetText(5, "Plants").PressButton(IDOK).WaitTicks().Play();
    PickFlyout(11).SetText(5, "No").PressButton(IDCANCEL).Play();
    PickFlyout(14).Choose(8, "Plants").SetText(5, "Trees").PressButton(IDOK).Play();
    EXPECT_EQ(FilesOnDisk(), (Files{"Plants", "Plants/Trees.AID"}));
    ClickControl(kGroupSettingButton).SetText(5, "Oaks").PressButton(IDOK).Play();
    EXPECT_EQ(FilesOnDisk(), (Files{"Plants", "Plants/Oaks.AID"}));
    WaitTicks().Play();
    EXPECT_TRUE(EntryEnabled(hostPanel, 15));
    host().AnswerNext(false);
    PickFlyout(15).Play();
    EXPECT_TRUE(host().alerts().back().question);
    EXPECT_TRUE(FilesOnDisk().contains("Plants/Oaks.AID"));
    host().AnswerNext(true);
    ClickControl(kDeleteGroupButton).Play();
    EXPECT_EQ(FilesOnDisk(), (Files{"Plants"}));

    ClickRow(kFolderList, 0).WaitTicks().Play();
    EXPECT_STREQ(globals->aidbfname, "\\Plants\\A Folder is Selected");
    EXPECT_FALSE(EntryEnabled(hostPanel, 15));
    PickFlyout(17).SetText(5, "Herbs").PressButton(IDOK).Play();
    EXPECT_EQ(FilesOnDisk(), (Files{"Herbs"}));
    host().AnswerNext(true);
    PickFlyout(12).Play();
    EXPECT_TRUE(FilesOnDisk().empty());

    PickFlyout(20).Do([this] { EXPECT_EQ(TextOf(TopDialog()), Either("Placement Setting", "配置設定")); });
    PressButton(2).Play();
}

TEST_P(ChangeTour, SearchLimitAndEdit) {
    MakeGroup("A", {"red cat", "blue cat", "red dog"});
    MakeGroup("B", {"green cat"});
    BuildThePanel();
    Play();
    ClickControl(kSearchButton).SetText(5, "cat");
    Do([] { EXPECT_FALSE(IsWindowEnabled(GetDlgItem(TopDialog(), 2))); }).PressButton(1).Play();
    EXPECT_EQ(Records(), (Texts{"blue cat", "green cat", "red cat"}));
    PickFlyout(9).SetText(5, "red").PressButton(2).Play();
    EXPECT_EQ(Records(), (Texts{"red cat"}));
    DoubleClickRow(kRecordList, 0).Choose(14, "B").SetText(7, "zebra").PressButton(IDOK).Play();
    EXPECT_EQ(CountRecords("A"), 2u);
    EXPECT_EQ(CountRecords("B"), 2u);
}

TEST_P(ChangeTour, AboutDialogNamesTheVersion) {
    BuildThePanel();
    Do([this] { plugin().PickMenu(globals->aboutMenuItem); });
    Do([this] { EXPECT_EQ(TextOf(GetDlgItem(TopDialog(), 6)), "Velquorne 2.0.4.0"); });
    PressButton(IDOK).Play();
}

INSTANTIATE_TEST_SUITE_P(Languages, ChangeTour, ::testing::Values(0, 1));

} // namespace
