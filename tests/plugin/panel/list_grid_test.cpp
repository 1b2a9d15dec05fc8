#include "plugin/panel/list_grid.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/plugin/panel/rectangles.h"

namespace {

// The straight way: each row from the first, all edges included.
int32_t FirstRowWith(const ListGrid& grid, int32_t rowCount, POINT point) {
    for (int32_t row = 0; row < rowCount; ++row) {
        const RECT cell = CellRect(grid, row);
        if (point.x >= cell.left && point.x <= cell.right && point.y >= cell.top && point.y <= cell.bottom) {
            return row;
        }
    }
    return -1;
}

bool IsInSight(const ListGrid& grid, int32_t row) {
    const RECT cell = CellRect(grid, row);
    return cell.top < grid.client.bottom && cell.bottom > grid.client.top;
}

TEST(ListGrid, CellsStandInLines) {
    const ListGrid small = MakeListGrid({0, 0, 100, 200}, 1, true, 0);
    EXPECT_EQ(small.perRow, 3);
    EXPECT_EQ(CellRect(small, 3), (RECT{0, 33, 33, 66}));
    const ListGrid narrow = MakeListGrid({0, 0, 20, 200}, 2, true, 1);
    EXPECT_EQ(CellRect(narrow, 1), (RECT{0, 0, 65, 65}));
    const ListGrid list = MakeListGrid({0, 0, 260, 235}, 3, true, 3);
    EXPECT_EQ(CellRect(list, 3), (RECT{0, 0, 260, 24}));
    // The folder list is a list in every view, and so is a view that doesn't exist.
    EXPECT_EQ(CellRect(MakeListGrid({0, 0, 95, 200}, 1, false, 0), 1), (RECT{0, 24, 95, 48}));
    EXPECT_FALSE(MakeListGrid({0, 0, 95, 200}, -7, true, 0).icons);
}

TEST(ListGrid, HitsAndSightAgreeWithEveryRowOneByOne) {
    std::mt19937 random(6);
    const auto up = [&random](int most) { return static_cast<int>(random() % static_cast<unsigned>(most)); };
    for (int round = 0; round < 4000; ++round) {
        const RECT client = {0, 0, up(300), up(200)};
        const int32_t rows = up(60);
        const ListGrid grid = MakeListGrid(client, 1 + up(3), up(4) != 0, up(12));
        const POINT point = {up(340) - 20, up(340) - 60};
        ASSERT_EQ(RowAt(grid, rows, point), FirstRowWith(grid, rows, point)) << round;
        const RowRange range = RowsInSight(grid, rows);
        for (int32_t row = 0; row < rows; ++row) {
            ASSERT_EQ(row >= range.first && row < range.end, IsInSight(grid, row)) << round << " " << row;
        }
    }
}

} // namespace
