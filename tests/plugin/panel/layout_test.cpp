#include "plugin/panel/panel_layout.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ostream>

#include "plugin/panel/list_presses.h"
#include "plugin/panel/origin_cells.h"
#include "plugin/panel/panel_controls.h"
#include "plugin/panel/panel_window.h"
#include "plugin/panel/splitter.h"
#include "tests/plugin/panel/rectangles.h"

namespace {

struct Place {
    int control;
    RECT first, later;
};

// Worked out by hand for a client area of 410 by 300 and a share of 0.3: the inner width is 400, so the
// lists meet at 125, and the lists end at 240.
constexpr Place kPlaces[] = {
    {kRecordList, {125, 5, 385, 240}, {125, 5, 385, 240}},
    {kRecordScroll, {385, 5, 405, 240}, {385, 5, 405, 240}},
    {kFolderList, {5, 5, 100, 218}, {5, 5, 100, 218}},
    {kFolderScroll, {100, 5, 120, 218}, {100, 5, 120, 218}},
    {kNewButton, {376, 246, 400, 262}, {347, 246, 371, 262}},
    {kDeleteButton, {347, 246, 371, 262}, {376, 246, 400, 262}},
    {kSettingButton, {318, 246, 342, 262}, {318, 246, 342, 262}},
    {kGroupCombo, {30, 244, 310, 258}, {30, 244, 310, 258}},
    {kSeparator, {0, 270, 410, 271}, {0, 270, 410, 271}},
    {kOriginControl, {5, 275, 28, 298}, {5, 275, 28, 298}},
    {kNewFolderButton, {10, 223, 34, 239}, {10, 223, 34, 239}},
    {kNewGroupButton, {39, 223, 63, 239}, {39, 223, 63, 239}},
    {kDeleteGroupButton, {68, 223, 92, 239}, {68, 223, 92, 239}},
    {kGroupSettingButton, {62, 223, 86, 239}, {62, 223, 86, 239}},
    {kSearchButton, {33, 223, 57, 239}, {91, 223, 115, 239}},
    {kFolderListButton, {5, 248, 25, 260}, {5, 248, 25, 260}},
};

TEST(PanelLayout, PlacesEveryControl) {
    const PanelPlan plan = PlanPanel(410, 300, 0.3f);
    EXPECT_EQ(plan.split, 125);
    for (const Place& place : kPlaces) {
        EXPECT_EQ(FirstPlace(plan, place.control), place.first) << place.control;
        EXPECT_EQ(LaterPlace(plan, place.control, true), place.later) << place.control;
    }
    EXPECT_EQ(LaterPlace(plan, kRecordList, false), (RECT{5, 5, 385, 240}));
}

// The stored share may be anything; the split is a number all the same.
TEST(PanelLayout, SplitTakesAnyShare) {
    EXPECT_EQ(PlanPanel(410, 300, 0.3333f).split, 138);
    EXPECT_EQ(PlanPanel(410, 300, -0.5f).split, -195);
    EXPECT_EQ(PlanPanel(410, 300, -0.0162f).split, -1); // -1.48 goes toward zero
    EXPECT_EQ(PlanPanel(410, 300, std::numeric_limits<float>::infinity()).split, 1000000);
    EXPECT_EQ(PlanPanel(410, 300, std::nanf("")).split, 5);
    EXPECT_EQ(PlanPanel(8, 300, 0.5f).split, 4);
}

TEST(PanelLayout, ShareIsLimited) {
    const float infinity = std::numeric_limits<float>::infinity();
    EXPECT_EQ(LimitBrowseWidth(0.5f), 0.5f);
    EXPECT_EQ(LimitBrowseWidth(-3), 0.1f);
    EXPECT_EQ(LimitBrowseWidth(infinity), 0.8f);
    EXPECT_EQ(LimitBrowseWidth(-infinity), 0.1f);
    EXPECT_EQ(LimitBrowseWidth(std::nanf("")), 0.3f);
}

TEST(PanelLayout, ScrollCodes) {
    const ScrollRange range{0, 90};
    const int expected[] = {39, 41, 35, 45, 77, 40, 0, 90, 40};
    for (WORD code = 0; code < 9; ++code) {
        EXPECT_EQ(ScrollTarget(40, range, code, 77), expected[code]) << code;
    }
}

// Cells run down the columns, 6 pixels each and 8 apart; their far edges count, so the gaps are one pixel.
TEST(PanelLayout, OriginCells) {
    const RECT control = {0, 0, 23, 23};
    EXPECT_EQ(OriginCell(control, 5), (RECT{8, 16, 14, 22}));
    EXPECT_EQ(OriginCellAt(control, {0, 0}), 0);
    EXPECT_EQ(OriginCellAt(control, {6, 14}), 1);
    EXPECT_EQ(OriginCellAt(control, {7, 3}), -1);
    EXPECT_EQ(OriginCellAt(control, {22, 22}), 8);
    EXPECT_EQ(OriginCellAt(control, {16, 0}), 6);
    EXPECT_EQ(OriginCellAt(control, {23, 0}), -1);
}

TEST(PanelLayout, SplitterZone) {
    const RECT span = {5, 5, 125, 218};
    EXPECT_TRUE(IsOnSplitter(span, {120, 5}));
    EXPECT_TRUE(IsOnSplitter(span, {125, 218}));
    EXPECT_FALSE(IsOnSplitter(span, {119, 100}));
    EXPECT_FALSE(IsOnSplitter(span, {126, 100}));
    EXPECT_FALSE(IsOnSplitter(span, {122, 4}));
}

// 20 pixels wide at the row's indent, without its ends, at any height.
TEST(PanelLayout, ArrowBox) {
    const RECT row = {0, 48, 95, 72};
    for (const auto& [text, left] : {std::pair{"\\F\\$$$\\$$$.$$$", 0},
                                     {"\\F\\S\\$$$.$$$", 20},
                                     {"\\F\\S\\G", 40},
                                     {"\\F\\G", 0},
                                     {"G", 0}}) {
        EXPECT_FALSE(IsOnArrow(row, text, left)) << text;
        EXPECT_TRUE(IsOnArrow(row, text, left + 1)) << text;
        EXPECT_TRUE(IsOnArrow(row, text, left + 19)) << text;
        EXPECT_FALSE(IsOnArrow(row, text, left + 20)) << text;
    }
}

} // namespace
