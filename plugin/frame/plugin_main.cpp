#include "plugin/frame/plugin_main.h"

#include <cstdio>

#include "plugin/actions/action_handler.h"
#include "plugin/dialogs/about_dialog.h"
#include "plugin/frame/globals.h"
#include "plugin/frame/menus.h"
#include "plugin/frame/start_up.h"
#include "plugin/frame/timer.h"
#include "plugin/host/alerts.h"
#include "plugin/host/entry.h"
#include "plugin/host/suite_table.h"
#include "plugin/panel/panel_absence.h"

namespace {

using Handler = HostError (*)(HostMessage* message);

struct DispatchRow {
    const char* caller;
    const char* selector;
    Handler handler;
};

HostError HandleStartup(HostMessage* message) {
    void* block = nullptr;
    const HostError error = message->basic->AllocateBlock(sizeof(Globals), &block);
    globals = static_cast<Globals*>(block);
    message->globals = block;
    return error != kHostNoError ? error : StartUp(message);
}

HostError HandleShutdown(HostMessage* message) {
    ShutDown();
    message->basic->FreeBlock(globals);
    globals = nullptr;
    message->globals = nullptr;
    return kHostNoError;
}

HostError HandleAbout(HostMessage*) {
    ShowAboutDialog();
    return kHostNoError;
}

/// The block of state stays with the host while the module is away.
HostError HandleUnload(HostMessage* message) {
    if (globals) Leave();
    message->globals = globals;
    return kHostNoError;
}

/// The slots of a module that was just loaded are empty, whatever was counted before.
HostError HandleReload(HostMessage* message) {
    globals = static_cast<Globals*>(message->globals);
    suiteUseCount = 0;
    if (globals) Return();
    return kHostNoError;
}

constexpr DispatchRow kAccessRows[] = {
    {HOST_CALLER_ACCESS, HOST_SELECTOR_UNLOAD, HandleUnload},
    {HOST_CALLER_ACCESS, HOST_SELECTOR_RELOAD, HandleReload},
};

constexpr DispatchRow kStartupRow = {HOST_CALLER_INTERFACE, HOST_SELECTOR_STARTUP, HandleStartup};

/// What needs the block of state.
constexpr DispatchRow kRunningRows[] = {
    {HOST_CALLER_INTERFACE, HOST_SELECTOR_SHUTDOWN, HandleShutdown},
    {HOST_CALLER_INTERFACE, HOST_SELECTOR_ABOUT, HandleAbout},
    {HOST_CALLER_MENU, HOST_SELECTOR_GO, OnMenuGo},
    {HOST_CALLER_MENU, HOST_SELECTOR_UPDATE, OnMenuUpdate},
    {HOST_CALLER_TIMER, HOST_SELECTOR_GO, OnTimer},
    {HOST_CALLER_NOTIFIER, HOST_SELECTOR_NOTIFY, OnNotify},
    {HOST_CALLER_ACTION, HOST_SELECTOR_DO_ACTION, HandleDoAction},
};

bool Matches(const DispatchRow& row, const char* caller, const char* selector) {
    return moduleBasic->TextsEqual(caller, row.caller) && moduleBasic->TextsEqual(selector, row.selector);
}

template <size_t count>
HostError Dispatch(const DispatchRow (&rows)[count], const char* caller, const char* selector,
                   HostMessage* message) {
    for (const DispatchRow& row : rows) {
        if (Matches(row, caller, selector)) return row.handler(message);
    }
    return kHostNoError;
}

/// The caller's own handlers, while the suites are held.
HostError DispatchByCaller(const char* caller, const char* selector, HostMessage* message) {
    if (Matches(kStartupRow, caller, selector)) return kStartupRow.handler(message);
    if (!globals) return kHostNoError;
    ReturnHandlers();
    return Dispatch(kRunningRows, caller, selector, message);
}

/// These codes say that the user knows already, or that the host will say it.
bool IsSilent(HostError error) {
    return error == kHostNoError || error == kHostSilent || error == kHostSuiteNotFound ||
           error == kHostStopped;
}

void ReportError(HostError error, const char* caller, const char* selector) {
    if (IsSilent(error)) return;
    const uint32_t code = static_cast<uint32_t>(error);
    char letters[5] = {};
    for (int i = 0; i < 4; ++i) letters[i] = static_cast<char>(code >> (8 * i) & 0xFF);
    char text[1024];
    std::snprintf(text, sizeof text, "Error=%x, %s (caller : %s, selector : %s)", code, letters, caller,
                  selector);
    ShowErrorAlert(moduleBasic, text);
}

} // namespace

extern "C" HostError PluginMain(const char* caller, const char* selector, HostMessage* message) {
    moduleBasic = message->basic;
    globals = static_cast<Globals*>(message->globals);
    if (moduleBasic->TextsEqual(caller, HOST_CALLER_ACCESS)) {
        return AtEntry<HostError>(kHostOutOfMemory,
                                  [=] { return Dispatch(kAccessRows, caller, selector, message); });
    }
    HostError error = AcquireHostSuites(moduleBasic);
    if (error == kHostNoError) {
        error =
            AtEntry<HostError>(kHostOutOfMemory, [=] { return DispatchByCaller(caller, selector, message); });
    }
    ReportError(error, caller, selector);
    // Also after a failed acquire: it was counted.
    ReleaseHostSuites(moduleBasic);
    return error;
}
