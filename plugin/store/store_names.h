/// Names of places in the database, and the paths that they stand for.
///
/// A group name is `Group`, `\Folder\Group` or `\Folder\Sub\Group`, or one of the pseudo entries below.  All
/// texts are cp932 with a NUL; a backslash or a dot that is the second byte of a double-byte character is
/// neither.  Texts longer than their field are cut between bytes.
#pragma once

#include <cstddef>
#include <cstdint>

inline constexpr char kFolderSelected[] = "A Folder is Selected"; ///< as group part: the folder as a whole
inline constexpr char kSearchResult[] = "Search Result"; ///< as whole name: what the last search found
inline constexpr char kNoFolder[] = "None";              ///< in the folder boxes: no folder
inline constexpr char kUntitledGroup[] = "UNTITLED";     ///< offered while a folder has no group
inline constexpr char kFolderRowPart[] = "$$$";          ///< subfolder part of a top folder's row
inline constexpr char kFolderRowGroup[] = "$$$.$$$";     ///< group part of any folder's row
inline constexpr char kGroupSuffix[] = ".AID";
inline constexpr char kDataSuffix[] = ".DAT";
inline constexpr char kImageFolder[] = "_%%image";
inline constexpr char kTrashFolder[] = "_%%Trash";

/// Bytes of a length-prefixed path: the length, 255 bytes, a NUL.
constexpr size_t kPascalPathBytes = 257;
/// Bytes of a full path: a root, a backslash, a name and what is added to it.
constexpr size_t kFullPathBytes = 528;

/// The host's data folder, `Adobe\Illustrator` in the user's documents folder, made if missing; at most 200
/// bytes.  Empty if the system names no documents folder that cp932 can write.  Always 0.
int32_t GetHostDataFolder(char* out256);

/// The database's root, made if missing: `aidbfpath`, or `Velquorne` in the host's data folder.  A root that
/// can't be made shows up as groups that can't be opened.  Empty only if the host's data folder is.  Always
/// 0.
int32_t GetDatabaseRoot(char* out256);

/// The root, a backslash unless the path begins with one, and the path.  Nothing is cut.  An empty root gives
/// an empty path, which no file call opens: without a root nothing may be read or written elsewhere.
void JoinRootAndPath(const char* root, const char* path, char* outFullPath /*kFullPathBytes*/);

/// A group name as a length-prefixed path below the root: of its group file, or of its data directory, which
/// always begins with a backslash.  The suffix isn't added to a name that has exactly it.  A name that leaves
/// no room for the suffix gives an empty path, which no file call opens: cut short it would name another
/// file. Always 0.
int32_t MakeGroupPath(const char* name, uint8_t* outPascal /*kPascalPathBytes*/, bool dataDirectory);

/// Splits a group name into its parts.
///
/// A name that doesn't begin with a backslash is a group as a whole.  Otherwise the first three components
/// are folder, subfolder and group; the last one that is there is the group.  Components behind the third are
/// dropped.  A component over 255 bytes loses whole characters at its end, then each part is cut at 79 bytes.
/// @param folder, subFolder, group   out, kPartBytes (80) each, always terminated, empty where absent
void SplitGroupName(const char* name, char* folder, char* subFolder, char* group);

/// Builds a group name from its parts.  A folder or subfolder `None` is overwritten with an empty text.
void JoinGroupName(char* folder, char* subFolder, const char* group, char* out256);

/// Makes a name current: `aidbfname` and `findMode`; drops `curRecord` and `rihList`.  Nothing happens if the
/// name is current already.  Always 0.
int32_t SelectGroup(const char* name);

/// Orders rows: below 0 if `a` stands in front of `b`, 0 if they are the same without case, else above 0.
///
/// A text stands behind its own extensions (`AB` behind `ABC`).  A backslash stands behind every other
/// single-byte character, so that a folder's contents stay together.  Any two texts are ordered,
/// consistently.
int16_t CompareStoreNames(const char* a, const char* b);

/// A directory that no folder list shows: it begins with a dot, or holds ".DAT" or the name of the image or
/// trash folder.
bool IsHiddenFolderName(const char* name);
