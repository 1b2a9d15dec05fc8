/// The searches of a drag once more: straight from their rules, over the stand-in host's own art, with one
/// recursion and no index, and counting which case of a crossing was met.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "workbench/document/document.h"

enum SnapCase {
    kNeighbourIgnored, // the second hit is the piece behind the first, met in their anchor
    kNeighbourCounts,  // the same away from the anchor
    kTwoPaths,         // the hits lie on different paths
    kClosingPiece,     // a hit is the piece that closes its path
    kBothVertical,
    kFirstVertical,
    kSecondVertical,
    kParallel,
    kLinesCross,
    kLinesCrossFarOff,
    kConcentric,
    kCirclesApart,
    kCircleInCircle, // beyond the far side: the root would be of a negative number
    kCirclesFirst,
    kCirclesSecond,
    kCirclesFarOff,
    kCurvesCross,
    kCurvesMiss,
    kVerticalBesideCircle,
    kVerticalFirst,
    kVerticalSecond,
    kLineBesideCircle,
    kLineFirst,
    kLineSecond,
    kLineCircleFarOff,
    kLineCrossesCurve,
    kLineMissesCurve,
    kBeyondNumbers, // a vertical line and one that is nearly so
    kSnapCases
};

class PlainSnap {
public:
    explicit PlainSnap(workbench::Document& document) : document_(document) {}

    void ToAnchor(HostPoint& point, int16_t& kind);
    void ToIntersection(HostPoint& point, int16_t& kind);
    void ToPath(HostPoint& point, int16_t& kind);
    void ToGrid(HostPoint& point, int16_t& kind);

    const std::array<int, kSnapCases>& counts() const { return counts_; }

private:
    using Segments = std::vector<HostPathSegment>;
    struct Found {
        const workbench::Art* art = nullptr;
        size_t index = 0;
        HostPathSegment first{}, second{};
    };

    template <typename Test>
    void Walk(int16_t& kind, Test test);
    template <typename Test>
    void Visit(const workbench::Art& art, int16_t& kind, Test test);

    void Intersect(const workbench::Art& art, HostPoint& point, int16_t& kind);
    bool Cross(HostPoint p, HostPoint& result);
    bool CrossLines(HostPoint p, HostPoint& result);
    bool CrossCircles(HostPoint c1, double r1, HostPoint c2, double r2, HostPoint p, HostPoint& result);
    bool CrossLineCircle(const Found& line, HostPoint c, double r, HostPoint p, HostPoint& result);
    bool CrossChords(const std::vector<HostPoint>& a, const std::vector<HostPoint>& b, HostPoint p,
                     HostPoint& result);
    void Count(SnapCase met) { ++counts_[met]; }

    workbench::Document& document_;
    Found hitA_, hitB_;
    std::array<int, kSnapCases> counts_{};
};
