/// Moves of whole groups and folders to another place or name in the database.
///
/// -1 leaves the reason in `globals->storeTrouble`, and everything where it was: kRefused if nothing stands
/// at the old place, if the new one is taken, or if a name leads elsewhere; kBusy if the system says
/// that another program has it open, which it doesn't of folders; with kUnfinished the rest is done, or
/// undone, when the lock is next taken.  Names in memory are the caller's to change, after success.
#pragma once

#include <cstdint>

#include "plugin/store/interrupted_work.h"

/// Moves a group's file and its data directory, if it has one: both or none of them.  A new name that differs
/// in case alone is taken where the file system takes it.
int32_t MoveGroup(const char* groupName, const char* newGroupName);

/// Moves a directory with all that is in it; both paths are below the root and begin with a backslash.  A
/// folder that has subfolders can't become one itself: names reach no deeper than that.
int32_t MoveFolder(const char* path, const char* newPath);

/// Goes on with a move of a group from wherever it stands; for FinishWork.
WorkEnd FinishGroupMove(const Intent& intent);
