#include "plugin/store/clock_1904.h"

namespace {

constexpr double kTicksInSecond = 10000000.0; ///< of 100 nanoseconds, as a file time counts them
constexpr double kTicksInHigh = 4294967296.0;

double TicksOf(const FILETIME& time) {
    return time.dwHighDateTime * kTicksInHigh + time.dwLowDateTime;
}

double TicksOf(const SYSTEMTIME& time) {
    FILETIME file = {};
    SystemTimeToFileTime(&time, &file);
    return TicksOf(file);
}

double TicksOf1904() {
    SYSTEMTIME start = {};
    start.wYear = 1904;
    start.wMonth = 1;
    start.wDay = 1;
    return TicksOf(start);
}

uint32_t SecondsFrom1904(double ticks) {
    return static_cast<uint32_t>(static_cast<int64_t>((ticks - TicksOf1904()) / kTicksInSecond));
}

} // namespace

uint32_t StampOfNewRecord() {
    FILETIME now = {};
    GetSystemTimeAsFileTime(&now);
    return SecondsFrom1904(TicksOf(now));
}

void NowIn1904Seconds(uint32_t* seconds) {
    SYSTEMTIME now = {};
    GetLocalTime(&now);
    *seconds = SecondsFrom1904(TicksOf(now));
}

void TimeFrom1904Seconds(uint32_t seconds, SYSTEMTIME* time) {
    const double ticks = TicksOf1904() + seconds * kTicksInSecond;
    const auto whole = static_cast<uint64_t>(ticks);
    FILETIME file = {};
    file.dwHighDateTime = static_cast<DWORD>(whole >> 32);
    file.dwLowDateTime = static_cast<DWORD>(whole);
    FileTimeToSystemTime(&file, time);
}
