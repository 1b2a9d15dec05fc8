/// The lock on a database that keeps machines and programs which share it out of each other's way.
///
/// It is an opening of the empty file \VLQ.LCK in the database root that denies others what they would do: it
/// ends with the process, also with one that is killed, and holds across a network.  The file stays; no list
/// shows it.  Work on one group file takes the lock shared, beside the group file's own; work that spans
/// files takes it alone.  Readers take none: whatever they open is an old state or a new one.
#pragma once

#include <cstdint>

/// Why the last change of the store was refused or failed; in `globals->storeTrouble`.
enum class StoreTrouble : int32_t {
    kNone,
    kBusy,       ///< another program kept the database or the group for more than a second
    kUnfinished, ///< work that a crash interrupted can't be finished
    kDamaged,    ///< the group file can't be walked to its end
    kRefused,    ///< no such record, or the group would grow too large
    kDisk,       ///< a file can't be opened, read or written
    kMemory,
};

/// Notes the reason of a failure; false, so that it can be returned.
bool StoreFails(StoreTrouble trouble);

enum StoreLockKind {
    kStoreShared,
    kStoreExclusive,
    kStoreExclusiveAsIs, ///< leaves interrupted work as it is; for a repair, which must end it first of all
};

/// Holds the lock of the current database for the length of an operation; within an operation that holds it,
/// others take it for nothing.  Waits up to a second for others.  Whoever takes it first finishes what a
/// crash has interrupted; where that can't be done, only kStoreExclusiveAsIs is held.
class StoreLock {
public:
    explicit StoreLock(StoreLockKind kind);
    ~StoreLock();
    StoreLock(const StoreLock&) = delete;
    StoreLock& operator=(const StoreLock&) = delete;

    /// False with the reason in `globals->storeTrouble`: the operation must change nothing then.
    bool held() const { return held_; }

private:
    bool held_ = false;
};
