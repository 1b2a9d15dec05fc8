/// Images of two documents side by side.
#pragma once

#include <string>

#include "app/difference_list.h"
#include "workbench/document/raster_data.h"

/// Compares form, place, box and pixels.  Rows that were never written equal rows of zeros.
/// @param origin  the art point that is (0, 0) in the record, where numbers lose what Fixed can't hold
void CompareRasters(const workbench::RasterData& expected, const workbench::RasterData& actual,
                    const HostPoint& origin, const std::string& place, DifferenceList* differences);
