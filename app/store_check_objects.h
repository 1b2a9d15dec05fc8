/// What is wrong with one stored record: its texts, its packed bodies and the objects in them.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "app/store_check.h"

struct RecordFault {
    Severity severity;
    int64_t object; ///< from 0; -1 for the record as a whole
    std::string what;
};

struct RecordReport {
    std::vector<RecordFault> faults;
    std::vector<std::string> linkedFiles; ///< stored names of the pictures that it links to, cp932

    bool HasErrors() const;
};

/// @param image  the record's bytes as they lie in the file, at least kSmallestRecordBytes
RecordReport CheckRecordImage(std::span<const uint8_t> image);

/// The record's length by the lengths of its bodies, which its size word must equal; 64 bits, because nothing
/// is sure of damaged words.
uint64_t BytesByBodies(std::span<const uint8_t> start /*kPreviewOffset*/);
