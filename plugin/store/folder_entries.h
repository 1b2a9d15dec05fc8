/// What stands at a path, what stands in a directory, and small files written whole.  Paths are cp932.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

enum class EntryState {
    kMissing, ///< no such name, or no such directory
    kFile,
    kDirectory,
    kLink,    ///< to anything; never followed
    kUnknown, ///< the system doesn't say
};

EntryState StateOfEntry(const std::string& path);

struct FolderEntry {
    std::string name;
    EntryState state; ///< kFile, kDirectory or kLink
    bool asDirectory; ///< a directory, or a link to one: what RemoveDirectoryA removes
};

/// The entries of a directory but itself and the one above, in the order that the system gives.  False if the
/// listing failed before its end; a directory that is missing has no entries.
bool ListFolder(const std::string& directory, std::vector<FolderEntry>& entries);

/// Brings the names in a directory to the disk, whatever renamed them.  True for one without entries.
bool FlushFolder(const std::string& directory);

/// Makes a directory, or finds it there.
bool MakeFolder(const std::string& path);

/// Writes a file whole and flushes it; what stood there is lost.  On failure no file is left.
bool WriteWholeFile(const std::string& path, std::string_view bytes);

/// Reads a file of at most `most` bytes; false if it is longer, is no plain file or can't be read.
bool ReadWholeFile(const std::string& path, size_t most, std::string& bytes);

/// A path below the database root.  `relative` begins with a backslash.
std::string PathInRoot(std::string_view relative);
std::string JoinPath(std::string_view directory, std::string_view name);

/// `<group>.DAT`; empty for a name that has no such path.
std::string DataDirectoryOf(const char* groupName);
std::string RecordDirectoryOf(const char* groupName, int32_t number);
std::string ImageFolderPath();
