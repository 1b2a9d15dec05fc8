/// Images in the dump of a document.
#pragma once

#include <nlohmann/json.hpp>

#include "workbench/document/raster_data.h"

namespace workbench {

/// Adds every field.  The pixels stand as their FNV-1a hash (64 bits, hexadecimal), taken up to the last byte
/// that isn't 0, so that rows which were never written and rows of zeros are the same.
void AddRasterJson(const RasterData& raster, nlohmann::ordered_json* json);

} // namespace workbench
