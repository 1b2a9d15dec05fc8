/// The one block of state that outlives a call of the plug-in.
///
/// The host allocates it at start-up, hands its address back with every message and frees it at
/// shut-down.  The plug-in may be unloaded and loaded again between any two calls, so nothing else may
/// hold state but the module-level values named at the end of this header.  The block is trivially
/// copyable and starts zeroed; `SetDefaults` gives the fields their values of a first start.
///
/// Texts are cp932 bytes with a NUL.  The int16 fields that start at 0xFFFF are compared as -1.
#pragma once

#include <windows.h>

#include <cstdint>
#include <type_traits>

#include "plugin/store/group_offsets.h"
#include "plugin/store/memory_handle.h"
#include "plugin/store/store_lock.h"
#include "suites/basic.h"

constexpr int kNameBytes = 256;       ///< group names, paths, search texts
constexpr int kPartBytes = 80;        ///< folder, subfolder and group part of a name
constexpr int kExpandedRows = 20;     ///< nodes of the folder list that can stand open
constexpr int kRecentRoots = 5;       ///< names in aidbfpathEx
constexpr int kCustomColorRows = 255; ///< rows of the custom colour table
constexpr int kCurveSteps = 64;
constexpr int kCursorCount = 15;
constexpr int kListEntries = 5;
constexpr int kPanelIcons = 20;
constexpr int kToolTipBytes = 80;
constexpr int16_t kNotKnown = -1;              ///< hasFolders, lastHasFolders
constexpr double kNoPlacePoint = 2097152000.0; ///< placePoint before the first placement

constexpr char kVersionText[] = "2.0.4.0";

/// What findMode says of the browser.
enum FindMode : int16_t { kFindGroup = 0, kFindSearchResult = 1, kFindFolder = 2 };

/// One row of the custom colour table.
struct customColorEntry {
    int32_t kind;     ///< 0 four-colour, 1 three-colour, 2 Lab, 3 one value
    double values[4]; ///< as the host holds them
    int16_t flags;
    uint8_t nameLength;
    char name[255]; ///< platform encoding, zero-padded; capture cuts at 254 bytes so that a NUL fits
};

/// A tag that waits for the next art that a load creates.
struct pendingTag {
    char type[64];
    char name[64];
    char value[256];
};

/// The rows behind one of the panel's owner-drawn lists (plugin/panel/list_table.h).
struct ListEntry {
    HWND window;
    int32_t rowCount;
    int32_t selected;  ///< -1: none
    MemoryHandle rows; ///< rowCount texts of kNameBytes
};

/// The tool tip on the screen and what it covers.
struct ToolTip {
    char text[kToolTipBytes];
    POINT point;
    HDC savedContext; ///< null: nothing is covered
    HBITMAP savedBitmap;
    HGDIOBJ oldBitmap; ///< what was selected into savedContext before
    RECT savedArea;    ///< on the screen
};

struct SnapIndex; // plugin/placement/snap_index.h

struct Globals {
    // Browser and placement settings
    int16_t toolMode;      ///< 1 icons 32, 2 icons 64, 3 list; other values act as 3
    int16_t sortMode;      ///< 0 name, 1 kind, 2 date; other values act as 0
    int16_t layerOption;   ///< flag
    int16_t findMode;      ///< FindMode
    int16_t originMode;    ///< 0 to 8: which point of the art lands on placePoint; other values act as 0
    int32_t expandedCount; ///< used rows of expandedRows; below 0: the folder list was never built
    char expandedRows[kExpandedRows][kNameBytes];
    int16_t rotationAngle; ///< degrees
    int16_t reflectMode;
    int16_t fixedAspect; ///< flag
    int16_t browseMode;  ///< flag: folder list shown
    float browseWidth;   ///< share of the panel's width

    char entryName[kNameBytes]; ///< target group while a record is registered or edited
    PluginHandle pluginRef;
    HostPoint placePoint;
    int16_t snapKind;
    int32_t trackState; ///< 2: the drop hands tags to trackTarget instead of adding art
    ArtHandle trackTarget;

