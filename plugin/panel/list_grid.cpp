#include "plugin/panel/list_grid.h"

#include <algorithm>

#include "plugin/panel/list_table.h"

namespace {

/// The first cell whose far edge is at or behind `distance`, in cells from the start.
int FirstCellAt(int distance, int cell) {
    // Rounded up, also below zero.
    const int up = distance > 0 ? (distance + cell - 1) / cell : distance / cell;
    return up - 1;
}

bool Holds(const RECT& rectangle, POINT point) {
    return point.x >= rectangle.left && point.x <= rectangle.right && point.y >= rectangle.top &&
           point.y <= rectangle.bottom;
}

} // namespace

ListGrid MakeListGrid(const RECT& client, int toolMode, bool isRecordList, int scroll) {
    ListGrid grid{client, kListRowHeight, 1, scroll, false};
    if (!isRecordList || (toolMode != 1 && toolMode != 2)) return grid;
    grid.icons = true;
    grid.cell = toolMode == 1 ? kSmallCell : kLargeCell;
    grid.perRow = std::max(1, static_cast<int>(client.right - client.left) / grid.cell);
    return grid;
}

RECT CellRect(const ListGrid& grid, int32_t row) {
    const int top = grid.client.top + (row / grid.perRow - grid.scroll) * grid.cell;
    const int bottom = top + grid.cell;
    if (!grid.icons) return {grid.client.left, top, grid.client.right, bottom};
    const int left = grid.client.left + row % grid.perRow * grid.cell;
    return {left, top, left + grid.cell, bottom};
}

int32_t RowAt(const ListGrid& grid, int32_t rowCount, POINT point) {
    const int line = FirstCellAt(point.y - grid.client.top, grid.cell) + grid.scroll;
    int column = 0;
    if (grid.icons) column = std::max(0, FirstCellAt(point.x - grid.client.left, grid.cell));
    if (column >= grid.perRow) return -1;
    const int32_t row = std::max(0, line) * grid.perRow + column;
    return row < rowCount && Holds(CellRect(grid, row), point) ? row : -1;
}

RowRange RowsInSight(const ListGrid& grid, int32_t rowCount) {
    const int height = grid.client.bottom - grid.client.top;
    if (height <= 0) return {0, 0};
    const int firstLine = std::max(0, grid.scroll);
    const int endLine = std::max(firstLine, grid.scroll + (height + grid.cell - 1) / grid.cell);
    const auto row = [&](int line) {
        return static_cast<int32_t>(std::min<int64_t>(rowCount, int64_t{line} * grid.perRow));
    };
    return {row(firstLine), row(endLine)};
}

int32_t LastScrollLine(const ListGrid& grid, int32_t rowCount) {
    int32_t lines = rowCount;
    if (grid.icons) lines = (lines - 1) / grid.perRow + 1;
    return lines != 0 ? lines - 1 : 0;
}
