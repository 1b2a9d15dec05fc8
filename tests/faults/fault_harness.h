/// Runs an operation of the store with a fault at each of its system calls in turn.
///
/// The operation is told apart from what must hold afterwards, so that one table of faults serves all.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <functional>
#include <string>

#include "win32/fault_calls.h"

struct FaultedOperation {
    std::function<void()> restore; ///< the disk and the state as they are before each run
    std::function<int32_t()> run;  ///< 0 when it claims to have succeeded
    /// Called without faults; `what` names the fault.  Fatal failures end the rounds.
    std::function<void(int32_t result, const std::string& what)> check;
    /// The process ended in the middle, or behind the end if `finished`.
    std::function<void(bool finished, const std::string& what)> checkStopped;
};

struct FaultWay {
    const char* name;
    FaultCall kind; ///< the calls that are gone through
    void (*set)(FaultCalls& faults, unsigned nth);
    unsigned step = 1; ///< what hardly differs from another way is tried at some calls only
};

inline constexpr FaultWay kFaultWays[] = {
    {"I/O error, once", kFaultAnyCall, [](FaultCalls& f, unsigned n) { f.FailAt(n, EIO); }},
    {"I/O error, from there on", kFaultAnyCall, [](FaultCalls& f, unsigned n) { f.FailFrom(n, EIO); }, 3},
    {"access denied, once", kFaultAnyCall, [](FaultCalls& f, unsigned n) { f.FailAt(n, EACCES); }, 5},
    {"a write cut short", kFaultWrite, [](FaultCalls& f, unsigned n) { f.CutWriteAt(n); }},
    {"full disk, once", kFaultWrite, [](FaultCalls& f, unsigned n) { f.FailAt(n, ENOSPC, kFaultWrite); }},
    {"full disk, from there on", kFaultWrite,
     [](FaultCalls& f, unsigned n) { f.FailFrom(n, ENOSPC, kFaultWrite); }},
    {"a flush that fails", kFaultFlush, [](FaultCalls& f, unsigned n) { f.FailFrom(n, EIO, kFaultFlush); }},
    {"a rename that fails", kFaultRename,
     [](FaultCalls& f, unsigned n) { f.FailFrom(n, EIO, kFaultRename); }},
    {"a read cut short", kFaultRead, [](FaultCalls& f, unsigned n) { f.CutReadAt(n); }, 3},
};

/// How many calls of a kind the operation makes when all goes well.
inline unsigned CallsOf(const FaultedOperation& operation, FaultCall kind) {
    operation.restore();
    FaultCalls faults;
    EXPECT_EQ(operation.run(), 0);
    return faults.count(kind);
}

inline void FailEveryCall(const FaultedOperation& operation, const FaultWay& way) {
    const unsigned calls = CallsOf(operation, way.kind);
    unsigned failures = 0;
    for (unsigned nth = 1; nth <= calls + way.step; nth += way.step) {
        operation.restore();
        int32_t result;
        {
            FaultCalls faults;
            way.set(faults, nth);
            result = operation.run();
        }
        if (result != 0) ++failures;
        operation.check(result, std::string(way.name) + " at call " + std::to_string(nth));
        if (::testing::Test::HasFatalFailure()) return;
    }
    // A read that is cut short goes on; what else an operation makes use of must have been noticed.
    if (calls > 0 && way.kind == kFaultAnyCall) {
        EXPECT_GT(failures, 0u) << way.name << " of " << calls;
    }
}

inline void FailInEveryWay(const FaultedOperation& operation) {
    for (const FaultWay& way : kFaultWays) {
        FailEveryCall(operation, way);
        if (::testing::Test::HasFatalFailure()) return;
    }
}

/// Runs something in a process of its own that ends before its nth call; true if it came to its end.
inline bool RunStoppedAt(unsigned nth, const std::function<void()>& run) {
    const pid_t child = fork();
    EXPECT_GE(child, 0);
    if (child == 0) {
        FaultCalls faults;
        faults.At(nth, [] { _exit(1); });
        run();
        _exit(0);
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status));
    return WEXITSTATUS(status) == 0;
}

inline void StopBeforeEveryCall(const FaultedOperation& operation) {
    for (unsigned nth = 1;; ++nth) {
        operation.restore();
        const bool finished = RunStoppedAt(nth, [&operation] { operation.run(); });
        operation.checkStopped(finished, "stopped before call " + std::to_string(nth));
        if (::testing::Test::HasFatalFailure() || finished) return;
    }
}
