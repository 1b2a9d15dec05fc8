/// The rows, the selection and the geometry of the panel's two lists, which are owner-drawn statics.
///
/// A list has its entry in `globals->lists` from the first AddListRow on; without one it has no rows and
/// nothing selected.  Texts are cp932, cut at kNameBytes - 1 bytes.
#pragma once

#include <windows.h>

#include <cstdint>

#include "plugin/panel/list_grid.h"

constexpr int kListRowHeight = 24;
constexpr int kSmallCell = 33; ///< icons of 32
constexpr int kLargeCell = 65; ///< icons of 64

/// Appends a row; nothing happens if the table is full or memory ran out.
void AddListRow(HWND control, const char* text);

/// No rows and nothing selected; the window is painted anew with its background, if it is visible.
void ClearListRows(HWND control);

/// Takes a row out; the selection stays where it is.
void DeleteListRow(HWND control, int32_t row);

int32_t GetRowCount(HWND control);
int32_t GetSelectedRow(HWND control); ///< -1: none

/// Selects a row, or none with -1 or a row that isn't there, and has the old and the new one painted again.
void SelectListRow(HWND control, int32_t row);

/// Copies at most `size` bytes, a NUL among them; an empty text if there is no such row.
void GetListRowText(HWND control, int32_t row, char* text, int32_t size);

/// How the list's rows stand at the moment: asks its window and its scroll bar, so once for many rows.
ListGrid GridOfList(HWND control);

/// Where a row stands in the list's client area, also out of sight.
void GetRowRect(HWND control, int32_t row, RECT* rectangle);

/// The first row whose rectangle holds the point, its right and bottom edges included; -1 if none does.
int32_t RowFromPoint(HWND control, POINT point);

/// Frees the rows of all lists and forgets the lists.
void FreeListTable();
