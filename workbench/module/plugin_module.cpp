#include "workbench/module/plugin_module.h"

#include <windows.h>

#include <utility>

namespace workbench {

namespace {

constexpr uint32_t kMessageCheck = 0x4D534721; // 'MSG!'

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
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCSTR>(entry_), &module);
    host_.SetPlugin({.handle = self(),
                     .instance = module,
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
    const HostError error = entry_(caller, selector, &message);
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

HostError PluginModule::Unload() {
    const HostError error = Send(HOST_CALLER_ACCESS, HOST_SELECTOR_UNLOAD);
    if (error != kHostNoError || file_.empty()) return error;
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
