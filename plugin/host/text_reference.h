/// What the classes over the text engine share: the exception that they throw, and their counted reference.
///
/// These classes live between `AcquireHostSuites` and `ReleaseHostSuites` and within one call of the plug-in.
/// Nothing may let an exception of theirs pass an entry of the plug-in.
#pragma once

#include <utility>

#include "plugin/host/suites.h"

namespace ATE {

/// The host refused a call, for this reason.
class Exception {
public:
    explicit Exception(HostError error) : error_(error) {}
    HostError error() const { return error_; }

private:
    HostError error_;
};

inline void Check(HostError error) {
    if (error != kHostNoError) throw Exception(error);
}

/// What a suite's getter gives.
template <typename Reference, typename Value>
Value Got(HostError (*getter)(Reference, Value*), Reference reference) {
    Value value{};
    Check(getter(reference, &value));
    return value;
}

/// One use of a reference; `suite()` is the suite that counts it.
template <typename Reference, auto suite>
class Counted {
public:
    /// Takes over the use that an operation of the host gave.
    explicit Counted(Reference reference) : reference_(reference) {}
    Counted(const Counted& other) : reference_(other.reference_) {
        if (reference_) Check(suite().AddRef(reference_));
    }
    Counted(Counted&& other) noexcept : reference_(std::exchange(other.reference_, nullptr)) {}
    Counted& operator=(Counted other) noexcept {
        std::swap(reference_, other.reference_);
        return *this;
    }
    ~Counted() {
        if (reference_) suite().Release(reference_);
    }

    Reference get() const { return reference_; }

private:
    Reference reference_;
};

} // namespace ATE
