/// The tiles of a stored raster as the host's tile requests name them; capture and rebuild walk them alike.
#pragma once

#include <cstdint>

#include "plugin/objects/object_stream.h"
#include "suites/raster.h"

constexpr int32_t kLastPlane = 31; ///< of all requests, whatever channels the image has

/// A tile in memory at `data`: kTileEdge rows without gaps, channel n at place n of its pixel.
inline HostTile TileAt(uint8_t* data, uint16_t colorSpace) {
    const auto pixelBytes = static_cast<int32_t>(TilePixelBytes(colorSpace));
    constexpr auto edge = static_cast<int32_t>(kTileEdge);
    HostTile tile{data, {0, 0, edge, edge, 0, kLastPlane}, edge * pixelBytes, pixelBytes, 0, {}};
    for (int16_t n = 0; n <= kLastPlane; ++n) tile.interleave[n] = n;
    return tile;
}

/// Calls `visit(slice)` for the tiles of an image, row after row of tiles, within a row from left to right,
/// until it returns false.  Tiles at the right and lower edges are whole and reach beyond the image.  Bounds
/// are those that a record can hold, 16 bits each.
template <typename Visit>
void ForEachTile(const HostRasterRecord& raster, Visit&& visit) {
    constexpr auto edge = static_cast<int32_t>(kTileEdge);
    for (int32_t y = raster.top; y < raster.bottom; y += edge) {
        for (int32_t x = raster.left; x < raster.right; x += edge) {
            if (!visit(HostTileSlice{y, x, y + edge, x + edge, 0, kLastPlane})) return;
        }
    }
}
