/// Where the panel's controls stand, worked out from its client size, and moving them there.
#pragma once

#include <windows.h>

#include <cstdint>

#include "suites/host_types.h"

constexpr int kPanelMargin = 5; ///< pixels, each side
constexpr int kListGap = 25;    ///< from the folder list to the record list, a scroll bar among it

/// Rectangles from the panel's client size: needs no window.  Pixels, from the client area's left top corner;
/// a panel that is too small gives rectangles of negative width or height.
struct PanelPlan {
    int width, height;
    RECT inner; ///< between the margins, above the buttons
    int split;  ///< left edge of the record list while the folder list is shown
};
PanelPlan PlanPanel(int width, int height, float browseWidth);

/// Where a control stands when it is made.
RECT FirstPlace(const PanelPlan& plan, int control);

/// Where a control stands after any later layout: buttons 1 and 2 change places, and 15 goes to the other
/// side of 14. `folderListShown` decides where the record list begins.
RECT LaterPlace(const PanelPlan& plan, int control, bool folderListShown);

/// Shows or hides the folder list as `browseMode` says and gives the record list its place.
void ApplyBrowseMode(HWND panel);

/// Places the controls anew after a change of size or of `browseWidth`; `updateScroll` also fits the record
/// list's scroll bar to the cells that are in a line now.  Nothing is painted anew but what moved.
void RelayoutPanel(HWND panel, bool updateScroll);

/// The host's size handler: acquires the suites by itself.
HostError OnPanelResized(PanelHandle panel);

/// Fits the range of a list's scroll bar to its rows; `reset` goes back to the top.
void UpdateScrollRange(HWND panel, int listId, bool reset);

/// `browseWidth` as it may be: 0.1 to 0.8, and 0.3 for what is no number.
float LimitBrowseWidth(float width);

/// The panel's plan at its size now.
PanelPlan PlanOfPanel(HWND panel);
