/// From a stored record to live art in the front document.
#pragma once

#include <cstdint>

#include "plugin/rebuild/load_state.h"
#include "suites/host_types.h"

/// Reads a record and rebuilds its art on the current layer, or, while `trackState` is 2, hands its string
/// tags to `trackTarget` (tag_transfer.h) and leaves no art of its own.
///
/// The caller sets `placePoint`, `originMode`, `trackState` and `trackTarget` first.  Art is only moved,
/// never scaled or turned.  The record stays in `curRecord`; custom colours and their swatches stay in the
/// document even if the load stops.  Custom colours are made first; then the objects are taken from last to
/// first, so that patterns are known before the art that uses them, and each new object lands above the one
/// before.
///
/// Failures show as beeps and in the art, never as text.  A hidden or locked current layer, and a container,
/// pattern holder, path or path style that the host refuses, beep and stop the load; the art built so far
/// stays.  A record that can't be read does nothing at all.  Objects of kinds that have no rebuild are passed
/// over, and so are placed files that aren't there any more (placed_rebuild.h).
///
/// @param groupPath    cp932, as in `globals->aidbfname`
/// @param linkedFiles  kPool for art that goes into a user's document; kLook for a load that only serves to
///                     show or export the record, which must leave the database as it is
/// @return the host's code for the last object taken, 0 if there was none
HostError AidbLoadArt(const char* groupPath, int32_t recordNumber,
                      LinkedFileUse linkedFiles = LinkedFileUse::kPool);

/// The same for the record that is in `curRecord` already, in its expanded shape and in host order; nothing
/// happens if there is none.
HostError RebuildCurrentRecord(const RecordSource& source = {});
