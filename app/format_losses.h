/// What a record can't keep of a document, applied to the document itself.
///
/// A comparison of a drawing with what comes back from a record first takes from the drawing what no
/// record can hold, counting it by name; whatever differs then is a fault.  Names of art, selection and
/// locks, guides and art of kinds that aren't stored are not part of a record and are not counted.
#pragma once

#include <map>
#include <string>

#include "workbench/document/document.h"

struct RecordFrame {
    HostPoint origin{}; ///< the art point that is (0, 0) in the record
};

std::map<std::string, int> ApplyFormatLosses(workbench::Document& document, const RecordFrame& frame);

/// The largest coordinate of a record, in points from its origin.
inline constexpr double kLargestFixed = 2147483647.0 / 65536.0;
