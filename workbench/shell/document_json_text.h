/// Text frames in the dump of a document.
#pragma once

#include <functional>
#include <nlohmann/json.hpp>

#include "workbench/document/document.h"

namespace workbench {

/// Frame kind, orientation, matrix, path, the units that the frame shows, and the whole story in runs of
/// equal attributes: each frame of a chain has all of it.
void AddTextJson(const Document& document, const Art& art,
                 const std::function<nlohmann::ordered_json(const HostColor&)>& colorOf,
                 nlohmann::ordered_json* json);

} // namespace workbench
