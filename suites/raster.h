/// Images: their record, where they lie, and their pixels tile by tile.
///
/// The rules of suites/art.h hold here too.
#pragma once

#include "suites/host_types.h"

extern "C" {

/* A box of pixels, y growing downward, right and bottom not included; and the planes from `front` to `back`,
   both included, one plane for each channel. */
typedef struct HostTileSlice {
    int32_t top, left, bottom, right, front, back;
} HostTileSlice;

/* Memory of the caller that holds a box of pixels.  The pixel at the upper left corner of `bounds` starts at
   `data`, its right neighbour `columnBytes` behind it, the one below `rowBytes` behind it; channel n of a
   pixel lies `interleave[n]` bytes behind the pixel's start, and n times `planeBytes` behind that. */
typedef struct HostTile {
    uint8_t* data;
    HostTileSlice bounds;
    int32_t rowBytes, columnBytes, planeBytes;
    int16_t interleave[32];
} HostTile;

/* AI Raster Suite, version 10: images. */
typedef struct AIRasterSuite {
    /* 1 if the image's data lies in the document, 0 if it is a linked file. */
    HostError (*IsDataInDocument)(ArtHandle raster, int32_t* inDocument);
    HostError (*GetRasterFile)(ArtHandle raster, UnicodeStringHandle path);

    /* Pixels to art coordinates: pixel (x, y) has its corner at matrix(x, -y). */
    HostError (*GetRasterMatrix)(ArtHandle raster, HostMatrix* matrix);
    HostError (*SetRasterMatrix)(ArtHandle raster, const HostMatrix* matrix);
    HostError (*GetRasterRecord)(ArtHandle raster, HostRasterRecord* record);

    /* Gives the image its form and data of its own, which is empty: all channels 0, alpha among them.
       kHostRefused for a form that the host doesn't have. */
    HostError (*SetRasterRecord)(ArtHandle raster, const HostRasterRecord* record);

    /* The image's extent in pixels as whoever made it told it; nothing is drawn or cut by it. */
    HostError (*GetRasterBox)(ArtHandle raster, HostRect* box);
    HostError (*SetRasterBox)(ArtHandle raster, const HostRect* box);

    /* Copies the pixels of `inRaster` into those of `inTile`, two slices of the same size, the second within
       the tile's bounds.  The slice may reach beyond the image: places of pixels and of channels that the
       image doesn't have keep what they hold.  kHostBadParameter for other slices; kHostBadArt for a linked
       file. */
    HostError (*GetRasterTile)(ArtHandle raster, const HostTileSlice* inRaster, const HostTile* tile,
                               const HostTileSlice* inTile);

    /* The other way.  What lies outside of the image is passed over; the tile's memory is only read. */
    HostError (*SetRasterTile)(ArtHandle raster, const HostTileSlice* inRaster, const HostTile* tile,
                               const HostTileSlice* inTile);

    /* 1 if the image takes its colour from the fill of its art style. */
    HostError (*IsColorized)(ArtHandle raster, int32_t* colorized);
} AIRasterSuite;

} /* extern "C" */
