/// The files that placed art points at, kept beside the records that use them.
///
/// When a record is registered its files are copied into its data directory (data_directories.h) under their
/// stored names.  When it is first placed, a file moves on to the image folder, one flat directory for the
/// whole database, under a pooled name that is unique there, and a note stays behind.
///
/// A note is a text in the grammar of the preferences file, with CR LF at line ends:
///
///     orgn_fname = "stored name"
///     copy_fname = "pooled name"
///
/// Its own name is the stored name up to the first dot, cut at whole characters to `nameLimit` less 4 bytes,
/// and ".lnk".  Names in notes and in records aren't trusted: one that is no plain component of a path is
/// refused before anything is touched.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

constexpr size_t kLinkPathBytes = 256;    ///< an entry of linkPaths
constexpr size_t kLinkNameBytes = 64;     ///< an entry of linkNames
constexpr size_t kMostNoteBytes = 0x1000; ///< a longer file is no note
inline constexpr char kNoteSuffix[] = ".lnk";

/// What a note says, each cut at `nameLimit` bytes.
struct LinkNote {
    std::string storedName;
    std::string pooledName;
};

/// Takes a note's text apart.  A key that is missing gives an empty name; of a key that comes twice the last
/// counts.
LinkNote ParseLinkNote(std::string_view text);

/// Reads a note; false if the file can't be read whole, is a link or a directory, or is longer than
/// kMostNoteBytes.
bool ReadLinkNote(const char* path, LinkNote* note);

/// Puts a note at a path in one step, in place of an old one; false if it is not certainly on the disk.
bool WriteLinkNote(const std::string& path, const LinkNote& note);

/// The name of the note that stands for a stored file.
std::string NameOfLinkNote(std::string_view storedName);

/// A name that stands for one entry of a folder and can be written into a note: not empty, no separator, no
/// colon, no quote or control character, not of dots and blanks alone.
bool IsPlainComponent(std::string_view name);

/// Copies the files of the link list beside a record that has just been stored; makes the record's data
/// directory also if there are none.  A file that is there is overwritten, and a note that would stand for it
/// is put aside.  Hold a StoreLock around storing the record and this, or the number may come to mean another
/// record in between.
/// @return the number of files that couldn't be copied
int32_t CopyLinkedFiles(const char* groupName, int32_t number);

/// Tells where a stored file is now, and moves it to the image folder if it is still beside its record.
/// @param pascalName  the stored name, length byte first
/// @param outPath     out, kFullPathBytes (store_names.h)
/// @return 0; -1 if the name is no plain component or longer than `nameLimit`, the note is about another file
///         or damaged, the names 1 to 999 are all taken, the store is busy, or the note couldn't be written
///         (the file is then back beside its record); else the Windows error code of the move that failed
int32_t ResolveLinkedFile(const char* groupName, int32_t number, const uint8_t* pascalName, char* outPath);
