/// What a database holds, for lists, sheets and reports.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "plugin/store/record_layout.h"

/// All groups of the database, as the plug-in names them, in its order.  The suites must be held.
std::vector<std::string> AllGroups();

/// `\Folder\Sub\Group` in UTF-8, always with a backslash in front.
std::string GroupForPeople(const std::string& groupName);

struct RecordSummary {
    int32_t number = 0;
    RecordHeader header{}; ///< host order
};

/// The headers of a group's records in file order.  *expected is what the count word says: more than were
/// read if the file is damaged.
std::vector<RecordSummary> ReadHeaders(const std::string& groupName, uint32_t* expected);

/// A record's header in host order; false if there is none of that number or it can't be read.
bool ReadHeader(const std::string& groupName, int32_t number, RecordHeader* header);

/// A record's preview: 128 x 128 pixels of 4 bytes; empty if the record can't be read.
std::vector<uint8_t> ReadPreview(const std::string& groupName, int32_t number);

/// Points from the header's Fixed bounds.
double WidthOf(const RecordHeader& header);
double HeightOf(const RecordHeader& header);

/// A header's text field as UTF-8; bytes behind a missing NUL don't count.
std::string FieldText(const char* field, size_t capacity);
