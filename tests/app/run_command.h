/// The command line as a user meets it, within the test's process.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/support/temporary_folder.h"

struct CommandResult {
    int code = 0;
    std::string out, err;
};

/// Runs `velquorne` with these words.
CommandResult RunCommand(const std::vector<std::string>& words);

/// Writes a text file; its folder is made if missing.
void WriteText(const std::string& path, const std::string& text);

/// A temporary folder with settings of its own and a database `db`, which is made by its first record.
class CommandTest : public testing::Test {
protected:
    CommandTest();

    std::filesystem::path root() const { return folder.path() / "db"; }
    std::string Path(const std::string& name) const { return (folder.path() / name).string(); }

    /// A command on the database.
    CommandResult Run(std::vector<std::string> words) const;
    /// The same, of which no failure is expected.
    CommandResult Done(std::vector<std::string> words) const;

    nlohmann::json Records(const std::string& group) const;
    nlohmann::json ReadJson(const std::string& name) const;

    TemporaryFolder folder;
};
