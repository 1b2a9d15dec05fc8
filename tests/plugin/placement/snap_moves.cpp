#include "tests/plugin/placement/snap_moves.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <sstream>
#include <utility>
#include <vector>

#include "plugin/frame/globals.h"
#include "plugin/placement/geometry.h"
#include "plugin/placement/snap.h"

using workbench::Art;
using workbench::PathData;

double Scribbler::Number() {
    constexpr double kWild[] = {0, -1e30, 1e30, 1e38, 3e200, std::numeric_limits<double>::quiet_NaN(), 1e-40};
    if (wild_ && Often(10)) return kWild[Below(7)];
    return Often(60) ? Below(side_) : Uniform(0, side_);
}

void Scribbler::Scribble(workbench::Document& document) {
    constexpr double kZooms[] = {1, 1, 4, 0.7, -1, 25};
    document.view().zoom = kZooms[Below(6)];
    const int kind = Below(16);
    wild_ = kind == 0;
    const bool page = kind < 3;
    side_ = page ? 300 : 24;
    Fill(document, document.LayerAt(0).root, (page ? 40 : 3) + Below(page ? 40 : 12), 3);
    if (Often(70)) return;
    workbench::Layer& above = document.InsertLayer(0, "above");
    above.visible = Often(50);
    above.locked = true;
    Fill(document, above.root, 3, 1);
}

void Scribbler::Fill(workbench::Document& document, Art* container, int members, int depth) {
    for (int i = 0; i < members; ++i) {
        if (depth > 0 && Often(20)) {
            const int32_t kind = Often(40) ? kArtCompoundPath : Often(80) ? kArtGroup : kArtPlugin;
            Fill(document, document.AppendArt(kind, container), 2, depth - 1);
        } else if (Often(3)) {
            document.AppendArt(kArtMesh, container);
        } else {
            Draw(*document.AppendArt(kArtPath, container)->path());
        }
    }
}

void Scribbler::Draw(PathData& path) {
    if (Often(35)) {
        DrawCircle(path);
        return;
    }
    if (wild_ && Often(20)) { // an upright line, or one so nearly so that they meet beyond all numbers
        const double x = Often(50) ? 1 : 0;
        for (const HostPoint& p : {HostPoint{x, Uniform(0, 12)}, HostPoint{x + 1e-40, Uniform(12, 24)}})
            path.segments.push_back({p, p, p, 1});
        return;
    }
    const int most = Often(5) ? 60 : 4;
    for (int i = Below(most) + (Often(90) ? 1 : 0); i > 0; --i) path.segments.push_back(Segment(path));
    path.closed = Often(50);
}

HostPathSegment Scribbler::Segment(const PathData& path) {
    HostPoint anchor{Number(), Number()};
    if (!path.segments.empty() && Often(40)) { // straight up or across
        const HostPoint last = path.segments.back().anchor;
        (Often(60) ? anchor.x : anchor.y) = Often(60) ? last.x : last.y;
    }
    HostPathSegment segment{anchor, anchor, anchor, 1};
    // Along an axis now and then: tangents that are level or upright.
    const auto handle = [&] {
        HostPoint end = Beside(anchor, side_ / 2.0);
        if (Often(25)) (Often(50) ? end.x : end.y) = Often(50) ? anchor.x : anchor.y;
        return end;
    };
    if (Often(30)) segment.out = handle();
    if (Often(30)) segment.in = handle();
    return segment;
}

/// Arcs of a circle, whole or open, sometimes turned; centres and radii often agree, and most are quarters.
void Scribbler::DrawCircle(PathData& path) {
    const int scale = side_ / 24;
    const HostPoint center{scale * (10.0 + Below(3) * (Often(50) ? 1 : 4)), scale * (10.0 + Below(3))};
    const double radius = Often(5) ? 1 : scale * (Often(50) ? 4 + Below(4) : Uniform(2, 9));
    const double turn = Often(50) ? 0 : Uniform(0, 7);
    const double sweep = Often(80) ? 1.5707963267948966 : Uniform(0.3, 3);
    // What the geometry takes for an arc, which for wide ones isn't the curve closest to it.
    const double length = radius * std::tan(sweep / 2) * (0.552277 + std::cos(sweep) / 8);
    const double handle = Often(90) ? length : -length;
    const int arcs = 2 + Below(4);
    for (int i = 0; i < arcs; ++i) {
        const double angle = turn + i * sweep;
        const double c = std::round(std::cos(angle) * 1e9) / 1e9;
        const double s = std::round(std::sin(angle) * 1e9) / 1e9;
        const double in = Often(95) ? handle : 2 * handle;
        const HostPoint anchor{center.x + radius * c, center.y + radius * s};
        path.segments.push_back({anchor,
                                 {anchor.x + in * s, anchor.y - in * c},
                                 {anchor.x - handle * s, anchor.y + handle * c},
                                 0});
    }
    path.closed = arcs == 4;
}

