/// From a stored text object to a live text frame.
#pragma once

#include <cstdint>
#include <span>

#include "plugin/host/text_classes.h"
#include "plugin/rebuild/load_state.h"

/// Makes the text frame in the innermost open container and fills it run by run; on the page and in a
/// pattern alike it is moved by the placement offset.  Runs and text paths count as far as the object holds
/// them.
///
/// Once the frame is there it stays, whatever the host refuses then: a feature keeps its value of the run
/// before, and text that can't go on ends where it is.  A host that makes no frame on the path it was given
/// leaves the path in the document.
/// @param object  in host order, the header included
/// @return the host's code for the frame; -1 for a frame kind that there isn't
HostError LoadArtTextProcess(LoadState& load, std::span<uint8_t> object);

/// Puts a run's text behind `range`, which then ends behind it.
/// @param text  cp932, at most `bytes` bytes, ended by a NUL or by its length
/// @throws ATE::Exception
void InsertRunText(ATE::ITextRange& range, const char* text, size_t bytes);
