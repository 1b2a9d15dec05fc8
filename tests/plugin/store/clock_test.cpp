#include "plugin/store/clock_1904.h"

#include <gtest/gtest.h>

#include <ctime>

namespace {

void ExpectTime(uint32_t seconds, int year, int month, int day, int hour, int minute, int second) {
    SYSTEMTIME time = {};
    TimeFrom1904Seconds(seconds, &time);
    EXPECT_EQ(time.wYear, year) << seconds;
    EXPECT_EQ(time.wMonth, month) << seconds;
    EXPECT_EQ(time.wDay, day) << seconds;
    EXPECT_EQ(time.wHour, hour) << seconds;
    EXPECT_EQ(time.wMinute, minute) << seconds;
    EXPECT_EQ(time.wSecond, second) << seconds;
}

} // namespace

TEST(Clock1904, StampsAreShownAsTheyWereStored) {
    ExpectTime(0, 1904, 1, 1, 0, 0, 0);
    ExpectTime(59 * 86400 + 1, 1904, 2, 29, 0, 0, 1);
    ExpectTime(2082844800, 1970, 1, 1, 0, 0, 0);
    ExpectTime(2082844799, 1969, 12, 31, 23, 59, 59);
    ExpectTime(0xFFFFFFFF, 2040, 2, 6, 6, 28, 15);
}

// Not one second may be lost on the way through doubles.
TEST(Clock1904, EverySecondIsItsOwn) {
    for (uint32_t seconds = 3700000000u; seconds < 3700003700u; ++seconds) {
        SYSTEMTIME time = {};
        TimeFrom1904Seconds(seconds, &time);
        ASSERT_EQ(time.wMinute * 60u + time.wSecond, (seconds % 3600u)) << seconds;
        ASSERT_EQ(time.wMilliseconds, 0);
    }
}

TEST(Clock1904, NewRecordsAreStampedInUtc) {
    const auto before = static_cast<int64_t>(std::time(nullptr));
    const int64_t stamp = StampOfNewRecord();
    const auto after = static_cast<int64_t>(std::time(nullptr));
    EXPECT_GE(stamp, before + 2082844800 - 1);
    EXPECT_LE(stamp, after + 2082844800 + 1);
}

TEST(Clock1904, RewritesAreStampedInLocalTime) {
    uint32_t stamp = 0;
    NowIn1904Seconds(&stamp);
    SYSTEMTIME shown = {};
    TimeFrom1904Seconds(stamp, &shown);
    SYSTEMTIME local = {};
    GetLocalTime(&local);
    FILETIME a = {};
    FILETIME b = {};
    ASSERT_TRUE(SystemTimeToFileTime(&shown, &a));
    ASSERT_TRUE(SystemTimeToFileTime(&local, &b));
    const auto ticks = [](const FILETIME& time) {
        return static_cast<int64_t>(uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime);
    };
    EXPECT_LE(ticks(b) - ticks(a), 30000000); // three seconds
    EXPECT_GE(ticks(b) - ticks(a), 0);
}
