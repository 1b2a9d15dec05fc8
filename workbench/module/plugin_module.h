/// A plug-in as the host drives it: loads it, sends it messages, unloads and reloads it.
#pragma once

#include <memory>
#include <string>

#include "suites/basic.h"
#include "workbench/module/library.h"
#include "workbench/suites/host.h"

namespace workbench {

/// Keeps the plug-in's slot for its state between calls.  The host must live longer than this.  What is still
/// running at the end of its life is shut down.
class PluginModule {
public:
    /// A plug-in that is part of this program.
    PluginModule(Host& host, HostPluginMain entry);

    /// The plug-in in a file, a path of the platform.  `error()` says if it could not be loaded.
    PluginModule(Host& host, std::string file);

    ~PluginModule();
    PluginModule(const PluginModule&) = delete;
    PluginModule& operator=(const PluginModule&) = delete;

    bool ready() const { return entry_ != nullptr; } ///< the entry is there to be called
    bool running() const { return running_; } ///< it has a block of state, between StartUp and ShutDown
    const std::string& error() const { return error_; }

    HostError StartUp();
    HostError ShutDown();

    /// Tells the plug-in, forgets its handlers and drops its library.  The state stays in the slot, and the
    /// plug-in's panel on the screen.  A window whose procedure is still the plug-in's is a fault.  Without a
    /// file nothing is dropped.  kHostRefused, and nothing is told, while a message to the plug-in is under
    /// way or it holds suites; also if the library stays in the process all the same.
    HostError Unload();

    /// Loads the library again and tells the plug-in.  kHostNotFound if it can't be loaded.
    HostError Reload();

    /// A call with any message, whose head is filled in here.  kHostRefused while the plug-in is not ready.
    template <typename Message>
    HostError Send(const char* caller, const char* selector, Message message) {
        return SendHead(caller, selector, Head(message));
    }
    HostError Send(const char* caller, const char* selector) { return Send(caller, selector, HostMessage{}); }

    HostError Tick(TimerHandle timer) {
        return Send(HOST_CALLER_TIMER, HOST_SELECTOR_GO, HostTimerMessage{.head = {}, .timer = timer});
    }
    HostError Notify(const char* type) {
        return Send(HOST_CALLER_NOTIFIER, HOST_SELECTOR_NOTIFY,
                    HostNotifierMessage{.head = {}, .type = type});
    }

    HostError PickMenu(MenuItemHandle item) {
        return Send(HOST_CALLER_MENU, HOST_SELECTOR_GO, HostMenuMessage{.head = {}, .item = item});
    }
    HostError UpdateMenu(MenuItemHandle item) {
        return Send(HOST_CALLER_MENU, HOST_SELECTOR_UPDATE, HostMenuMessage{.head = {}, .item = item});
    }

    void* state() const { return state_; } ///< the plug-in's block, null before start-up

    /// The plug-in's own reference, in `self` of every message.
    PluginHandle self() { return reinterpret_cast<PluginHandle>(this); }

private:
    static HostMessage& Head(HostMessage& message) { return message; }
    template <typename Message>
    static HostMessage& Head(Message& message) {
        return message.head;
    }
    HostError SendHead(const char* caller, const char* selector, HostMessage& message);
    void LoadEntry();
    void CheckProcedures();
    void TellHost();

    Host& host_;
    std::string file_; ///< empty: linked
    Library library_;
    HostPluginMain entry_ = nullptr;
    std::string error_;
    void* state_ = nullptr;
    bool running_ = false;
    int depth_ = 0; ///< messages under way
};

} // namespace workbench
