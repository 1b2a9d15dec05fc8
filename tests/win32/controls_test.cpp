#include <gtest/gtest.h>
#include <windows.h>

#include <fstream>
#include <sstream>
#include <string>

#include "control_scripts.h"
#include "win32/headless/headless_display.h"
#include "win32/object_counts.h"

namespace {

void PumpMessages() {
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
}

void WaitWithMessages(unsigned milliseconds) {
    const DWORD start = GetTickCount();
    PumpMessages();
    while (GetTickCount() - start < milliseconds) {
        Sleep(5);
        PumpMessages();
    }
}

void HoldKey(int key, bool down) {
    InputKey(key, down);
    PumpMessages();
}

// One part of the file of logs, which the real controls wrote when they ran the same scripts.
std::string ExpectedLog(const std::string& name) {
    const std::string source = __FILE__;
    std::ifstream file(source.substr(0, source.rfind('/') + 1) + "control_logs.txt");
    std::stringstream all;
    all << file.rdbuf();
    const std::string text = all.str();
    const std::string title = "=== " + name + "\n";
    const size_t start = text.find(title);
    if (start == std::string::npos) return "no such log";
    const size_t end = text.find("=== ", start + title.size());
    return text.substr(start + title.size(), end - start - title.size());
}

struct ControlCase {
    const char* name;
    std::string (*script)(const ControlPlace&);
};

class ControlsTest : public testing::TestWithParam<ControlCase> {};

// What a control tells its parent, and when, is what programs are built on.
TEST_P(ControlsTest, TellsItsParentWhatARealOneTells) {
    const HeadlessDisplay display(640, 480);
    const ObjectCounts before = CountObjects();
    EXPECT_EQ(GetParam().script({"", HoldKey, WaitWithMessages}), ExpectedLog(GetParam().name));
    EXPECT_TRUE(CountObjects() == before);
}

INSTANTIATE_TEST_SUITE_P(, ControlsTest,
                         testing::Values(ControlCase{"button", ButtonScript},
                                         ControlCase{"static", StaticScript}, ControlCase{"edit", EditScript},
                                         ControlCase{"multi", MultilineScript},
                                         ControlCase{"list", DropDownListScript},
                                         ControlCase{"drop", DropDownScript},
                                         ControlCase{"bar", ScrollBarScript}),
                         [](const auto& info) { return std::string(info.param.name); });

} // namespace
