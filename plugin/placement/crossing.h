/// Where two pieces of paths cross.
#pragma once

#include "suites/host_types.h"

/// The curve between two successive segments of a path.
struct Piece {
    HostPathSegment first, second;
};

/// Looks for the crossing of two pieces beside `pulled`, the point that the search has moved onto both.
///
/// Straight pieces cross as endless lines, arcs as whole circles, a piece counting as an arc here if a circle
/// through its ends fits their tangents; other curves are followed as 64 chords, and the first crossing along
/// the curves counts.  A crossing has to lie within the tolerance of `pulled`, but for that of a
/// vertical and a slanted line.  It comes out rounded to single precision; on failure it is left alone. Needs
/// the host's suites.
bool CrossPieces(const Piece& a, const Piece& b, const HostPoint& pulled, double tolerance,
                 HostPoint& crossing);
