// The tables of suites/panel.h: what a plug-in hangs into the host's frame.

#include "suites/panel.h"

#include <algorithm>

#include "workbench/suites/suite_call.h"

namespace workbench {

namespace {

// AI Plugin Suite, SP Access Suite

HostError GetPluginOptions(SuiteCall& call, HostPlugin&, int32_t& options) {
    options = call.host().pluginOptions;
    return kHostNoError;
}

HostError SetPluginOptions(SuiteCall& call, HostPlugin&, int32_t options) {
    call.host().pluginOptions = options;
    return kHostNoError;
}

HostError GetPluginAccess(SuiteCall&, HostPlugin& plugin, AccessHandle& access) {
    access = reinterpret_cast<AccessHandle>(plugin.handle);
    return kHostNoError;
}

HostError GetAccessInstance(SuiteCall& call, AccessHandle access, void*& instance) {
    HostPlugin& plugin = call.host().plugin;
    if (!access || access != reinterpret_cast<AccessHandle>(plugin.handle)) {
        return call.FaultUnlessRefused(kHostBadHandle, BadHandleText("plug-in access", access));
    }
    instance = plugin.instance;
    return kHostNoError;
}

// AI Menu Suite

void TellFrame(SuiteCall& call) {
    if (call.host().frame) call.host().frame->MenusChanged();
}

HostError AddMenuItem(SuiteCall& call, HostPlugin&, Name itemName, Name groupName, HostText& text,
                      int32_t options, MenuItemHandle& handle) {
    HostState& host = call.host();
    MenuItem& item = host.Keep(HandleType::kMenuItem, host.menuItems);
    item.name = itemName.text;
    item.text = text.utf8;
    item.group = &host.GroupOf(groupName.text);
    item.options = options;
    handle = item.handle;
    TellFrame(call);
    return kHostNoError;
}

HostError CountMenuGroups(SuiteCall& call, int32_t& count) {
    count = static_cast<int32_t>(call.host().menuGroups.size());
    return kHostNoError;
}

HostError GetNthMenuGroup(SuiteCall& call, int32_t index, MenuGroupHandle& group) {
    const auto& groups = call.host().menuGroups;
    if (index < 0 || static_cast<size_t>(index) >= groups.size()) return kHostBadParameter;
    group = groups[static_cast<size_t>(index)]->handle;
    return kHostNoError;
}

HostError GetMenuGroupName(SuiteCall& call, MenuGroup& group, const char*& name) {
    name = call.Lend(group.name);
    return kHostNoError;
}

HostError AddMenuGroupAsSubMenu(SuiteCall& call, Name groupName, int32_t, MenuItem& parent,
                                MenuGroupHandle& handle) {
    MenuGroup& group = call.host().GroupOf(groupName.text);
    group.parent = &parent;
    handle = group.handle;
    TellFrame(call);
    return kHostNoError;
}

HostError CheckItem(SuiteCall& call, MenuItem& item, int32_t on) {
    item.checked = on != 0;
    TellFrame(call);
    return kHostNoError;
}

// AI Timer Suite, AI Notifier Suite

HostError AddTimer(SuiteCall& call, HostPlugin&, Name name, int32_t periodTicks, int32_t,
                   TimerHandle& handle) {
    if (periodTicks <= 0) return call.Fault(kHostBadParameter, "a timer needs a period");
    HostTimer& timer = call.host().Keep(HandleType::kTimer, call.host().timers);
    timer.name = name.text;
    timer.periodTicks = periodTicks;
    handle = timer.handle;
    return kHostNoError;
}

HostError AddNotifier(SuiteCall& call, HostPlugin&, Name name, Name type, NotifierHandle& handle) {
    HostNotifier& notifier = call.host().Keep(HandleType::kNotifier, call.host().notifiers);
    notifier.name = name.text;
    notifier.type = type.text;
    handle = notifier.handle;
    return kHostNoError;
}

// AI Panel Suite

HostError CreatePanel(SuiteCall& call, HostPlugin&, HostText& id, HostText& title, int32_t stateCount,
                      HostSize size, int32_t resizable, HostFlyout* flyout, int32_t reserved,
                      PanelHandle& handle) {
    HostState& host = call.host();
    if (stateCount != 1 || resizable != 1 || reserved != 0 || !(size.width > 0) || !(size.height > 0)) {
        return call.Fault(kHostBadParameter, "a panel of that form");
    }
    if (!host.frame) return kHostRefused;
    HostPanel& panel = host.Keep(HandleType::kPanel, host.panels);
    panel.id = id.utf8;
    panel.title = title.utf8;
    panel.size = size;
    panel.flyout = flyout;
    if (!host.frame->MakePanelWindow(panel)) {
        host.Drop(panel, host.panels);
        return kHostRefused;
    }
    handle = panel.handle;
    return kHostNoError;
}

HostError DestroyPanel(SuiteCall& call, HostPanel& panel) {
    if (call.host().frame) call.host().frame->DestroyPanelWindow(panel);
    call.host().Drop(panel, call.host().panels);
    return kHostNoError;
}

HostError SetMinimumSize(SuiteCall&, HostPanel& panel, HostSize size) {
    panel.minimum = size;
    return kHostNoError;
}

HostError SetFlyoutHandler(SuiteCall&, HostPanel& panel, HostFlyoutHandler handler) {
    panel.onFlyout = handler;
    return kHostNoError;
}

HostError SetSizeHandler(SuiteCall&, HostPanel& panel, HostPanelSizeHandler handler) {
    panel.onSize = handler;
    return kHostNoError;
}

HostError GetPlatformWindow(SuiteCall& call, HostPanel& panel, void*& window) {
    window = call.host().frame ? call.host().frame->PlatformWindow(panel) : nullptr;
    return kHostNoError;
}

HostError ShowPanel(SuiteCall& call, HostPanel& panel, int32_t show) {
    panel.shown = show != 0;
    if (call.host().frame) call.host().frame->ShowPanelWindow(panel);
    return kHostNoError;
}

HostError IsPanelShown(SuiteCall&, HostPanel& panel, int32_t& shown) {
    shown = panel.shown ? 1 : 0;
    return kHostNoError;
}

HostError GetPanelSize(SuiteCall& call, HostPanel& panel, HostSize& size) {
    size = call.host().frame ? call.host().frame->PanelSize(panel) : panel.size;
    return kHostNoError;
}

// AI Panel Flyout Menu Suite

HostError CreateFlyout(SuiteCall& call, FlyoutHandle& flyout) {
    flyout = call.host().Keep(HandleType::kFlyout, call.host().flyouts).handle;
    return kHostNoError;
}

HostError DestroyFlyout(SuiteCall& call, HostFlyout& flyout) {
    for (const auto& panel : call.host().panels) {
        if (panel->flyout == &flyout) panel->flyout = nullptr;
    }
    call.host().Drop(flyout, call.host().flyouts);
    return kHostNoError;
}

FlyoutItem* ItemOf(HostFlyout& flyout, int32_t number) {
    const auto found = std::ranges::find(flyout.items, number, &FlyoutItem::number);
    return found == flyout.items.end() ? nullptr : &*found;
}

HostError AppendFlyoutItem(SuiteCall& call, HostFlyout& flyout, FlyoutItem item) {
    if (ItemOf(flyout, item.number)) return call.Fault(kHostBadParameter, "an item of that number is there");
    flyout.items.push_back(std::move(item));
    return kHostNoError;
}

HostError AppendItem(SuiteCall& call, HostFlyout& flyout, int32_t number, HostText& text) {
    return AppendFlyoutItem(call, flyout, {.number = number, .text = text.utf8});
}

HostError AppendSeparator(SuiteCall& call, HostFlyout& flyout, int32_t number) {
    return AppendFlyoutItem(call, flyout, {.number = number, .text = {}, .separator = true});
}

HostError SetFlyoutFlag(SuiteCall& call, HostFlyout& flyout, int32_t number, bool FlyoutItem::*flag,
                        bool on) {
    FlyoutItem* item = ItemOf(flyout, number);
    if (!item || item->separator) return call.FaultUnlessRefused(kHostBadParameter, "no item of that number");
    item->*flag = on;
    return kHostNoError;
}

HostError SetItemMark(SuiteCall& call, HostFlyout& flyout, int32_t number, int32_t on) {
    return SetFlyoutFlag(call, flyout, number, &FlyoutItem::marked, on != 0);
}

HostError SetItemEnabled(SuiteCall& call, HostFlyout& flyout, int32_t number, int32_t on) {
    return SetFlyoutFlag(call, flyout, number, &FlyoutItem::enabled, on != 0);
}

// AI User Interface Theme Suite, AI Context Suite

HostError GetThemeColor(SuiteCall& call, int32_t kind, int32_t color, double* values) {
    if (!values) return call.Fault(kHostBadParameter, "a pointer is missing");
    if (kind != 1 || color < 0 || color > 1) return kHostBadParameter;
    const Theme& theme = call.host().theme;
    std::copy_n(color == 0 ? theme.panel : theme.text, 4, values);
    return kHostNoError;
}

HostError IsDark(SuiteCall& call, int32_t& dark) {
    dark = call.host().theme.dark ? 1 : 0;
    return kHostNoError;
}

HostError GetApplicationWindow(SuiteCall& call, void*& window) {
    window = call.host().frame ? call.host().frame->ApplicationWindow() : nullptr;
    return kHostNoError;
}

// AI Action Manager Suite

HostError NewParameterTypes(SuiteCall& call, ParameterTypesHandle& types) {
    types = call.host().Lend<ParameterTypesHandle>(HandleType::kParameterTypes,
                                                   std::make_unique<HostParameterTypes>());
    return kHostNoError;
}

HostError FreeParameterTypes(SuiteCall& call, HostParameterTypes& types) {
    call.host().TakeBack(types);
    return kHostNoError;
}

HostError AddParameterType(SuiteCall&, HostParameterTypes& types, uint32_t key, HostText& name, uint32_t type,
                           int32_t show) {
    types.types.push_back({.key = key, .type = type, .name = name.utf8, .show = show != 0});
    return kHostNoError;
}

HostError RegisterAction(SuiteCall& call, Name name, HostText& localName, int32_t version, int32_t, int32_t,
                         HostPlugin&, int32_t typeWord, HostParameterTypes& types) {
    call.host().actions.push_back({.name = name.text,
                                   .localName = localName.utf8,
                                   .version = version,
                                   .typeWord = typeWord,
                                   .types = types.types});
    return kHostNoError;
}

HostError PlayAction(SuiteCall& call, Name name, int32_t dialogMode, ParametersHandle parameters) {
    if (dialogMode != 1) return call.Fault(kHostBadParameter, "no such dialog mode");
    const HostError error = Host::Current()->PlayAction(name.text, parameters);
    return error == kHostNotFound ? call.FaultUnlessRefused(error, "no action of that name") : error;
}

HostError GetRealParameter(SuiteCall&, HostParameters& parameters, uint32_t key, double& value) {
    const auto found = parameters.reals.find(key);
    if (found == parameters.reals.end()) return kHostNotFound;
    value = found->second;
    return kHostNoError;
}

} // namespace

const void* PluginSuiteTable() {
    static constexpr AIPluginSuite table{
        Entry<"AI Plugin Suite", "GetPluginOptions", GetPluginOptions>::Run,
        Entry<"AI Plugin Suite", "SetPluginOptions", SetPluginOptions>::Run,
    };
    return &table;
}

const void* AccessSuiteTable() {
    static constexpr SPAccessSuite table{
        Entry<"SP Access Suite", "GetPluginAccess", GetPluginAccess>::Run,
        Entry<"SP Access Suite", "GetAccessInstance", GetAccessInstance>::Run,
    };
    return &table;
}

const void* MenuSuiteTable() {
    static constexpr AIMenuSuite table{
        Entry<"AI Menu Suite", "AddMenuItem", AddMenuItem>::Run,
        Entry<"AI Menu Suite", "CountMenuGroups", CountMenuGroups>::Run,
        Entry<"AI Menu Suite", "GetNthMenuGroup", GetNthMenuGroup>::Run,
        Entry<"AI Menu Suite", "GetMenuGroupName", GetMenuGroupName>::Run,
        Entry<"AI Menu Suite", "AddMenuGroupAsSubMenu", AddMenuGroupAsSubMenu>::Run,
        Entry<"AI Menu Suite", "CheckItem", CheckItem>::Run,
    };
    return &table;
}

const void* TimerSuiteTable() {
    static constexpr AITimerSuite table{Entry<"AI Timer Suite", "AddTimer", AddTimer>::Run};
    return &table;
}

const void* NotifierSuiteTable() {
    static constexpr AINotifierSuite table{Entry<"AI Notifier Suite", "AddNotifier", AddNotifier>::Run};
    return &table;
}

const void* PanelSuiteTable() {
    static constexpr AIPanelSuite table{
        Entry<"AI Panel Suite", "CreatePanel", CreatePanel>::Run,
        Entry<"AI Panel Suite", "DestroyPanel", DestroyPanel, EntryKind::kDisposal>::Run,
        Entry<"AI Panel Suite", "SetMinimumSize", SetMinimumSize>::Run,
        Entry<"AI Panel Suite", "SetFlyoutHandler", SetFlyoutHandler>::Run,
        Entry<"AI Panel Suite", "SetSizeHandler", SetSizeHandler>::Run,
        Entry<"AI Panel Suite", "GetPlatformWindow", GetPlatformWindow>::Run,
        Entry<"AI Panel Suite", "ShowPanel", ShowPanel>::Run,
        Entry<"AI Panel Suite", "IsPanelShown", IsPanelShown>::Run,
        Entry<"AI Panel Suite", "GetPanelSize", GetPanelSize>::Run,
    };
    return &table;
}

const void* PanelFlyoutMenuSuiteTable() {
    static constexpr AIPanelFlyoutMenuSuite table{
        Entry<"AI Panel Flyout Menu Suite", "CreateFlyout", CreateFlyout>::Run,
        Entry<"AI Panel Flyout Menu Suite", "DestroyFlyout", DestroyFlyout, EntryKind::kDisposal>::Run,
        Entry<"AI Panel Flyout Menu Suite", "AppendItem", AppendItem>::Run,
        Entry<"AI Panel Flyout Menu Suite", "AppendSeparator", AppendSeparator>::Run,
        Entry<"AI Panel Flyout Menu Suite", "SetItemMark", SetItemMark>::Run,
        Entry<"AI Panel Flyout Menu Suite", "SetItemEnabled", SetItemEnabled>::Run,
    };
    return &table;
}

const void* UserInterfaceThemeSuiteTable() {
    static constexpr AIUserInterfaceThemeSuite table{
        Entry<"AI User Interface Theme Suite", "GetColor", GetThemeColor>::Run,
        Entry<"AI User Interface Theme Suite", "IsDark", IsDark>::Run,
    };
    return &table;
}

const void* ContextSuiteTable() {
    static constexpr AIContextSuite table{
        Entry<"AI Context Suite", "GetApplicationWindow", GetApplicationWindow>::Run};
    return &table;
}

const void* ActionManagerSuiteTable() {
    static constexpr AIActionManagerSuite table{
        Entry<"AI Action Manager Suite", "NewParameterTypes", NewParameterTypes>::Run,
        Entry<"AI Action Manager Suite", "FreeParameterTypes", FreeParameterTypes, EntryKind::kDisposal>::Run,
        Entry<"AI Action Manager Suite", "AddParameterType", AddParameterType>::Run,
        Entry<"AI Action Manager Suite", "RegisterAction", RegisterAction>::Run,
        Entry<"AI Action Manager Suite", "PlayAction", PlayAction>::Run,
        Entry<"AI Action Manager Suite", "GetRealParameter", GetRealParameter>::Run,
    };
    return &table;
}

} // namespace workbench
