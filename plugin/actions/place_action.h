/// The place action, as the host replays it.
#pragma once

#include <cstdint>

#include "suites/host_types.h"

/// Keys of the action's parameters: four characters, the first in the highest byte.
enum PlaceParameter : uint32_t {
    kPlaceX = 0x706C6378,      ///< 'plcx': the centre of the placed art, in points
    kPlaceY = 0x706C6379,      ///< 'plcy'
    kPlaceWidth = 0x73636C77,  ///< 'sclw': points
    kPlaceHeight = 0x73636C68, ///< 'sclh'
    kPlaceAngle = 0x616E676C,  ///< 'angl': radians
};

/// Loads the record of the panel's selected row, groups its art, and brings the group to the size and place
/// that the parameters tell.  A size that is missing, not finite or 0 leaves that side as it is; no angle is
/// 0.  Without an open document it beeps; without a selected row it says so.
void PlaceFromAction(ParametersHandle parameters);

/// The map that the action gives a group of these bounds; a side of the bounds that is 0 or not finite takes
/// the other side's factor, both: 1.
struct PlaceSize {
    double x, y, width, height, angle; ///< width and height 0: as the group's
};
HostMatrix PlaceMatrix(const HostRect& bounds, const PlaceSize& place, double* lineScale);
