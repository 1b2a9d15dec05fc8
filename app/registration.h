/// Putting the front document's selection into a group.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "app/session.h"

/// cp932, already cut to what a record holds.
struct RecordTexts {
    std::string name, kind, comment;
};

struct Registered {
    int32_t number = -1;
    uint32_t objects = 0;
    uint32_t bytes = 0;                    ///< in the group file
    std::vector<std::string> lostPictures; ///< linked files that couldn't be copied beside it, UTF-8
};

/// Captures what is selected in the front document, appends it to the group as a record and copies its linked
/// files beside it.  False, and a
/// sentence in *error, if nothing was there to capture or the record can't be written; the group is then
/// what it was.
bool RegisterFrontDocument(Session& session, const std::string& groupName, const RecordTexts& texts,
                           Registered* registered, std::string* error);

/// Copies the linked files of what is selected in the front document beside a record of it that is stored
/// already: for a registration that was interrupted between the two.
void CopyFilesOfFrontDocument(Session& session, const std::string& groupName, int32_t number);
