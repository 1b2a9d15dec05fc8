/// Records: reading at the depth that a caller needs, writing, deleting, packing.
///
/// `globals->curRecord` is the one current record and `globals->curRecordNo` its number, -1 when it is no
/// stored record.  Group names are cp932 as in `globals->aidbfname`; record numbers count from 0 and are
/// places in the file, so deleting a record lowers the numbers behind it.
#pragma once

#include <cstdint>

#include "plugin/store/memory_handle.h"

constexpr uint32_t kReadWhole = 0;         ///< the record; converted: the expanded shape
constexpr uint32_t kReadHeader = 428;      ///< the header; nothing is unpacked
constexpr uint32_t kReadPreview = 0x101AC; ///< header and preview; the object count stays as stored

/// Reads record `number` of a group into `*handle`, or into `curRecord` if `handle` is null.
///
/// Always returns 0; what was delivered is seen in the record.  Without a handle the old `curRecord` is
/// freed first, and there is none afterwards if nothing could be read.  A caller's handle gets size word 0
/// then.  A missing group, a number that is -1 or at or beyond the count, a damaged record before or at the
/// number, a read that comes up short and lack of memory all deliver nothing.
///
/// @param handle   may move and grow, but not in a preview read: there it must come from NewRecord.  A null
///                 `*handle` gets a new record if one is delivered
/// @param depth    kReadWhole, kReadHeader, kReadPreview; any other value above 8 reads that many bytes,
///                 never more than the record has; 1 to 8 read all
/// @param convert  false delivers the stored bytes; true puts numbers into host order (after a header read
///                 the two packed lengths stay big-endian) and unpacks what the depth asks for
int32_t AidbReadRecord(const char* groupName, int32_t number, MemoryHandle* handle, uint32_t depth,
                       bool convert);

/// Stores `curRecord`: with number -1 behind the last record of the group, which is made if it is missing;
/// otherwise name, kind, comment and a new modified time go into the header of that record, all else on
/// disk stays.
///
/// Afterwards `curRecord` is a file image, all its numbers big-endian, `curRecordNo` its number, and the
/// record has its item in `rihList`.  Returns 0, also when there is no `curRecord` or the number lies past
/// the end (nothing changes).  Returns -1 when the write failed or was refused, with the reason in
/// `globals->storeTrouble`: the file cannot be opened or written, another program has it, its walk ends
/// before its count, it would pass 2^31 - 1 bytes, memory ran out.  The file is then what it was, an empty
/// one if it was missing, and neither the list nor `curRecordNo` has changed.
int32_t WriteRecord(const char* groupName, int32_t number);

/// Takes record `number` out of its group and lowers the numbers behind it, in the file and in `rihList`.
/// `curRecord` is freed.  The data directories of the group are the caller's to renumber, after success.
///
/// Returns 0, or -1 with the group file untouched and the reason in `globals->storeTrouble`: no such record,
/// damage anywhere in the walk, another program at work, or a read or write that failed.  At every moment the
/// group's path holds the old file or the complete new one; only when every call fails from the replacement
/// on, -1 can't tell which.
int32_t DeleteRecord(const char* groupName, int32_t number);

/// A new, empty expanded record, or null if memory ran out.
MemoryHandle NewRecord();

/// The number of records of a group, never more than its length can hold; 0 if it cannot be opened.  For a
/// pseudo entry the count of `rihList`.
uint32_t CountRecords(const char* groupName);

/// 1 if the group file can be opened for reading, else 0.
int32_t GroupFileExists(const char* groupName);

/// Packs an expanded record; its words at 0 to 20, 408 and on are left in host order, the bodies are
/// taken as they are.  False if memory ran out or the size word leads outside the block: the record is
/// then what it was.
[[nodiscard]] bool PackRecord(MemoryHandle& record);

/// Unpacks the preview, and the object stream if `objects` is set, of a record whose size word and packed
/// lengths are in host order.  Lengths that lead outside the record are cut; the preview always comes to
/// kPreviewBytes, with zeros where its packed form was too short.  Both packed lengths are 0 afterwards.
/// Without `objects` a block with the size of NewRecord does not move.  False if memory ran out: the record
/// is then what it was.
[[nodiscard]] bool UnpackRecord(MemoryHandle& record, bool objects);
