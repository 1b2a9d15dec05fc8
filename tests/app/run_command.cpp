#include "tests/app/run_command.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iostream>

#include "app/command_line.h"

CommandResult RunCommand(const std::vector<std::string>& words) {
    std::vector<std::string> copies = {"velquorne"};
    copies.insert(copies.end(), words.begin(), words.end());
    std::vector<char*> arguments;
    for (std::string& copy : copies) arguments.push_back(copy.data());
    arguments.push_back(nullptr);
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    CommandResult result;
    result.code = RunCommandLine(static_cast<int>(copies.size()), arguments.data());
    std::cout.flush();
    result.out = testing::internal::GetCapturedStdout();
    result.err = testing::internal::GetCapturedStderr();
    return result;
}

void WriteText(const std::string& path, const std::string& text) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << text;
}
