#include "tests/support/recording_basic.h"

RecordingBasic* RecordingBasic::current = nullptr;

RecordingBasic::RecordingBasic(const HostBasic* inner) : inner_(inner), basic_(*inner) {
    current = this;
    basic_.AcquireSuite = Acquire;
    basic_.ReleaseSuite = Release;
}

RecordingBasic::~RecordingBasic() {
    current = nullptr;
}

HostError RecordingBasic::Acquire(const char* name, uint32_t version, const void** suite) {
    if (const auto failure = current->failAcquire.find(name); failure != current->failAcquire.end()) {
        const HostError error = failure->second;
        if (current->failOnce) current->failAcquire.erase(failure);
        return error;
    }
    const HostError error = current->inner_->AcquireSuite(name, version, suite);
    if (error == kHostNoError) current->acquired.push_back(name);
    return error;
}

HostError RecordingBasic::Release(const char* name, uint32_t version) {
    if (const auto failure = current->failRelease.find(name); failure != current->failRelease.end()) {
        return failure->second;
    }
    const HostError error = current->inner_->ReleaseSuite(name, version);
    if (error == kHostNoError) current->released.push_back(name);
    return error;
}