    // Capture; cleared at the start of every capture
    int16_t captureAll; ///< flag: all art counts as selected
    int32_t patternCount;
    int32_t customCount;
    customColorEntry customColors[kCustomColorRows];
    CustomColorHandle customHandles[kCustomColorRows]; ///< filled by a load
    MemoryHandle curRecord;
    int32_t curRecordNo; ///< -1: curRecord is no stored record
    MemoryHandle sideObjects;
    int32_t linkCount;
    MemoryHandle linkPaths; ///< 256 bytes each
    MemoryHandle linkNames; ///< 64 bytes each

    // Store
    char aidbfpath[kNameBytes]; ///< root chosen by the user; empty: the default root
    char aidbfname[kNameBytes]; ///< current group or pseudo entry
    char aidbfpathEx[kRecentRoots][kNameBytes];
    MemoryHandle rihList;
    HANDLE storeLock; ///< the lock file, open while storeLockDepth is above 0
    int32_t storeLockDepth, storeLockKind;
    StoreTrouble storeTrouble; ///< why the last change failed
    GroupOffsets groupOffsets[kOffsetTables];
    uint32_t offsetsUsed; ///< counts uses of the tables

    // Load
    int32_t pendingTagCount;
    MemoryHandle pendingTags;

    // Snapping and search settings
    int32_t flUseGrid, flUseFcur, flUseFcrs, flUseFops; ///< flags: grid, anchor, intersection, path
    double flGrWidth, flGrHeight;                       ///< points
    int16_t flCnvFnMode;                                ///< 0 name, 1 kind, 2 comment
    char flCnvFnStr[kNameBytes];
    int16_t flCnvCase, flCnvKanji, flCnvWord; ///< flags

    SnapIndex* snapIndex; ///< of the drag under way (class Snapping), null outside

    double cubicWeightEnd[kCurveSteps + 1];
    double cubicWeightHandle[kCurveSteps + 1];

    int16_t nameLimit; ///< longest stored file name in bytes
    int16_t swapBytes; ///< flag: this machine's words differ from the stored ones

    // Host objects that outlive a call
    HCURSOR cursors[kCursorCount];
    const HostBasic* hostBasic; ///< as last seen by a notifier or timer call
    PanelHandle panelRef;
    FlyoutHandle flyoutRef;
    HWND panelWindow;     ///< the one that has our procedure, or has to get it again with the module
    WNDPROC oldPanelProc; ///< the host's, while the panel's window has ours
    int16_t handlersDue;  ///< flag: the module came back and the host doesn't know its new addresses
    HBRUSH panelBrush;
    HFONT panelFont;
    int16_t uiDark;       ///< flag: the host's interface is dark
    double panelColor[4]; ///< as the theme gives them: a leading value, red, green, blue from 0 to 1
    double panelTextColor[4];
    HICON panelIcons[kPanelIcons]; ///< by icon number, the dark set 10 higher
    int32_t listCount;
    ListEntry lists[kListEntries];
    MemoryHandle thumbnails; ///< pictures scaled before (plugin/panel/thumbnail_memo.h)
    MenuItemHandle aboutMenuItem, panelMenuItem;
    TimerHandle timerRef;
    int16_t timerBusy; ///< flag
    ViewHandle documentView;
    HostRect viewBounds;
    double viewZoom;
    HWND docWindow;

    int32_t commandPending;
    int16_t menuBusy; ///< flag
    int32_t selectedRow;
    uint32_t lastClickTicks; ///< of the last press on a list, 0 behind a double click
    ToolTip toolTip;
    char selFolder[kPartBytes], selSubFolder[kPartBytes], selGroup[kPartBytes];

    int32_t language; ///< 0 Japanese, 1 English, 2 Korean; all but 0 show English texts
    char product[64];
    char version[16];
    char lastGroupSeen[kNameBytes];
    int16_t lastHasFolders, hasFolders; ///< kNotKnown, 0 or 1
    int16_t preferencesRead; ///< flag: shut-down may write them; else it would write defaults over them
};
static_assert(std::is_trivially_copyable_v<Globals> && std::is_standard_layout_v<Globals>);

/// The three module-level values: `globals` and `moduleBasic` are rewritten from each message, and
/// `suiteUseCount` is 0 again when the module is loaded anew.  `globals` is null before start-up and after
/// shut-down.
extern Globals* globals;
extern const HostBasic* moduleBasic;
extern int16_t suiteUseCount;

/// Gives every field of `globals` its value of a first start.  `self` becomes pluginRef.
void SetDefaults(PluginHandle self);
