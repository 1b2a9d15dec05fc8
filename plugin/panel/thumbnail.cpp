#include "plugin/panel/thumbnail.h"

#include <array>

namespace {

constexpr int kPreviewSide = 128;
constexpr int kChannels = 4;
constexpr int kRowBytesOfPreview = kPreviewSide * kChannels;
constexpr uint32_t kOne = 1u << 24; ///< of the reciprocals below

/// The target pixel of a preview pixel: the nearest one when 0 and 127 fall on 0 and `size` - 1.  A pixel
/// never lies halfway, so whole numbers tell exactly.
constexpr int TargetOf(int pixel, int size) {
    constexpr int last = kPreviewSide - 1;
    return (2 * pixel * (size - 1) + last) / (2 * last);
}

/// The first preview pixel of each target pixel, and the end behind the last.
using Bounds = std::array<int, kLargestThumbnail + 1>;

void FillBounds(Bounds& bounds, int size) {
    int pixel = 0;
    for (int target = 0; target < size; ++target) {
        while (pixel < kPreviewSide && TargetOf(pixel, size) < target) ++pixel;
        bounds[static_cast<size_t>(target)] = pixel;
    }
    bounds[static_cast<size_t>(size)] = kPreviewSide;
}

/// Sums over one stretch of rows, by column and channel: at most 128 * 255.
using ColumnSums = std::array<uint16_t, kRowBytesOfPreview>;

void SumColumns(ColumnSums& sums, const uint8_t* preview, int first, int end) {
    sums.fill(0);
    for (int y = first; y < end; ++y) {
        const uint8_t* row = preview + y * kRowBytesOfPreview;
        for (size_t i = 0; i < sums.size(); ++i) sums[i] = static_cast<uint16_t>(sums[i] + row[i]);
    }
}

/// sum / count.  The product with the reciprocal is exact, and fits, for the counts of boxes of 19 and more.
uint32_t Mean(uint32_t sum, uint32_t count, uint32_t reciprocal) {
    return count <= 64 ? sum * reciprocal / kOne : sum / count;
}

uint32_t MeanColor(const ColumnSums& sums, int first, int end, int rows) {
    uint32_t red = 0, green = 0, blue = 0;
    const uint16_t* sum = sums.data() + first * kChannels;
    for (int x = first; x < end; ++x, sum += kChannels) {
        red += sum[1];
        green += sum[2];
        blue += sum[3];
    }
    const auto count = static_cast<uint32_t>((end - first) * rows);
    const uint32_t reciprocal = (kOne + count - 1) / count;
    return Mean(red, count, reciprocal) << 16 | Mean(green, count, reciprocal) << 8 |
           Mean(blue, count, reciprocal);
}

} // namespace

void ScalePreview(const uint8_t* preview, int width, int height, uint32_t* out) {
    Bounds columns, rows;
    FillBounds(columns, width);
    FillBounds(rows, height);
    ColumnSums sums;
    for (size_t dy = 0; dy < static_cast<size_t>(height); ++dy) {
        SumColumns(sums, preview, rows[dy], rows[dy + 1]);
        for (size_t dx = 0; dx < static_cast<size_t>(width); ++dx) {
            *out++ = MeanColor(sums, columns[dx], columns[dx + 1], rows[dy + 1] - rows[dy]);
        }
    }
}

void DrawThumbnail(HDC context, const RECT& box, const uint32_t* pixels) {
    const int width = box.right - box.left, height = box.bottom - box.top;
    BITMAPINFO information{};
    information.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    // White pixels are drawn on white.
    SetDIBitsToDevice(context, box.left, box.top, static_cast<DWORD>(width), static_cast<DWORD>(height), 0, 0,
                      0, static_cast<UINT>(height), pixels, &information, DIB_RGB_COLORS);
}
