/// What becomes of a record's fonts on this machine, for people.
#pragma once

#include <string>
#include <vector>

/// A sentence for each font of the record in `curRecord` that this machine hasn't, each once: "Ryumin-KL is
/// missing, IPAGothic-Regular stands in for it".  The suites are held by the caller.
std::vector<std::string> MissingFonts();
