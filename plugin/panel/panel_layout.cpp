#include "plugin/panel/panel_layout.h"

#include <algorithm>
#include <cmath>

#include "plugin/frame/globals.h"
#include "plugin/host/entry.h"
#include "plugin/host/held_suites.h"
#include "plugin/host/suite_table.h"
#include "plugin/host/suites.h"
#include "plugin/panel/list_table.h"
#include "plugin/panel/panel_controls.h"

namespace {

constexpr int kBelowLists = 55; ///< pixels for the buttons, further to the margin
constexpr int kScrollWidth = 20;
constexpr int kBelowFolders = 22; ///< pixels for the folder list's buttons
constexpr int kButtonWidth = 24, kButtonHeight = 16, kButtonPitch = 29;
constexpr int kComboHeight = 14;
constexpr float kWidestPlan = 1e6f; ///< pixels; beyond it a split isn't worth a number

RECT Box(int left, int top, int width, int height) {
    return {left, top, left + width, top + height};
}

/// A button of the row below the lists, `place` 0 at the right.
RECT RecordButton(const PanelPlan& plan, int place) {
    const int right = plan.inner.right - kPanelMargin - place * kButtonPitch;
    return Box(right - kButtonWidth, plan.inner.bottom + 6, kButtonWidth, kButtonHeight);
}

int FolderListBottom(const PanelPlan& plan) {
    return plan.inner.bottom - kBelowFolders;
}

/// A button below the folder list.
RECT FolderButton(const PanelPlan& plan, int left) {
    return Box(left, FolderListBottom(plan) + kPanelMargin, kButtonWidth, kButtonHeight);
}

/// The left edge of a button at the folder list's right end, `place` 0 at the right.
int FolderButtonLeft(const PanelPlan& plan, int place) {
    return plan.split - kPanelMargin - kPanelMargin - kButtonWidth - place * kButtonPitch;
}

/// Controls that never change places.
RECT FixedPlace(const PanelPlan& plan, int control) {
    const RECT& inner = plan.inner;
    switch (control) {
        case kRecordScroll:
            return {inner.right - kScrollWidth, inner.top, inner.right, inner.bottom};
        case kFolderList:
            return {inner.left, inner.top, plan.split - kListGap, FolderListBottom(plan)};
        case kFolderScroll:
            return {plan.split - kListGap, inner.top, plan.split - kListGap + kScrollWidth,
                    FolderListBottom(plan)};
        case kGroupCombo:
            return {inner.left + 25, inner.bottom + 4, inner.right - 95, inner.bottom + 4 + kComboHeight};
        case kSeparator:
            return Box(0, plan.height - 30, plan.width, 1);
        case kOriginControl:
            return {5, plan.height - 25, 28, plan.height - 2};
        case kNewFolderButton:
            return FolderButton(plan, inner.left + kPanelMargin);
        case kNewGroupButton:
            return FolderButton(plan, inner.left + kPanelMargin + kButtonPitch);
        case kDeleteGroupButton:
            return FolderButton(plan, inner.left + kPanelMargin + 2 * kButtonPitch);
        case kFolderListButton:
            return Box(inner.left, inner.bottom + 8, 20, 12);
        default:
            return {};
    }
}

void PlaceControl(HWND panel, int control, const RECT& place, UINT flags) {
    const HWND window = GetDlgItem(panel, control);
    if (!window) return;
    SetWindowPos(window, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                 flags | SWP_NOZORDER | SWP_NOACTIVATE);
}

constexpr int kMovedAndSized[] = {kRecordList,   kRecordScroll, kFolderList,
                                  kFolderScroll, kGroupCombo,   kSeparator};
constexpr int kMoved[] = {kNewButton,       kDeleteButton,    kSettingButton,     kOriginControl,
                          kNewFolderButton, kNewGroupButton,  kDeleteGroupButton, kGroupSettingButton,
                          kSearchButton,    kFolderListButton};
constexpr int kOfFolderList[] = {kFolderList,        kFolderScroll,       kNewFolderButton, kNewGroupButton,
                                 kDeleteGroupButton, kGroupSettingButton, kSearchButton};

bool ShowsIcons() {
    return globals->toolMode == 1 || globals->toolMode == 2;
}

} // namespace