namespace {

struct Found {
    HostPoint point;
    int16_t kind;
};

bool Same(const Found& a, const Found& b) {
    const auto same = [](double x, double y) {
        return std::memcmp(&x, &y, sizeof x) == 0 || (std::isnan(x) && std::isnan(y));
    };
    return a.kind == b.kind && same(a.point.x, b.point.x) && same(a.point.y, b.point.y);
}

std::string TextOf(const Found& result) {
    std::ostringstream text;
    text.precision(17);
    text << "kind " << result.kind << " (" << result.point.x << ", " << result.point.y << ")";
    return text.str();
}

HostError ToGrid(HostPoint& point, int16_t& kind) {
    if (kind != kSnapNone) return kHostNoError;
    SnapToGrid(point);
    kind = kSnapGrid;
    return kHostNoError;
}

/// One move with the searches that `enabled` has bits for.
std::string Move(const HostPoint& from, int enabled, PlainSnap& plain) {
    using Search = HostError (*)(HostPoint&, int16_t&);
    constexpr auto kSearches = std::to_array<Search>({SnapToAnchor, SnapToIntersection, SnapToPath, ToGrid});
    constexpr auto kPlainly = std::to_array<void (PlainSnap::*)(HostPoint&, int16_t&)>(
        {&PlainSnap::ToAnchor, &PlainSnap::ToIntersection, &PlainSnap::ToPath, &PlainSnap::ToGrid});
    Found walked{from, kSnapNone}, indexed = walked, expected = walked;
    for (size_t i = 0; i < kSearches.size(); ++i) {
        if (!(enabled >> i & 1)) continue;
        if (expected.kind == kSnapNone) (plain.*kPlainly[i])(expected.point, expected.kind);
        kSearches[i](indexed.point, indexed.kind);
        SnapIndex* index = std::exchange(globals->snapIndex, nullptr);
        kSearches[i](walked.point, walked.kind);
        globals->snapIndex = index;
        if (!Same(walked, expected) || !Same(indexed, expected)) {
            return "search " + std::to_string(i) + " from " + TextOf({from, 0}) + ": plainly " +
                   TextOf(expected) + ", walked " + TextOf(walked) + ", by the index " + TextOf(indexed);
        }
    }
    return {};
}

std::vector<HostPoint> AnchorsOf(workbench::Document& document) {
    std::vector<HostPoint> anchors;
    for (size_t i = 0; i < document.LayerCount(); ++i) {
        workbench::ForEachArt(*document.LayerAt(i).root, [&](const Art& art) {
            if (!art.path()) return;
            for (const HostPathSegment& segment : art.path()->segments) anchors.push_back(segment.anchor);
        });
    }
    return anchors;
}

/// What all anchors but the wildest lie in.
HostRect PageOf(const std::vector<HostPoint>& anchors) {
    HostRect page{0, 1, 1, 0};
    for (const HostPoint& anchor : anchors) {
        if (!(std::fabs(anchor.x) + std::fabs(anchor.y) < 1e6)) continue;
        page.left = std::min(page.left, anchor.x);
        page.right = std::max(page.right, anchor.x);
        page.bottom = std::min(page.bottom, anchor.y);
        page.top = std::max(page.top, anchor.y);
    }
    return page;
}

} // namespace

std::string MakeMoves(workbench::Document& document, unsigned seed, int count, PlainSnap& plain) {
    Scribbler hand(seed + 1000000);
    const std::vector<HostPoint> anchors = AnchorsOf(document);
    const HostRect page = PageOf(anchors);
    const Snapping snapping;
    for (int i = 0; i < count; ++i) {
        // Not within one drag, but an index for another pull must not be asked.
        if (i == count / 2 && hand.Often(20)) document.view().zoom *= 2;
        const double tolerance = PullTolerance();
        HostPoint from{hand.Uniform(page.left - 5, page.right + 5),
                       hand.Uniform(page.bottom - 5, page.top + 5)};
        if (!anchors.empty() && hand.Often(30)) {
            from = anchors[static_cast<size_t>(hand.Below(static_cast<int>(anchors.size())))];
            from = hand.Often(50) ? hand.Beside(from, tolerance * 2) : HostPoint{from.x + tolerance, from.y};
        }
        const std::string difference = Move(from, hand.Often(50) ? 15 : 1 + hand.Below(15), plain);
        if (!difference.empty()) return difference;
    }
    return {};
}
