#include "workbench/module/plugin_module.h"

#include <windows.h>

#include <utility>

namespace workbench {

namespace {

constexpr uint32_t kMessageCheck = 0x4D534721; // 'MSG!'

HMODULE ModuleOf(const void* address) {
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       static_cast<LPCSTR>(address), &module);
    return module;
}

struct Search {
    HMODULE module;
    int windows; ///< whose procedure lies in it
};

BOOL CALLBACK CountIfOf(HWND window, LPARAM parameter) {
    auto* search = reinterpret_cast<Search*>(parameter);
    const auto procedure = reinterpret_cast<const void*>(GetWindowLongPtrA(window, GWLP_WNDPROC));
    if (procedure && ModuleOf(procedure) == search->module) ++search->windows;
    return TRUE;
}

} // namespace

PluginModule::PluginModule(Host& host, HostPluginMain entry) : host_(host), entry_(entry) {
    TellHost();
}

PluginModule::PluginModule(Host& host, std::string file) : host_(host), file_(std::move(file)) {
    LoadEntry();
}

PluginModule::~PluginModule() {
    if (running_ && ready()) ShutDown();
    host_.SetPlugin({});
}

void PluginModule::TellHost() {
    host_.SetPlugin({.handle = self(),
                     .instance = ModuleOf(reinterpret_cast<const void*>(entry_)),
                     .doAction = [this](int32_t typeWord, ParametersHandle parameters) {
                         return Send(
                             HOST_CALLER_ACTION, HOST_SELECTOR_DO_ACTION,
                             HostActionMessage{.head = {}, .typeWord = typeWord, .parameters = parameters});
                     }});
}

void PluginModule::LoadEntry() {
    error_.clear();
    library_ = Library::Load(file_, error_);
    if (!library_.loaded()) return;
    entry_ = reinterpret_cast<HostPluginMain>(library_.Find("PluginMain"));
    if (!entry_) error_ = file_ + " has no PluginMain";
    TellHost();
}

HostError PluginModule::SendHead(const char* caller, const char* selector, HostMessage& message) {
    if (!entry_) return kHostRefused;
    message.check = kMessageCheck;
    message.self = self();
    message.globals = state_;
    message.basic = host_.basic();
    const Host::Message bracket;
    ++depth_;
    const HostError error = entry_(caller, selector, &message);
    --depth_;
    state_ = message.globals;
    return error;
}

HostError PluginModule::StartUp() {
    const HostError error = Send(HOST_CALLER_INTERFACE, HOST_SELECTOR_STARTUP);
    running_ = state_ != nullptr;
    return error;
}

HostError PluginModule::ShutDown() {
    const HostError error = Send(HOST_CALLER_INTERFACE, HOST_SELECTOR_SHUTDOWN);
    running_ = state_ != nullptr;
    if (!running_) host_.DropPluginObjects();
    return error;
}

void PluginModule::CheckProcedures() {
    Search search{ModuleOf(reinterpret_cast<const void*>(entry_)), 0};
    EnumChildWindows(GetDesktopWindow(), CountIfOf, reinterpret_cast<LPARAM>(&search));
    if (search.windows > 0)
        host_.Fault("unload: " + std::to_string(search.windows) + " windows have a procedure of the plug-in");
}

HostError PluginModule::Unload() {
    if (depth_ > 0 || host_.Uses() > 0) return kHostRefused;
    const HostError error = Send(HOST_CALLER_ACCESS, HOST_SELECTOR_UNLOAD);
    if (error != kHostNoError) return error;
    host_.ForgetHandlers();
    if (file_.empty()) return kHostNoError;
    CheckProcedures();
    entry_ = nullptr;
    library_.Unload();
    return Library::IsInProcess(file_) ? kHostRefused : kHostNoError;
}

HostError PluginModule::Reload() {
    if (!file_.empty()) LoadEntry();
    if (!entry_) return kHostNotFound;
    return Send(HOST_CALLER_ACCESS, HOST_SELECTOR_RELOAD);
}

} // namespace workbench