PanelPlan PlanPanel(int width, int height, float browseWidth) {
    PanelPlan plan{width,
                   height,
                   {kPanelMargin, kPanelMargin, width - kPanelMargin, height - kPanelMargin - kBelowLists},
                   0};
    const float share = static_cast<float>(plan.inner.right - plan.inner.left) * browseWidth;
    const float split = static_cast<float>(plan.inner.left) + share;
    if (std::isnan(split)) {
        plan.split = plan.inner.left;
    } else {
        plan.split = static_cast<int>(std::clamp(split, -kWidestPlan, kWidestPlan));
    }
    return plan;
}

RECT FirstPlace(const PanelPlan& plan, int control) {
    switch (control) {
        case kNewButton:
            return RecordButton(plan, 0);
        case kDeleteButton:
            return RecordButton(plan, 1);
        case kSettingButton:
            return RecordButton(plan, 2);
        case kSearchButton:
            return FolderButton(plan, FolderButtonLeft(plan, 2));
        default:
            return LaterPlace(plan, control, true);
    }
}

RECT LaterPlace(const PanelPlan& plan, int control, bool folderListShown) {
    const RECT& inner = plan.inner;
    switch (control) {
        case kRecordList:
            return {folderListShown ? plan.split : inner.left, inner.top, inner.right - kScrollWidth,
                    inner.bottom};
        case kNewButton:
            return RecordButton(plan, 1);
        case kDeleteButton:
            return RecordButton(plan, 0);
        case kSettingButton:
            return RecordButton(plan, 2);
        case kGroupSettingButton:
            return FolderButton(plan, FolderButtonLeft(plan, 1));
        case kSearchButton:
            return FolderButton(plan, FolderButtonLeft(plan, 0));
        default:
            return FixedPlace(plan, control);
    }
}

PanelPlan PlanOfPanel(HWND panel) {
    RECT client{};
    GetClientRect(panel, &client);
    return PlanPanel(client.right - client.left, client.bottom - client.top, globals->browseWidth);
}

void ApplyBrowseMode(HWND panel) {
    const bool shown = globals->browseMode != 0;
    PlaceControl(panel, kRecordList, LaterPlace(PlanOfPanel(panel), kRecordList, shown), 0);
    if (ShowsIcons()) {
        UpdateScrollRange(panel, kRecordList, false);
        InvalidateRect(GetDlgItem(panel, kRecordList), nullptr, FALSE);
    }
    for (const int control : kOfFolderList) {
        ShowWindow(GetDlgItem(panel, control), shown ? SW_SHOW : SW_HIDE);
    }
}

void RelayoutPanel(HWND panel, bool updateScroll) {
    const PanelPlan plan = PlanOfPanel(panel);
    const bool shown = globals->browseMode != 0;
    for (const int control : kMovedAndSized)
        PlaceControl(panel, control, LaterPlace(plan, control, shown), 0);
    for (const int control : kMoved) {
        PlaceControl(panel, control, LaterPlace(plan, control, shown), SWP_NOSIZE);
    }
    if (updateScroll && ShowsIcons()) UpdateScrollRange(panel, kRecordList, false);
}

namespace {

void RelayoutHostPanel(PanelHandle panel) {
    HostSize size;
    void* window = nullptr;
    if (PanelSuite().GetPanelSize(panel, &size) != kHostNoError || !globals->panelRef) return;
    if (PanelSuite().GetPlatformWindow(panel, &window) != kHostNoError || !window) return;
    RelayoutPanel(static_cast<HWND>(window), true);
}

} // namespace

HostError OnPanelResized(PanelHandle panel) {
    if (!globals || !globals->hostBasic) return kHostNoError;
    if (AcquireHostSuites(globals->hostBasic) == kHostNoError) AtEntry([=] { RelayoutHostPanel(panel); });
    return ReleaseHostSuites(globals->hostBasic);
}

void UpdateScrollRange(HWND panel, int listId, bool reset) {
    const HWND list = GetDlgItem(panel, listId);
    const HWND bar = GetDlgItem(panel, listId + 1);
    const int last = LastScrollLine(GridOfList(list), GetRowCount(list));
    SCROLLINFO state{};
    state.cbSize = sizeof state;
    state.fMask = SIF_RANGE | SIF_POS;
    GetScrollInfo(bar, SB_CTL, &state);
    if (!reset && last == state.nMax) return;
    state.nMin = 0;
    state.nMax = last;
    state.nPos = reset ? 0 : std::clamp(state.nPos, 0, last);
    SetScrollInfo(bar, SB_CTL, &state, TRUE);
}

float LimitBrowseWidth(float width) {
    if (std::isnan(width)) return 0.3f;
    return std::clamp(width, 0.1f, 0.8f);
}
