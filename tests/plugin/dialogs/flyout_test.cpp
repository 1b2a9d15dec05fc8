// The flyout's entries, marks and picks, and the texts of the tool tips.

#include "plugin/dialogs/flyout.h"

#include <cstring>
#include <set>

#include "plugin/dialogs/tool_tip.h"
#include "plugin/store/store_names.h"
#include "tests/support/beeps.h"
#include "tests/support/panel_fixture.h"

namespace {

class FlyoutTest : public PanelFixture {
protected:
    const std::vector<workbench::FlyoutItem>& Items() { return host().panels().front()->flyout->items; }
    std::set<int> Marked() {
        std::set<int> marked;
        for (const auto& item : Items()) {
            if (item.marked) marked.insert(item.number);
        }
        return marked;
    }
    void Pick(int entry) { OnFlyoutCommand(globals->panelRef, entry); }
};

TEST_F(FlyoutTest, HasItsEntriesInTheRunningLanguage) {
    globals->language = 2;
    BuildThePanel();
    ASSERT_EQ(Items().size(), 21u);
    const std::set<int> separators = {4, 8, 10, 13, 16, 18};
    for (int number = 1; number <= 21; ++number) {
        EXPECT_EQ(Items()[static_cast<size_t>(number - 1)].number, number);
        EXPECT_EQ(Items()[static_cast<size_t>(number - 1)].separator, separators.contains(number));
    }
    EXPECT_EQ(Items()[1].text, reinterpret_cast<const char*>(u8"Show Icon 64×64"));
    ShutDownPlugin();
    ReleaseSuites();
    ASSERT_EQ(plugin().StartUp(), kHostNoError);
    HoldSuites();
    globals->language = 0;
    BuildThePanel();
    EXPECT_EQ(Items()[0].text, reinterpret_cast<const char*>(u8"アイコン表示32*32"));
}

TEST_F(FlyoutTest, MarksFollowViewSortAndLayers) {
    globals->toolMode = 2;
    globals->layerOption = 1;
    BuildThePanel();
    EXPECT_EQ(Marked(), (std::set<int>{2, 5, 21}));
    Pick(3);
    EXPECT_EQ(globals->toolMode, 3);
    Pick(7);
    EXPECT_EQ(globals->sortMode, 2) << "also for a group that has no list";
    Pick(21);
    EXPECT_EQ(globals->layerOption, 0);
    EXPECT_EQ(Marked(), (std::set<int>{3, 7}));
    const auto beeps = BeepsSoFar();
    globals->menuBusy = 1;
    Pick(1);
    globals->menuBusy = 0;
    EXPECT_EQ(globals->toolMode, 3);
    if (beeps) {
        EXPECT_EQ(*BeepsSoFar(), *beeps + 1);
    }
    for (const int none : {-1, 0, 4, 18, 22, 1 << 30}) Pick(none);
    EXPECT_EQ(Marked(), (std::set<int>{3, 7}));
}

TEST_F(FlyoutTest, CommandsNeedAPanel) {
    const uint64_t calls = host().callCount();
    for (const int entry : {9, 11, 12, 14, 15, 17, 19, 20}) OnFlyoutCommand(nullptr, entry);
    EXPECT_EQ(host().callCount(), calls);
}

TEST_F(FlyoutTest, TipsTellWhatAButtonDoes) {
    constexpr struct {
        const char* current;
        int control;
        const char *english, *japanese;
    } kCases[] = {
        {"G", 1, "New", "新規"},
        {"G", 6, "Placement origin", "配置基準位置"},
        {"G", 15, "Search", "検索"},
        {"G", 16, "Hide Folder List", "フォルダリストを隠す"},
        {"\\F\\G", 11, "New Folder", "新規フォルダ"},
        {"\\F\\S\\G", 11, "New", "新規"},
        {"Search Result", 11, "New Folder", "新規フォルダ"},
        {"G", 13, "Delete Group", "グループ削除"},
        {"G", 14, "Group Setting", "グループの設定"},
        {"\\F\\A Folder is Selected", 13, "Delete Folder", "フォルダ削除"},
        {"\\F\\A Folder is Selected", 14, "Folder Setting", "フォルダの設定"},
        {"A Folder is Selected", 13, "Delete", "削除"},
        {"Search Result", 14, "Setting", "設定"},
        {"G", 4, "", ""},
    };
    for (const auto& tip : kCases) {
        SelectGroup(tip.current);
        globals->language = 1;
        EXPECT_STREQ(ToolTipOfControl(tip.control), tip.english) << tip.current << " " << tip.control;
        globals->language = 0;
        EXPECT_STREQ(ToolTipOfControl(tip.control), tip.japanese) << tip.current << " " << tip.control;
    }
    globals->browseMode = 0;
    EXPECT_STREQ(ToolTipOfControl(16), "フォルダリストを表示");
    char text[kToolTipBytes];
    MakeTipOfName("two\r\nlines\t.", text);
    EXPECT_STREQ(text, "two  lines .");
}

} // namespace
