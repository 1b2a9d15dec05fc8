// The folder list: what RebuildFolderList and EnsureCurrentGroup make of the tree on disk.

#include <cstring>

#include "plugin/frame/globals.h"
#include "plugin/panel/current_place.h"
#include "plugin/panel/list_table.h"
#include "plugin/panel/panel_controls.h"
#include "plugin/panel/panel_layout.h"
#include "plugin/panel/panel_lists.h"
#include "plugin/store/cp932.h"
#include "plugin/store/memory_handle.h"
#include "plugin/store/store_names.h"
#include "plugin/store/store_tree.h"

namespace {

struct NameParts {
    char folder[kPartBytes], subFolder[kPartBytes], group[kPartBytes];
};

NameParts PartsOf(const char* name) {
    NameParts parts;
    SplitGroupName(name, parts.folder, parts.subFolder, parts.group);
    return parts;
}

/// A name that may become the current one, and its row.
struct Candidate {
    char name[kNameBytes] = "";
    int32_t row = -1;
    bool found = false;

    void Take(const char* text) {
        CopyText(name, sizeof name, text);
        found = true;
    }
};

/// The walk over the tree.  Without a list nothing is shown, nothing counts as open, and the candidates are
/// names alone.
struct FolderWalk {
    HWND list = nullptr;     ///< null: EnsureCurrentGroup
    bool firstBuild = false; ///< the folders of the current name open by themselves
    char root[kNameBytes] = "";
    Candidate target;   ///< nearest to the current name
    Candidate fallback; ///< in its place
    int32_t rootGroups = 0;
};

/// Adds a row; its number, or -1 without a list.
int32_t AddRow(FolderWalk& walk, const char* text) {
    if (!walk.list) return -1;
    AddListRow(walk.list, text);
    const int32_t row = GetRowCount(walk.list) - 1;
    if (!walk.fallback.found) {
        walk.fallback.Take(text);
        walk.fallback.row = row;
    }
    return row;
}

bool IsOpen(const FolderWalk& walk, const char* text) {
    return walk.list && IsExpanded(text) != 0;
}

/// A folder of the current name: the target from now on.
void AimAtFolder(FolderWalk& walk, const char* text, int32_t row) {
    if (walk.firstBuild && !IsExpanded(text)) ToggleExpanded(text);
    walk.target.Take(text);
    if (row >= 0) walk.target.row = row;
}

/// Groups, shown if their folder is open.  A hidden one that is the current name keeps its folder's row.
void WalkGroups(FolderWalk& walk, MemoryHandle groups, bool shown) {
    for (int32_t i = 0; i < RowCount(groups); ++i) {
        const char* text = RowText(groups, i);
        const int32_t row = shown ? AddRow(walk, text) : -1;
        if (!SameText(text, globals->aidbfname)) continue;
        walk.target.Take(text);
        if (row >= 0) walk.target.row = row;
    }
}

void WalkSubFolder(FolderWalk& walk, const char* folder, const char* text, bool folderOpen, bool inCurrent) {
    const NameParts parts = PartsOf(text);
    const int32_t row = folderOpen ? AddRow(walk, text) : -1;
    const bool isCurrent = inCurrent && SameText(parts.subFolder, globals->selSubFolder);
    if (isCurrent) AimAtFolder(walk, text, row);
    const bool open = folderOpen && IsOpen(walk, text);
    if (!open && !isCurrent) return;
    HandleOwner groups(ListGroups(walk.root, folder, parts.subFolder));
    WalkGroups(walk, groups.get(), open);
}

void WalkFolder(FolderWalk& walk, const char* text) {
    const NameParts parts = PartsOf(text);
    const int32_t row = AddRow(walk, text);
    const bool isCurrent = SameText(parts.folder, globals->selFolder);
    if (isCurrent) AimAtFolder(walk, text, row);
    const bool open = IsOpen(walk, text);
    if (!open && !isCurrent) return;
    HandleOwner groups(ListGroups(walk.root, parts.folder, ""));
    WalkGroups(walk, groups.get(), open);
    HandleOwner subFolders(ListSubFolders(walk.root, parts.folder));
    for (int32_t i = 0; i < RowCount(subFolders.get()); ++i) {
        WalkSubFolder(walk, parts.folder, RowText(subFolders.get(), i), open, isCurrent);
    }
}

void WalkRootGroups(FolderWalk& walk) {
    HandleOwner groups(ListGroups(walk.root, "", ""));
    for (int32_t i = 0; i < RowCount(groups.get()); ++i) {
        const char* text = RowText(groups.get(), i);
        const NameParts parts = PartsOf(text);
        if (parts.folder[0] != '\0' || parts.subFolder[0] != '\0') continue;
        const int32_t row = AddRow(walk, text);
        ++walk.rootGroups;
        if (!walk.fallback.found) walk.fallback.Take(text);
        if (!SameText(text, globals->aidbfname)) continue;
        walk.target.Take(text);
        walk.target.row = row;
    }
}

void WalkTree(FolderWalk& walk) {
    SplitCurrentName();
    GetDatabaseRoot(walk.root);
    if (walk.root[0] == '\0') return;
    HandleOwner folders(ListFolders(walk.root));
    if (!folders.get()) return;
    WalkRootGroups(walk);
    for (int32_t i = 0; i < RowCount(folders.get()); ++i) WalkFolder(walk, RowText(folders.get(), i));
}

/// Makes the name that a row stands for current, if it isn't.
void SelectNameOfRow(const char* text) {
    char name[kNameBytes];
    NameOfFolderRow(text, name);
    if (!SameText(name, globals->aidbfname)) SelectGroup(name);
}

bool ShowsSearchResult() {
    return SameText(globals->aidbfname, kSearchResult);
}

} // namespace

void NameOfFolderRow(const char* text, char* name) {
    NameParts parts = PartsOf(text);
    if (SameText(parts.subFolder, kFolderRowPart)) parts.subFolder[0] = '\0';
    if (parts.group[0] == '\0' || SameText(parts.group, kFolderRowGroup)) {
        CopyText(parts.group, sizeof parts.group, kFolderSelected);
    }
    JoinGroupName(parts.folder, parts.subFolder, parts.group, name);
}

void RebuildFolderList(HWND panel) {
    FolderWalk walk;
    walk.list = GetDlgItem(panel, kFolderList);
    walk.firstBuild = globals->expandedCount < 0;
    // Also where the tree can't be listed: rows must not come twice.
    ClearListRows(walk.list);
    WalkTree(walk);
    if (walk.rootGroups == 0) AddRow(walk, kUntitledGroup);
    const Candidate& chosen = walk.target.found ? walk.target : walk.fallback;
    if (walk.target.found || !ShowsSearchResult()) {
        SelectListRow(walk.list, chosen.row);
        SelectNameOfRow(chosen.name);
    }
    AddRow(walk, kSearchResult);
    if (ShowsSearchResult()) SelectListRow(walk.list, GetRowCount(walk.list) - 1);
    if (globals->expandedCount < 0) globals->expandedCount = 0;
    UpdateScrollRange(panel, kFolderList, false);
}

void EnsureCurrentGroup() {
    FolderWalk walk;
    WalkTree(walk);
    if (walk.target.found) {
        SelectNameOfRow(walk.target.name);
    } else if (!ShowsSearchResult()) {
        SelectGroup(walk.fallback.found ? walk.fallback.name : kUntitledGroup);
    }
}
