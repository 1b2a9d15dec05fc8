/// Handing the tags of a record's art to art that is in the document already.
#pragma once

#include "suites/host_types.h"

/// Makes the string tags of `target`, or of its like in the group around it, those of the art in
/// `scratchGroup`.
///
/// A record of one object gives its tags to `target`.  A record of more is laid against the nearest ancestor
/// of `target` with the same number of objects, position by position; pairs of different kinds are left
/// alone.  Two alerts, in the language of `globals->language`: no ancestor has that number, or some pairs
/// differ in kind.
void TransferTags(ArtHandle scratchGroup, ArtHandle target);
