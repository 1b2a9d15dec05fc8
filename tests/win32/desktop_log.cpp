#include "tests/win32/desktop_log.h"

#include <cstdio>
#include <map>
#include <utility>

#include "win32/headless/headless_display.h"

namespace {

std::map<HWND, std::string> names;
std::vector<std::string> lines;

std::string NameOf(HWND window) {
    if (window == nullptr) return "0";
    const auto found = names.find(window);
    return found != names.end() ? found->second : "?";
}

std::string Numbers(const char* format, intptr_t first, intptr_t second = 0, intptr_t third = 0) {
    char text[80];
    std::snprintf(text, sizeof text, format, static_cast<int>(first), static_cast<int>(second),
                  static_cast<int>(third));
    return text;
}

int Low(LPARAM value) {
    return static_cast<SHORT>(LOWORD(value));
}
int High(LPARAM value) {
    return static_cast<SHORT>(HIWORD(value));
}

std::string Describe(UINT message, WPARAM wParam, LPARAM lParam) {
    const auto place = [&](const char* name) {
        return name + Numbers(" %d %d %d", static_cast<intptr_t>(wParam), Low(lParam), High(lParam));
    };
    const auto key = [&](const char* name) {
        return name + Numbers(" %x %x", static_cast<intptr_t>(wParam), lParam & 0xF000FFFF);
    };
    const auto asked = [&](const char* name) {
        return name + (" " + NameOf(reinterpret_cast<HWND>(wParam))) +
               Numbers(" %d %x", Low(lParam), HIWORD(lParam));
    };
    const std::string other = " " + NameOf(reinterpret_cast<HWND>(wParam));
    const std::string otherInLong = " " + NameOf(reinterpret_cast<HWND>(lParam));
    switch (message) {
        case WM_NCCREATE:
            return "NCCREATE";
        case WM_CREATE:
            return "CREATE";
        case WM_DESTROY:
            return "DESTROY";
        case WM_NCDESTROY:
            return "NCDESTROY";
        case WM_CLOSE:
            return "CLOSE";
        case WM_PAINT:
            return "PAINT";
        case WM_WINDOWPOSCHANGED:
            return "WINDOWPOSCHANGED";
        case WM_MOVE:
            return place("MOVE");
        case WM_SIZE:
            return place("SIZE");
        case WM_SHOWWINDOW:
            return Numbers("SHOWWINDOW %d %d", static_cast<intptr_t>(wParam), lParam);
        case WM_ENABLE:
            return Numbers("ENABLE %d", static_cast<intptr_t>(wParam));
        case WM_ACTIVATE:
            return Numbers("ACTIVATE %d", LOWORD(wParam)) + otherInLong;
        case WM_SETFOCUS:
            return "SETFOCUS" + other;
        case WM_KILLFOCUS:
            return "KILLFOCUS" + other;
        case WM_CAPTURECHANGED:
            return "CAPTURECHANGED" + otherInLong;
        case WM_SETCURSOR:
            return asked("SETCURSOR");
        case WM_MOUSEACTIVATE:
            return asked("MOUSEACTIVATE");
        case WM_MOUSEMOVE:
            return place("MOUSEMOVE");
        case WM_LBUTTONDOWN:
            return place("LBUTTONDOWN");
        case WM_LBUTTONUP:
            return place("LBUTTONUP");
        case WM_LBUTTONDBLCLK:
            return place("LBUTTONDBLCLK");
        case WM_MOUSEWHEEL:
            return "MOUSEWHEEL";
        case WM_KEYDOWN:
            return key("KEYDOWN");
        case WM_KEYUP:
            return key("KEYUP");
        case WM_CHAR:
            return key("CHAR");
        case WM_SYSKEYDOWN:
            return key("SYSKEYDOWN");
        case WM_SYSKEYUP:
            return key("SYSKEYUP");
        case WM_SYSCHAR:
            return key("SYSCHAR");
        case WM_TIMER:
            return Numbers("TIMER %d", static_cast<intptr_t>(wParam));
        default:
            return "";
    }
}

LRESULT CALLBACK LogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) names[window] = reinterpret_cast<CREATESTRUCTA*>(lParam)->lpszName;
    const std::string text = Describe(message, wParam, lParam);
    if (!text.empty()) lines.push_back(NameOf(window) + " " + text);
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
