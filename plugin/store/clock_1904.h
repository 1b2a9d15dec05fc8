/// Time stamps: unsigned seconds since 1904-01-01 00:00.  They end in February 2040.
///
/// Two clocks feed them: a new record is stamped in UTC, an in-place rewrite in local time, and a stamp is
/// shown as it was stored.
#pragma once

#include <windows.h>

#include <cstdint>

/// The system clock, UTC: what a new record gets as created and modified.
uint32_t StampOfNewRecord();

/// The local time now, by the wall clock.
void NowIn1904Seconds(uint32_t* seconds);

/// The date and time of a stamp, with no time zone correction.
void TimeFrom1904Seconds(uint32_t seconds, SYSTEMTIME* time);
