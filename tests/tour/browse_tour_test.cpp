// Looking around in the panel by real input: views, orders, the splitter, the folder list, tips.

#include <algorithm>

#include "plugin/panel/panel_layout.h"
#include "plugin/panel/panel_lists.h"
#include "tests/tour/tour.h"

namespace {

using Texts = std::vector<std::string>;

TEST_P(Tour, ViewsAndOrdersByTheFlyout) {
    MakeGroup("Animals", {"cat", "ant", "bee"});
    BuildThePanel();
    Play();
    EXPECT_EQ(Records(), (Texts{"ant", "bee", "cat"}));
    ClickRow(kRecordList, 1).Play();
    EXPECT_EQ(Selected(kRecordList), 1);
    // The thumbnail's colour at the middle of a cell of each view.
    for (const int view : {1, 2, 3}) {
        PickFlyout(view).Play();
        EXPECT_EQ(globals->toolMode, view);
        const POINT box = RowPoint(kRecordList, 1, view == 3 ? 12 : -1);
        EXPECT_EQ(hands().Pixel(box.x, box.y), ColorOfName("bee")) << "view " << view;
    }
    PickFlyout(7).Play();
    EXPECT_EQ(Records(), (Texts{"cat", "bee", "ant"})); // the newest first
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
    EXPECT_FALSE(IsWindowVisible(control(kFolderList)));
    EXPECT_EQ(ScreenRect(control(kRecordList)).left, folders.left);
    RECT client{};
    frame().Resize({10, 10});
    GetClientRect(panel(), &client);
    EXPECT_EQ(client.right, 320);
    EXPECT_EQ(client.bottom, 240);
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
    PointAt([&] { return Middle(control(kSettingButton)); }).WaitTicks().Play();
    EXPECT_NE(globals->toolTip.savedContext, nullptr);
    frame().Show(false);
    host().panels().front()->shown = false;
    WaitTicks().Play();
    EXPECT_EQ(globals->toolTip.savedContext, nullptr) << "a hidden panel's tip stands";
}

INSTANTIATE_TEST_SUITE_P(Languages, Tour, ::testing::Values(0, 1));

} // namespace
