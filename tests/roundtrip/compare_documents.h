/// Whether a rebuilt document is what was registered, as closely as a record's numbers allow.
#pragma once

#include <string>
#include <vector>

#include "workbench/document/document.h"

/// Compares the art of all layers of `original`, topmost first, with that of the only layer of `rebuilt`,
/// field by field.  The art was stored relative to `origin` and placed there again.
/// @return one line for each difference
std::vector<std::string> CompareDocuments(workbench::Document& original, workbench::Document& rebuilt,
                                          const HostPoint& origin);
