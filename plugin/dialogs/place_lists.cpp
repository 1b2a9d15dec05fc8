#include "plugin/dialogs/place_lists.h"

#include <cstring>

#include "plugin/frame/globals.h"
#include "plugin/store/store_names.h"
#include "plugin/store/store_tree.h"

namespace {

struct Parts {
    char folder[kPartBytes], subFolder[kPartBytes], group[kPartBytes];
};

Parts PartsOf(const char* name) {
    Parts parts;
    SplitGroupName(name, parts.folder, parts.subFolder, parts.group);
    return parts;
}

/// Hands entries on and notes which one is looked for.
struct Entries {
    AddEntry add;
    void* list;
    const char* wanted;
    int count = 0;
    int found = -1;

    void Add(const char* entry) {
        add(list, entry);
        if (found < 0 && std::strcmp(entry, wanted) == 0) found = count;
        ++count;
    }
    int selected() const { return found < 0 ? 0 : found; }
};

} // namespace

int ListFolderEntries(const char* folder, AddEntry add, void* list) {
    char root[kNameBytes];
    GetDatabaseRoot(root);
    HandleOwner rows(ListFolders(root));
    Entries entries{add, list, folder};
    entries.Add(kNoFolder);
    char before[kPartBytes] = "";
    for (int32_t row = 0; row < RowCount(rows.get()); ++row) {
        const Parts parts = PartsOf(RowText(rows.get(), row));
        if (parts.folder[0] != '\0' && std::strcmp(parts.folder, before) != 0) entries.Add(parts.folder);
        std::strcpy(before, parts.folder);
    }
    return entries.selected();
}

int ListSubFolderEntries(const char* folder, const char* subFolder, AddEntry add, void* list) {
    char root[kNameBytes];
    GetDatabaseRoot(root);
    HandleOwner rows(ListSubFolders(root, folder));
    Entries entries{add, list, subFolder};
    entries.Add(kNoFolder);
    char before[kPartBytes] = "";
    for (int32_t row = 0; row < RowCount(rows.get()); ++row) {
        const Parts parts = PartsOf(RowText(rows.get(), row));
        if (parts.subFolder[0] != '\0' && std::strcmp(parts.subFolder, before) != 0 &&
            std::strcmp(parts.folder, folder) == 0)
            entries.Add(parts.subFolder);
        std::strcpy(before, parts.subFolder);
    }
    return entries.selected();
}

int ListGroupEntries(const char* folder, const char* subFolder, const char* group, AddEntry add, void* list) {
    char root[kNameBytes];
    GetDatabaseRoot(root);
    HandleOwner rows(ListGroups(root, folder, subFolder));
    Entries entries{add, list, group};
    for (int32_t row = 0; row < RowCount(rows.get()); ++row) {
        const Parts parts = PartsOf(RowText(rows.get(), row));
        if (std::strcmp(parts.folder, folder) == 0 && std::strcmp(parts.subFolder, subFolder) == 0)
            entries.Add(parts.group);
    }
    if (entries.count == 0) entries.Add(kUntitledGroup);
    return entries.selected();
}
