/// A document as JSON, exactly: every field of every art object, numbers as the shortest text that reads
/// back as the same double.
#pragma once

#include <nlohmann/json.hpp>

#include "workbench/document/document.h"

namespace workbench {

/// The schema of the dump; it grows when a field changes its meaning.
inline constexpr int kDocumentSchema = 1;

/// `{"schema", "title", "page", "layers": [{"title", "visible", "locked", "art": [...]}], "swatches"}`.
/// Handles don't appear: gradients and patterns are written out where they are used, custom colours by name.
nlohmann::ordered_json DocumentJson(const Document& document);

/// One art object with all its members.
nlohmann::ordered_json ArtJson(const Document& document, const Art& art);

} // namespace workbench
