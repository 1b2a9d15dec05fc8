#include "plugin/frame/start_up.h"

#include "plugin/actions/action_handler.h"
#include "plugin/dialogs/dialog_texts.h"
#include "plugin/dialogs/tool_tip.h"
#include "plugin/frame/globals.h"
#include "plugin/frame/menus.h"
#include "plugin/frame/preferences.h"
#include "plugin/frame/timer.h"
#include "plugin/host/suites.h"
#include "plugin/panel/list_table.h"
#include "plugin/panel/panel_absence.h"
#include "plugin/panel/panel_build.h"
#include "plugin/panel/panel_layout.h"
#include "plugin/panel/panel_window.h"
#include "plugin/placement/geometry.h"

namespace {

constexpr char kTimerName[] = "VELQUORNE_TIMER";
constexpr char kNotifierName[] = "Velquorne App Started Notifier";
constexpr char kStartedNotifier[] = "AI Application Started Notifier";
constexpr int32_t kWantsNotice = 2; ///< of what other plug-ins change
constexpr int kFirstCursor = 16100;

HostError SetOptions(PluginHandle self) {
    int32_t options = 0;
    const HostError error = PluginSuite().GetPluginOptions(self, &options);
    return error != kHostNoError ? error : PluginSuite().SetPluginOptions(self, options | kWantsNotice);
}

/// A cursor that isn't there stays none.
void LoadCursors(HINSTANCE instance) {
    for (int i = 0; i < kCursorCount; ++i)
        globals->cursors[i] = LoadCursorA(instance, MAKEINTRESOURCEA(kFirstCursor + i));
}

HostError LoadModuleCursors() {
    AccessHandle access = nullptr;
    void* instance = nullptr;
    HostError error = AccessSuite().GetPluginAccess(globals->pluginRef, &access);
    if (error == kHostNoError) error = AccessSuite().GetAccessInstance(access, &instance);
    if (error == kHostNoError) LoadCursors(static_cast<HINSTANCE>(instance));
    return error;
}

/// The module that this function lies in, where no suite can be asked.
HINSTANCE OwnModule() {
    constexpr DWORD kOfAddress =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    HMODULE module = nullptr;
    GetModuleHandleExA(kOfAddress, reinterpret_cast<LPCSTR>(OwnModule), &module);
    return module;
}

void TakeSettings() {
    FillCurveTables();
    ReadPreferences();
    globals->preferencesRead = 1;
    globals->browseWidth = LimitBrowseWidth(globals->browseWidth);
}

HostError AddTimer() {
    return TimerSuite().AddTimer(globals->pluginRef, kTimerName, kTimerPeriod, 0, &globals->timerRef);
}

HostError AddNotifier() {
    NotifierHandle notifier = nullptr;
    return NotifierSuite().AddNotifier(globals->pluginRef, kNotifierName, kStartedNotifier, &notifier);
}

} // namespace

HostError StartUp(const HostMessage* message) {
    HostError error = SetOptions(message->self);
    if (error != kHostNoError) return error;
    SetDefaults(message->self);
    error = LoadModuleCursors();
    if (error != kHostNoError) return error;
    TakeSettings();
    error = AddMenus();
    if (error == kHostNoError) error = AddTimer();
    if (error == kHostNoError) error = AddNotifier();
    return error != kHostNoError ? error : RegisterPlaceActions(message);
}

namespace {

void EndPanel() {
    if (globals->panelRef) {
        GivePanelWindowBack(); // also where the host doesn't name its window now
        void* window = nullptr;
        if (PanelSuite().GetPlatformWindow(globals->panelRef, &window) != kHostNoError) window = nullptr;
        if (window) DestroyWindow(static_cast<HWND>(window));
        PanelSuite().DestroyPanel(globals->panelRef);
        globals->panelRef = nullptr;
        FreePanelObjects();
    }
    if (globals->flyoutRef) PanelFlyoutMenuSuite().DestroyFlyout(globals->flyoutRef);
    globals->flyoutRef = nullptr;
    FreeListTable();
    FreeHandle(globals->thumbnails);
}

} // namespace

void ShutDown() {
    FreeHandle(globals->curRecord);
    FreeHandle(globals->rihList);
    DropToolTip();
    if (globals->preferencesRead) WritePreferences();
    EndPanel();
    FreeHandle(globals->sideObjects);
    FreeHandle(globals->linkPaths);
    FreeHandle(globals->linkNames);
    FreeHandle(globals->pendingTags);
    FreeOffsets();
}

void Leave() {
    LeavePanel();
}

void Return() {
    const HINSTANCE module = OwnModule();
    LoadCursors(module);
    ReturnToPanel(module);
}

HostError OnNotify(HostMessage* message) {
    // A notifier's message continues behind the head.
    const auto* notifier = reinterpret_cast<const HostNotifierMessage*>(message);
    if (!moduleBasic->TextsEqual(notifier->type, kStartedNotifier)) return kHostNoError;
    globals->hostBasic = message->basic;
    return CreatePanel(globals->pluginRef);
}
