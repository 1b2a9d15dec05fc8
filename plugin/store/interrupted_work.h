/// Work that spans several files, and what becomes of it when it is interrupted.
///
/// An operation first writes its note of intent (intent_note.h), then does its work step by step and drops
/// the note.  What is on the disk and what the note says about how it was before tell together how far the
/// work came, so the way to the end is the same for the operation itself and for whoever finds its note.
#pragma once

#include <new>
#include <string>

#include "plugin/store/intent_note.h"
#include "plugin/store/store_lock.h"

/// True if the database root holds the note of intent of an operation that didn't come to its end, or if
/// that can't be told.
bool WorkIsInterrupted();

/// Finishes or undoes such work, as far as what is on the disk tells how; the caller holds the store's lock
/// alone.  False if that can't be done now: nothing may be changed then.  True if there was nothing to do.
bool FinishInterruptedWork();

/// What the note of interrupted work says, for a report; empty if there is none.
std::string DescribeInterruptedWork();

enum class WorkEnd {
    kDone,   ///< and the note dropped
    kUndone, ///< all is as it was before, and the note dropped
    kStuck,  ///< neither can be reached now; the note stays, and `storeTrouble` is kUnfinished
};

/// Goes on with work whose note has been written, from wherever it stands.
WorkEnd FinishWork(const Intent& intent);

/// Runs an operation that gives 0 or an error.  If memory runs out in it -1 is given: what it had begun is
/// then finished or undone by whoever takes the lock next.
template <typename Operation>
int32_t WithinMemory(Operation operation) {
    try {
        return operation();
    } catch (const std::bad_alloc&) {
        StoreFails(StoreTrouble::kMemory);
        return -1;
    }
}
