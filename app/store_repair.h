/// Mending what a check has found, as far as it can be mended without guessing.
///
/// A change that was interrupted comes first: it is finished or undone as its note says.  While that can't be
/// done nothing else is mended, because what is on the disk means what the note says of it.  Only a designer
/// can tell a share that is out of reach for a moment from one that no longer fits the note, so giving the
/// change up has to be asked for; the note is kept among the copies.
///
/// No file is changed or taken out before a copy of it, or the file itself, is safe in a folder of its own
/// below the database: .velquorne-repair-TIME, laid out as the database is.  Each change is one step, so a
/// repair that is stopped leaves a database that can be repaired again.
#pragma once

#include <string>
#include <vector>

#include "app/store_check.h"

/// What a repair does, or would do, about a finding; empty for one that it can't mend.
std::string WordsOfRemedy(const Finding& finding);

struct RepairReport {
    std::vector<std::string> done;   ///< places and what was done, a line each
    std::vector<std::string> failed; ///< likewise, and why
    std::vector<Finding> left;       ///< what the database still has
    std::string copies;              ///< the folder of copies; empty if there was nothing to keep
};

enum class UnfinishedWork { kStays, kIsGivenUp };

/// Repairs the session's database, which lies in `folder`; the caller holds kStoreExclusiveAsIs.
RepairReport RepairStore(const std::string& folder, UnfinishedWork unfinished = UnfinishedWork::kStays);
