/// The string tags of art, as notes.
#pragma once

#include "suites/host_types.h"

/// Adds one note to `curRecord` with a line for each tag of the type "string" that has a name and a value,
/// and none if there is no such tag.  Tags with 461 bytes or more of name and value, and lines beyond 65000
/// bytes in all, are dropped.
/// @param layerTitle  adds the title of the art's layer as a last line, if it isn't empty
void WriteArtTags(ArtHandle art, bool layerTitle);
