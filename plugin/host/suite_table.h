/// The one list of suites that the plug-in uses, and holding them for the length of a call.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "suites/basic.h"

constexpr size_t kSuiteCount = 134;

/// One suite: what the host is asked for, and where its table of functions lies while it is held.
struct SuiteRow {
    const char* name;
    uint32_t version;
    const void** slot; ///< null in it: not held
};

/// The rows in the order of acquiring and releasing.
std::span<const SuiteRow, kSuiteCount> SuiteTable();

/// Acquires all suites at the outermost entry into the plug-in; a nested call only counts.
///
/// A suite that fails before the one for alerts is held goes unnoticed; a later failure ends the walk with
/// an alert that names the suite.  The use is counted in every case, so a ReleaseHostSuites must follow also
/// after a failure.
/// @return the result of the last acquire, 0 in a nested call
HostError AcquireHostSuites(const HostBasic* basic);

/// Ends one use; the outermost one releases the suites that are held, and a failure leaves those behind it
/// held.
HostError ReleaseHostSuites(const HostBasic* basic);
