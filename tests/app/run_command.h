/// The command line as a user meets it, within the test's process.
#pragma once

#include <string>
#include <vector>

struct CommandResult {
    int code = 0;
    std::string out, err;
};

/// Runs `velquorne` with these words.
CommandResult RunCommand(const std::vector<std::string>& words);

/// Writes a text file; its folder is made if missing.
void WriteText(const std::string& path, const std::string& text);
