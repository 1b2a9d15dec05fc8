// The table of suites/raster.h over the front document.

#include "suites/raster.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "workbench/suites/finite.h"
#include "workbench/suites/picture_paths.h"
#include "workbench/suites/suite_call.h"

namespace workbench {

namespace {

HostError IsDataInDocument(SuiteCall&, Of<RasterData> raster, int32_t& inDocument) {
    inDocument = raster.data.file.empty() ? 1 : 0;
    return kHostNoError;
}

HostError GetRasterFile(SuiteCall&, Of<RasterData> raster, HostText& path) {
    return PutFile(raster.data.file, path);
}

HostError GetRasterMatrix(SuiteCall&, Of<RasterData> raster, HostMatrix& matrix) {
    matrix = raster.data.matrix;
    return kHostNoError;
}

HostError SetRasterMatrix(SuiteCall&, Of<RasterData> raster, const HostMatrix& matrix) {
    if (!IsFinite(matrix)) return kHostBadParameter;
    raster.data.matrix = matrix;
    return kHostNoError;
}

HostError GetRasterRecord(SuiteCall&, Of<RasterData> raster, HostRasterRecord& record) {
    record = raster.data.record;
    return kHostNoError;
}

/// Stored records may tell anything, so that a form which can't be is refused without a fault.
HostError SetRasterRecord(SuiteCall&, Of<RasterData> raster, const HostRasterRecord& record) {
    for (const int32_t bound : {record.left, record.top, record.right, record.bottom}) {
        if (bound < -kMaxRasterSide || bound > kMaxRasterSide) return kHostRefused;
    }
    const int32_t width = record.right - record.left, height = record.bottom - record.top;
    if (width < 0 || height < 0 || width > kMaxRasterSide || height > kMaxRasterSide) return kHostRefused;
    raster.data.record = record;
    raster.data.file.clear();
    raster.data.pixels.clear();
    return kHostNoError;
}

HostError GetRasterBox(SuiteCall&, Of<RasterData> raster, HostRect& box) {
    box = raster.data.box;
    return kHostNoError;
}

HostError SetRasterBox(SuiteCall&, Of<RasterData> raster, const HostRect& box) {
    for (const double value : {box.left, box.top, box.right, box.bottom}) {
        if (!std::isfinite(value)) return kHostBadParameter;
    }
    raster.data.box = box;
    return kHostNoError;
}

HostError IsColorized(SuiteCall&, Of<RasterData> raster, int32_t& colorized) {
    colorized = raster.data.Colorized() ? 1 : 0;
    return kHostNoError;
}

// Tiles

bool HasForm(const HostTileSlice& slice) {
    return slice.top <= slice.bottom && slice.left <= slice.right && slice.front >= 0 &&
           slice.front <= slice.back && slice.back < 32;
}

bool SameSize(const HostTileSlice& a, const HostTileSlice& b) {
    return int64_t{a.right} - a.left == int64_t{b.right} - b.left &&
           int64_t{a.bottom} - a.top == int64_t{b.bottom} - b.top && a.back - a.front == b.back - b.front;
}

bool LiesIn(const HostTileSlice& inner, const HostTileSlice& outer) {
    return inner.top >= outer.top && inner.left >= outer.left && inner.bottom <= outer.bottom &&
           inner.right <= outer.right && inner.front >= outer.front && inner.back <= outer.back;
}

HostError CheckRequest(SuiteCall& call, const RasterData& raster, const HostTileSlice& inRaster,
                       const HostTile& tile, const HostTileSlice& inTile) {
    if (!tile.data) return call.Fault(kHostBadParameter, "a tile without memory");
    if (!HasForm(inRaster) || !HasForm(inTile) || !SameSize(inRaster, inTile) || !LiesIn(inTile, tile.bounds))
        return call.Fault(kHostBadParameter, "slices of a tile that don't fit each other");
    if (!raster.file.empty()) return kHostBadArt;
    return kHostNoError;
}

/// The pixels of a request that the image has, and where they lie.
struct Overlap {
    int32_t left, top, right, bottom; ///< in the image's pixels
    int firstChannel, endChannel;
};

Overlap OverlapOf(const RasterData& raster, const HostTileSlice& slice) {
    const HostRasterRecord& record = raster.record;
    return {std::max(slice.left, record.left),
            std::max(slice.top, record.top),
            std::min(slice.right, record.right),
            std::min(slice.bottom, record.bottom),
            slice.front,
            std::min(slice.back + 1, raster.Channels())};
}

/// Calls `copy(own, theirs)` for each byte that the image and the tile share; the first one is a place in the
/// image's pixels, the second one a pointer into the tile.
template <typename Copy>
void ForEachByte(const RasterData& raster, const Overlap& area, const HostTileSlice& inRaster,
                 const HostTile& tile, const HostTileSlice& inTile, Copy&& copy) {
    const auto channels = static_cast<size_t>(raster.Channels());
    for (int32_t y = area.top; y < area.bottom; ++y) {
        const size_t row = static_cast<size_t>(y - raster.record.top) * raster.RowBytes();
        const ptrdiff_t tileRow = y - inRaster.top + inTile.top - tile.bounds.top;
        for (int32_t x = area.left; x < area.right; ++x) {
            const size_t pixel = row + static_cast<size_t>(x - raster.record.left) * channels;
            const ptrdiff_t tileColumn = x - inRaster.left + inTile.left - tile.bounds.left;
            uint8_t* const place = tile.data + tileRow * tile.rowBytes + tileColumn * tile.columnBytes;
            for (int n = area.firstChannel; n < area.endChannel; ++n) {
                const int plane = n - inRaster.front + inTile.front;
                copy(pixel + static_cast<size_t>(n),
                     place + ptrdiff_t{tile.planeBytes} * plane + tile.interleave[plane]);
            }
        }
    }
}

HostError GetRasterTile(SuiteCall& call, Of<RasterData> raster, const HostTileSlice& inRaster,
                        const HostTile& tile, const HostTileSlice& inTile) {
    if (const HostError error = CheckRequest(call, raster.data, inRaster, tile, inTile)) return error;
    const std::vector<uint8_t>& pixels = raster.data.pixels;
    ForEachByte(raster.data, OverlapOf(raster.data, inRaster), inRaster, tile, inTile,
                [&pixels](size_t own, uint8_t* theirs) { *theirs = own < pixels.size() ? pixels[own] : 0; });
    return kHostNoError;
}

HostError SetRasterTile(SuiteCall& call, Of<RasterData> raster, const HostTileSlice& inRaster,
                        const HostTile& tile, const HostTileSlice& inTile) {
    if (const HostError error = CheckRequest(call, raster.data, inRaster, tile, inTile)) return error;
    std::vector<uint8_t>& pixels = raster.data.pixels;
    const Overlap area = OverlapOf(raster.data, inRaster);
    if (area.left >= area.right || area.top >= area.bottom) return kHostNoError;
    // Memory grows with what is written, not with what the record tells.
    const size_t needed = static_cast<size_t>(area.bottom - raster.data.record.top) * raster.data.RowBytes();
    if (pixels.size() < needed) pixels.resize(needed);
    ForEachByte(raster.data, area, inRaster, tile, inTile,
                [&pixels](size_t own, const uint8_t* theirs) { pixels[own] = *theirs; });
    return kHostNoError;
}

} // namespace

const void* RasterSuiteTable() {
    static constexpr AIRasterSuite table{
        Entry<"AI Raster Suite", "IsDataInDocument", IsDataInDocument>::Run,
        Entry<"AI Raster Suite", "GetRasterFile", GetRasterFile>::Run,
        Entry<"AI Raster Suite", "GetRasterMatrix", GetRasterMatrix>::Run,
        Entry<"AI Raster Suite", "SetRasterMatrix", SetRasterMatrix>::Run,
        Entry<"AI Raster Suite", "GetRasterRecord", GetRasterRecord>::Run,
        Entry<"AI Raster Suite", "SetRasterRecord", SetRasterRecord>::Run,
        Entry<"AI Raster Suite", "GetRasterBox", GetRasterBox>::Run,
        Entry<"AI Raster Suite", "SetRasterBox", SetRasterBox>::Run,
        Entry<"AI Raster Suite", "GetRasterTile", GetRasterTile>::Run,
        Entry<"AI Raster Suite", "SetRasterTile", SetRasterTile>::Run,
        Entry<"AI Raster Suite", "IsColorized", IsColorized>::Run,
    };
    return &table;
}

} // namespace workbench
