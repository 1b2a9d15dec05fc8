/// Groups and folders as places in the database: which names may be given to them, making them and deleting
/// them.  Names and paths are cp932.
///
/// -1 leaves the reason in `globals->storeTrouble`: kRefused for a name that doesn't fit, or a place that is
/// taken or isn't there.
#pragma once

#include <cstdint>
#include <string_view>

/// A path below the root that leads nowhere else: components between backslashes, none of them empty, "..",
/// or with a separator, a colon or a control character in it.  One backslash may stand in front.
bool StaysBelowRoot(std::string_view path);

/// Whether a folder, or a group, that gets this name can be found by it again: the name leads nowhere else,
/// no list hides or misreads it, and it stands for nothing else.  What the file system refuses beyond that,
/// it refuses itself.
bool IsFitFolderName(const char* name);
bool IsFitGroupName(const char* name);

/// The same for a group name as a whole, its folders included; also false for a name without a group.
bool IsFitPlaceOfGroup(const char* groupName);

/// What stands at a path of `newPath`'s, if `oldPath` is on its way there.  Where the file system takes names
/// without case, what stands there may be `oldPath` itself under a name that differs in case alone: the place
/// is free then.
enum class PlaceState { kFree, kTaken, kUnknown };
PlaceState StateOfNewPlace(const char* oldPath, const char* newPath);
PlaceState StateOfNewPlaceInRoot(const char* oldPath, const char* newPath); ///< of paths below the root

/// Makes an empty group file.
int32_t MakeGroup(const char* groupName);

/// Deletes a group's file, if there is one, and then its data directory and what the notes in it own.  A
/// group that another program has open stays, with its data.
int32_t DeleteGroupAndData(const char* groupName);
