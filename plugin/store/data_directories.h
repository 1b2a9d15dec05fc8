/// The directories that hold what belongs to records beside the group files.
///
/// A group has a directory `<group>.DAT` beside its file, and in it one directory for each record, named by
/// the record's number in decimal.  A number is a place in the file, so the directories behind a deleted
/// record are renumbered with it.  Names of other forms in a data directory:
///
/// | name            | what it is                                                                       |
/// |-----------------|----------------------------------------------------------------------------------|
/// | `removed-N-K`   | the directory of a deleted record N while it is being emptied                    |
/// | `stale-N-K`     | a directory that stood where record N's had to go; never touched again           |
/// | `N.renumbered`  | a directory on its way to the number N, only while its group is being renumbered |
///
/// All paths are cp932.  Operations take the store's lock alone and leave the reason of a failure in
/// `globals->storeTrouble`; with kUnfinished the rest is done by whoever takes the lock next.
#pragma once

#include <cstdint>
#include <string>

inline constexpr char kRemovedPrefix[] = "removed-";
inline constexpr char kStalePrefix[] = "stale-";
inline constexpr char kRenumberedSuffix[] = ".renumbered";

/// Numbers of directories have at most this many digits, and no leading zero; other names are no numbers.
constexpr size_t kMostNumberDigits = 8;

/// Deletes the data directory of record `number` and closes the gap in the numbers, also if there was no such
/// directory; with -1 deletes the whole data directory of the group.  What the notes in it own in the image
/// folder goes too.  Called after the record is gone from its group; DeleteRecordAndData (record_moves.h)
/// does both so that nothing can come between.
/// @return 0, or -1 if something is left undone
int32_t RemoveRecordData(const char* groupName, int32_t number);

/// Moves a record's data directory, which is made if it is missing, to another group's.  What stands at the
/// new place belongs to no record and is put aside.  The numbers behind the old one stay as they are.
/// @return 0, or -1 with the directory where it was
int32_t MoveRecordData(const char* oldGroup, int32_t oldNumber, const char* newGroup, int32_t newNumber);

/// Closes the gap at a record's data directory: each directory with a greater number takes the number one
/// below its own.  While the directory itself is still there, there is no gap and nothing moves.
/// @param path  a full path under the database root whose last component is 1 to 8 digits, the gap's number
/// @return 0, or -1 for any other path, and if something is left undone
int32_t RenumberRecordData(const char* path);

/// Deletes a directory and all that is in it, and what the notes among it own in the image folder.  Links
/// are removed and never followed; directories deeper than kDeepestTree are left.
/// @return 0, or the Windows error code of the directory's own removal; what could not be deleted then stands
int32_t DeleteTree(const char* directory);
constexpr int kDeepestTree = 32;

/// Deletes a file.  A file whose path ends with ".lnk" is a note (linked_files.h): what it owns in the image
/// folder goes with it, and stays if the note can't be deleted.  Whether that file was there doesn't matter.
/// @return 0, or the Windows error code
int32_t DeleteDataFile(const char* path);
