/// A walk over a whole database that tells what is wrong with it, in a designer's words.
///
/// It changes nothing.  Others may work on the database meanwhile: what seems wrong is looked at again, and
/// only what is still there, in a file that nobody has changed between the looks, is a finding.  The lock is
/// taken for a moment alone, to tell work that was interrupted from work that somebody is at.
#pragma once

#include <string>
#include <vector>

enum class Severity { kError, kWarning, kInfo };

/// "error", "warning", "info".
const char* NameOfSeverity(Severity severity);

/// What a repair can do about a finding.
enum class Remedy {
    kNone,
    kMendGroup,  ///< write the group's file anew with all records that can be read
    kFinishWork, ///< finish what was interrupted; whoever takes the database's lock does it
    kPutAside,   ///< move it, and what `along` names, into the folder of copies
    kWriteNote,  ///< write the bytes of `note` to the note at `path`
};

struct Finding {
    Severity severity = Severity::kError;
    std::string place; ///< a group, record and object, or a file; UTF-8 with backslashes
    std::string what;
    Remedy remedy = Remedy::kNone;
    std::string path;               ///< on disk, of what the remedy works on
    std::vector<std::string> along; ///< on disk
    std::string group;              ///< as the plug-in names it
    std::string note;
    std::string state; ///< differs when what was looked at has changed
};

enum class Looks {
    kUntilSure, ///< others may be at work
    kOnce,      ///< the database is locked
};

/// The findings about the database that is the session's root and lies in `folder`, in the order of the tree.
std::vector<Finding> CheckStore(const std::string& folder, Looks looks);
