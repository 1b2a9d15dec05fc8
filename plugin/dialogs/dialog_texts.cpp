#include "plugin/dialogs/dialog_texts.h"

#include <cstdio>
#include <cstring>
#include <string_view>

#include "plugin/frame/globals.h"
#include "plugin/host/alerts.h"
#include "plugin/host/suites.h"
#include "plugin/store/cp932.h"

namespace {

constexpr UINT kEnglishIsHigherBy = 1000;
constexpr UINT kPlainBeep = 0xFFFFFFFF;
constexpr int kMostControlBytes = 2048; ///< far more than any field holds

HWND ApplicationWindow() {
    void* window = nullptr;
    return ContextSuite().GetApplicationWindow(&window) == kHostNoError ? static_cast<HWND>(window) : nullptr;
}

} // namespace

HINSTANCE ModuleInstance() {
    AccessHandle access = nullptr;
    void* instance = nullptr;
    if (AccessSuite().GetPluginAccess(globals->pluginRef, &access) != kHostNoError) return nullptr;
    if (AccessSuite().GetAccessInstance(access, &instance) != kHostNoError) return nullptr;
    return static_cast<HINSTANCE>(instance);
}

UINT LanguageResource(UINT japanese) {
    return globals->language != 0 ? japanese + kEnglishIsHigherBy : japanese;
}

void LoadText(UINT japanese, char* text) {
    text[0] = '\0';
    const HINSTANCE module = ModuleInstance();
    if (module != nullptr) LoadStringA(module, LanguageResource(japanese), text, kResourceText);
}

void LoadMessage(UINT japanese, const char* name, int32_t number, char* message) {
    char text[kResourceText];
    LoadText(japanese, text);
    std::snprintf(message, kMessageBytes, text, name, static_cast<int>(number));
}

INT_PTR RunDialog(UINT japanese, DLGPROC procedure, LPARAM parameter) {
    const HINSTANCE module = ModuleInstance();
    if (module == nullptr) return -1;
    return DialogBoxParamA(module, MAKEINTRESOURCEA(LanguageResource(japanese)), ApplicationWindow(),
                           procedure, parameter);
}

void CentreDialog(HWND dialog) {
    RECT desktop, window;
    GetWindowRect(GetDesktopWindow(), &desktop);
    GetWindowRect(dialog, &window);
    const int x = (desktop.left + desktop.right - (window.right - window.left)) / 2;
    const int y = (desktop.top + desktop.bottom - (window.bottom - window.top)) / 2;
    // Activated before its lists are filled, it would send notifications of the one that gets the focus.
    SetWindowPos(dialog, HWND_TOPMOST, x, y, 0, 0, SWP_NOSIZE | SWP_NOACTIVATE);
}

void ReadText(HWND dialog, int control, char* text, size_t most) {
    char whole[kMostControlBytes] = "";
    GetDlgItemTextA(dialog, control, whole, kMostControlBytes);
    const std::string_view part = CutWhole(whole, most);
    std::memcpy(text, part.data(), part.size());
    text[part.size()] = '\0';
}

bool AskYesNo(const char* question) {
    return AskYesNoAlert(question, kEncodingCp932);
}

void TellUser(const char* message) {
    ShowMessageAlert(globals->hostBasic, message, kEncodingCp932);
}

void PlainBeep() {
    MessageBeep(kPlainBeep);
}
