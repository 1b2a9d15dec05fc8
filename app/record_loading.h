/// Loading a record into the front document as live art.
#pragma once

#include <cstdint>
#include <string>

#include "plugin/rebuild/load_state.h"
#include "suites/host_types.h"

/// False, and a sentence in *error, if the record can't be read or not all of it could be placed; linked
/// pictures that are gone are such a part.
/// @param origin  which point of the art lands on `point`, as globals->originMode counts them
/// @param linkedFiles  kPool to place the record, kLook to show or export it without a change of the database
bool LoadRecord(const std::string& group, int32_t number, const HostPoint& point, int origin,
                LinkedFileUse linkedFiles, std::string* error);
/// The same of a record that a load has just read: whether all of it was placed.
/// @param beeps  of the process, before the load
bool WasLoadedWhole(const std::string& group, int32_t number, LinkedFileUse linkedFiles, unsigned beeps,
                    std::string* error);
constexpr int kOriginLeftBottom = 2;

/// Hands the string tags of the record's objects to `target`, or to the nearest art around it that has as
/// many objects as the record; the document gets no art.  False, and a sentence in *error, if the record
/// can't be read or built.  What the plug-in objects to, it alerts; then some objects or all got no tags.
bool TransferRecordTags(const std::string& group, int32_t number, ArtHandle target, std::string* error);
