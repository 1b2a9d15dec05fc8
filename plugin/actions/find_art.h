/// The path under a point.
#pragma once

#include "suites/host_types.h"

/// The topmost path that contains the point, or none.  Hidden and locked layers are searched too; groups and
/// compound paths by their members.
ArtHandle FindArtAtPoint(const HostPoint& point);

/// Even-odd over the outline, which counts as closed; curved pieces as eight chords.
bool PointInPath(ArtHandle path, const HostPoint& point);

/// Does a ray from the point straight away from the line y = 0 cross the chord?
bool ChordCrossesRay(const HostPoint& p0, const HostPoint& p1, const HostPoint& point);
