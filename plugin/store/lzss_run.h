/// Finds runs: strings that stand one to four bytes back as well.  Only the packer includes this.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "plugin/store/lzss_form.h"

constexpr uint32_t kLongestPeriod = 4; ///< a pixel

/// How far back the string stands, or 0 if it doesn't stand so near.
inline uint32_t PeriodAt(const uint8_t* string) {
    const uint64_t start = LoadEight(string);
    for (uint32_t period = 1; period <= kLongestPeriod; ++period)
        if (start == LoadEight(string - period) && AllCommon(string, string - period)) return period;
    return 0;
}

/// How many of up to `most` bytes equal the ones `period` before them; reads up to seven bytes farther.
inline size_t RunBytes(const uint8_t* bytes, uint32_t period, size_t most) {
    size_t count = 0;
    for (; count < most; count += sizeof(uint64_t)) {
        if (const uint64_t difference = LoadEight(bytes + count) ^ LoadEight(bytes + count - period))
            return std::min(most, count + FirstDifference(difference));
    }
    return most;
}
