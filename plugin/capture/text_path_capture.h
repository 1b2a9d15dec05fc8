/// Where a text frame stands: its matrix with its anchor or its path, in stored form.
#pragma once

#include "plugin/host/text_classes.h"
#include "plugin/store/memory_handle.h"

/// A text frame as capture knows it before it looks at the text.
struct CapturedFrame {
    ArtHandle art = nullptr;
    int32_t kind = 0, orientation = 0;
    HostPoint anchor{0, 0}; ///< of point text
    HostMatrix matrix{};    ///< as the text engine gives it
};

/// Appends the frame's text path to `object`, whose length is `used` before and after.  Nothing is appended
/// for a frame in an area or on a path that has none.
/// @param origin  the art point that becomes (0, 0) in the record
/// @throws ATE::Exception  for a host error; kHostOutOfMemory also for a path of more segments than a record
///                         can count, which must not be stored in part
void CaptureTextPath(const CapturedFrame& frame, const HostPoint& origin, MemoryHandle& object,
                     uint64_t& used);
