#include "plugin/capture/measure_selection.h"

#include "plugin/capture/art_walk.h"
#include "plugin/frame/globals.h"
#include "plugin/placement/geometry.h"
#include "plugin/store/record.h"
#include "plugin/store/trace.h"

namespace {

void Extend(HostRect& box, const HostPoint& point) {
    box.left = MinOf(box.left, point.x);
    box.right = MaxOf(box.right, point.x);
    box.top = MaxOf(box.top, point.y);
    box.bottom = MinOf(box.bottom, point.y);
}

bool SamePoint(const HostPoint& a, const HostPoint& b) {
    return a.x == b.x && a.y == b.y;
}

// The end of a curved piece isn't sampled: the next piece starts there.
void AddPiece(HostRect& box, const HostPathSegment& first, const HostPathSegment& second) {
    if (SamePoint(first.out, first.anchor) && SamePoint(second.in, second.anchor)) {
        Extend(box, first.anchor);
        Extend(box, second.anchor);
        return;
    }
    for (int step = 0; step < kCurveSteps; ++step) Extend(box, CurvePoint(first, second, step));
}

double ThroughFloat(double value) {
    return static_cast<double>(static_cast<float>(value));
}

void Merge(HostRect& whole, const HostRect& part) {
    if (whole.left == kNothingMeasured && whole.top == kNothingMeasured) {
        whole = part;
        return;
    }
    whole.left = MinOf(whole.left, part.left);
    whole.right = MaxOf(whole.right, part.right);
    whole.top = MaxOf(whole.top, part.top);
    whole.bottom = MinOf(whole.bottom, part.bottom);
}

bool HostBounds(ArtHandle art, HostRect* bounds) {
    return !ArtSuite().GetArtBounds(art, bounds);
}

// A path without segments lies nowhere: its bounds would draw the page's origin into the selection.
bool PathBounds(ArtHandle path, bool hostBounds, HostRect* bounds) {
    if (!hostBounds) return CurveBounds(path, bounds);
    int32_t count = 0;
    return !PathSuite().GetPathSegmentCount(path, &count) && count > 0 && HostBounds(path, bounds);
}

// Text in an area counts as large as its area, filled or not.
bool TextBounds(ArtHandle frame, HostRect* bounds) {
    int32_t kind = 0;
    if (TextFrameSuite().GetKind(frame, &kind) || kind != kTextFrameArea) return HostBounds(frame, bounds);
    ArtHandle path = nullptr;
    return !TextFrameSuite().GetPath(frame, &path) && path && HostBounds(path, bounds);
}

bool BoundsOf(ArtHandle art, int32_t kind, bool hostBounds, HostRect* bounds) {
    switch (kind) {
        case kArtPath:
            return !IsGuide(art) && IsSelected(art) && PathBounds(art, hostBounds, bounds);
        case kArtPlaced:
        case kArtRaster:
        case kArtPlugin:
        case kArtMesh:
            return IsSelected(art) && HostBounds(art, bounds);
        case kArtTextFrame:
            return IsSelected(art) && TextBounds(art, bounds);
        default:
            return false;
    }
}

} // namespace

bool CurveBounds(ArtHandle path, HostRect* bounds) {
    int32_t count = 0;
    int32_t closed = 0;
    HostPathSegment start{};
    if (PathSuite().GetPathSegmentCount(path, &count) || count < 1) return false;
    if (PathSuite().GetPathClosed(path, &closed) || PathSuite().GetPathSegments(path, 0, 1, &start)) {
        return false;
    }
    HostRect box{start.anchor.x, start.anchor.y, start.anchor.x, start.anchor.y};
    HostPathSegment last = start;
    for (int32_t index = 1; index < count; ++index) {
        HostPathSegment segment{};
        if (PathSuite().GetPathSegments(path, index, 1, &segment)) return false;
        AddPiece(box, last, segment);
        last = segment;
    }
    if (closed) AddPiece(box, last, start);
    *bounds = {ThroughFloat(box.left), ThroughFloat(box.top), ThroughFloat(box.right),
               ThroughFloat(box.bottom)};
    return true;
}

void MeasureSelection(HostRect* bounds, bool hostBounds) {
    const TraceScope trace("MeasureSelection");
    *bounds = {kNothingMeasured, kNothingMeasured, kNothingMeasured, kNothingMeasured};
    FreeHandle(globals->curRecord);
    globals->curRecord = NewRecord();

    const auto measure = [&](ArtHandle art, int32_t kind, int32_t) {
        HostRect part{};
        if (BoundsOf(art, kind, hostBounds, &part)) Merge(*bounds, part);
        return kind == kArtGroup || kind == kArtCompoundPath;
    };
    ForEachLayerRoot([&](ArtHandle root) { return WalkArt(root, 0, measure); });
}
