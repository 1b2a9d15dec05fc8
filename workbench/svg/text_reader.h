/// Text elements as text frames.
#pragma once

#include "workbench/svg/read_context.h"

namespace workbench {

/// Reads a text element onto the top of `container`: one frame, or a group of several where its pieces lie
/// in places that one frame has no lines for.  Texts that begin below each other are the lines of one frame.
///
/// Single letters' places become kerning and baseline shifts.  What a frame can't hold is counted: turned
/// letters, text decoration, textLength, opacities that differ within a frame.  Text of our own files, if
/// nobody changed it, is read by our own words (see text_words.h).
/// @param here  the element's own
/// @return null if it shows nothing
Art* ReadText(ReadContext& context, pugi::xml_node element, const Surroundings& here, Art* container);

} // namespace workbench
