#include "tests/tour/tour.h"

namespace {

TEST_P(Tour, PanelOfAnEmptyDatabaseOffersAGroupThatIsNotThere) {
    BuildThePanel();
    EXPECT_EQ(Rows(kFolderList), (std::vector<std::string>{"UNTITLED", "Search Result"}));
    EXPECT_EQ(Entries(control(kGroupCombo)), (std::vector<std::string>{"UNTITLED", "Search Result"}));
    EXPECT_TRUE(Rows(kRecordList).empty());
    hands().Pause(10);
    Play();
    hands().SavePng("/tmp/q/empty.png");
}

TEST_P(Tour, ViewsAndOrdersByTheFlyout) {
    MakeGroup("Animals", {"cat", "ant", "bee"});
    MakeGroup("Birds", {"owl"});
    BuildThePanel();
    Play();
    EXPECT_EQ(Rows(kFolderList), (std::vector<std::string>{"Animals", "Birds", "Search Result"}));
    EXPECT_EQ(Records(), (std::vector<std::string>{"ant", "bee", "cat"}));
    ClickRow(kRecordList, 1).Play();
    EXPECT_EQ(Selected(kRecordList), 1);
    hands().SavePng("/tmp/q/icons32.png");
    PickFlyout(2).Play();
    EXPECT_EQ(globals->toolMode, 2);
    hands().SavePng("/tmp/q/icons64.png");
    PickFlyout(3).PickFlyout(7).Play();
    EXPECT_EQ(globals->toolMode, 3);
    EXPECT_EQ(Records(), (std::vector<std::string>{"bee", "ant", "cat"}));
    hands().SavePng("/tmp/q/list.png");
}

INSTANTIATE_TEST_SUITE_P(Languages, Tour, ::testing::Values(0, 1));

} // namespace
