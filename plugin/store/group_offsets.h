/// Where the records of a few group files lie, remembered from walks over them, so that a record far behind
/// is found without walking again.
///
/// A table holds for exactly one state of one file: another size, time of writing or identity, and it is
/// forgotten.  It knows the records from the first up to where walks have come.  What it gives is a place to
/// look at, never contents: whoever uses it checks the size word that stands there.
#pragma once

#include <cstdint>

#include "plugin/store/memory_handle.h"

constexpr int kOffsetTables = 8; ///< the groups used most recently

/// Which file, and in which state.
struct FileStamp {
    uint64_t index; ///< of the file on its volume
    uint64_t written;
    uint32_t volume;
    uint32_t bytes;

    bool operator==(const FileStamp&) const = default;
    bool SameFile(const FileStamp& other) const { return index == other.index && volume == other.volume; }
};

struct GroupOffsets {
    FileStamp stamp;
    MemoryHandle places; ///< uint32_t each: where record 0 begins, where it ends, ...; null: an unused table
    uint32_t known;      ///< records whose begin and end are known
    uint32_t lastUse;
};

/// The table of an open file in this state, a fresh one if there is none; null if memory ran out.
GroupOffsets* OffsetsOf(const FileStamp& stamp);

/// Adds record number `known`, which ends at `end`; false, with the table as it was, if memory ran out.
bool AddOffset(GroupOffsets& table, uint32_t end);

/// What the table knows after record `number` has been taken out and the file has become another one.
void CutOffset(GroupOffsets& table, uint32_t number, const FileStamp& stamp);

/// Where a known record begins; for number `known` where the last known one ends.
uint32_t PlaceOf(const GroupOffsets& table, uint32_t number);

void ForgetOffsets(GroupOffsets& table);
void FreeOffsets();
