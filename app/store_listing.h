/// A database's folders, groups and pooled pictures as they lie on the disk.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "app/store_check.h"

struct StoreListing {
    std::map<std::string, std::string> groups; ///< group (as the plug-in names it) to its file on disk
    std::map<std::string, std::string> dataDirectories; ///< group to its data directory on disk
    std::vector<std::string> pooled;                    ///< names on disk in the image folder
    std::string imageFolder;                            ///< on disk; empty if there is none
    std::vector<Finding> findings; ///< names that can't stand there, leftovers, strangers
};

/// Entries whose names begin with a dot are passed over, and a link that lies behind another one.
StoreListing ListStore(const std::string& folder);
