/// A frame's path as lines take it: an area to fill, or a way to go along.
#pragma once

#include <vector>

#include "workbench/document/art.h"
#include "workbench/text/lines.h"

namespace workbench {

/// A path as corners; `matrix` maps it.  Curves become short pieces; paths of very many segments become
/// straight ones, so that the corners stay below a few thousand.
/// @param starts  if given, the index of the corner that each segment's anchor became
std::vector<HostPoint> CornersOf(const PathData& path, const HostMatrix& matrix,
                                 std::vector<size_t>* starts = nullptr);

/// The inside of a path, by the even-odd rule; a line takes the widest stretch that is inside at its top, its
/// bottom and between.
class AreaRoom : public LineRoom {
public:
    explicit AreaRoom(std::vector<HostPoint> corners);
    bool At(double top, double bottom, Room* room) const override;
    double top() const override { return top_; }
    double bottom() const override { return bottom_; }

private:
    std::vector<Room> Inside(double y) const;
    std::vector<HostPoint> corners_;
    double top_ = 0, bottom_ = 0;
};

/// A way with its length.
class Way {
public:
    Way(const PathData& path, const HostMatrix& matrix);
    double length() const { return distances_.empty() ? 0 : distances_.back(); }
    /// Of a place counted in segments from the path's start.
    double DistanceAt(double segments) const;
    double SegmentsAt(double distance) const; ///< the other way
    /// The point at a distance and the direction there; the direction has a length of 1.
    void At(double distance, HostPoint* point, HostPoint* direction) const;

private:
    std::vector<size_t> starts_; // made with the corners, so before them
    std::vector<HostPoint> corners_;
    std::vector<double> distances_; ///< of each corner from the start
};

} // namespace workbench
