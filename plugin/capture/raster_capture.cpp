#include "plugin/capture/raster_capture.h"

#include <cstring>

#include "plugin/capture/art_paint.h"
#include "plugin/host/suites.h"
#include "plugin/objects/conversions.h"
#include "plugin/objects/object_stream.h"
#include "plugin/objects/raster_tiles.h"
#include "plugin/store/trace.h"

namespace {

/// A raster object in the making.
struct RasterObject {
    MemoryHandle& block;
    uint64_t used = kRasterBaseBytes;

    AidbRasterObject* stored() const { return reinterpret_cast<AidbRasterObject*>(BlockBytes(block)); }
};

bool FitsStored(const HostRasterRecord& raster) {
    for (const int32_t bound : {raster.left, raster.top, raster.right, raster.bottom}) {
        if (bound < INT16_MIN || bound > INT16_MAX) return false;
    }
    return true;
}

/// Bytes of all tiles, which bounds of 16 bits keep far below an overflow.
uint64_t BytesOfTiles(const HostRasterRecord& raster, uint32_t tileBytes) {
    if (raster.right <= raster.left || raster.bottom <= raster.top) return 0;
    const auto tiles = [](int32_t pixels) {
        return (static_cast<uint64_t>(pixels) + kTileEdge - 1) / kTileEdge;
    };
    return tiles(raster.right - raster.left) * tiles(raster.bottom - raster.top) * tileBytes;
}

HostError CaptureForm(ArtHandle art, AidbRasterObject* stored, const HostPoint& origin,
                      HostRasterRecord* raster) {
    HostMatrix matrix{};
    HostRect box{};
    HostError error = RasterSuite().GetRasterRecord(art, raster);
    if (!error) error = RasterSuite().GetRasterMatrix(art, &matrix);
    if (!error) error = RasterSuite().GetRasterBox(art, &box);
    if (error) return error;
    if (!FitsStored(*raster)) return kHostBadParameter;
    matrix.tx -= origin.x;
    matrix.ty -= origin.y;
    RasterInfoToRecord(*raster, &stored->info);
    MatrixToRecord(matrix, &stored->matrix);
    RectToRecord(box, &stored->bounds);
    return kHostNoError;
}

// The host writes right into the object: a stored tile has the form of a tile in memory.
HostError CaptureTiles(ArtHandle art, RasterObject& object, const HostRasterRecord& raster) {
    const uint16_t space = object.stored()->info.colorSpace;
    const uint32_t tileBytes = TileBytes(space);
    if (BytesOfTiles(raster, tileBytes) > INT32_MAX) return kHostOutOfMemory;
    HostError error = kHostNoError;
    ForEachTile(raster, [&](const HostTileSlice& slice) {
        uint8_t* const place = GrowObject(object.block, object.used, tileBytes, kRecordGrain);
        if (!place) {
            error = kHostOutOfMemory;
            return false;
        }
        const HostTile tile = TileAt(place, space);
        error = RasterSuite().GetRasterTile(art, &slice, &tile, &tile.bounds);
        object.stored()->tileCount += 1;
        return error == kHostNoError;
    });
    return error;
}

HostError CapturePaint(ArtHandle art, RasterObject& object) {
    int32_t colorized = 0;
    const HostError error = RasterSuite().IsColorized(art, &colorized);
    HostPathStyle paint{};
    if (error || !colorized || !ReadStylePaint(art, &paint)) return error;
    uint8_t* const place = GrowObject(object.block, object.used, sizeof(AidbRasterStyle), kRecordGrain);
    if (!place) return kHostOutOfMemory;
    auto* stored = reinterpret_cast<AidbRasterStyle*>(place);
    std::memcpy(stored->marker, kStyleMarker, sizeof stored->marker);
    StoreStylePaint(paint, &stored->style);
    return kHostNoError;
}

} // namespace

HostError PostArtRasterProcess(ArtHandle raster, MemoryHandle& object, const HostPoint* origin) {
    const TraceScope trace("PostArtRasterProcess");
    RasterObject made{object};
    HostRasterRecord record{};
    HostError error = CaptureForm(raster, made.stored(), *origin, &record);
    if (!error) error = CaptureTiles(raster, made, record);
    if (!error) error = CapturePaint(raster, made);
    if (error) return error;
    AidbObjectHeader& header = made.stored()->header;
    header.type = kRasterObject;
    header.size = static_cast<uint32_t>(made.used);
    CaptureBlend(raster, &header);
    return kHostNoError;
}
