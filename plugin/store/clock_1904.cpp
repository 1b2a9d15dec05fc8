#include "plugin/store/clock_1904.h"

#include <chrono>

namespace {

constexpr double kTicksInSecond = 10000000.0; ///< of 100 nanoseconds, as a file time counts them
constexpr double kTicksInHigh = 4294967296.0;

double TicksOf(const SYSTEMTIME& time) {
    FILETIME file = {};
    SystemTimeToFileTime(&time, &file);
    return file.dwHighDateTime * kTicksInHigh + file.dwLowDateTime;
}

double TicksOf1904() {
    SYSTEMTIME start = {};
    start.wYear = 1904;
    start.wMonth = 1;
    start.wDay = 1;
    return TicksOf(start);
}

} // namespace

uint32_t StampOfNewRecord() {
    const auto since1970 = std::chrono::system_clock::now().time_since_epoch();
    const int64_t seconds = std::chrono::duration_cast<std::chrono::seconds>(since1970).count();
    return static_cast<uint32_t>(seconds + kSeconds1904To1970);
}

void NowIn1904Seconds(uint32_t* seconds) {
    SYSTEMTIME now = {};
    GetLocalTime(&now);
    const double since1904 = (TicksOf(now) - TicksOf1904()) / kTicksInSecond;
    *seconds = static_cast<uint32_t>(static_cast<int64_t>(since1904));
}

void TimeFrom1904Seconds(uint32_t seconds, SYSTEMTIME* time) {
    const double ticks = TicksOf1904() + seconds * kTicksInSecond;
    const auto whole = static_cast<uint64_t>(ticks);
    FILETIME file = {};
    file.dwHighDateTime = static_cast<DWORD>(whole >> 32);
    file.dwLowDateTime = static_cast<DWORD>(whole);
    FileTimeToSystemTime(&file, time);
}
