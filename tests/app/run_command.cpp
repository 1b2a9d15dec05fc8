#include "tests/app/run_command.h"

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

CommandTest::CommandTest() {
    setenv("XDG_DATA_HOME", Path("data").c_str(), 1);
}

CommandResult CommandTest::Run(std::vector<std::string> words) const {
    words.insert(words.begin() + 1, {"--db", root().string()});
    return RunCommand(words);
}

CommandResult CommandTest::Done(std::vector<std::string> words) const {
    CommandResult result = Run(words);
    EXPECT_EQ(result.code, 0) << testing::PrintToString(words) << result.err;
    return result;
}

nlohmann::json CommandTest::Records(const std::string& group) const {
    return nlohmann::json::parse(Done({"list", group, "--json"}).out)["records"];
}

nlohmann::json CommandTest::ReadJson(const std::string& name) const {
    return nlohmann::json::parse(std::ifstream(Path(name)));
}
