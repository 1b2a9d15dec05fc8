/// The nine cells of the origin control: cell i sets `originMode` i.
#pragma once

#include <windows.h>

constexpr int kOriginCells = 9;

/// The cells run down the columns: 0 to 2 are the left one.
RECT OriginCell(const RECT& control, int cell);

/// The first cell that holds the point, its right and bottom edges included; -1 if none does.
int OriginCellAt(const RECT& control, POINT point);
