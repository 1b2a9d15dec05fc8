/// A table of system calls for tests: counts, fails, cuts writes short, or calls back at a chosen call.
#pragma once

#include <functional>

#include "win32/system_calls.h"

enum FaultCall : unsigned {
    kFaultOpen,
    kFaultRead,
    kFaultWrite,
    kFaultSeek,
    kFaultFlush,
    kFaultTruncate,
    kFaultLock,
    kFaultStatus, ///< status, linkStatus, fileStatus and realPath
    kFaultSetTimes,
    kFaultClose, ///< the descriptor is closed all the same
    kFaultRename,
    kFaultReplace,
    kFaultRemove,
    kFaultMakeDirectory,
    kFaultRemoveDirectory,
    kFaultFlushDirectory,
    kFaultOpenDirectory,
    kFaultNextEntry,
    kFaultCloseDirectory,
    kFaultCallKinds,
    kFaultAnyCall = kFaultCallKinds,
};

/// Stands in for the system's calls as long as it lives; one at a time.  Calls are counted from 1, from the
/// construction or the last Reset; of each kind, and all together as kFaultAnyCall.
class FaultCalls {
public:
    FaultCalls();
    ~FaultCalls();
    FaultCalls(const FaultCalls&) = delete;
    FaultCalls& operator=(const FaultCalls&) = delete;

    /// The nth call of a kind fails with `error` and does nothing.
    void FailAt(unsigned nth, int error, FaultCall kind = kFaultAnyCall);
    /// So do all calls of that kind behind it: a disk that is full, a share that is gone.
    void FailFrom(unsigned nth, int error, FaultCall kind = kFaultAnyCall);
    /// The nth write writes half of its bytes, and every write behind it fails with ENOSPC.
    void CutWriteAt(unsigned nth);
    /// The nth read gives at most half of the bytes that it is asked for.
    void CutReadAt(unsigned nth);
    /// Calls back before the nth call is done: to stop the process there with _exit, or to look at the disk.
    void At(unsigned nth, std::function<void()> action, FaultCall kind = kFaultAnyCall);

    unsigned count(FaultCall kind = kFaultAnyCall) const;
    /// No faults, and counts from 0.
    void Reset();
};
