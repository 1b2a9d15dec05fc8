/// The record list's face.
#pragma once

#include <windows.h>

#include <cstdint>

/// Paints the background and all rows in sight.  Every record that shows is read from the store, header and
/// preview; nothing of it is kept but how its picture looks small (thumbnail_memo.h).
void PaintRecordList(HDC context, HWND control);

/// Paints one row; nothing if it is out of sight.
void PaintRecordRow(HDC context, HWND control, int32_t row, bool selected);
