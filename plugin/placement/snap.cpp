#include "plugin/placement/snap.h"

#include <cmath>
#include <new>

#include "plugin/frame/globals.h"
#include "plugin/host/suites.h"
#include "plugin/placement/crossing.h"
#include "plugin/placement/geometry.h"
#include "plugin/placement/snap_index.h"
#include "plugin/placement/visible_paths.h"

namespace {

/// A piece that an intersection search has found.
struct Hit {
    ArtHandle art; // none: nothing found yet
    int32_t index; // of the piece's second segment, 0 for the piece that closes the path
    Piece piece;
};

/// One search under way.
struct Search {
    SnapKind wanted;
    HostPoint& point;
    int16_t& kind;
    double tolerance;
    Hit hitA, hitB;
    bool over;
};

void Succeed(Search& search) {
    search.kind = search.wanted;
    search.over = true;
}

void TestAnchor(Search& search, const HostPathSegment& segment) {
    if (NearAnchor(search.point, segment.anchor, search.tolerance)) Succeed(search);
}

/// Do the first hit and the piece behind it merely meet in their common anchor?
bool IsNeighbour(Search& search, ArtHandle art, int32_t previousIndex, const Piece& piece) {
    return search.hitA.art == art && search.hitA.index == previousIndex &&
           NearAnchor(search.point, piece.first.anchor, search.tolerance);
}

/// `previousIndex` and `index` are the numbers of the piece's segments.
void TestPiece(Search& search, ArtHandle art, int32_t previousIndex, int32_t index, const Piece& piece) {
    if (!NearSegment(search.point, piece.first, piece.second, search.tolerance, 1)) return;
    if (search.wanted == kSnapPath) {
        Succeed(search);
    } else if (!search.hitA.art) {
        search.hitA = {art, index, piece};
    } else if (!IsNeighbour(search, art, previousIndex, piece)) {
        // No third piece is looked at, whether these two cross or not.
        search.hitB = {art, index, piece};
        search.over = true;
        if (CrossPieces(search.hitA.piece, search.hitB.piece, search.point, search.tolerance, search.point))
            Succeed(search);
    }
}

// By walking the document

HostError TestAnchors(Search& search, ArtHandle path, int32_t count) {
    for (int32_t i = 0; i < count && !search.over; ++i) {
        HostPathSegment segment;
        if (const HostError error = PathSuite().GetPathSegments(path, i, 1, &segment)) return error;
        TestAnchor(search, segment);
    }
    return kHostNoError;
}

HostError TestPieces(Search& search, ArtHandle path, int32_t count) {
    HostPathSegment start;
    Piece piece;
    if (const HostError error = PathSuite().GetPathSegments(path, 0, 1, &start)) return error;
    piece.second = start;
    for (int32_t i = 1; i < count; ++i) {
        piece.first = piece.second;
        if (const HostError error = PathSuite().GetPathSegments(path, i, 1, &piece.second)) return error;
        TestPiece(search, path, i - 1, i, piece);
        if (search.over) return kHostNoError;
    }
    int32_t closed = 0;
    if (const HostError error = PathSuite().GetPathClosed(path, &closed)) return error;
    if (closed) TestPiece(search, path, count - 1, 0, {piece.second, start});
    return kHostNoError;
}

HostError TestPath(Search& search, ArtHandle path) {
    HostRect bounds{};
    int32_t count = 0;
    if (const HostError error = ArtSuite().GetArtBounds(path, &bounds)) return error;
    if (!InBoundsWithTolerance(search.point, bounds, search.tolerance)) return kHostNoError;
    if (const HostError error = PathSuite().GetPathSegmentCount(path, &count)) return error;
    if (count < 1) return kHostNoError;
    return search.wanted == kSnapAnchor ? TestAnchors(search, path, count) : TestPieces(search, path, count);
}

HostError SearchDocument(Search& search) {
    VisiblePaths walk{};
    while (!search.over) {
        ArtHandle path = nullptr;
        if (const HostError error = NextVisiblePath(walk, path)) return error;
        if (!path) break;
        if (const HostError error = TestPath(search, path)) return error;
    }
    return kHostNoError;
}

// By asking the index

void TestItem(Search& search, const SnapIndex& index, const IndexItem& item) {
    if (search.wanted == kSnapAnchor) {
        TestAnchor(search, index.segments[item.segment]);
        return;
    }
    const IndexedPiece piece = PieceOf(index, item);
    TestPiece(search, index.paths[item.path].art, static_cast<int32_t>(piece.firstNumber),
              static_cast<int32_t>(piece.secondNumber), {piece.first, piece.second});
}

/// False: the index has failed, and nothing is known.
bool SearchIndex(Search& search, SnapIndex& index) {
    const IndexedThing thing = search.wanted == kSnapAnchor ? kIndexedAnchors : kIndexedPieces;
    if (!StartQuery(index, thing, search.point)) return false;
    uint32_t path = kWholePath; // none yet
    bool inBounds = false;
    IndexItem item;
    while (!search.over && NextItem(index, item)) {
        if (item.path != path) {
            // A walk asks once, when it comes to the path: a move within the path changes nothing.
            path = item.path;
            inBounds = InBoundsWithTolerance(search.point, index.paths[path].bounds, search.tolerance);
        }
        if (!inBounds) continue;
        const HostPoint before = search.point;
        TestItem(search, index, item);
        const bool moved = search.point.x != before.x || search.point.y != before.y;
        if (moved && !search.over && !ContinueQuery(index, item, search.point)) return false;
    }
    return true;
}

/// The index of the drag, if there is one for this pull.
SnapIndex* IndexFor(double tolerance) {
    SnapIndex* index = globals->snapIndex;
    if (!index || index->state == IndexState::kFailed) return nullptr;
    if (index->state == IndexState::kMade && index->pull == tolerance) return index;
    return MakeSnapIndex(*index, tolerance) ? index : nullptr;
}

HostError Snap(SnapKind wanted, HostPoint& point, int16_t& kind) {
    const double tolerance = PullTolerance();
    if (kind != kSnapNone || !(tolerance > 0.0)) return kHostNoError;
    if (SnapIndex* index = IndexFor(tolerance)) {
        const HostPoint start = point;
        Search search{wanted, point, kind, tolerance, {}, {}, false};
        if (SearchIndex(search, *index)) return kHostNoError;
        point = start;
    }
    Search search{wanted, point, kind, tolerance, {}, {}, false};
    return SearchDocument(search);
}

double SnapToSpacing(double coordinate, double spacing) {
    // What rounds to a 32-bit integer.
    constexpr double lowest = -2147483648.5, highest = 2147483647.5;
    if (!(spacing > 0.0) || !std::isfinite(spacing)) return coordinate;
    const double lines = coordinate / spacing;
    if (!(lines > lowest && lines < highest)) return coordinate;
    return static_cast<float>(RoundHalfAway(lines) * spacing);
}

} // namespace

HostError SnapToAnchor(HostPoint& point, int16_t& kind) {
    return Snap(kSnapAnchor, point, kind);
}

HostError SnapToIntersection(HostPoint& point, int16_t& kind) {
    return Snap(kSnapIntersection, point, kind);
}

HostError SnapToPath(HostPoint& point, int16_t& kind) {
    return Snap(kSnapPath, point, kind);
}

void SnapToGrid(HostPoint& point) {
    point = {SnapToSpacing(point.x, globals->flGrWidth), SnapToSpacing(point.y, globals->flGrHeight)};
}

Snapping::Snapping() : index_(new (std::nothrow) SnapIndex), outer_(globals->snapIndex) {
    globals->snapIndex = index_.get();
}

Snapping::~Snapping() {
    globals->snapIndex = outer_;
}
