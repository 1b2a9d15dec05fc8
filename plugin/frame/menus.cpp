#include "plugin/frame/menus.h"

#include <cstdio>
#include <cstring>

#include "plugin/dialogs/about_dialog.h"
#include "plugin/frame/globals.h"
#include "plugin/host/host_string.h"
#include "plugin/host/suites.h"

namespace {

constexpr char kPanelItem[] = "VELQUORNE_INFO_GROUP";
constexpr char kPanelText[] = "Velquorne";
constexpr char kPanelGroup[] = "Tool Palettes";
constexpr char kAboutGroup[] = "TV_PLUGINS_ABOUT";
constexpr char kAboutHeadText[] = "About Plug-ins (TOLMA-VERNISH INC.)";
constexpr char kHostAboutGroup[] = "About";
constexpr int32_t kWantsUpdate = 1; ///< the host sends OnMenuUpdate before it shows the item
constexpr int32_t kSubMenu = 1;

HostError AddItem(const char* name, const char* group, const char* text, int32_t options,
                  MenuItemHandle* item) {
    const HostString string(text, std::strlen(text), kEncodingCp932);
    return MenuSuite().AddMenuItem(globals->pluginRef, name, group, string.get(), options, item);
}

/// Whether another plug-in has made the group; what can't be searched counts as no.
bool AboutGroupExists(int32_t groups) {
    for (int32_t i = 0; i < groups; ++i) {
        MenuGroupHandle group = nullptr;
        const char* name = nullptr;
        if (MenuSuite().GetNthMenuGroup(i, &group) != kHostNoError) return false;
        if (MenuSuite().GetMenuGroupName(group, &name) != kHostNoError || !name) return false;
        if (std::strcmp(name, kAboutGroup) == 0) return true;
    }
    return false;
}

void MakeAboutGroup() {
    MenuItemHandle head = nullptr;
    MenuGroupHandle group = nullptr;
    if (AddItem(kAboutGroup, kHostAboutGroup, kAboutHeadText, 0, &head) != kHostNoError) return;
    MenuSuite().AddMenuGroupAsSubMenu(kAboutGroup, kSubMenu, head, &group);
}

bool IsPanelShown() {
    int32_t shown = 0;
    return PanelSuite().IsPanelShown(globals->panelRef, &shown) == kHostNoError && shown != 0;
}

} // namespace

HostError AddMenus() {
    int32_t groups = 0;
    HostError error = AddItem(kPanelItem, kPanelGroup, kPanelText, kWantsUpdate, &globals->panelMenuItem);
    if (error == kHostNoError) error = MenuSuite().CountMenuGroups(&groups);
    if (error != kHostNoError) return error;
    if (!AboutGroupExists(groups)) MakeAboutGroup();
    char text[sizeof globals->product + 3];
    std::snprintf(text, sizeof text, "%s...", globals->product);
    return AddItem(globals->product, kAboutGroup, text, 0, &globals->aboutMenuItem);
}

HostError OnMenuGo(HostMessage* message) {
    // A pick's message continues behind the head.
    const MenuItemHandle item = reinterpret_cast<const HostMenuMessage*>(message)->item;
    if (!item) return kHostNoError;
    if (item == globals->panelMenuItem && globals->panelRef) {
        PanelSuite().ShowPanel(globals->panelRef, IsPanelShown() ? 0 : 1);
    }
    if (item == globals->aboutMenuItem) ShowAboutDialog();
    return kHostNoError;
}

HostError OnMenuUpdate(HostMessage*) {
    if (globals->panelRef) MenuSuite().CheckItem(globals->panelMenuItem, IsPanelShown() ? 1 : 0);
    return kHostNoError;
}
