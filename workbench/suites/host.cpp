#include "workbench/suites/host.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "workbench/suites/host_state.h"
#include "workbench/suites/suite_tables.h"

namespace workbench {

namespace {

constexpr size_t kKeptFaults = 1000;

Host* currentHost = nullptr;
HostState* currentState = nullptr;

std::string NameAndVersion(const char* name, uint32_t version) {
    return std::string(name ? name : "(no name)") + " version " + std::to_string(version);
}

/// Position of the suite if name and version are supplied, else the number of suites.
size_t FindSuite(const char* name, uint32_t version) {
    const auto& suites = SuppliedSuites();
    const size_t suite = name ? SuiteNumber(name) : suites.size();
    return suite < suites.size() && suites[suite].version == version ? suite : suites.size();
}

// The basic interface

HostError AcquireSuite(const char* name, uint32_t version, const void** suite) {
    HostState* host = currentState;
    if (!host) return kHostRefused;
    if (!name || !suite) {
        host->Fault("AcquireSuite " + NameAndVersion(name, version) + ": a pointer is missing");
        return kHostBadParameter;
    }
    const size_t number = FindSuite(name, version);
    if (number == SuppliedSuites().size() || host->failingSuite == name) return kHostSuiteNotFound;
    ++host->uses[number];
    ++host->allUses;
    *suite = SuiteTable(number);
    return kHostNoError;
}

HostError ReleaseSuite(const char* name, uint32_t version) {
    HostState* host = currentState;
    if (!host) return kHostRefused;
    const size_t number = FindSuite(name, version);
    if (number == SuppliedSuites().size() || host->uses[number] == 0) {
        host->Fault("ReleaseSuite " + NameAndVersion(name, version) + ": there is no use to give back");
        return kHostBadParameter;
    }
    --host->uses[number];
    if (--host->allUses == 0) host->TakeBackAll(false);
    return kHostNoError;
}

int32_t TextsEqual(const char* a, const char* b) {
    if (!a || !b) {
        if (currentState) currentState->Fault("TextsEqual: a text is missing");
        return 0;
    }
    return std::strcmp(a, b) == 0 ? 1 : 0;
}

HostError AllocateBlock(uint64_t bytes, void** block) {
    HostState* host = currentState;
    if (!host) return kHostRefused;
    if (!block) {
        host->Fault("AllocateBlock: a pointer is missing");
        return kHostBadParameter;
    }
    void* made = host->failAllocations || bytes > SIZE_MAX / 2
                     ? nullptr
                     : std::calloc(1, bytes ? static_cast<size_t>(bytes) : 1);
    if (!made) return kHostOutOfMemory;
    host->blocks.insert(made);
    *block = made;
    return kHostNoError;
}

HostError FreeBlock(void* block) {
    HostState* host = currentState;
    if (!host) return kHostRefused;
    if (host->blocks.erase(block) == 0) {
        host->Fault("FreeBlock: not a block of this host, or freed before");
        return kHostBadParameter;
    }
    std::free(block);
    return kHostNoError;
}

constexpr HostBasic kBasic{AcquireSuite, ReleaseSuite, TextsEqual, AllocateBlock, FreeBlock};

} // namespace

// The state

HostState* CurrentState() {
    return currentState;
}

HostState::HostState() : uses(SuppliedSuites().size()), lentTexts(SuppliedSuites().size()) {}

HostState::~HostState() {
    TakeBackAll(true);
    for (void* block : blocks) std::free(block);
}

void HostState::Fault(std::string line) {
    ++faultCount;
    if (faults.size() < kKeptFaults) faults.push_back(std::move(line));
}

void HostState::TakeBackAll(bool silent) {
    if (loaned == 0) return;
    const auto takeBack = [&](auto& object, const char* what) {
        if (!silent) {
            Fault(std::string(what) + " of call " + std::to_string(object.madeBy) + " was never disposed of");
        }
        TakeBack(object);
    };
    handles.ForEach([&](HandleType type, void* object) {
        switch (type) {
            case HandleType::kText:
                takeBack(*static_cast<HostText*>(object), "Unicode string");
                break;
            case HandleType::kFilePath:
                takeBack(*static_cast<HostFilePath*>(object), "file path");
                break;
            case HandleType::kPort:
                takeBack(*static_cast<HostPort*>(object), "port");
                break;
            case HandleType::kParameterTypes:
                takeBack(*static_cast<HostParameterTypes*>(object), "parameter types");
                break;
            default:
                TakeBackReference(*this, type, object, silent);
                break;
        }
    });
}

MenuGroup& HostState::GroupOf(const std::string& name) {
    const auto found = std::ranges::find_if(menuGroups, [&](const auto& each) { return each->name == name; });
    if (found != menuGroups.end()) return **found;
    MenuGroup& group = Keep(HandleType::kMenuGroup, menuGroups);
    group.name = name;
    return group;
}

// The host

Host::Host() : state_(std::make_unique<HostState>()) {
    if (currentHost) std::abort();
    currentHost = this;
    currentState = state_.get();
}

Host::~Host() {
    currentHost = nullptr;
    currentState = nullptr;
}

Host* Host::Current() {
    return currentHost;
}

const HostBasic* Host::basic() const {
    return &kBasic;
}

void Host::Open(std::unique_ptr<Document> document) {
    state_->document = std::move(document);
    if (state_->frame) state_->frame->DocumentChanged();
}

std::unique_ptr<Document> Host::Close() {
    std::unique_ptr<Document> document = std::move(state_->document);
    if (document && state_->frame) state_->frame->DocumentChanged();
    return document;
}

Document* Host::front() {
    return state_->document.get();
}

void Host::SetPainter(Painter* painter) {
    state_->painter = painter;
}

void Host::SetPictureFiles(PictureFiles* pictures) {
    state_->pictures = pictures;
}

void Host::SetFontList(FontList* fonts) {
    for (const auto& [name, key] : state_->fontKeys)
        state_->handles.Remove(reinterpret_cast<uintptr_t>(key->handle));
    state_->fontKeys.clear();
    state_->fonts = fonts;
}

void Host::AddPluginGroup(std::string name) {
    auto group = std::make_unique<HostPluginGroup>();
    group->name = std::move(name);
    group->handle =
        reinterpret_cast<PluginGroupHandle>(state_->handles.Add(HandleType::kPluginGroup, group.get()));
    state_->pluginGroups.push_back(std::move(group));
}

// The frame

void Host::SetFrame(WindowFrame* frame) {
    state_->frame = frame;
}
WindowFrame* Host::frame() const {
    return state_->frame;
}
void Host::SetPlugin(HostPlugin plugin) {
    state_->plugin = std::move(plugin);
}
void Host::SetTheme(const Theme& theme) {
    state_->theme = theme;
}
const Theme& Host::theme() const {
    return state_->theme;
}
void Host::SetRulerUnit(RulerUnit unit) {
    state_->rulerUnit = unit;
}
void Host::AnswerNext(bool yes) {
    state_->answers.push_back(yes);
}
const std::vector<std::unique_ptr<MenuGroup>>& Host::menuGroups() const {
    return state_->menuGroups;
}
const std::vector<std::unique_ptr<MenuItem>>& Host::menuItems() const {
    return state_->menuItems;
}
const std::vector<std::unique_ptr<HostTimer>>& Host::timers() const {
    return state_->timers;
}
const std::vector<std::unique_ptr<HostPanel>>& Host::panels() const {
    return state_->panels;
}
const std::vector<HostAction>& Host::actions() const {
    return state_->actions;
}

bool Host::HasNotifier(const std::string& type) const {
    return std::ranges::any_of(state_->notifiers, [&](const auto& each) { return each->type == type; });
}

HostError Host::PlayAction(const std::string& name, ParametersHandle parameters) {
    const auto action = std::ranges::find(state_->actions, name, &HostAction::name);
    if (action == state_->actions.end()) return kHostNotFound;
    if (!state_->plugin.doAction) return kHostRefused;
    const void* known =
        state_->handles.Find(HandleType::kParameters, reinterpret_cast<uintptr_t>(parameters));
    const HostAction played = *action; // it may go while it runs
    const auto reals =
        known ? static_cast<const HostParameters*>(known)->reals : std::map<uint32_t, double>{};
    const auto tell = [&](bool done) {
        if (state_->watchActions) state_->watchActions(played, reals, done);
    };
    tell(false);
    const HostError error = state_->plugin.doAction(played.typeWord, parameters);
    tell(true);
    if (state_->frame) state_->frame->DocumentChanged();
    return error;
}

HostError Host::PlayAction(const std::string& name, const std::map<uint32_t, double>& reals) {
    HostParameters parameters{.handle = nullptr, .reals = reals};
    const uintptr_t handle = state_->handles.Add(HandleType::kParameters, &parameters);
    parameters.handle = reinterpret_cast<ParametersHandle>(handle);
    const HostError error = PlayAction(name, parameters.handle);
    state_->handles.Remove(handle);
    return error;
}

void Host::WatchActions(ActionWatch watch) {
    state_->watchActions = std::move(watch);
}

void Host::AddMenuGroup(const std::string& name) {
    state_->GroupOf(name);
}

void Host::ForgetHandlers() {
    for (const auto& panel : state_->panels) {
        panel->onFlyout = nullptr;
        panel->onSize = nullptr;
    }
}

void Host::Fault(const std::string& line) {
    state_->Fault(line);
}

void Host::DropPluginObjects() {
    HostState& state = *state_;
    if (!state.panels.empty()) state.Fault(std::to_string(state.panels.size()) + " panels not destroyed");
    if (!state.flyouts.empty()) state.Fault(std::to_string(state.flyouts.size()) + " flyouts not destroyed");
    while (!state.panels.empty()) {
        if (state.frame) state.frame->DestroyPanelWindow(*state.panels.back());
        state.Drop(*state.panels.back(), state.panels);
    }
    while (!state.flyouts.empty()) state.Drop(*state.flyouts.back(), state.flyouts);
    while (!state.menuItems.empty()) state.Drop(*state.menuItems.back(), state.menuItems);
    while (!state.menuGroups.empty()) state.Drop(*state.menuGroups.back(), state.menuGroups);
    while (!state.timers.empty()) state.Drop(*state.timers.back(), state.timers);
    while (!state.notifiers.empty()) state.Drop(*state.notifiers.back(), state.notifiers);
    state.actions.clear();
    if (state.frame) state.frame->MenusChanged();
}

const std::vector<Alert>& Host::alerts() const {
    return state_->alerts;
}
void Host::ClearAlerts() {
    state_->alerts.clear();
}

const std::vector<std::string>& Host::faults() const {
    return state_->faults;
}
uint64_t Host::faultCount() const {
    return state_->faultCount;
}

void Host::ClearFaults() {
    state_->faults.clear();
    state_->faultCount = 0;
}

int64_t Host::UsesOf(const char* suite) const {
    const size_t number = SuiteNumber(suite);
    return number < state_->uses.size() ? state_->uses[number] : 0;
}

int64_t Host::Uses() const {
    return state_->allUses;
}

void Host::CheckBalance(bool shutDown) {
    for (size_t i = 0; i < state_->uses.size(); ++i) {
        if (state_->uses[i] != 0) {
            state_->Fault(std::string(SuppliedSuites()[i].name) + ": " + std::to_string(state_->uses[i]) +
                          " uses not given back");
        }
    }
    state_->TakeBackAll(false);
    if (shutDown && !state_->blocks.empty()) {
        state_->Fault(std::to_string(state_->blocks.size()) + " blocks not freed");
    }
}

size_t Host::BlockCount() const {
    return state_->blocks.size();
}

uint64_t Host::callCount() const {
    return state_->calls;
}

void Host::RefuseCall(uint64_t n) {
    state_->refuseFirst = state_->refuseLast = state_->calls + n;
    state_->refused = false;
}

void Host::RefuseFrom(uint64_t n) {
    RefuseCall(n);
    state_->refuseLast = UINT64_MAX;
}

void Host::RefuseNone() {
    state_->refuseFirst = state_->refuseLast = 0;
    state_->refused = false;
}

bool Host::refused() const {
    return state_->refused;
}

void Host::FailAcquire(std::string suite) {
    state_->failingSuite = std::move(suite);
}
void Host::FailAllocations(bool fail) {
    state_->failAllocations = fail;
}
void Host::SetTrace(std::function<void(const std::string&)> trace) {
    state_->trace = std::move(trace);
}

// Messages

Host::Message::Message() {
    if (currentState) uses_ = currentState->uses;
}

Host::Message::~Message() {
    if (!currentState || uses_.size() != currentState->uses.size()) return;
    for (size_t i = 0; i < uses_.size(); ++i) {
        const int64_t more = currentState->uses[i] - uses_[i];
        if (more == 0) continue;
        currentState->Fault(std::string(SuppliedSuites()[i].name) + ": uses changed by " +
                            std::to_string(more) + " within one message");
    }
}

} // namespace workbench
