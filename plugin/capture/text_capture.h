/// From a text frame to a text object.
#pragma once

#include "plugin/store/memory_handle.h"
#include "suites/host_types.h"

/// Writes the text object of `frame` into `object`, a zeroed block of at least kTextBaseBytes, which grows by
/// a run for each stretch of characters with equal attributes, and by the frame's path.  Of text in a chain
/// of frames, each frame stores all of it.
///
/// A character that the platform's encoding doesn't hold, or of more than three bytes, is stored as '?'.
/// Kerning behind the last character is kept by a last run of one carriage return.  Colours and patterns go
/// where those of a path go (path_capture.h); a gradient becomes gray 0.
///
/// A text is stored whole or not at all: on an error the object's size word stays 0, and the object isn't to
/// be added.
/// @param origin  the art point that becomes (0, 0) in the record
/// @return the first host error; kHostOutOfMemory also for a text of more than 65,535 runs
HostError PostArtTextProcess(ArtHandle frame, MemoryHandle& object, const HostPoint* origin);
