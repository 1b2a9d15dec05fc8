#include "plugin/panel/panel_layout.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "plugin/panel/panel_controls.h"
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

} // namespace
