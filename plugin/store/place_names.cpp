#include "plugin/store/place_names.h"

#include <cstdio>
#include <cstring>

#include "plugin/store/record_index.h"
#include "plugin/store/store_names.h"

namespace {

void ClearIf(char* part, const char* placeholder) {
    if (std::strcmp(part, placeholder) == 0) part[0] = '\0';
}

void FillIfEmpty(char* part, const char* placeholder) {
    if (part[0] == '\0') std::strcpy(part, placeholder);
}

// False if the place isn't what has moved, and isn't in it.
bool FollowParts(PlaceParts& place, const PlaceParts& from, const PlaceParts& to) {
    if (std::strcmp(place.folder, from.folder) != 0 || std::strcmp(place.subFolder, from.subFolder) != 0)
        return false;
    const bool groupMoved = from.group[0] != '\0';
    if (groupMoved && std::strcmp(place.group, from.group) != 0) return false;
    std::strcpy(place.folder, to.folder);
    std::strcpy(place.subFolder, to.subFolder);
    if (groupMoved) std::strcpy(place.group, to.group);
    return true;
}

void FollowRow(char* row, const PlaceParts& from, const PlaceParts& to) {
    PlaceParts place = PartsOfName(row);
    ClearIf(place.subFolder, kFolderRowPart);
    ClearIf(place.group, kFolderRowGroup);
    if (!FollowParts(place, from, to)) return;
    FillIfEmpty(place.subFolder, kFolderRowPart);
    FillIfEmpty(place.group, kFolderRowGroup);
    NameOfParts(place, row);
}

} // namespace

PlaceParts PartsOfName(const char* name) {
    PlaceParts parts;
    SplitGroupName(name, parts.folder, parts.subFolder, parts.group);
    return parts;
}

void NameOfParts(const PlaceParts& parts, char* name) {
    PlaceParts copy = parts;
    JoinGroupName(copy.folder, copy.subFolder, copy.group, name);
}

bool IsGroupPart(const char* group) {
    return group[0] != '\0' && std::strcmp(group, kFolderSelected) != 0;
}

void FolderPathOfParts(const PlaceParts& parts, char* path) {
    path[0] = '\0';
    if (parts.folder[0] == '\0') return;
    const char* form = parts.subFolder[0] != '\0' ? "\\%s\\%s" : "\\%s";
    std::snprintf(path, kPlacePathBytes, form, parts.folder, parts.subFolder);
}

void GroupPathOfParts(const PlaceParts& parts, const char* suffix, char* path) {
    path[0] = '\0';
    if (parts.group[0] == '\0') return;
    FolderPathOfParts(parts, path);
    const size_t length = std::strlen(path);
    std::snprintf(path + length, kPlacePathBytes - length, "\\%s%s", parts.group, suffix);
}

void FollowMove(const PlaceParts& from, const PlaceParts& to) {
    NameOfParts(to, globals->aidbfname);
    for (int32_t row = 0; row < globals->expandedCount && row < kExpandedRows; ++row)
        FollowRow(globals->expandedRows[row], from, to);
    for (int32_t row = 0; row < RihCount(globals->rihList); ++row) {
        RihItem* item = RihItemOfRow(globals->rihList, row);
        PlaceParts place = PartsOfName(item->groupPath);
        if (FollowParts(place, from, to)) NameOfParts(place, item->groupPath);
    }
}
