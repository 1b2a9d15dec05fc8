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

HostError TestEntry(Search& search, const IndexedPath& path, int32_t number) {
    Piece piece;
    if (const HostError error = PathSuite().GetPathSegments(path.art, number, 1, &piece.first)) return error;
    if (search.wanted == kSnapAnchor) {
        TestAnchor(search, piece.first);
        return kHostNoError;
    }
    const bool last = number + 1 == path.segmentCount;
    if (last && !path.closed) return kHostNoError;
    const int32_t next = last ? 0 : number + 1;
    if (const HostError error = PathSuite().GetPathSegments(path.art, next, 1, &piece.second)) return error;
    TestPiece(search, path.art, number, next, piece);
    return kHostNoError;
}

HostError SearchIndex(Search& search, SnapIndex& index) {
    const IndexedPath* path = nullptr;
    bool inBounds = false;
    uint32_t entry = 0;
    StartQuery(index, search.point, search.tolerance, 0);
    while (!search.over && NextEntry(index, entry)) {
        const IndexedPath& owner = PathOfEntry(index, entry);
        if (&owner != path) {
            // A walk asks once, when it comes to the path: a move within the path changes nothing.
            path = &owner;
            inBounds = InBoundsWithTolerance(search.point, path->bounds, search.tolerance);
        }
        if (!inBounds) continue;
        const HostPoint before = search.point;
        const int32_t number = static_cast<int32_t>(entry - path->firstEntry);
        if (const HostError error = TestEntry(search, *path, number)) return error;
        if (search.point.x != before.x || search.point.y != before.y) {
            StartQuery(index, search.point, search.tolerance, entry + 1);
        }
    }
    return kHostNoError;
}

HostError Snap(SnapKind wanted, HostPoint& point, int16_t& kind) {
    const double tolerance = PullTolerance();
    if (kind != kSnapNone || !(tolerance > 0.0)) return kHostNoError;
    Search search{wanted, point, kind, tolerance, {}, {}, false};
    SnapIndex* index = globals->snapIndex;
    if (index && index->state == IndexState::kNotMade) MakeSnapIndex(*index);
    return index && index->state == IndexState::kMade ? SearchIndex(search, *index) : SearchDocument(search);
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
