#include "tests/win32/desktop_log.h"

#include <cstdio>
#include <map>
#include <utility>

#include "win32/headless/headless_display.h"

namespace {

std::map<HWND, std::string> names;
std::vector<std::string> lines;

struct Noted {
    UINT message;
    const char* name;
    bool withKey;
};
constexpr Noted kNoted[] = {
    {WM_CREATE, "CREATE", false},
    {WM_DESTROY, "DESTROY", false},
    {WM_PAINT, "PAINT", false},
    {WM_ACTIVATE, "ACTIVATE", false},
    {WM_SETFOCUS, "SETFOCUS", false},
    {WM_KILLFOCUS, "KILLFOCUS", false},
    {WM_LBUTTONDOWN, "LBUTTONDOWN", false},
    {WM_LBUTTONUP, "LBUTTONUP", false},
    {WM_LBUTTONDBLCLK, "LBUTTONDBLCLK", false},
    {WM_KEYDOWN, "KEYDOWN", true},
    {WM_KEYUP, "KEYUP", true},
    {WM_CHAR, "CHAR", true},
    {WM_SYSKEYDOWN, "SYSKEYDOWN", true},
    {WM_SYSKEYUP, "SYSKEYUP", true},
    {WM_SYSCHAR, "SYSCHAR", true},
};

LRESULT CALLBACK LogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) names[window] = reinterpret_cast<CREATESTRUCTA*>(lParam)->lpszName;
    for (const Noted& noted : kNoted) {
        if (noted.message != message) continue;
        char key[16] = "";
        if (noted.withKey) std::snprintf(key, sizeof key, " %x", static_cast<unsigned>(wParam));
        lines.push_back(names[window] + " " + noted.name + key);
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

} // namespace

void RegisterLogClass() {
    names.clear();
    lines.clear();
    WNDCLASSA logged = {};
    logged.style = CS_DBLCLKS;
    logged.lpfnWndProc = LogProcedure;
    logged.lpszClassName = "Logged";
    logged.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    logged.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    RegisterClassA(&logged);
}

void ForgetLogClass() {
    UnregisterClassA("Logged", nullptr);
}

HWND MakeLogged(const char* name, DWORD extendedStyle, DWORD style, const RECT& place, HWND parent) {
    return CreateWindowExA(extendedStyle, "Logged", name, style, place.left, place.top,
                           place.right - place.left, place.bottom - place.top, parent, nullptr, nullptr,
                           nullptr);
}

std::vector<std::string> TakeLog() {
    return std::exchange(lines, {});
}

void Pump(HeadlessDisplay& hands) {
    MSG message;
    for (;;) {
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageA(&message);
        }
        if (hands.StepsLeft() == 0) return;
    }
}
