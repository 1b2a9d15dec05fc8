/// What is wrong with the data directories of a database, the notes in them and the image folder.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "app/store_check_groups.h"
#include "app/store_listing.h"

/// Holds data directories, notes and the image folder against the groups.
std::vector<Finding> CheckLinkedFiles(const std::string& folder, const StoreListing& listing,
                                      const std::map<std::string, GroupFacts>& groups);
