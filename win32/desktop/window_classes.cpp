#include <cctype>
#include <list>

#include "win32/desktop/system_classes.h"
#include "win32/desktop/window.h"

namespace {

struct Classes {
    std::list<WindowClass> programs;
    std::list<WindowClass> systems;
    bool controlsKnown = false;
};

Classes& AllClasses() {
    static Classes classes;
    return classes;
}

bool SameName(const std::string& first, const char* second) {
    size_t at = 0;
    for (; at < first.size() && second[at] != 0; ++at) {
        const auto lower = [](char letter) { return std::tolower(static_cast<unsigned char>(letter)); };
        if (lower(first[at]) != lower(second[at])) return false;
    }
    return at == first.size() && second[at] == 0;
}

WindowClass* FindIn(std::list<WindowClass>& classes, const char* name) {
    for (WindowClass& each : classes)
        if (SameName(each.name, name)) return &each;
    return nullptr;
}

WindowClass ClassOf(const WNDCLASSA& windowClass) {
    return {.name = windowClass.lpszClassName,
            .style = windowClass.style,
            .procedure = windowClass.lpfnWndProc,
            .extraBytes = windowClass.cbWndExtra,
            .instance = windowClass.hInstance,
            .cursor = windowClass.hCursor,
            .background = windowClass.hbrBackground,
            .windows = 0};
}

} // namespace

void RegisterSystemClass(const WNDCLASSA& windowClass) {
    AllClasses().systems.push_back(ClassOf(windowClass));
}

WindowClass* FindWindowClass(const char* name) {
    Classes& classes = AllClasses();
    if (!classes.controlsKnown) {
        classes.controlsKnown = true;
        RegisterControlClasses();
    }
    WindowClass* found = FindIn(classes.programs, name);
    return found != nullptr ? found : FindIn(classes.systems, name);
}

WindowClass& DesktopClass() {
    static WindowClass desktop = ClassOf({.style = CS_DBLCLKS,
                                          .lpfnWndProc = DefWindowProcA,
                                          .cbClsExtra = 0,
                                          .cbWndExtra = 0,
                                          .hInstance = nullptr,
                                          .hIcon = nullptr,
                                          .hCursor = LoadCursorA(nullptr, IDC_ARROW),
                                          .hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BACKGROUND + 1),
                                          .lpszMenuName = nullptr,
                                          .lpszClassName = "#32769"});
    return desktop;
}

ATOM RegisterClassA(const WNDCLASSA* windowClass) {
    constexpr int kMostExtraBytes = 4096;
    static ATOM lastAtom = 0xC000;
    if (windowClass->lpszClassName == nullptr || windowClass->lpszClassName[0] == 0 ||
        windowClass->lpfnWndProc == nullptr || windowClass->cbWndExtra < 0 ||
        windowClass->cbWndExtra > kMostExtraBytes) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    if (FindIn(AllClasses().programs, windowClass->lpszClassName) != nullptr) {
        SetLastError(ERROR_CLASS_ALREADY_EXISTS);
        return 0;
    }
    AllClasses().programs.push_back(ClassOf(*windowClass));
    return ++lastAtom;
}

BOOL UnregisterClassA(LPCSTR name, HINSTANCE /*instance*/) {
    std::list<WindowClass>& programs = AllClasses().programs;
    WindowClass* found = FindIn(programs, name);
    if (found == nullptr || found->windows > 0) {
        SetLastError(found == nullptr ? ERROR_CLASS_DOES_NOT_EXIST : ERROR_CLASS_HAS_WINDOWS);
        return FALSE;
    }
    programs.remove_if([found](const WindowClass& each) { return &each == found; });
    return TRUE;
}
