/// From the selection of the front document to a record in memory.
///
/// A record is a snapshot that doesn't depend on its document: coordinates are relative to the lower left
/// corner of the selection, colours stand by value, patterns are copied in as art.
#pragma once

#include "plugin/capture/measure_selection.h"
#include "suites/host_types.h"

/// Captures the selected art of all layers of the front document into a new `curRecord`, with bounds, time
/// stamps, preview and object stream, all in host order; `curRecordNo` becomes -1.  The custom colour table
/// and the link list are left filled with what the record refers to.
///
/// The stream holds the art of all layers, topmost layer first; then a note for each row of the custom
/// colour table; then the art of the patterns, each run between its two notes, in the order of the numbers.
/// The header's bounds words are Fixed: 0, height, width, 0.
///
/// The caller has seen to it that art is selected.  Captures don't nest.
/// @return the code of the last layer, which is 0 where art merely held something that can't be captured;
///         kHostOutOfMemory, with no record, if the record's blocks couldn't be made
HostError AidbPostArt();

/// Appends what `art` and all that is in it give to `curRecord`.  Containers become pairs of bracket notes
/// around their members; the deepest brackets are those of depth 1023, art further in is captured without.
/// @param origin  the art point that becomes (0, 0) in the record
/// @param depth   0 for a layer's group and for a pattern's art, which get no brackets of their own
/// @return the host's code for `art` itself; failures of its members don't count
HostError PostArtProcess(ArtHandle art, const HostPoint* origin, int32_t depth);
