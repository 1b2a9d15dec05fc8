#include "plugin/panel/panel_build.h"

#include <cstdio>
#include <cstring>
#include <iterator>

#include "plugin/dialogs/dialog_texts.h"
#include "plugin/dialogs/flyout.h"
#include "plugin/frame/globals.h"
#include "plugin/host/host_string.h"
#include "plugin/host/suites.h"
#include "plugin/panel/list_table.h"
#include "plugin/panel/panel_controls.h"
#include "plugin/panel/panel_layout.h"
#include "plugin/panel/panel_lists.h"
#include "plugin/panel/panel_window.h"

namespace {

constexpr char kPanelId[] = "VELQUORNE_TAG_INFO_PANEL";
constexpr char kPanelTitle[] = "Velquorne";
constexpr HostSize kFirstSize = {400, 388};
constexpr HostSize kSmallestSize = {320, 240};
constexpr char kFontFace[] = "メイリオ";
constexpr int kFontPoints = 9;
constexpr int kComboItemHeight = 15;

constexpr DWORD kOwnerDrawnList = WS_CHILD | WS_VISIBLE | SS_NOTIFY | SS_OWNERDRAW;
constexpr DWORD kScrollBar = WS_CHILD | WS_VISIBLE | SBS_VERT;
constexpr DWORD kIconButton = WS_CHILD | WS_VISIBLE | BS_OWNERDRAW;
constexpr DWORD kComboBox =
    WS_CHILD | WS_VISIBLE | WS_TABSTOP | CBS_DROPDOWNLIST | CBS_OWNERDRAWFIXED | CBS_HASSTRINGS;
constexpr DWORD kFrameLine = WS_CHILD | WS_VISIBLE | SS_BLACKFRAME;
static_assert(kOwnerDrawnList == 0x5000010D && kScrollBar == 0x50000001 && kIconButton == 0x5000000B &&
              kComboBox == 0x50010213 && kFrameLine == 0x50000007);

struct ControlRow {
    int id;
    const char* windowClass;
    DWORD style;
    int icon; ///< a button's window text is the number of its icon; -1: no text
};

constexpr ControlRow kListControls[] = {
    {kRecordList, "STATIC", kOwnerDrawnList, -1},
    {kRecordScroll, "SCROLLBAR", kScrollBar, -1},
    {kFolderList, "STATIC", kOwnerDrawnList, -1},
    {kFolderScroll, "SCROLLBAR", kScrollBar, -1},
    {kNewButton, "BUTTON", kIconButton, kNewIcon},
    {kDeleteButton, "BUTTON", kIconButton, kDeleteIcon},
    {kSettingButton, "BUTTON", kIconButton, kSettingIcon},
    {kGroupCombo, "COMBOBOX", kComboBox, -1},
};

constexpr ControlRow kOtherControls[] = {
    {kSeparator, "STATIC", kFrameLine, -1},
    {kOriginControl, "BUTTON", kIconButton, -1},
    {kNewFolderButton, "BUTTON", kIconButton, kNewFolderIcon},
    {kNewGroupButton, "BUTTON", kIconButton, kNewGroupIcon},
    {kDeleteGroupButton, "BUTTON", kIconButton, kDeleteIcon},
    {kGroupSettingButton, "BUTTON", kIconButton, kSettingIcon},
    {kSearchButton, "BUTTON", kIconButton, kSearchIcon},
    {kFolderListButton, "BUTTON", kIconButton, kFoldersShownIcon},
};

/// Resources of the light icons, by number; the dark ones are 100 higher.
constexpr int kIconResources[] = {16251, 16252, 16253, 16260, 16261, 16259, 16257, 16258};
constexpr int kDarkResources = 100;

void MakeControl(HWND panel, const PanelPlan& plan, const ControlRow& row) {
    char text[16] = "";
    if (row.icon >= 0) std::snprintf(text, sizeof text, "%d", row.icon);
    const RECT place = FirstPlace(plan, row.id);
    const auto instance = reinterpret_cast<HINSTANCE>(GetWindowLongPtrA(panel, GWLP_HINSTANCE));
    CreateWindowExA(0, row.windowClass, text, row.style, place.left, place.top, place.right - place.left,
                    place.bottom - place.top, panel, reinterpret_cast<HMENU>(static_cast<INT_PTR>(row.id)),
                    instance, nullptr);
}

void UsePanelFont(HWND panel, int control) {
    SendMessageA(GetDlgItem(panel, control), WM_SETFONT, reinterpret_cast<WPARAM>(globals->panelFont), FALSE);
}

void StartScrollBar(HWND panel, int control) {
    SCROLLINFO state{};
    state.cbSize = sizeof state;
    state.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
    state.nMax = 100;
    state.nPage = 1;
    SetScrollInfo(GetDlgItem(panel, control), SB_CTL, &state, FALSE);
}

/// What the host shows its panels in; a host without a theme gets plain greys.
void ReadTheme() {
    int32_t dark = 0;
    if (UserInterfaceThemeSuite().IsDark(&dark) != kHostNoError) dark = 0;
    globals->uiDark = dark != 0;
    const double panel = (dark ? 0x32 : 0xF0) / 255.0, text = dark ? 0xDC / 255.0 : 0.0;
    if (UserInterfaceThemeSuite().GetColor(1, 0, globals->panelColor) != kHostNoError) {
        for (double& value : globals->panelColor) value = panel;
    }
    if (UserInterfaceThemeSuite().GetColor(1, 1, globals->panelTextColor) != kHostNoError) {
        for (double& value : globals->panelTextColor) value = text;
    }
}

void MakeBrushAndFont(HWND panel) {
    if (globals->panelBrush) DeleteObject(globals->panelBrush);
    globals->panelBrush = CreateSolidBrush(ThemeColor(globals->panelColor));
    if (globals->panelFont) DeleteObject(globals->panelFont);
    const HDC context = GetWindowDC(panel);
    const int height = MulDiv(kFontPoints, -GetDeviceCaps(context, LOGPIXELSY), 72);
    ReleaseDC(panel, context);
    globals->panelFont =
        CreateFontA(height, 0, 0, 0, FW_NORMAL, 0, 0, 0, SHIFTJIS_CHARSET, 0, 0, 0, 0, kFontFace);
}

void MakeLists(HWND panel, const PanelPlan& plan) {
    for (const ControlRow& row : kListControls) MakeControl(panel, plan, row);
    for (const int control : {kRecordList, kFolderList, kGroupCombo}) UsePanelFont(panel, control);
    for (const int control : {kRecordScroll, kFolderScroll}) StartScrollBar(panel, control);
    SendMessageA(GetDlgItem(panel, kGroupCombo), CB_SETITEMHEIGHT, static_cast<WPARAM>(-1), kComboItemHeight);
}

void FillLists(HWND panel) {
    RebuildFolderList(panel);
    RebuildGroupCombo(panel);
    IndexSelectedFolder();
    RebuildRecordList(panel, true);
}

void MakeOtherControls(HWND panel, const PanelPlan& plan) {
    for (const ControlRow& row : kOtherControls) MakeControl(panel, plan, row);
    ShowControlNumber(panel, kOriginControl, globals->originMode);
    ShowControlNumber(panel, kFolderListButton, globals->browseMode ? kFoldersShownIcon : kFoldersHiddenIcon);
}

} // namespace

