/// What a plug-in hangs into the host's frame, as the host keeps it: menus, timers, notifiers, actions, the
/// panel and its flyout.  All texts are UTF-8.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "suites/panel.h"

namespace workbench {

struct MenuItem;

struct MenuGroup {
    MenuGroupHandle handle = nullptr;
    std::string name;
    MenuItem* parent = nullptr; ///< the item that opens it as a submenu; null for a group of the menu bar
};

struct MenuItem {
    MenuItemHandle handle = nullptr;
    std::string name, text;
    MenuGroup* group = nullptr;
    int32_t options = 0;
    bool checked = false;
};
constexpr int32_t kMenuWantsUpdate = 1; ///< bit of options: "AI Update" goes out before the item is shown

struct HostTimer {
    TimerHandle handle = nullptr;
    std::string name;
    int32_t periodTicks = 0; ///< sixtieths of a second
};

struct HostNotifier {
    NotifierHandle handle = nullptr;
    std::string name, type;
};

struct FlyoutItem {
    int32_t number = 0;
    std::string text; ///< empty for a separator
    bool separator = false, marked = false, enabled = true;
};

struct HostFlyout {
    FlyoutHandle handle = nullptr;
    std::vector<FlyoutItem> items;
};

struct HostPanel {
    PanelHandle handle = nullptr;
    std::string id, title;
    HostSize size{}, minimum{};
    HostFlyout* flyout = nullptr;
    HostFlyoutHandler onFlyout = nullptr;
    HostPanelSizeHandler onSize = nullptr;
    bool shown = false;
    void* window = nullptr; ///< the frame's business
};

struct ParameterType {
    uint32_t key = 0, type = 0;
    std::string name;
    bool show = false;
};

struct HostParameterTypes {
    ParameterTypesHandle handle = nullptr;
    std::vector<ParameterType> types;
    uint64_t madeBy = 0;
};

/// The values of an action that is being played.
struct HostParameters {
    ParametersHandle handle = nullptr;
    std::map<uint32_t, double> reals;
};

struct HostAction {
    std::string name, localName;
    int32_t version = 0, typeWord = 0;
    std::vector<ParameterType> types;
};

/// The host's windows, as far as suites ask for them.
class WindowFrame {
public:
    virtual ~WindowFrame() = default;
    virtual void* ApplicationWindow() = 0;

    /// Gives `panel.window` a hidden window of `panel.size`; false if that can't be.
    virtual bool MakePanelWindow(HostPanel& panel) = 0;
    /// The window that the plug-in sees; null if it was destroyed.
    virtual void* PlatformWindow(const HostPanel& panel) = 0;
    virtual void DestroyPanelWindow(HostPanel& panel) = 0;
    virtual void ShowPanelWindow(HostPanel& panel) = 0; ///< as `panel.shown` says
    virtual HostSize PanelSize(const HostPanel& panel) = 0;

    virtual void ShowAlert(const std::string& text, bool error) = 0;
    virtual bool AskYesNo(const std::string& question) = 0;
    virtual void MenusChanged() = 0;
    virtual void DocumentChanged() {} ///< another document is in front, or an action may have changed it
};

/// The interface's colours, for AI User Interface Theme Suite.
struct Theme {
    bool dark = false;
    double panel[4] = {1, 0.94, 0.94, 0.94}, text[4] = {1, 0, 0, 0};
};

enum class RulerUnit { kInch, kCentimetre, kPoint, kPica, kMillimetre, kPixel, kQuarterMillimetre };

} // namespace workbench
