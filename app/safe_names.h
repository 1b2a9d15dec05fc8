/// Names of files and folders that every file system takes.
#pragma once

#include <map>
#include <set>
#include <string>

/// A UTF-8 text as the name of a file or folder: without separators, control characters and what some system
/// refuses, not hidden, no device's name, at most kSafeNameBytes bytes.  "untitled" for an empty text.
std::string SafeFileName(const std::string& utf8);
constexpr size_t kSafeNameBytes = 200;

/// Gives out names that differ from all others in their folder in more than case.
class NamesInFolders {
public:
    /// `stem` and `extension`, with a number between them if the name is taken.
    std::string Take(const std::string& folder, const std::string& stem, const std::string& extension);

private:
    std::map<std::string, std::set<std::string>> taken_; ///< folder to its names, folded
};
