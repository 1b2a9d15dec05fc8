/// Plane geometry on the host's points and path segments: is a point near a point, a straight piece, a
/// curved piece; does a piece fit a circle.
///
/// A piece is the curve between two successive segments of a path: it leaves the anchor of `first` along
/// its out handle and arrives at the anchor of `second` along its in handle.  A curved piece is either
/// recognised as an arc and treated exactly, or followed as chords of a 64-step table; there is no general
/// curve solver.  Lengths are art units, angles radians.  Where a point is taken by plain reference it is
/// moved on success, through a 32-bit float where it lands on a line or curve, and left alone on failure.
/// The code relies on IEEE infinities and NaN: degenerate pieces fail by comparison.
#pragma once

#include <cstdint>

#include "suites/host_types.h"

/// Fills `globals->cubicWeightEnd` and `cubicWeightHandle`, the weights of the control points at
/// t = 0/64 to 64/64.  Must run before any operation below that follows a curve.
void FillCurveTables();

/// The point of a piece at t = step/64, step 0 to 64, from the curve tables.
HostPoint CurvePoint(const HostPathSegment& first, const HostPathSegment& second, int step);

/// Two screen pixels in art units at the zoom of the current view; 0 without a view.  Needs the host's
/// suites, as do InBoundsWithTolerance, IsStraight and NearSegment.
double PullTolerance();

double Distance(const HostPoint& a, const HostPoint& b);
double AngleBetween(const HostPoint& from, const HostPoint& to); ///< -pi to pi
double MinOf(double a, double b);
double MaxOf(double a, double b);
double AbsOf(double value);

/// Halves go away from zero.  Saturates at the ends of the result's range; not-a-number gives 0.
int32_t RoundHalfAway(double value);

/// Is the point in the rectangle grown by the tolerance on all sides, edges included?
bool InBoundsWithTolerance(const HostPoint& point, const HostRect& rect, double tolerance);

/// Near means at most the tolerance away on each axis; the point becomes the anchor exactly.
bool NearAnchor(HostPoint& point, const HostPoint& anchor, double tolerance);

/// Have both handles of the piece no length?  Asks the host whether points are equal.
bool IsStraight(const HostPathSegment& first, const HostPathSegment& second);

/// Is the point within the tolerance of the piece?  `curves` 0 leaves out curved pieces other than
/// arcs.
bool NearSegment(HostPoint& point, const HostPathSegment& first, const HostPathSegment& second,
                 double tolerance, int16_t curves);

/// Does the piece fit a circular arc?  On failure the centre and radius mean nothing.  Pieces whose
/// tangents at the ends are both horizontal or both vertical are never arcs.
bool ArcOfSegment(const HostPathSegment& first, const HostPathSegment& second, HostPoint& center,
                  double& radius);

/// Is the point near the chord of the two anchors?  Only one coordinate of the point moves, y on lines up
/// to slope 0.5 and x on steeper ones, so that it may leave the chord lengthwise by up to the tolerance.
bool NearLine(HostPoint& point, const HostPathSegment& first, const HostPathSegment& second,
              double tolerance);

/// Is the point near the curve?  A hit moves it onto the arc, or onto the first chord within reach.
bool NearCurve(HostPoint& point, const HostPathSegment& first, const HostPathSegment& second,
               double tolerance, int16_t curves);

/// Is the point less than the tolerance away from the chord?  It becomes the nearest point of the chord.
bool ProjectOntoChord(HostPoint& point, const HostPoint& a, const HostPoint& b, double tolerance);

/// Do the normals at the two ends meet at a point about equally far from both ends?  The radius is the mean
/// of the two distances.  On failure the centre and radius mean nothing.
bool CircleThroughEnds(const HostPathSegment& first, const HostPathSegment& second, HostPoint& center,
                       double& radius);
