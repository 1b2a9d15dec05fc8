/// Path geometry: anchors with their handles, and how SVG writes them.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "suites/host_types.h"

namespace workbench {

struct Subpath {
    std::vector<HostPathSegment> segments;
    bool closed = false;
};
using Subpaths = std::vector<Subpath>;

/// Builds subpaths from drawing steps in any space.
///
/// A subpath that consists of nothing but its start is dropped.  When a curve or line comes back to the
/// start of a subpath that is then closed, the doubled anchor is taken as one.
class PathBuilder {
public:
    explicit PathBuilder(size_t mostSegments) : room_(mostSegments) {}
    void MoveTo(HostPoint point);
    void LineTo(HostPoint point);
    void CurveTo(HostPoint firstHandle, HostPoint secondHandle, HostPoint point);
    /// An elliptic arc by SVG's rules: radii that are too small grow, zero radii make a line.
    void ArcTo(double radiusX, double radiusY, double degrees, bool large, bool sweep, HostPoint point);
    void Close();
    HostPoint current() const { return current_; }
    bool overflow() const { return overflow_; } ///< more segments than allowed: the rest was dropped
    Subpaths Finish();

private:
    bool Begin();
    void Add(HostPoint point, HostPoint inHandle);
    Subpaths done_;
    Subpath open_;
    HostPoint start_{0, 0}, current_{0, 0};
    size_t room_;
    bool overflow_ = false;
};

/// Reads the `d` of a path: all commands, absolute and relative, in compact form.
/// @param damaged   set if there is a fault; what came before it is kept
/// @param overflow  set if there are more than `mostSegments`; the rest is missing
Subpaths ParsePathData(std::string_view text, size_t mostSegments, bool* damaged, bool* overflow);

/// Sets the corner flags: an anchor is smooth if both handles are out and lie on one line through it.
void SetCornerFlags(Subpaths& subpaths);

struct Box {
    double left = 0, top = 0, right = 0, bottom = 0; ///< top is the smaller y of the space it is in
    bool empty = true;
    void Add(HostPoint point);
    double width() const { return right - left; }
    double height() const { return bottom - top; }
};

/// The exact extent of the outlines as `matrix` maps them; handles that stick out don't count.
void AddExtent(const std::vector<HostPathSegment>& segments, bool closed, const HostMatrix& matrix, Box* box);
Box Extent(const Subpaths& subpaths);

/// Twice the signed area within the anchors and handles: which way round a subpath runs.
double SignedArea(const Subpath& subpath);
void Reverse(Subpath& subpath);

} // namespace workbench
