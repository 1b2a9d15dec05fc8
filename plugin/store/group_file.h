/// The frame of a group file: a big-endian count word and the records, one behind the other, each found by
/// walking the size words of those in front of it.  Nothing else reads or writes group files.
///
/// A record is valid if its size word is at least 428 and it ends within the file; the first bad one ends
/// the walk for good.  Bytes behind the last counted record do not exist for any reader: an append that was
/// cut short leaves them, and the next one writes over them.
///
/// Files that are being changed are open with writers denied, and the database's lock (store_lock.h) is held,
/// so two writers cannot meet; whoever comes second waits up to a second and is then refused.  Readers are
/// never denied, and see a record's bytes complete before the count that makes it one.
#pragma once

#include <windows.h>

#include <array>
#include <cstdint>

#include "plugin/store/group_offsets.h"
#include "plugin/store/record_layout.h"

constexpr uint32_t kMostGroupBytes = 0x7FFFFFFF; ///< places in a file are signed 32-bit numbers

/// The path of a group's file, under the database root, which is made if it is missing; empty, so that no
/// file call opens it, for a name that has no such path.
/// @param out  kFullPathBytes (store_names.h)
void GroupFilePath(const char* groupName, char* out);

/// An open group file.  Places are bytes from the file's start.
class GroupFile {
public:
    GroupFile() = default;
    ~GroupFile() { Close(); }
    GroupFile(const GroupFile&) = delete;
    GroupFile& operator=(const GroupFile&) = delete;

    /// These give false if the file is missing, cannot be opened, is longer than 2^31 - 1 bytes or cannot be
    /// read, with the reason in `globals->storeTrouble`.  OpenOrMake makes a missing file, without bytes, and
    /// never empties one that exists.
    bool OpenToRead(const char* groupName);
    bool OpenToChange(const char* groupName);
    bool OpenOrMake(const char* groupName);
    /// Makes an empty file at a path, in place of an old one that nobody has open, and keeps all others out.
    bool MakeWorkFile(const char* path);

    uint32_t length() const { return length_; }
    /// The count word; 0 if the file is too short for one.
    uint32_t storedCount() const { return storedCount_; }
    /// The same, but never more records than the file has room for.
    uint32_t count() const;

    /// All of it or false.  A failed write may have written a part.
    bool Read(uint32_t place, void* bytes, uint32_t count);
    bool Write(uint32_t place, const void* bytes, uint32_t count);
    bool WriteCount(uint32_t count);
    bool Flush();
    /// Cuts the file, or verifies its length on disk.
    bool CutAt(uint32_t length);
    bool HasLength(uint32_t length);
    bool Close();

    /// What earlier walks have learned of this state of the file; null if memory ran out.  Valid until
    /// another group file is asked for its table.
    GroupOffsets* offsets() const { return OffsetsOf(stamp_); }
    /// After changes of one's own that leave the known records where they are: what the table knows holds for
    /// the file as it stands now.
    void KeepOffsets();
    bool ReadStamp(FileStamp& stamp) const;

private:
    bool Open(const char* path, DWORD access, DWORD sharing, DWORD disposition);
    bool ReadFrame();

    HANDLE file_ = INVALID_HANDLE_VALUE;
    FileStamp stamp_{};
    uint32_t length_ = 0;
    uint32_t storedCount_ = 0;
};

/// Where a record lies.
struct RecordPlace {
    uint32_t number;
    uint32_t place;
    uint32_t bytes; ///< at least 428, and within the file
};

/// Goes over the records of a file in their order, in few reads: many headers at once while records are
/// small, little more than each header where they are large.
class GroupWalk {
public:
    explicit GroupWalk(GroupFile& file) : file_(file) {}

    /// Goes on behind the last record that is known, or at record `number` if that comes first.
    void StartAt(uint32_t number);

    /// False behind the last record, and at the first that is damaged or cannot be read.
    bool Next();

    const RecordPlace& record() const { return record_; }
    /// The record's 416 header bytes, in file order, until the next step.
    const uint8_t* header() const { return window_.data() + (record_.place - windowPlace_); }
    /// Where the next record begins; after a walk that reached the stored count, where the records end.
    uint32_t end() const { return end_; }
    bool reachedCount() const { return walked_ == file_.storedCount(); }

private:
    bool Fill();
    void Note();

    static constexpr uint32_t kWindowBytes = 0x10000;
    static constexpr uint32_t kLongRecordBytes = 2048; ///< on average

    GroupFile& file_;
    RecordPlace record_{};
    uint32_t walked_ = 0;
    uint32_t end_ = kCountBytes;
    uint32_t windowPlace_ = 0;
    uint32_t windowBytes_ = 0;
    bool damaged_ = false;
    GroupOffsets* offsets_ = nullptr;
    int64_t offsetsUsed_ = -1; ///< `offsets_` stands while no table was asked for since
    std::array<uint8_t, kWindowBytes> window_;
};

/// Finds record `number`; false if it is not there.
bool FindRecord(GroupFile& file, uint32_t number, RecordPlace& found);

/// Puts a stored record behind the last one, which makes the group if it is missing, and tells its number.
/// Its bytes reach the disk, and their length is verified, before the count is written.  False if the walk
/// ends before the count, if the file would pass kMostGroupBytes, or if a call failed: the records and the
/// count are then what they were.
/// @param record  `bytes` bytes in file order, its size word among them
bool AppendToGroup(const char* groupName, const void* record, uint32_t bytes, uint32_t* number);

/// Writes a record's header in one call and flushes it; false if that failed, with `old` put back.
bool ReplaceHeader(GroupFile& file, const RecordPlace& record, const RecordHeader& old,
                   const RecordHeader& header);

/// Takes a record out, by way of the work file \VLQ.TMP in the database root, which takes the group's place
/// in one step when it is complete and on the disk.  False if there is no such record, if there is damage
/// anywhere in the walk, or if a call failed: the group file is then untouched.
bool RemoveFromGroup(const char* groupName, uint32_t number);
