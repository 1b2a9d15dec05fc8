// Looking around in the panel: views, orders, scrolling, the splitter, the folder list, the origin, tips.

#include <algorithm>

#include "plugin/panel/panel_layout.h"
#include "plugin/panel/panel_lists.h"
#include "tests/tour/tour.h"

namespace {

using Texts = std::vector<std::string>;

std::vector<int32_t> MarkedEntries(const workbench::HostPanel& panel) {
    std::vector<int32_t> marked;
    for (const workbench::FlyoutItem& item : panel.flyout->items) {
        if (item.marked) marked.push_back(item.number);
    }
    return marked;
}

TEST_P(Tour, EmptyDatabaseOffersAGroupThatIsNotThere) {
    BuildThePanel();
    Play();
    EXPECT_EQ(Rows(kFolderList), (Texts{"UNTITLED", "Search Result"}));
    EXPECT_EQ(Entries(control(kGroupCombo)), (Texts{"UNTITLED", "Search Result"}));
    EXPECT_TRUE(Rows(kRecordList).empty());
    EXPECT_TRUE(FilesOnDisk().empty());
}

TEST_P(Tour, ViewsAndOrdersByTheFlyout) {
    MakeGroup("Animals", {"cat", "ant", "bee"});
    MakeGroup("Birds", {"owl"});
    BuildThePanel();
    Play();
    EXPECT_EQ(Rows(kFolderList), (Texts{"Animals", "Birds", "Search Result"}));
    EXPECT_EQ(Records(), (Texts{"ant", "bee", "cat"}));
    ClickRow(kRecordList, 1).Play();
    EXPECT_EQ(Selected(kRecordList), 1);
    const workbench::HostPanel& hostPanel = *host().panels().front();
    EXPECT_EQ(MarkedEntries(hostPanel), (std::vector<int32_t>{1, 5}));

    // The thumbnail's colour at the middle of a cell of each view: bee is the third record that was made.
    const uint32_t bee = 0x788080 + (255 - 120 - 0x80);
    for (const int view : {1, 2, 3}) {
        PickFlyout(view).Play();
        EXPECT_EQ(globals->toolMode, view);
        EXPECT_EQ(MarkedEntries(hostPanel).front(), view);
        const POINT box = RowPoint(kRecordList, 1, view == 3 ? 12 : -1);
        EXPECT_EQ(hands().Pixel(box.x, box.y), bee) << "view " << view;
    }
    PickFlyout(7).Play();
    EXPECT_EQ(Records(), (Texts{"bee", "ant", "cat"})); // the newest first
    PickFlyout(6).PickFlyout(21).Play();
    EXPECT_EQ(MarkedEntries(hostPanel), (std::vector<int32_t>{3, 6, 21}));
    EXPECT_EQ(globals->layerOption, 1);
    EXPECT_EQ(hostPanel.flyout->items[18].text, Utf8(Either("DB Path Setting...", "ＤＢパスの設定...")));
}

TEST_P(Tour, EveryScrollCode) {
    Texts names;
    for (int i = 10; i < 60; ++i) names.push_back("r" + std::to_string(i));
    MakeGroup("Many", names);
    BuildThePanel();
    PickFlyout(3).Play();
    const HWND bar = control(kRecordScroll);
    const auto scroll = [&](int code, int position = 0) {
        SendMessageA(panel(), WM_VSCROLL, static_cast<WPARAM>(MAKELONG(code, position)),
                     reinterpret_cast<LPARAM>(bar));
        return ScrollPosition(kRecordScroll);
    };
    EXPECT_EQ(scroll(SB_LINEUP), 0);
    EXPECT_EQ(scroll(SB_LINEDOWN), 1);
    EXPECT_EQ(scroll(SB_PAGEDOWN), 6);
    EXPECT_EQ(scroll(SB_PAGEUP), 1);
    EXPECT_EQ(scroll(SB_THUMBTRACK, 30), 1);
    EXPECT_EQ(scroll(SB_THUMBPOSITION, 30), 30);
    EXPECT_EQ(scroll(SB_BOTTOM), 49);
    EXPECT_EQ(scroll(SB_PAGEDOWN), 49);
    EXPECT_EQ(scroll(SB_TOP), 0);

    // By hand: the lower arrow of the bar, then the row that has come to the top.
    ClickAt([&] {
        const RECT place = ScreenRect(bar);
        return POINT{place.left + 8, place.bottom - 8};
    });
    Play();
    EXPECT_EQ(ScrollPosition(kRecordScroll), 1);
    ClickAt([&] {
        const RECT place = ScreenRect(control(kRecordList));
        return POINT{place.left + 60, place.top + 10};
    });
    Play();
    EXPECT_EQ(Selected(kRecordList), 1);
}

TEST_P(Tour, SplitterAndFolderList) {
    MakeGroup("Animals", {"ant"});
    BuildThePanel();
    Play();
    const RECT before = ScreenRect(control(kRecordList));
    const RECT folders = ScreenRect(control(kFolderList));
    const auto drag = [&](int from, int to) {
        const int y = folders.top + 50;
        hands().Drag({from, y}, {to, y}, 10);
        Play();
    };
    // The zone is the five pixels left of the record list, the scroll bar's width and a gap from the list.
    const int zone = folders.right + 25 - 3;
    drag(zone, zone + 60);
    const RECT wider = ScreenRect(control(kRecordList));
    EXPECT_NEAR(wider.left, before.left + 60, 2);
    EXPECT_EQ(ScreenRect(control(kFolderList)).right, wider.left - 25);
    for (const int button : {kNewButton, kDeleteButton, kSettingButton}) {
        const RECT place = ScreenRect(control(button));
        const auto seen = [&] {
            std::vector<uint32_t> pixels;
            for (int y = place.top; y < place.bottom; ++y)
                for (int x = place.left; x < place.right; ++x) pixels.push_back(hands().Pixel(x, y));
            return pixels;
        };
        const std::vector<uint32_t> moved = seen();
        InvalidateRect(control(button), nullptr, TRUE);
        Play();
        EXPECT_EQ(moved, seen()) << "button " << button << " shows another's icon";
    }
    drag(wider.left - 3, wider.left - 300);
    EXPECT_EQ(globals->browseWidth, LimitBrowseWidth(-1));
    EXPECT_LT(ScreenRect(control(kFolderList)).right, wider.right);

    ClickControl(kFolderListButton).Play();
    EXPECT_EQ(globals->browseMode, 0);
    EXPECT_FALSE(IsWindowVisible(control(kFolderList)));
    EXPECT_FALSE(IsWindowVisible(control(kSearchButton)));
    EXPECT_EQ(TextOf(control(kFolderListButton)), "7");
    EXPECT_EQ(ScreenRect(control(kRecordList)).left, folders.left);
    ClickControl(kFolderListButton).Play();
    EXPECT_EQ(globals->browseMode, 1);
    EXPECT_TRUE(IsWindowVisible(control(kFolderList)));
}

TEST_P(Tour, FrameResizesThePanel) {
    BuildThePanel();
    frame().Resize({600, 500});
    Play();
    RECT client{};
    GetClientRect(panel(), &client);
    const RECT list = ScreenRect(control(kRecordList));
    EXPECT_EQ(client.right, 600);
    EXPECT_EQ(list.right - list.left, 600 - 5 - 20 - PlanPanel(600, 500, globals->browseWidth).split);
    // Behind a change of size the delete button stands right of the new record button.
    EXPECT_GT(ScreenRect(control(kDeleteButton)).left, ScreenRect(control(kNewButton)).left);
    frame().Resize({10, 10});
    GetClientRect(panel(), &client);
    EXPECT_EQ(client.right, 320);
    EXPECT_EQ(client.bottom, 240);
}

TEST_P(Tour, OriginControl) {
    BuildThePanel();
    ClickAt([&] {
        const RECT place = ScreenRect(control(kOriginControl));
        return POINT{place.left + 8 * 2 + 3, place.top + 8 + 3};
    });
    Play();
    EXPECT_EQ(globals->originMode, 7);
    EXPECT_EQ(TextOf(control(kOriginControl)), "7");
}

TEST_P(Tour, TwentyNodesStandOpen) {
    for (int i = 10; i < 32; ++i) {
        const std::string folder = "F" + std::to_string(i);
        std::filesystem::create_directory(rootOnDisk() / folder);
        MakeGroup("\\" + folder + "\\g", {"x"});
    }
    BuildThePanel();
    // The current name is a folder's, which opens when the list is built for the first time.
    Play();
    const auto rowOf = [&](const std::string& text) {
        const Texts rows = Rows(kFolderList);
        return static_cast<int>(std::ranges::find(rows, text) - rows.begin());
    };
    for (int i = 10; i < 32; ++i) ToggleExpanded(("\\F" + std::to_string(i) + "\\$$$\\$$$.$$$").c_str());
    EXPECT_EQ(globals->expandedCount, 20);
    RebuildFolderList(panel());
    EXPECT_EQ(IsExpanded("\\F11\\$$$\\$$$.$$$"), 0);
    EXPECT_EQ(IsExpanded("\\F31\\$$$\\$$$.$$$"), 1);

    // Its triangle closes a node, by hand.
    const int row = rowOf("\\F12\\$$$\\$$$.$$$");
    const size_t rows = Rows(kFolderList).size();
    ClickAt([&] { return RowPoint(kFolderList, row, 10); });
    Play();
    EXPECT_EQ(IsExpanded("\\F12\\$$$\\$$$.$$$"), 0);
    EXPECT_EQ(Rows(kFolderList).size(), rows - 1);
}

TEST_P(Tour, TipsComeAndGo) {
    MakeGroup("Animals", {"a long\nname"});
    BuildThePanel();
    windows().StartTimers();
    PointAt([&] { return Middle(control(kSettingButton)); }).WaitTicks().Play();
    EXPECT_STREQ(globals->toolTip.text, Either("Setting", "設定"));
    const POINT tip = globals->toolTip.point;
    EXPECT_EQ(hands().Pixel(tip.x, tip.y + 1), 0xF2F2F2u);
    PointAt([&] { return RowPoint(kRecordList, 0); }).WaitTicks().Play();
    EXPECT_STREQ(globals->toolTip.text, "a long name");
    EXPECT_NE(hands().Pixel(tip.x, tip.y + 1), 0xF2F2F2u) << "what the tip covered is not back";
    PointAt([&] { return Middle(control(kSettingButton)); }).WaitTicks().Play();
    EXPECT_STRNE(globals->toolTip.text, "");
    hands().Press();
    WaitTicks().Play();
    EXPECT_STREQ(globals->toolTip.text, "");
    hands().Move(5, 5).Release();
    Play();
}

INSTANTIATE_TEST_SUITE_P(Languages, Tour, ::testing::Values(0, 1));

} // namespace
