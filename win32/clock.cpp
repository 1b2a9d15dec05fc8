#include <windows.h>

#include <ctime>

#include "win32/disk_entry.h"
#include "win32/display.h"

namespace {

constexpr uint64_t kStepsPerSecond = 10000000; // steps of a FILETIME: 100 ns
constexpr uint64_t kStepsPerMillisecond = 10000;
constexpr uint64_t kSecondsPerDay = 86400;
constexpr int64_t kSecondsFrom1601To1970 = 11644473600;
constexpr int64_t kDaysPer400Years = 146097;

bool IsLeapYear(int64_t year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

int DaysOfMonth(int64_t year, int month) {
    constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && IsLeapYear(year) ? 29 : kDays[month - 1];
}

// Days from 1601-01-01 to the first day of a year.  1601 begins a period of 400 years.
int64_t DaysBeforeYear(int64_t year) {
    const int64_t years = year - 1601;
    return years * 365 + years / 4 - years / 100 + years / 400;
}

uint64_t StepsOf(const FILETIME& time) {
    return uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
}

FILETIME FileTimeOfSteps(uint64_t steps) {
    return {static_cast<DWORD>(steps), static_cast<DWORD>(steps >> 32)};
}

SYSTEMTIME SystemTimeOf(const tm& parts, long nanoseconds) {
    return {.wYear = static_cast<WORD>(parts.tm_year + 1900),
            .wMonth = static_cast<WORD>(parts.tm_mon + 1),
            .wDayOfWeek = static_cast<WORD>(parts.tm_wday),
            .wDay = static_cast<WORD>(parts.tm_mday),
            .wHour = static_cast<WORD>(parts.tm_hour),
            .wMinute = static_cast<WORD>(parts.tm_min),
            .wSecond = static_cast<WORD>(parts.tm_sec > 59 ? 59 : parts.tm_sec),
            .wMilliseconds = static_cast<WORD>(nanoseconds / 1000000)};
}

// A display may have a date of its own, so that what is stamped is the same in every run.
bool HasOwnDate() {
    return OpenDisplay() != nullptr && OpenDisplay()->UnixMilliseconds() >= 0;
}

timespec Now() {
    if (HasOwnDate()) {
        const int64_t milliseconds = OpenDisplay()->UnixMilliseconds();
        return {static_cast<time_t>(milliseconds / 1000), static_cast<long>(milliseconds % 1000) * 1000000};
    }
    timespec now = {};
    ::clock_gettime(CLOCK_REALTIME, &now);
    return now;
}

BOOL Refuse() {
    SetLastError(ERROR_INVALID_PARAMETER);
    return FALSE;
}

} // namespace

FILETIME FileTimeOfTimespec(const timespec& time) {
    const int64_t seconds = time.tv_sec + kSecondsFrom1601To1970;
    if (seconds < 0) return {};
    return FileTimeOfSteps(static_cast<uint64_t>(seconds) * kStepsPerSecond +
                           static_cast<uint64_t>(time.tv_nsec) / 100);
}

void GetSystemTime(SYSTEMTIME* utc) {
    const timespec now = Now();
    tm parts;
    ::gmtime_r(&now.tv_sec, &parts);
    *utc = SystemTimeOf(parts, now.tv_nsec);
}

void GetLocalTime(SYSTEMTIME* local) {
    const timespec now = Now();
    tm parts;
    if (HasOwnDate()) {
        ::gmtime_r(&now.tv_sec, &parts); // nor does it depend on the machine's place
    } else {
        ::localtime_r(&now.tv_sec, &parts);
    }
    *local = SystemTimeOf(parts, now.tv_nsec);
}

void GetSystemTimeAsFileTime(FILETIME* utc) {
    *utc = FileTimeOfTimespec(Now());
}

BOOL SystemTimeToFileTime(const SYSTEMTIME* time, FILETIME* fileTime) {
    if (time->wYear < 1601 || time->wYear > 30827 || time->wMonth < 1 || time->wMonth > 12) return Refuse();
    if (time->wDay < 1 || time->wDay > DaysOfMonth(time->wYear, time->wMonth)) return Refuse();
    if (time->wHour > 23 || time->wMinute > 59 || time->wSecond > 59 || time->wMilliseconds > 999)
        return Refuse();
    int64_t days = DaysBeforeYear(time->wYear) + time->wDay - 1;
    for (int month = 1; month < time->wMonth; ++month) days += DaysOfMonth(time->wYear, month);
    const uint64_t seconds = static_cast<uint64_t>(days) * kSecondsPerDay + time->wHour * 3600u +
                             time->wMinute * 60u + time->wSecond;
    *fileTime = FileTimeOfSteps(seconds * kStepsPerSecond + time->wMilliseconds * kStepsPerMillisecond);
    return TRUE;
}

BOOL FileTimeToSystemTime(const FILETIME* fileTime, SYSTEMTIME* time) {
    const uint64_t steps = StepsOf(*fileTime);
    if (steps >> 63 != 0) return Refuse();
    const uint64_t seconds = steps / kStepsPerSecond;
    int64_t days = static_cast<int64_t>(seconds / kSecondsPerDay);
    *time = {};
    time->wDayOfWeek = static_cast<WORD>((days + 1) % 7); // 1601-01-01 was a Monday
    int64_t year = 1601 + days / kDaysPer400Years * 400 + days % kDaysPer400Years / 366;
    while (DaysBeforeYear(year + 1) <= days) ++year;
    days -= DaysBeforeYear(year);
    int month = 1;
    while (days >= DaysOfMonth(year, month)) days -= DaysOfMonth(year, month++);
    const uint64_t ofDay = seconds % kSecondsPerDay;
    time->wYear = static_cast<WORD>(year);
    time->wMonth = static_cast<WORD>(month);
    time->wDay = static_cast<WORD>(days + 1);
    time->wHour = static_cast<WORD>(ofDay / 3600);
    time->wMinute = static_cast<WORD>(ofDay / 60 % 60);
    time->wSecond = static_cast<WORD>(ofDay % 60);
    time->wMilliseconds = static_cast<WORD>(steps / kStepsPerMillisecond % 1000);
    return TRUE;
}
