/// One process's share of an import.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

struct ImportOutcome {
    std::string file;     ///< relative to the imported folder
    bool skipped = false; ///< taken before
    std::string refused;  ///< why, empty if it was stored
    std::string lost;     ///< what the record lacks of the file, empty if nothing
};

struct ImportShare {
    std::string source, database;                                         ///< absolute folders
    std::vector<std::pair<std::string, std::vector<std::string>>> groups; ///< group, its files
};

/// Stores every file of the share, in order, and reports each.  False, and a sentence in *error, if the
/// database itself can't be used.
bool ImportShareOfFiles(const ImportShare& share, const std::function<void(const ImportOutcome&)>& report,
                        std::string* error);
