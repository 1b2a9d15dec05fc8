/// Random images for round trips.
#pragma once

#include <random>

#include "workbench/document/raster_data.h"

/// Gives the image a form of any colour space that the host has, pixels, place and box.  Some start elsewhere
/// than at pixel (0, 0), lack their last rows, or have no extent at all.
/// @param recordable  numbers of a record's width, and colour spaces that only a record keeps
void MakeRandomRaster(workbench::RasterData& raster, bool recordable, std::mt19937& random);
