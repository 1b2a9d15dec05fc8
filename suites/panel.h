/// Suites by which a plug-in hangs itself into the host's frame: menus, timers, notifiers, actions, the panel
/// and its flyout, the interface's colours, the host's windows.
///
/// Texts that a user sees are host strings; names are NUL-terminated ASCII, copied by the host.  Windows are
/// the platform's own, as plain pointers.  What is added here stays until the plug-in has shut down, unless
/// an entry says otherwise.
#pragma once

#include "suites/host_types.h"

extern "C" {

/* AI Plugin Suite, version 5. */
typedef struct AIPluginSuite {
    /* Bits of the host's own; value 2 asks for notice when another plug-in's items change. */
    HostError (*GetPluginOptions)(PluginHandle plugin, int32_t* options);
    HostError (*SetPluginOptions)(PluginHandle plugin, int32_t options);
} AIPluginSuite;

/* SP Access Suite, version 3. */
typedef struct SPAccessSuite {
    HostError (*GetPluginAccess)(PluginHandle plugin, AccessHandle* access);
    /* The platform's handle of the plug-in's module, for its resources. */
    HostError (*GetAccessInstance)(AccessHandle access, void** instance);
} SPAccessSuite;

/* AI Menu Suite, version 11. */
typedef struct AIMenuSuite {
    /* Puts an item at the end of a menu group; a pick comes as "AI Menu", "AI Go".  Option bit 1: the host
       sends "AI Update" before it shows the item. */
    HostError (*AddMenuItem)(PluginHandle plugin, const char* itemName, const char* groupName,
                             UnicodeStringHandle text, int32_t options, MenuItemHandle* item);
    HostError (*CountMenuGroups)(int32_t* count);
    HostError (*GetNthMenuGroup)(int32_t index, MenuGroupHandle* group);
    HostError (*GetMenuGroupName)(MenuGroupHandle group, const char** name); /* valid until the next call */
    HostError (*AddMenuGroupAsSubMenu)(const char* groupName, int32_t options, MenuItemHandle parent,
                                       MenuGroupHandle* group);
    HostError (*CheckItem)(MenuItemHandle item, int32_t on);
} AIMenuSuite;

/* AI Timer Suite, version 5.  Ticks are sixtieths of a second.  A tick comes as "AI Timer", "AI Go", also
   from within a dialog's or a tracking loop's wait. */
typedef struct AITimerSuite {
    HostError (*AddTimer)(PluginHandle plugin, const char* name, int32_t periodTicks, int32_t options,
                          TimerHandle* timer);
} AITimerSuite;

/* AI Notifier Suite, version 4. */
typedef struct AINotifierSuite {
    HostError (*AddNotifier)(PluginHandle plugin, const char* name, const char* type,
                             NotifierHandle* notifier);
} AINotifierSuite;

typedef struct HostSize {
    double width, height; /* pixels */
} HostSize;

typedef void (*HostFlyoutHandler)(PanelHandle panel, int32_t item);
typedef HostError (*HostPanelSizeHandler)(PanelHandle panel);

/* AI Panel Suite, version 2.  Handlers are called from outside of any message to the plug-in.  The host
   forgets them when it unloads the plug-in, and the plug-in sets them again with its first use of the suites
   behind a reload; the panel and its window stand all the while. */
typedef struct AIPanelSuite {
    /* A hidden panel with a window of that size for the plug-in's controls.  `stateCount` and `resizable` are
       1, `reserved` is 0; a flyout may be null. */
    HostError (*CreatePanel)(PluginHandle plugin, UnicodeStringHandle id, UnicodeStringHandle title,
                             int32_t stateCount, HostSize size, int32_t resizable, FlyoutHandle flyout,
                             int32_t reserved, PanelHandle* panel);
    HostError (*DestroyPanel)(PanelHandle panel); /* with its window, if that still stands */
    HostError (*SetMinimumSize)(PanelHandle panel, HostSize size);
    HostError (*SetFlyoutHandler)(PanelHandle panel, HostFlyoutHandler handler);
    HostError (*SetSizeHandler)(PanelHandle panel, HostPanelSizeHandler handler);
    /* Null once the window was destroyed. */
    HostError (*GetPlatformWindow)(PanelHandle panel, void** window);
    HostError (*ShowPanel)(PanelHandle panel, int32_t show);
    HostError (*IsPanelShown)(PanelHandle panel, int32_t* shown);
    HostError (*GetPanelSize)(PanelHandle panel, HostSize* size);
} AIPanelSuite;

/* AI Panel Flyout Menu Suite, version 2.  Items go by the numbers that the plug-in gave them. */
typedef struct AIPanelFlyoutMenuSuite {
    HostError (*CreateFlyout)(FlyoutHandle* flyout);
    HostError (*DestroyFlyout)(FlyoutHandle flyout);
    HostError (*AppendItem)(FlyoutHandle flyout, int32_t item, UnicodeStringHandle text);
    HostError (*AppendSeparator)(FlyoutHandle flyout, int32_t item);
    HostError (*SetItemMark)(FlyoutHandle flyout, int32_t item, int32_t on);
    HostError (*SetItemEnabled)(FlyoutHandle flyout, int32_t item, int32_t on);
} AIPanelFlyoutMenuSuite;

/* AI User Interface Theme Suite, version 2. */
typedef struct AIUserInterfaceThemeSuite {
    /* Kind 1: 0 the panels' colour, 1 their text; one leading value, then red, green, blue, 0 to 1. */
    HostError (*GetColor)(int32_t kind, int32_t color, double values[4]);
    HostError (*IsDark)(int32_t* dark);
} AIUserInterfaceThemeSuite;

/* AI Context Suite, version 7. */
typedef struct AIContextSuite {
    HostError (*GetApplicationWindow)(void** window);
} AIContextSuite;

/* AI Action Manager Suite, version 5.  A played action comes as "Action Manager", "Do Action" within the
   call. */
typedef struct AIActionManagerSuite {
    HostError (*NewParameterTypes)(ParameterTypesHandle* types);
    HostError (*FreeParameterTypes)(ParameterTypesHandle types);
    HostError (*AddParameterType)(ParameterTypesHandle types, uint32_t key, UnicodeStringHandle name,
                                  uint32_t type, int32_t show);
    /* The types are copied. */
    HostError (*RegisterAction)(const char* name, UnicodeStringHandle localName, int32_t version,
                                int32_t reserved1, int32_t reserved2, PluginHandle plugin, int32_t typeWord,
                                ParameterTypesHandle types);
    HostError (*PlayAction)(const char* name, int32_t dialogMode, ParametersHandle parameters);

    /* A parameter of type 'real' of the action that is being played; kHostNotFound if it has none of that
       key. */
    HostError (*GetRealParameter)(ParametersHandle parameters, uint32_t key, double* value);
} AIActionManagerSuite;

} /* extern "C" */
