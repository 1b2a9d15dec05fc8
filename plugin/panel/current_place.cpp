#include "plugin/panel/current_place.h"

#include "plugin/frame/globals.h"
#include "plugin/host/suites.h"
#include "plugin/store/store_names.h"

void SplitCurrentName() {
    SplitGroupName(globals->aidbfname, globals->selFolder, globals->selSubFolder, globals->selGroup);
}

HWND PanelWindow() {
    void* window = nullptr;
    if (!globals->panelRef) return nullptr;
    if (PanelSuite().GetPlatformWindow(globals->panelRef, &window) != kHostNoError) return nullptr;
    return static_cast<HWND>(window);
}
