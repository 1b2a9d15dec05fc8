/// What a change that failed or was killed may leave behind, told from what it must not.
#pragma once

#include <filesystem>
#include <string>

#include "tests/soak/store_model.h"

/// What the check says of a database beyond leftovers that belong to nothing: a line for each finding, and
/// one if it doesn't tell of exactly those records that lack their file.  Empty if all is as it may be.
/// @param model  what the database holds, as read
std::string UnexplainedFindings(const std::filesystem::path& root, const Model& model);
