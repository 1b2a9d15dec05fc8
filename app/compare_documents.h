/// Two documents side by side, field by field.
#pragma once

#include <string>
#include <vector>

#include "app/format_losses.h"
#include "workbench/document/document.h"

/// Differences that a person can read, each with its place in the art; at most 50 and a line that counts the
/// rest.
///
/// `stored` is a document from which ApplyFormatLosses has taken what a record can't hold, `rebuilt` one
/// into which the record was loaded at the place that it came from.  All of the first one's layers are
/// compared with the current layer of the second one.  Numbers may differ by what storing them as Fixed
/// through a 32-bit float explains, and by no more.
std::vector<std::string> CompareDocuments(const workbench::Document& stored, workbench::Document& rebuilt,
                                          const RecordFrame& frame);

/// How the two pages look: empty if no more differs than the edges' antialiasing, else a sentence.
std::string ComparePictures(const workbench::Document& stored, const workbench::Document& rebuilt);
