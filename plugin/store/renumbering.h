/// Closing a gap in the numbers of a group's record directories, so that it can be interrupted anywhere.
///
/// Each directory goes first to a name of its own, `N.renumbered` with its new number, and when all are there
/// and on the disk, from that name to the number.  No rename's target is ever another's source, so it doesn't
/// matter which of them a crash has let through.  What is on the disk, held against the numbers that were
/// there before, tells unmistakably how far the work came.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// Numbers in ascending order, without gaps within a range.
struct NumberRange {
    uint32_t first;
    uint32_t last; ///< included
};
using NumberRanges = std::vector<NumberRange>;

/// The number that a name means in a data directory; -1 if it is none (data_directories.h says which are).
int32_t NumberOfName(const std::string& name);

/// The directories numbered `from` and on.  False if they can't be listed or if the leftovers of an
/// interrupted renumbering are among them: then no numbers may be changed.  A file or a link that stands
/// where a directory will have to go is put aside.
bool NumbersFrom(const std::string& dataDirectory, uint32_t from, NumberRanges& numbers);

/// Renames an entry of a data directory to a name that is no number: the prefix, `number`, and what makes it
/// unique.  The change is on the disk afterwards.
bool PutAside(const std::string& dataDirectory, const std::string& name, const char* prefix, uint32_t number);

/// Puts aside as stale what stands where the directory of a new record `number` has to go.
bool ClearPlaceOf(const std::string& dataDirectory, uint32_t number);

/// Closes the gap at `number`, or goes on with it: the directory of that number is put aside as removed, if
/// it was there before and still is, and those behind it go one down.
/// @param before  what NumbersFrom gave for `number` before anything was renamed
/// @return false if a rename failed, or if the names on the disk don't come from such work
bool CloseGap(const std::string& dataDirectory, uint32_t number, const NumberRanges& before);

/// Empties and deletes the directories that were put aside as removed; what fails is left for the next time.
void DeleteRemoved(const std::string& dataDirectory);
