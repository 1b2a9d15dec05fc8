#include "plugin/host/suite_table.h"

#include <cstdio>
#include <iterator>
#include <string_view>

#include "plugin/frame/globals.h"
#include "plugin/host/alerts.h"
#include "plugin/host/suite_slots.h"

#define DEFINE_SUITE_SLOT(suite, name, version) const void* suite##Slot = nullptr;
FOR_EACH_HOST_SUITE(DEFINE_SUITE_SLOT)
#undef DEFINE_SUITE_SLOT

namespace {

constexpr SuiteRow kRows[] = {
#define SUITE_ROW(suite, name, version) {name, version, &suite##Slot},
    FOR_EACH_HOST_SUITE(SUITE_ROW)
#undef SUITE_ROW
};
static_assert(std::size(kRows) == kSuiteCount);
// Alerts borrow the last row.
static_assert(kRows[kSuiteCount - 1].slot == &AIUnicodeStringSlot);

/// Rows whose name begins with "ATE " and that ask for `version`.
constexpr int CountTextEngineRows(uint32_t version) {
    int count = 0;
    for (const SuiteRow& row : kRows) {
        if (std::string_view(row.name).starts_with("ATE ") && row.version == version) ++count;
    }
    return count;
}
static_assert(CountTextEngineRows(1) == 66 && CountTextEngineRows(101) == 8);

void ReportMissingSuite(const HostBasic* basic, HostError error, const SuiteRow& row) {
    char text[256];
    std::snprintf(text, sizeof text, "Error: %d, suite: %s, version: %d!", error, row.name,
                  static_cast<int>(row.version));
    ShowMessageAlert(basic, text);
}

} // namespace

std::span<const SuiteRow, kSuiteCount> SuiteTable() {
    return kRows;
}

HostError AcquireHostSuites(const HostBasic* basic) {
    HostError error = kHostNoError;
    if (suiteUseCount == 0) {
        for (const SuiteRow& row : kRows) {
            error = basic->AcquireSuite(row.name, row.version, row.slot);
            if (error != kHostNoError && CanShowAlert()) {
                ReportMissingSuite(basic, error, row);
                break;
            }
        }
    }
    ++suiteUseCount;
    return error;
}

HostError ReleaseHostSuites(const HostBasic* basic) {
    HostError error = kHostNoError;
    if (suiteUseCount == 1) {
        for (const SuiteRow& row : kRows) {
            // An acquire that failed leaves gaps, and what isn't held can't be given back.
            if (!*row.slot) continue;
            error = basic->ReleaseSuite(row.name, row.version);
            if (error != kHostNoError) break;
            *row.slot = nullptr;
        }
    }
    --suiteUseCount;
    return error;
}
