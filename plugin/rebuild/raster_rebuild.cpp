#include "plugin/rebuild/raster_rebuild.h"

#include "plugin/host/suites.h"
#include "plugin/objects/conversions.h"
#include "plugin/objects/object_stream.h"
#include "plugin/objects/raster_tiles.h"
#include "plugin/rebuild/art_paint.h"

namespace {

HostError SetForm(const LoadState& load, ArtHandle art, const AidbRasterObject& stored,
                  const HostRasterRecord& record) {
    HostMatrix matrix{};
    HostRect box{};
    MatrixFromRecord(stored.matrix, &matrix);
    RectFromRecord(stored.bounds, &box);
    if (!load.inPattern) {
        const HostPoint offset = PlacementOffset(load);
        matrix.tx += offset.x;
        matrix.ty += offset.y;
    }
    HostError error = RasterSuite().SetRasterRecord(art, &record);
    if (!error) error = RasterSuite().SetRasterMatrix(art, &matrix);
    if (!error) error = RasterSuite().SetRasterBox(art, &box);
    return error;
}

/// The host reads the tiles where they lie: the record doesn't move while it is loaded.
HostError SetTiles(ArtHandle art, const HostRasterRecord& record, uint16_t space, std::span<uint8_t> tiles) {
    const uint32_t tileBytes = TileBytes(space);
    HostError error = kHostNoError;
    ForEachTile(record, [&](const HostTileSlice& slice) {
        if (tiles.empty()) return false;
        const HostTile tile = TileAt(tiles.data(), space);
        error = RasterSuite().SetRasterTile(art, &slice, &tile, &tile.bounds);
        tiles = tiles.subspan(tileBytes);
        return error == kHostNoError;
    });
    return error;
}

} // namespace

LoadStep LoadArtRasterProcess(LoadState& load, std::span<uint8_t> object) {
    const auto* stored = ViewAt<AidbRasterObject>(object);
    if (!stored) return LoadStep::kGoOn;
    ArtHandle art = nullptr;
    if (NewLoadedArt(load, kArtRaster, &art) != kHostNoError) return LoadStep::kGoOn;

    HostRasterRecord record{};
    RasterInfoFromRecord(stored->info, &record);
    load.lastResult = SetForm(load, art, *stored, record);
    if (load.lastResult != kHostNoError) return LoadStep::kGoOn;
    SetBlend(art, stored->header);
    load.lastResult = SetTiles(art, record, stored->info.colorSpace, RasterTiles(object));
    if (const AidbRasterStyle* paint = FindRasterStyle(object)) SetStylePaint(art, paint->style);
    return LoadStep::kGoOn;
}
