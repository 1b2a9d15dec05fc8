/// The art of patterns, as runs of objects with a number that stands in the paint that uses them.
#pragma once

#include "plugin/store/memory_handle.h"
#include "suites/host_types.h"

/// Pattern numbers end here: a load knows the numbers from 1 to 1023.
constexpr int32_t kPatternNumberEnd = 1024;

/// Patterns within patterns take stack, and one that holds itself would take all there is: further in, a
/// pattern is not captured any more.
constexpr int16_t kPatternDepth = 128;

/// Captures the art of a pattern into `sideObjects`, between two notes with the pattern's number, with the
/// lower left corner of its own bounds as origin.  Each use of a pattern makes a run of its own.  A pattern
/// that is met within another one's art gets the next number, and its run lies within the other's until
/// AppendPatternRuns; `sideObjects` is null meanwhile.
/// @return the number, as the value of a handle; none if the numbers are used up or the pattern lies too
///         deep; `pattern` itself if it has no art or its art can't be read
PatternHandle CapturePatternPaint(PatternHandle pattern);

/// Appends the runs of `runs`, the side buffer of a whole capture, to `record`: one behind the other, in the
/// order of their numbers, since a load takes all between a run's two notes as one pattern.  False if a
/// note is missing, memory ran out or the record would become too long.
[[nodiscard]] bool AppendPatternRuns(MemoryHandle& record, MemoryHandle runs);
