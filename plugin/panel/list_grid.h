/// Where the rows of a list stand: arithmetic that needs no window.
#pragma once

#include <windows.h>

#include <cstdint>

/// Cells of one size: in lines of `perRow`, or one below the other over the full width.
struct ListGrid {
    RECT client;
    int cell;   ///< height of a row in pixels; in icon form also its width
    int perRow; ///< cells in a line, at least 1
    int scroll; ///< lines above the top of the client area
    bool icons; ///< icon form
};

/// A list in the view `toolMode`: 1 and 2 are the icon forms, which the record list alone has.
ListGrid MakeListGrid(const RECT& client, int toolMode, bool isRecordList, int scroll);

/// The row's rectangle.  Neighbours share their borders; its right and bottom edges count as inside in tests.
RECT CellRect(const ListGrid& grid, int32_t row);

/// The first of `rowCount` rows that holds the point, all edges included; -1 if none does.
int32_t RowAt(const ListGrid& grid, int32_t rowCount, POINT point);

/// The rows that show at least a line of pixels: from `first` up to but not including `end`.
struct RowRange {
    int32_t first, end;
};
RowRange RowsInSight(const ListGrid& grid, int32_t rowCount);

/// The greatest position of the list's scroll bar: the last line can come to the top.
int32_t LastScrollLine(const ListGrid& grid, int32_t rowCount);
