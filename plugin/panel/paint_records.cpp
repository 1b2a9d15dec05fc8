#include "plugin/panel/paint_records.h"

#include <algorithm>
#include <cstdio>
#include <span>

#include "plugin/frame/globals.h"
#include "plugin/panel/list_paint.h"
#include "plugin/panel/list_table.h"
#include "plugin/panel/text_cut.h"
#include "plugin/panel/thumbnail.h"
#include "plugin/panel/thumbnail_memo.h"
#include "plugin/store/clock_1904.h"
#include "plugin/store/cp932.h"
#include "plugin/store/lzss.h"
#include "plugin/store/record.h"
#include "plugin/store/record_index.h"
#include "plugin/store/record_layout.h"
#include "plugin/store/swap_words.h"

namespace {

/// What a row shows of its record.
struct RecordFace {
    char name[kRecordNameBytes] = "Untitled";
    char kind[kRecordNameBytes] = "";
    char comment[kRecordCommentBytes] = "";
    SYSTEMTIME date{};
    bool hasPreview = false;
    std::span<const uint8_t> preview{}; ///< packed, in the record that was read
};

constexpr uint32_t kMostPackedPreview = MostPackedBytes(kPreviewBytes);

/// The packed preview of a record in file order, as far as a preview read delivers it.
std::span<const uint8_t> PackedPreviewOf(const RecordStart& start) {
    const uint32_t size = SwapLong(start.header.size);
    if (size < kSmallestRecordBytes) return {};
    const uint32_t bytes =
        std::min({SwapLong(start.packedPreview), size - kSmallestRecordBytes, kMostPackedPreview});
    return {reinterpret_cast<const uint8_t*>(&start) + kPreviewOffset, bytes};
}

/// Reads the record of a row, unconverted.  `record` serves all rows of a paint: a block of its size costs
/// more than the read.
RecordFace ReadFace(int32_t row, MemoryHandle& record) {
    RecordFace face;
    char group[kNameBytes];
    int32_t number = 0;
    if (GetRecordOfRow(row, group, &number) == 0) return face;
    if (!record) record = NewRecord();
    if (!record) return face;
    AidbReadRecord(group, number, &record, kReadPreview, false);
    const auto& start = *reinterpret_cast<const RecordStart*>(BlockBytes(record));
    if (start.header.size == 0) return face;
    CopyText(face.name, sizeof face.name, start.header.name);
    CopyText(face.kind, sizeof face.kind, start.header.kind);
    CopyText(face.comment, sizeof face.comment, start.header.comment);
    TimeFrom1904Seconds(SwapLong(start.header.created), &face.date);
    face.hasPreview = true;
    face.preview = PackedPreviewOf(start);
    return face;
}

void ShowPicture(HDC context, const RECT& box, const RecordFace& face) {
    if (!face.hasPreview) return;
    const uint32_t* pixels = ThumbnailOf(face.preview, box.right - box.left);
    if (pixels) DrawThumbnail(context, box, pixels);
}

// Columns of the list form, in pixels from the right end of the thumbnail's box.
constexpr int kNameAt = 5, kKindAt = 155, kDateAt = 255, kCommentAt = 355;
constexpr int kNameLimit = 140, kKindLimit = 90, kCommentLimit = 240;
constexpr int kNoLimit = 0x7FFFFFFF;

/// The sorted column, from the square at the line's left on.
RECT SortColumn(const RECT& square) {
    const int start = square.right + 148;
    switch (globals->sortMode) {
        case kByKind:
            return {start, square.top, start + 100, square.bottom};
        case kByDate:
            return {start + 100, square.top, start + 200, square.bottom};
        default:
            return {square.left, square.top, start, square.bottom};
    }
}

void WriteText(HDC context, int x, int y, const char* text, int limit, COLORREF color) {
    const ShownText shown = CutToWidth(context, text, limit);
    SetTextColor(context, color);
    TextOutA(context, x, y, shown.bytes, shown.count);
}

void WriteLine(HDC context, const RECT& box, const RecordFace& face, bool selected) {
    const int y = box.top + 1;
    const COLORREF color = RowTextColor(selected);
    // The column of dates keeps its colour in a selected row.
    const COLORREF dateColor = RowTextColor(selected && globals->sortMode != kByDate);
    char date[64];
    std::snprintf(date, sizeof date, "%2.2d/%2.2d/%2.2d %2.2d:%2.2d", face.date.wYear % 100, face.date.wMonth,
                  face.date.wDay, face.date.wHour, face.date.wMinute);
    const auto writeText = [&](int at, const char* text, int limit, COLORREF textColor) {
        WriteText(context, box.right + at, y, text, limit, textColor);
    };
    writeText(kNameAt, face.name, kNameLimit, color);
    writeText(kKindAt, face.kind, kKindLimit, color);
    writeText(kDateAt, date, kNoLimit, dateColor);
    writeText(kCommentAt, face.comment, kCommentLimit, dateColor);
}

void FillStock(HDC context, const RECT& rectangle, int brush) {
    FillRect(context, &rectangle, static_cast<HBRUSH>(GetStockObject(brush)));
}

void PaintLine(ListPaint& paint, const RECT& cell, const RecordFace& face, bool selected) {
    const RECT line = {cell.left, cell.top, cell.right, cell.bottom + 1};
    paint.Row(line, selected);
    RECT box = SquareOfLine(line);
    const RECT column = SortColumn(box);
    FillRect(paint.context(), &column, selected ? GetSysColorBrush(COLOR_HIGHLIGHT) : paint.sortGrey());
    InflateRect(&box, -1, -1);
    FillStock(paint.context(), box, BLACK_BRUSH);
    InflateRect(&box, -1, -1);
    FillStock(paint.context(), box, WHITE_BRUSH);
    ShowPicture(paint.context(), box, face);
    WriteLine(paint.context(), box, face, selected);
}

void PaintCell(ListPaint& paint, const RECT& cell, const RecordFace& face, bool selected) {
    RECT box = {cell.left + 1, cell.top + 1, cell.right, cell.bottom};
    FillStock(paint.context(), box, WHITE_BRUSH);
    InflateRect(&box, -1, -1);
    ShowPicture(paint.context(), box, face);
    InflateRect(&box, 2, 2);
    FrameRect(paint.context(), &box, paint.sortGrey());
    if (!selected) return;
    InflateRect(&box, -1, -1);
    FrameRect(paint.context(), &box, GetSysColorBrush(COLOR_HIGHLIGHT));
}

void PaintRow(ListPaint& paint, const ListGrid& grid, int32_t row, bool selected, MemoryHandle& record) {
    const RecordFace face = ReadFace(row, record);
    const RECT cell = CellRect(grid, row);
    if (grid.icons) {
        PaintCell(paint, cell, face, selected);
    } else {
        PaintLine(paint, cell, face, selected);
    }
}

} // namespace

void PaintRecordList(HDC context, HWND control) {
    const ListGrid grid = GridOfList(control);
    FillWith(context, grid.client, kListGrey);
    const RowRange rows = RowsInSight(grid, GetRowCount(control));
    const int32_t selected = GetSelectedRow(control);
    ListPaint paint(context);
    HandleOwner record;
    for (int32_t row = rows.first; row < rows.end; ++row) {
        PaintRow(paint, grid, row, row == selected, record.get());
    }
}

void PaintRecordRow(HDC context, HWND control, int32_t row, bool selected) {
    const ListGrid grid = GridOfList(control);
    const RowRange rows = RowsInSight(grid, row + 1);
    if (row < rows.first || row >= rows.end) return;
    ListPaint paint(context);
    HandleOwner record;
    PaintRow(paint, grid, row, selected, record.get());
}
