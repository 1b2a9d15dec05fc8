#include "plugin/rebuild/path_rebuild.h"

#include "plugin/host/suites.h"
#include "plugin/objects/conversions.h"
#include "plugin/objects/object_stream.h"
#include "plugin/rebuild/art_paint.h"
#include "plugin/rebuild/paint_rebuild.h"
#include "plugin/rebuild/tag_rebuild.h"

static void Move(HostPoint* point, const HostPoint& offset) {
    point->x += offset.x;
    point->y += offset.y;
}

static void SetSegments(const LoadState& load, ArtHandle path, std::span<const AidbSegment> stored) {
    const HostPoint offset = load.inPattern ? HostPoint{0, 0} : PlacementOffset(load);
    int32_t index = 0;
    for (const AidbSegment& one : stored) {
        HostPathSegment segment{};
        SegmentFromRecord(one, &segment);
        Move(&segment.anchor, offset);
        Move(&segment.in, offset);
        Move(&segment.out, offset);
        PathSuite().SetPathSegments(path, index++, 1, &segment);
    }
}

LoadStep LoadArtPathProcess(LoadState& load, std::span<uint8_t> object) {
    const AidbPathObject* stored = ViewAt<AidbPathObject>(object);
    if (!stored) return LoadStep::kGoOn;

    ArtHandle path = nullptr;
    if (NewLoadedArt(load, kArtPath, &path) != kHostNoError) {
        Beep();
        return LoadStep::kStop;
    }
    SetBlend(path, stored->header);
    ApplyPendingTags(path, load.inPattern ? LayerTitles::kIgnore : LayerTitles::kFollow);

    HostPathStyle style{};
    PathStyleFromRecord(stored->style, &style, &load.gradientSpot);
    RebuildPaints(load, &style, stored->block);
    load.lastResult = PathStyleSuite().SetPathStyle(path, &style);
    if (load.lastResult != kHostNoError) {
        Beep();
        return LoadStep::kStop;
    }
    SetSegments(load, path, PathSegments(object));
    PathSuite().SetPathClosed(path, stored->closed);
    return LoadStep::kGoOn;
}
