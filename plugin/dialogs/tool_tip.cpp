#include "plugin/dialogs/tool_tip.h"

#include <algorithm>
#include <cstring>

#include "plugin/frame/globals.h"
#include "plugin/panel/list_table.h"
#include "plugin/panel/panel_controls.h"
#include "plugin/store/cp932.h"
#include "plugin/store/record_index.h"
#include "plugin/store/store_names.h"

namespace {

struct TipTexts {
    const char* english;
    const char* japanese;
};

constexpr TipTexts kNone = {"", ""};
constexpr TipTexts kNew = {"New", "新規"};
constexpr TipTexts kDelete = {"Delete", "削除"};
constexpr TipTexts kSetting = {"Setting", "設定"};
constexpr TipTexts kOrigin = {"Placement origin", "配置基準位置"};
constexpr TipTexts kNewFolder = {"New Folder", "新規フォルダ"};
constexpr TipTexts kNewGroup = {"New Group", "新規グループ"};
constexpr TipTexts kSearch = {"Search", "検索"};
constexpr TipTexts kHideFolders = {"Hide Folder List", "フォルダリストを隠す"};
constexpr TipTexts kShowFolders = {"Show Folder List", "フォルダリストを表示"};
constexpr TipTexts kDeleteGroup = {"Delete Group", "グループ削除"};
constexpr TipTexts kDeleteFolder = {"Delete Folder", "フォルダ削除"};
constexpr TipTexts kGroupSetting = {"Group Setting", "グループの設定"};
constexpr TipTexts kFolderSetting = {"Folder Setting", "フォルダの設定"};

/// What the buttons of the folder list act on.
enum class Place { kNothing, kGroup, kFolder };

Place CurrentPlace(bool& twoFolders) {
    char folder[kPartBytes], subFolder[kPartBytes], group[kPartBytes];
    SplitGroupName(globals->aidbfname, folder, subFolder, group);
    const bool isSearch = std::strcmp(group, kSearchResult) == 0;
    twoFolders = !isSearch && folder[0] != '\0' && subFolder[0] != '\0';
    if (isSearch) return Place::kNothing;
    if (std::strcmp(group, kFolderSelected) != 0) return Place::kGroup;
    return folder[0] != '\0' || subFolder[0] != '\0' ? Place::kFolder : Place::kNothing;
}

const TipTexts& TextsOfControl(int control) {
    bool twoFolders = false;
    const Place place = CurrentPlace(twoFolders);
    const auto choose = [place](const TipTexts& nothing, const TipTexts& group, const TipTexts& folder) {
        return place == Place::kGroup ? &group : place == Place::kFolder ? &folder : &nothing;
    };
    switch (control) {
        case kNewButton:
            return kNew;
        case kDeleteButton:
            return kDelete;
        case kSettingButton:
            return kSetting;
        case kOriginControl:
            return kOrigin;
        case kNewFolderButton:
            return twoFolders ? kNew : kNewFolder;
        case kNewGroupButton:
            return kNewGroup;
        case kDeleteGroupButton:
            return *choose(kDelete, kDeleteGroup, kDeleteFolder);
        case kGroupSettingButton:
            return *choose(kSetting, kGroupSetting, kFolderSetting);
        case kSearchButton:
            return kSearch;
        case kFolderListButton:
            return globals->browseMode ? kHideFolders : kShowFolders;
        default:
            return kNone;
    }
}

constexpr int kTippedControls[] = {
    kNewButton,      kDeleteButton,      kSettingButton,      kOriginControl, kNewFolderButton,
    kNewGroupButton, kDeleteGroupButton, kGroupSettingButton, kSearchButton,  kFolderListButton};
constexpr int kBelowRow = 2, kBelowControl = 10; ///< pixels

/// A tip that may be shown: its text and the middle of its upper edge, on the screen.
struct Tip {
    char text[kToolTipBytes];
    POINT point;
};

/// Whether a window shows and has the pointer in its client area.
bool HasPointer(HWND window, POINT screen, RECT& client, POINT& inside) {
    inside = screen;
    return IsWindowVisible(window) && GetClientRect(window, &client) && ScreenToClient(window, &inside) &&
           PtInRect(&client, inside);
}

POINT BelowMiddle(HWND window, const RECT& rectangle, int distance) {
    POINT point = {(rectangle.left + rectangle.right) / 2, rectangle.bottom + distance};
    ClientToScreen(window, &point);
    return point;
}

/// The record under the pointer, in icon form; true if there is a row, also where its name isn't known.
bool TipOfRecord(HWND panel, POINT screen, Tip& tip) {
    if (globals->toolMode != 1 && globals->toolMode != 2) return false;
    const HWND list = GetDlgItem(panel, kRecordList);
    RECT client, cell;
    POINT inside;
    if (!HasPointer(list, screen, client, inside)) return false;
    const int32_t row = RowFromPoint(list, inside);
    if (row < 0) return false;
    GetRowRect(list, row, &cell);
    tip.point = BelowMiddle(list, cell, kBelowRow);
    if (row < RihCount(globals->rihList)) MakeTipOfName(RihItemOfRow(globals->rihList, row)->name, tip.text);
    return true;
}

void TipOfControls(HWND panel, POINT screen, Tip& tip) {
    for (const int control : kTippedControls) {
        const HWND window = GetDlgItem(panel, control);
        RECT client;
        POINT inside;
        if (!HasPointer(window, screen, client, inside)) continue;
        tip.point = BelowMiddle(window, client, kBelowControl);
        CopyText(tip.text, sizeof tip.text, ToolTipOfControl(control));
        return;
    }
}

/// Whether the panel is what the user sees at the pointer, rather than a dialog above it.
bool IsPanelOnTop(HWND panel, POINT screen) {
    HWND window = WindowFromPoint(screen);
    while (window && window != panel) window = GetParent(window);
    return window == panel;
}

Tip FindTip(HWND panel) {
    Tip tip{};
    POINT screen{};
    if (!panel || GetAsyncKeyState(VK_LBUTTON) < 0 || !GetCursorPos(&screen)) return tip;
    if (!IsPanelOnTop(panel, screen)) return tip;
    if (!TipOfRecord(panel, screen, tip)) TipOfControls(panel, screen, tip);
    return tip;
}

constexpr int kTipHeight = 18, kTipMargins = 12, kTipTextTop = 3;
constexpr int kFontHeight = 12, kJapaneseByteWidth = 6;
constexpr COLORREF kTipColor = RGB(0xF2, 0xF2, 0xF2), kTipTextColor = RGB(0x44, 0x44, 0x44);

void ForgetCovered(ToolTip& shown) {
    if (!shown.savedContext) return;
    SelectObject(shown.savedContext, shown.oldBitmap);
    DeleteObject(shown.savedBitmap);
    DeleteDC(shown.savedContext);
    shown.savedContext = nullptr;
    shown.savedBitmap = nullptr;
    shown.oldBitmap = nullptr;
}

void PutCoveredBack(HDC screen, ToolTip& shown) {
    if (!shown.savedContext) return;
    const RECT& area = shown.savedArea;
    BitBlt(screen, area.left, area.top, area.right - area.left, area.bottom - area.top, shown.savedContext, 0,
           0, SRCCOPY);
    ForgetCovered(shown);
}

/// Keeps the pixels of `area`; false, with nothing kept, if that is impossible.
bool KeepCovered(HDC screen, const RECT& area, ToolTip& shown) {
    const int width = area.right - area.left, height = area.bottom - area.top;
    shown.savedContext = CreateCompatibleDC(screen);
    shown.savedBitmap = CreateCompatibleBitmap(screen, width, height);
    if (!shown.savedContext || !shown.savedBitmap) {
        if (shown.savedContext) DeleteDC(shown.savedContext);
        if (shown.savedBitmap) DeleteObject(shown.savedBitmap);
        shown.savedContext = nullptr;
        shown.savedBitmap = nullptr;
        return false;
    }
    shown.oldBitmap = SelectObject(shown.savedContext, shown.savedBitmap);
    shown.savedArea = area;
    BitBlt(shown.savedContext, 0, 0, width, height, screen, area.left, area.top, SRCCOPY);
    return true;
}

void DrawTip(HDC screen, const Tip& tip, ToolTip& shown) {
    const int bytes = static_cast<int>(std::strlen(tip.text));
    SIZE size{};
    GetTextExtentExPointA(screen, tip.text, bytes, 0, nullptr, nullptr, &size);
    const int width = (globals->language != 0 ? size.cx : kJapaneseByteWidth * bytes) + kTipMargins;
    const int left = std::max<int>(0, tip.point.x - width / 2), top = std::max<int>(0, tip.point.y);
    const RECT area = {left, top, left + width, top + kTipHeight};
    if (!KeepCovered(screen, area, shown)) return;
    const HBRUSH face = CreateSolidBrush(kTipColor);
    FillRect(screen, &area, face);
    DeleteObject(face);
    SetBkMode(screen, TRANSPARENT);
    SetTextColor(screen, kTipTextColor);
    TextOutA(screen, left + (width - size.cx) / 2, top + kTipTextTop, tip.text, bytes);
    FrameRect(screen, &area, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
}

void ShowTip(const Tip& tip) {
    ToolTip& shown = globals->toolTip;
    const HDC screen = GetDC(nullptr);
    if (!screen) return;
    PutCoveredBack(screen, shown);
    if (tip.text[0] != '\0') {
        const HFONT font = CreateFontA(kFontHeight, 0, 0, 0, 0, 0, 0, 0, SHIFTJIS_CHARSET, 0, 0, 0, 0,
                                       globals->language != 0 ? "Arial" : "ＭＳ ゴシック");
        const HGDIOBJ oldFont = SelectObject(screen, font);
        DrawTip(screen, tip, shown);
        SelectObject(screen, oldFont);
        DeleteObject(font);
    }
    ReleaseDC(nullptr, screen);
    CopyText(shown.text, sizeof shown.text, tip.text);
    shown.point = tip.point;
}

} // namespace

const char* ToolTipOfControl(int control) {
    const TipTexts& texts = TextsOfControl(control);
    return globals->language != 0 ? texts.english : texts.japanese;
}

void MakeTipOfName(const char* name, char* text) {
    CopyText(text, kToolTipBytes, name);
    for (char* at = text; *at != '\0'; ++at) {
        if (static_cast<unsigned char>(*at) < ' ') *at = ' ';
    }
}

void UpdateToolTip(HWND panel) {
    const Tip tip = FindTip(panel);
    const ToolTip& shown = globals->toolTip;
    const bool same = std::strcmp(tip.text, shown.text) == 0 && tip.point.x == shown.point.x &&
                      tip.point.y == shown.point.y;
    if (!same) ShowTip(tip);
}

void DropToolTip() {
    ForgetCovered(globals->toolTip);
}
