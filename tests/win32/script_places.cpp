#include "script_places.h"

#include <windows.h>

#include <fstream>
#include <sstream>

#include "win32/display.h"

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

} // namespace

const ControlPlace kScriptPlace = {"", HoldKey, WaitWithMessages};

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
