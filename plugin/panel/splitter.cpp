#include "plugin/panel/splitter.h"

#include <cstdlib>

#include "plugin/frame/globals.h"
#include "plugin/panel/panel_controls.h"
#include "plugin/panel/panel_layout.h"

namespace {

constexpr int kZoneWidth = 5;
constexpr int kDeadZone = 5; ///< pixels that the pointer may move before the border follows

// New and Delete change places when the panel is laid out for the first time behind its making; a moved
// window keeps its pixels, and theirs are those of the one that it has come to lie over.
constexpr int kRepainted[] = {kRecordList,      kRecordScroll,   kFolderList,        kFolderScroll,
                              kNewFolderButton, kNewGroupButton, kDeleteGroupButton, kGroupSettingButton,
                              kSearchButton,    kNewButton,      kDeleteButton};

void MoveSplitter(HWND panel, int folderWidth) {
    RECT client{};
    GetClientRect(panel, &client);
    const int inner = client.right - client.left - 2 * kPanelMargin;
    globals->browseWidth = LimitBrowseWidth(static_cast<float>(folderWidth) / static_cast<float>(inner));
    RelayoutPanel(panel, false);
    for (const int control : kRepainted) InvalidateRect(GetDlgItem(panel, control), nullptr, FALSE);
    UpdateWindow(panel);
}

} // namespace

RECT SplitterSpan(HWND panel) {
    RECT span{};
    GetWindowRect(GetDlgItem(panel, kFolderList), &span);
    MapWindowPoints(nullptr, panel, reinterpret_cast<POINT*>(&span), 2);
    span.right += kListGap;
    return span;
}

bool IsOnSplitter(const RECT& span, POINT press) {
    return press.x >= span.right - kZoneWidth && press.x <= span.right && press.y >= span.top &&
           press.y <= span.bottom;
}

bool DragSplitter(HWND panel) {
    const POINT press = PointerIn(panel);
    const RECT span = SplitterSpan(panel);
    if (!IsOnSplitter(span, press)) return false;
    int lastX = press.x;
    while (GetAsyncKeyState(VK_LBUTTON) < 0) {
        const int x = PointerIn(panel).x;
        if (x != lastX && std::abs(x - press.x) > kDeadZone) {
            MoveSplitter(panel, span.right - span.left + x - press.x);
        }
        lastX = x;
    }
    return true;
}
