/// What is wrong with a group's file, and what of it can be kept.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "app/store_check.h"
#include "plugin/store/group_file.h"

/// A record that can be reached, one behind the other.
struct FramedRecord {
    uint32_t place, bytes;
    bool wrongSizeWord; ///< the size word says something else; the lengths of whole bodies tell the size
};

/// The frame of a group's file as it should be.
///
/// A record's size stands in it twice: in its size word, and as the lengths of its two bodies.  Readers go by
/// the word.  Only where it leads to no record, and the bodies unpack as they must and lead on, it is taken
/// for damaged; a length that merely looks right could cost the records behind it.  Bytes behind the counted
/// records are records only if they are nothing but whole ones, up to the file's end: then the count is
/// damaged, or an append was stopped before its last step.
struct GroupFrame {
    uint32_t storedCount = 0;
    uint32_t length = 0;        ///< bytes of the file
    uint32_t end = kCountBytes; ///< where the records end
    std::vector<FramedRecord> records;
    bool unreadable = false; ///< a read failed, so nothing is known of the rest: nothing may be mended

    /// Nothing to mend.
    bool IsSound() const;
};

GroupFrame ReadGroupFrame(GroupFile& file);

/// What the rest of the check has to know of a group.
struct GroupFacts {
    bool known = false;   ///< the file could be read to its end
    uint32_t records = 0; ///< that the group has once it is mended
    std::map<uint32_t, std::vector<std::string>>
        linkedFiles; ///< stored names (cp932) of each record that has some
    std::set<uint32_t> damagedRecords;
    std::vector<Finding> findings;
    std::string state; ///< of the file
};

/// @param group  as the plug-in names it
GroupFacts CheckGroup(const std::string& group, const std::string& diskPath);

/// A text that differs when a file was changed or replaced; empty if there is none.
std::string StateOfFile(const std::string& diskPath);
