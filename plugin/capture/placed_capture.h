/// Placed art and linked rasters: notes that name the file, and enter it in the link list.
#pragma once

#include "suites/host_types.h"

/// Adds one note to `curRecord` with the stored file's name, the matrix and the options, as far as the host
/// tells them, and behind the text the paint of the art's style, if it paints.  The matrix's translation is
/// the centre of the art's bounds, relative to `origin`.
void PostArtPlacedProcess(ArtHandle placed, const HostPoint* origin);

/// The same for a raster whose data is a linked file: name and matrix alone.
void PostArtLinkedRasterProcess(ArtHandle raster, const HostPoint* origin);
