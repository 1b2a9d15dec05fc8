/// The stand-in host's basic interface with a record of what is acquired and released, and with failures on
/// request that the host itself doesn't offer.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "suites/basic.h"

/// One at a time, while the host lives.
class RecordingBasic {
public:
    explicit RecordingBasic(const HostBasic* inner);
    ~RecordingBasic();
    RecordingBasic(const RecordingBasic&) = delete;
    RecordingBasic& operator=(const RecordingBasic&) = delete;

    const HostBasic* basic() const { return &basic_; }

    std::vector<std::string> acquired, released; ///< names of suites, of calls that succeeded

    // What fails with which error, by the suite's name, until erased.
    std::map<std::string, HostError> failAcquire, failRelease;

    /// The failure of `failAcquire` goes away with its first use.
    bool failOnce = false;

private:
    static HostError Acquire(const char* name, uint32_t version, const void** suite);
    static HostError Release(const char* name, uint32_t version);

    static RecordingBasic* current;
    const HostBasic* inner_;
    HostBasic basic_;
};