void LoadPanelIcons(HINSTANCE instance) {
    for (size_t i = 0; i < std::size(kIconResources); ++i) {
        globals->panelIcons[i] = LoadIconA(instance, MAKEINTRESOURCEA(kIconResources[i]));
        globals->panelIcons[i + kDarkIcons] =
            LoadIconA(instance, MAKEINTRESOURCEA(kIconResources[i] + kDarkResources));
    }
}

void BuildPanel(HWND panel) {
    ReadTheme();
    MakeBrushAndFont(panel);
    TakePanelWindow(panel);
    LoadPanelIcons(ModuleInstance());
    const PanelPlan plan = PlanOfPanel(panel);
    MakeLists(panel, plan);
    FillLists(panel);
    MakeOtherControls(panel, plan);
    ApplyBrowseMode(panel);
}

namespace {

HostError MakeHostPanel(PluginHandle plugin) {
    const HostString id(kPanelId, std::strlen(kPanelId), kEncodingCp932);
    const HostString title(kPanelTitle, std::strlen(kPanelTitle), kEncodingCp932);
    const HostError error = PanelSuite().CreatePanel(plugin, id.get(), title.get(), 1, kFirstSize, 1,
                                                     globals->flyoutRef, 0, &globals->panelRef);
    if (error != kHostNoError) globals->panelRef = nullptr;
    return error;
}

HostError FillHostPanel(PanelHandle panel) {
    void* window = nullptr;
    const HostError error = PanelSuite().GetPlatformWindow(panel, &window);
    if (error == kHostNoError && window) BuildPanel(static_cast<HWND>(window));
    return error;
}

} // namespace

HostError CreatePanel(PluginHandle plugin) {
    if (globals->panelRef) return kHostNoError;
    BuildFlyoutMenu();
    if (const HostError error = MakeHostPanel(plugin); error != kHostNoError) return error;
    const PanelHandle panel = globals->panelRef;
    HostError first = kHostNoError;
    const auto note = [&first](HostError error) {
        if (first == kHostNoError) first = error;
    };
    note(PanelSuite().SetMinimumSize(panel, kSmallestSize));
    note(PanelSuite().SetFlyoutHandler(panel, OnFlyoutCommand));
    note(FillHostPanel(panel));
    note(PanelSuite().ShowPanel(panel, 1));
    note(PanelSuite().SetSizeHandler(panel, OnPanelResized));
    return first;
}

void FreePanelObjects() {
    if (globals->panelBrush) DeleteObject(globals->panelBrush);
    if (globals->panelFont) DeleteObject(globals->panelFont);
    globals->panelBrush = nullptr;
    globals->panelFont = nullptr;
    globals->panelWindow = nullptr;
    globals->oldPanelProc = nullptr;
}
