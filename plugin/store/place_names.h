/// A place by the parts of its name, and what memory says of places after one has moved.  cp932.
#pragma once

#include "plugin/frame/globals.h"

constexpr int kPlacePathBytes = 256; ///< three parts, what stands between them, a suffix

struct PlaceParts {
    char folder[kPartBytes], subFolder[kPartBytes], group[kPartBytes];
};

PlaceParts PartsOfName(const char* name);
void NameOfParts(const PlaceParts& parts, char* name /*kNameBytes*/);

/// Whether a group part names a group; else the place is a folder as a whole.
bool IsGroupPart(const char* group);

/// The path below the root, a backslash in front; empty if there is nothing to name.
void FolderPathOfParts(const PlaceParts& parts, char* path /*kPlacePathBytes*/);
void GroupPathOfParts(const PlaceParts& parts, const char* suffix, char* path /*kPlacePathBytes*/);

/// `aidbfname`, the open nodes and the items of `rihList` name the new place of a group or folder that has
/// moved; `from.group` is empty for a folder.  Of a folder's move only what stands directly in it follows.
void FollowMove(const PlaceParts& from, const PlaceParts& to);
