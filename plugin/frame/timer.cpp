#include "plugin/frame/timer.h"

#include <cstring>

#include "plugin/dialogs/flyout.h"
#include "plugin/dialogs/tool_tip.h"
#include "plugin/frame/document_window.h"
#include "plugin/frame/globals.h"
#include "plugin/host/suites.h"
#include "plugin/store/cp932.h"
#include "plugin/store/memory_handle.h"
#include "plugin/store/store_names.h"
#include "plugin/store/store_tree.h"

namespace {

/// A view whose bounds or zoom the host doesn't tell is of no use to anyone.
void NoteFrontDocument() {
    globals->documentView = nullptr;
    globals->docWindow = nullptr;
    ViewHandle view = nullptr;
    if (DocumentViewSuite().GetCurrentView(&view) != kHostNoError || !view) return;
    if (DocumentViewSuite().GetViewBounds(view, &globals->viewBounds) != kHostNoError) return;
    if (DocumentViewSuite().GetViewZoom(view, &globals->viewZoom) != kHostNoError) return;
    globals->documentView = view;
    globals->docWindow = FindDocumentWindow();
}

void NoteFolders() {
    if (globals->hasFolders != kNotKnown) return;
    char root[kNameBytes];
    GetDatabaseRoot(root);
    HandleOwner folders(ListFolders(root));
    globals->hasFolders = RowCount(folders.get()) > 0;
}

void FollowCurrentName() {
    const bool sameName = std::strcmp(globals->aidbfname, globals->lastGroupSeen) == 0;
    if (sameName && globals->hasFolders == globals->lastHasFolders) return;
    if (globals->aidbfname[0] == '\0') return;
    CopyText(globals->lastGroupSeen, sizeof globals->lastGroupSeen, globals->aidbfname);
    globals->lastHasFolders = globals->hasFolders;
    if (globals->flyoutRef) UpdateFlyoutState();
}

void FollowPointer() {
    if (!globals->panelRef) return;
    int32_t shown = 0;
    void* window = nullptr;
    const bool visible = PanelSuite().IsPanelShown(globals->panelRef, &shown) == kHostNoError && shown != 0 &&
                         PanelSuite().GetPlatformWindow(globals->panelRef, &window) == kHostNoError;
    UpdateToolTip(visible ? static_cast<HWND>(window) : nullptr);
}

} // namespace

HostError OnTimer(HostMessage* message) {
    globals->hostBasic = message->basic;
    // A tick's message continues behind the head.
    const TimerHandle timer = reinterpret_cast<const HostTimerMessage*>(message)->timer;
    if (globals->timerBusy || timer != globals->timerRef) return kHostNoError;
    globals->timerBusy = 1;
    NoteFrontDocument();
    NoteFolders();
    FollowCurrentName();
    FollowPointer();
    globals->timerBusy = 0;
    return kHostNoError;
}
