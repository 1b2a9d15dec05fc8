#include "plugin/capture/post_art.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <vector>

#include "plugin/capture/art_tags.h"
#include "plugin/capture/art_walk.h"
#include "plugin/capture/custom_colors.h"
#include "plugin/capture/mesh_capture.h"
#include "plugin/capture/path_capture.h"
#include "plugin/capture/pattern_capture.h"
#include "plugin/capture/placed_capture.h"
#include "plugin/capture/preview.h"
#include "plugin/capture/raster_capture.h"
#include "plugin/capture/text_capture.h"
#include "plugin/frame/globals.h"
#include "plugin/objects/conversions.h"
#include "plugin/objects/object_stream.h"
#include "plugin/store/clock_1904.h"
#include "plugin/store/record.h"
#include "plugin/store/record_layout.h"
#include "plugin/store/trace.h"

namespace {

constexpr int32_t kBracketDepth = 1024; // art this deep and deeper is captured without brackets

/// How many styles and plug-ins deep a walk follows art that isn't in the tree.  A host whose produced art
/// leads back to itself would keep a walk busy for ever.
constexpr int32_t kProducedDepth = 1024;

/// A container whose members are being captured.
struct OpenArt {
    ArtHandle art;       ///< whose tags follow the closing note
    ArtHandle next;      ///< the member to capture next; none: all are done
    int32_t depth;       ///< of the members
    const char* closing; ///< null: no brackets and no tags
    bool layerTitle;     ///< the tags include the layer's title
    bool produced;       ///< the one member was produced by a style or a plug-in
    int16_t captureAll;  ///< what it was outside
};

/// One walk over a tree.  The containers on the way down lie here and not on the stack, so that no depth of
/// nesting is too much.
struct CaptureWalk {
    HostPoint origin{};
    std::vector<OpenArt> open;
    int32_t producedDepth = 0;
    HandleOwner object; ///< the path object in the making, all zeros between two paths
    bool outOfMemory = false;
};

HostError RanOutOfMemory(CaptureWalk& walk) {
    walk.outOfMemory = true;
    return kHostOutOfMemory;
}

bool InScope(ArtHandle art) {
    return globals->captureAll || IsSelected(art);
}

void Note(CaptureWalk& walk, const char* text) {
    if (AddNote(text)) walk.outOfMemory = true;
}

void OpenMembers(CaptureWalk& walk, ArtHandle art, int32_t depth, const char* closing, bool layerTitle) {
    walk.open.push_back({art, FirstChild(art), depth + 1, closing, layerTitle, false, globals->captureAll});
}

/// Captures `produced`, all of it, in the place of `art`.
void OpenProduced(CaptureWalk& walk, ArtHandle art, ArtHandle produced, int32_t depth, const char* closing) {
    walk.open.push_back({art, produced, depth, closing, false, true, globals->captureAll});
    ++walk.producedDepth;
    if (!globals->captureAll) globals->captureAll = 1;
}

void Close(CaptureWalk& walk) {
    const OpenArt closed = walk.open.back();
    walk.open.pop_back();
    if (closed.closing) Note(walk, closed.closing);
    if (closed.produced) {
        --walk.producedDepth;
        globals->captureAll = closed.captureAll;
    }
    if (closed.closing) WriteArtTags(closed.art, closed.layerTitle);
}

void OpenGroupBracket(CaptureWalk& walk, ArtHandle group) {
    char text[64] = "GroupArt /";
    if (IsClipped(group)) std::strcat(text, " Clipped=TRUE");
    double real = 1.0;
    if (BlendStyleSuite().GetOpacity(group, &real)) real = 1.0;
    const auto opacity = static_cast<float>(real);
    if (opacity < 0.99 && opacity >= 0) {
        const size_t used = std::strlen(text);
        std::snprintf(text + used, sizeof text - used, " Opacity=%2.2d",
                      static_cast<int>(opacity * 100 + 0.5));
    }
    Note(walk, text);
}

// A layer's own group has a bracket only where its title is to go with it.
HostError CaptureGroup(CaptureWalk& walk, ArtHandle group, int32_t depth) {
    const bool layerTitle = !globals->captureAll && depth == 0 && globals->layerOption && IsSelected(group);
    const bool bracket = layerTitle || (depth > 0 && depth < kBracketDepth && InScope(group));
    if (bracket) OpenGroupBracket(walk, group);
    OpenMembers(walk, group, depth, bracket ? "/ GroupArt" : nullptr, layerTitle);
    return kHostNoError;
}

// Members count by themselves, whether or not the compound path does.
HostError CaptureCompoundPath(CaptureWalk& walk, ArtHandle compound, int32_t depth) {
    const bool bracket = depth < kBracketDepth && InScope(compound);
    if (bracket) Note(walk, "CompoundPathArt /");
    OpenMembers(walk, compound, depth, bracket ? "/ CompoundPathArt" : nullptr, false);
    return kHostNoError;
}

/// The art that the path's style draws in its place; none if the path is to be captured as it is, which goes
/// for all paths that aren't fully opaque.
ArtHandle ProducedByStyle(const CaptureWalk& walk, ArtHandle path) {
    ArtHandle styled = nullptr;
    double opacity = 0;
    if (walk.producedDepth >= kProducedDepth) return nullptr;
    if (ArtStyleSuite().GetStyledArt(path, &styled) || BlendStyleSuite().GetOpacity(path, &opacity)) {
        return nullptr;
    }
    return opacity == 1.0 && styled != path ? styled : nullptr;
}

HostError CapturePath(CaptureWalk& walk, ArtHandle path, int32_t depth) {
    if (IsGuide(path) || !InScope(path)) return kHostNoError;
    if (const ArtHandle styled = ProducedByStyle(walk, path)) {
        Note(walk, "StyledArt /");
        OpenProduced(walk, path, styled, depth + 1, "/ StyledArt");
        return kHostNoError;
    }
    MemoryHandle& object = walk.object.get();
    if (!object) object = NewHandle(kOneSegmentPathBytes, kSmallGrain);
    if (!object) return RanOutOfMemory(walk);
    const HostError error = PostArtPathProcess(path, object, &walk.origin);

    AidbObjectHeader header;
    std::memcpy(&header, BlockBytes(object), sizeof header);
    if (header.size == 0) return error == kHostOutOfMemory ? RanOutOfMemory(walk) : error;
    if (AddAIDBObj(globals->curRecord, BlockBytes(object))) walk.outOfMemory = true;
    std::memset(BlockBytes(object), 0, header.size);
    WriteArtTags(path, false);
    return error;
}

bool CountsAlone(ArtHandle art) {
    return !globals->captureAll && IsSelected(art);
}

HostError CapturePlaced(CaptureWalk& walk, ArtHandle placed, int32_t) {
    if (CountsAlone(placed)) PostArtPlacedProcess(placed, &walk.origin);
    return kHostNoError;
}

HostError CaptureEmbeddedRaster(CaptureWalk& walk, ArtHandle raster) {
    HandleOwner object(NewHandle(kRasterBaseBytes, kRecordGrain));
    if (!object.get()) return RanOutOfMemory(walk);
    const HostError error = PostArtRasterProcess(raster, object.get(), &walk.origin);
    if (error) return error == kHostOutOfMemory ? RanOutOfMemory(walk) : error;
    if (AddAIDBObj(globals->curRecord, object.bytes())) walk.outOfMemory = true;
    return kHostNoError;
}

HostError CaptureRaster(CaptureWalk& walk, ArtHandle raster, int32_t) {
    if (!CountsAlone(raster)) return kHostNoError;
    int32_t inDocument = 0;
    const HostError error = RasterSuite().IsDataInDocument(raster, &inDocument);
    if (error) return error;
    if (inDocument) return CaptureEmbeddedRaster(walk, raster);
    PostArtLinkedRasterProcess(raster, &walk.origin);
    return kHostNoError;
}

HostError CaptureMesh(CaptureWalk& walk, ArtHandle mesh, int32_t) {
    if (!InScope(mesh)) return kHostNoError;
    HandleOwner object;
    const HostError error = PostArtMeshProcess(mesh, object.get(), walk.origin);
    if (error == kHostOutOfMemory) return RanOutOfMemory(walk);
    if (object.get() && AddAIDBObj(globals->curRecord, object.bytes())) walk.outOfMemory = true;
    return error;
}

HostError CaptureText(CaptureWalk& walk, ArtHandle frame, int32_t) {
    if (!InScope(frame)) return kHostNoError;
    HandleOwner object(NewHandle(kTextBaseBytes, kSmallGrain));
    if (!object.get()) return RanOutOfMemory(walk);
    const HostError error = PostArtTextProcess(frame, object.get(), &walk.origin);
    if (error == kHostOutOfMemory) return RanOutOfMemory(walk);
    if (!error && AddAIDBObj(globals->curRecord, object.bytes())) walk.outOfMemory = true;
    return error;
}

// What the plug-in drew stands in the record like any other art.
HostError CapturePluginArt(CaptureWalk& walk, ArtHandle pluginArt, int32_t depth) {
    if (depth >= kBracketDepth || walk.producedDepth >= kProducedDepth || !InScope(pluginArt)) {
        return kHostNoError;
    }
    ArtHandle result = nullptr;
    const HostError error = PluginGroupSuite().GetResultArt(pluginArt, &result);
    if (!error && result) OpenProduced(walk, pluginArt, result, depth, nullptr);
    return error;
}

constexpr struct {
    int32_t kind;
    HostError (*capture)(CaptureWalk& walk, ArtHandle art, int32_t depth);
} kCaptures[] = {
    {kArtGroup, CaptureGroup},   {kArtPath, CapturePath},      {kArtCompoundPath, CaptureCompoundPath},
    {kArtPlaced, CapturePlaced}, {kArtRaster, CaptureRaster},  {kArtPlugin, CapturePluginArt},
    {kArtMesh, CaptureMesh},     {kArtTextFrame, CaptureText},
};

HostError CaptureOne(CaptureWalk& walk, ArtHandle art, int32_t depth) {
    const TraceScope trace("PostArtProcess");
    int32_t kind = 0;
    const HostError error = ArtSuite().GetArtKind(art, &kind);
    if (error) return error;
    for (const auto& row : kCaptures) {
        if (row.kind == kind) return row.capture(walk, art, depth);
    }
    return kHostNoError;
}

void FillHeader(MemoryHandle record, const HostRect& selection) {
    RecordHeader header;
    std::memcpy(&header, BlockBytes(record), sizeof header);
    header.boundsTop = HostRealToFixed(selection.top - selection.bottom);
    header.boundsRight = HostRealToFixed(selection.right - selection.left);
    header.created = header.modified = StampOfNewRecord();
    std::memcpy(BlockBytes(record), &header, sizeof header);
}

bool StartRecord(const HostRect& selection, MemoryHandle preview) {
    FreeHandle(globals->curRecord);
    FreeHandle(globals->sideObjects);
    globals->curRecordNo = -1;
    globals->curRecord = NewRecord();
    globals->sideObjects = NewRecord();
    if (!globals->curRecord || !globals->sideObjects) return false;
    FillHeader(globals->curRecord, selection);
    if (preview) {
        std::memcpy(BlockBytes(globals->curRecord) + kPreviewOffset, BlockBytes(preview), kPreviewBytes);
    }
    return true;
}

void ClearCaptureState() {
    globals->captureAll = 0;
    globals->patternCount = 0;
    globals->customCount = 0;
    std::memset(globals->customHandles, 0, sizeof globals->customHandles);
    globals->linkCount = 0;
    FreeHandle(globals->linkPaths);
    FreeHandle(globals->linkNames);
}

// A record that lacks art is none: better no record than one that lost some of it without a word.
HostError GiveUp() {
    FreeHandle(globals->curRecord);
    FreeHandle(globals->sideObjects);
    return kHostOutOfMemory;
}

} // namespace

