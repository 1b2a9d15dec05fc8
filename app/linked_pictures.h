/// What became of a record's linked pictures, for people.
#pragma once

#include <string>
#include <vector>

#include "plugin/rebuild/load_state.h"

/// The stored names of the pictures that the record in `curRecord` places and that can't be opened, UTF-8,
/// each once.  Looks only, whatever `source` says.
std::vector<std::string> MissingPictures(const RecordSource& source);

/// "a.png, b.jpg" for a line of a report.
std::string JoinedNames(const std::vector<std::string>& names);
