/// From a path and its paint to a path object.
#pragma once

#include "plugin/store/memory_handle.h"
#include "suites/host_types.h"

/// Pattern numbers end here: a load knows the numbers from 1 to 1023.
constexpr int32_t kPatternNumberEnd = 1024;

/// Writes the path object of `path` into `object`, a zeroed block of at least kEmptyPathBytes, which is
/// enlarged for more than one segment.  The fill's gradient goes into the object, custom colours into the
/// custom colour table, the art of patterns into `sideObjects`.
///
/// A guide and a path without segments give no object: the object's size word stays 0.
/// @param origin  the art point that becomes (0, 0) in the record
/// @return the first error of the host; the object then holds what could be read, and is none the less
///         to be added unless its size word is 0
HostError PostArtPathProcess(ArtHandle path, MemoryHandle& object, const HostPoint* origin);

/// Captures the art of a pattern into `sideObjects`, between two notes with the pattern's number, with the
/// lower left corner of its own bounds as origin.  Each use of a pattern makes a run of its own.  Patterns
/// within the pattern's art get higher numbers and runs behind this one.
/// @return the number, as the value of a handle; none if the numbers are used up; `pattern` itself if it
///         has no art or its art can't be read
PatternHandle CapturePatternPaint(PatternHandle pattern);