HostError PostArtProcess(ArtHandle art, const HostPoint* origin, int32_t depth) {
    CaptureWalk walk;
    walk.origin = *origin;
    const HostError error = CaptureOne(walk, art, depth);
    while (!walk.open.empty()) {
        OpenArt& container = walk.open.back();
        const ArtHandle member = container.next;
        if (!member) {
            Close(walk);
            continue;
        }
        container.next = container.produced ? nullptr : NextSibling(member);
        CaptureOne(walk, member, container.depth);
    }
    return walk.outOfMemory ? kHostOutOfMemory : error;
}

namespace {

HostError CaptureRecord() {
    HostRect selection{};
    MeasureSelection(&selection, true);
    HandleOwner preview;
    CreatePreviewImage(preview.get(), selection);
    MeasureSelection(&selection, false);
    const HostPoint origin{selection.left, selection.bottom};

    if (!StartRecord(selection, preview.get())) return GiveUp();
    ClearCaptureState();
    bool complete = true;
    const HostError error = ForEachLayerRoot([&](ArtHandle root) {
        const HostError walked = PostArtProcess(root, &origin, 0);
        complete = complete && walked != kHostOutOfMemory;
        return walked;
    });
    WriteCustomColorNotes();
    complete = complete && AppendPatternRuns(globals->curRecord, globals->sideObjects);
    if (!complete) return GiveUp();
    FreeHandle(globals->sideObjects);
    return error;
}

} // namespace

HostError AidbPostArt() {
    const TraceScope trace("AidbPostArt");
    try {
        return CaptureRecord();
    } catch (const std::bad_alloc&) {
        return GiveUp();
    }
}
