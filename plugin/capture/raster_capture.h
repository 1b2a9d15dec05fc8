/// From an image whose data lies in the document to a raster object.
#pragma once

#include "plugin/store/memory_handle.h"
#include "suites/host_types.h"

/// Writes the raster object of `raster` into `object`, a zeroed block of at least kRasterBaseBytes, which
/// grows by the tiles and, for a colourized image with a style, by the style's paint, whether it paints or
/// not.  The paint's custom colours go into the custom colour table.
///
/// Pixels stand as the host gives them; what a tile has beyond the image's edges, or beyond its channels, is
/// 0 unless the host writes there.  An image is stored whole or not at all: on an error the object's size
/// word stays 0, and the object isn't to be added.
/// @param origin  the art point that becomes (0, 0) in the record
/// @return the first host error; kHostBadParameter for pixel bounds that a record's 16 bits can't hold;
///         kHostOutOfMemory also for an image that is larger than any record can be
HostError PostArtRasterProcess(ArtHandle raster, MemoryHandle& object, const HostPoint* origin);
