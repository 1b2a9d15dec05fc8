#include "plugin/actions/register_selection.h"

#include <windows.h>

#include <cstring>

#include "plugin/capture/art_walk.h"
#include "plugin/capture/post_art.h"
#include "plugin/dialogs/entry_dialog.h"
#include "plugin/dialogs/store_messages.h"
#include "plugin/frame/globals.h"
#include "plugin/host/suites.h"
#include "plugin/panel/current_place.h"
#include "plugin/panel/panel_lists.h"
#include "plugin/store/linked_files.h"
#include "plugin/store/record.h"
#include "plugin/store/record_index.h"
#include "plugin/store/store_lock.h"
#include "plugin/store/store_names.h"

namespace {

bool CountsWhenSelected(int32_t kind) {
    switch (kind) {
        case kArtCompoundPath:
        case kArtPlaced:
        case kArtRaster:
        case kArtPlugin:
        case kArtMesh:
        case kArtTextFrame:
            return true;
        default:
            return false;
    }
}

bool TreeHasSelectedArt(ArtHandle root) {
    bool found = false;
    WalkArt(root, 0, [&](ArtHandle art, int32_t kind, int32_t) {
        if (found) return false;
        if (kind == kArtPath) {
            found = IsSelected(art) && !IsGuide(art);
        } else if (CountsWhenSelected(kind)) {
            found = IsSelected(art);
        }
        return !found && (kind == kArtGroup || kind == kArtCompoundPath);
    });
    return found;
}

/// Makes the record's group the current one; the record stays in `curRecord`.
void ShowGroup(HWND panel, const char* group) {
    const MemoryHandle record = globals->curRecord;
    globals->curRecord = nullptr;
    SelectGroup(group);
    globals->curRecord = record;
    if (globals->browseMode) {
        RebuildFolderList(panel);
    } else {
        EnsureCurrentGroup();
    }
    RebuildGroupCombo(panel);
    RebuildRecordList(panel, true);
    SplitCurrentName();
}

/// The record and the files beside it, as one change of the store.
bool Store(int32_t& number) {
    const StoreLock lock(kStoreShared);
    if (!lock.held() || WriteRecord(globals->entryName, -1) != 0) return false;
    number = globals->curRecordNo; // changing the group clears it
    CopyLinkedFiles(globals->entryName, number);
    return true;
}

} // namespace

bool HasSelectedArt() {
    ViewHandle view = nullptr;
    if (DocumentViewSuite().GetCurrentView(&view) != kHostNoError || !view) return false;
    bool found = false;
    ForEachLayerRoot([&](ArtHandle root) {
        found = found || TreeHasSelectedArt(root);
        return kHostNoError;
    });
    return found;
}

void RegisterSelection() {
    if (globals->findMode == kFindSearchResult || !HasSelectedArt()) {
        MessageBeep(static_cast<UINT>(-1));
        return;
    }
    AidbPostArt();
    std::strncpy(globals->entryName, globals->aidbfname, kNameBytes - 1);
    globals->entryName[kNameBytes - 1] = '\0';
    if (!globals->curRecord) {
        MessageBeep(static_cast<UINT>(-1));
        StoreFails(StoreTrouble::kMemory);
        TellStoreTrouble();
        return;
    }
    if (!RunEntryDialog()) return;
    const HWND panel = PanelWindow();
    // Decided before the write makes the group's file.
    const bool changed =
        std::strcmp(globals->entryName, globals->aidbfname) != 0 ||
        (std::strcmp(globals->aidbfname, kUntitledGroup) == 0 && !GroupFileExists(kUntitledGroup));
    int32_t number = -1;
    if (!Store(number)) {
        MessageBeep(static_cast<UINT>(-1));
        TellStoreTrouble();
        return;
    }
    if (!panel) return;
    if (changed) {
        ShowGroup(panel, globals->entryName);
    } else {
        RebuildRecordList(panel, false);
    }
    SelectRecordRow(panel, FindRihItem(globals->aidbfname, static_cast<uint32_t>(number)));
}
