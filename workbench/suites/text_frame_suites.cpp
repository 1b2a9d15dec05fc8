// AI Text Frame Suite and the text engine's frames over the front document.

#include <cmath>

#include "workbench/suites/art_places.h"
#include "workbench/suites/text_references.h"

namespace workbench {

namespace {

HostError GetKind(SuiteCall&, Of<TextFrameData> frame, int32_t& kind) {
    kind = frame.data.frameKind;
    return kHostNoError;
}

HostError GetOrientation(SuiteCall&, Of<TextFrameData> frame, int32_t& orientation) {
    orientation = frame.data.orientation;
    return kHostNoError;
}

HostError GetPointTextAnchor(SuiteCall& call, Of<TextFrameData> frame, HostPoint& anchor) {
    if (frame.data.frameKind != kPointText) return call.Fault(kHostBadArt, "text without an anchor");
    anchor = {frame.data.matrix.tx, frame.data.matrix.ty};
    return kHostNoError;
}

HostError GetTextRange(SuiteCall& call, Of<TextFrameData> frame, TextRangeRef& range) {
    const StoryRange shown = ShownRange(call.document(), frame.art);
    EngineTextRange made;
    made.story = frame.data.story;
    made.first = shown.first;
    made.end = shown.end;
    range = LendReference(call, std::move(made));
    return kHostNoError;
}

HostError GetTextFrame(SuiteCall& call, Of<TextFrameData> frame, TextFrameRef& textFrame) {
    EngineTextFrame made;
    made.frame = frame.art.handle;
    textFrame = LendReference(call, made);
    return kHostNoError;
}

HostError GetPath(SuiteCall& call, Of<TextFrameData> frame, ArtHandle& path) {
    path = call.document().Find(frame.data.path) ? frame.data.path : nullptr;
    return kHostNoError;
}

HostError IsPartOfLinkedText(SuiteCall&, Of<TextFrameData> frame, int32_t& linked) {
    linked = frame.data.story->frames.size() > 1 ? 1 : 0;
    return kHostNoError;
}

// New frames

struct FramePlace {
    int32_t paintOrder;
    Art* prep;
    int32_t orientation;
};

HostError MakeFrame(SuiteCall& call, const FramePlace& place, int32_t kind, Art** made) {
    if (const HostError error = NeedDocument(call)) return error;
    if (const HostError error = CheckPaintOrder(call, place.paintOrder, place.prep)) return error;
    if (place.orientation != kHorizontalText && place.orientation != kVerticalText) return kHostBadParameter;
    const HostError error = call.document().NewArt(kArtTextFrame, place.paintOrder, place.prep, made);
    if (error) return Placed(call, error, place.paintOrder, place.prep);
    auto& data = std::get<TextFrameData>((*made)->data);
    data.frameKind = kind;
    data.orientation = place.orientation;
    return kHostNoError;
}

HostError NewPointText(SuiteCall& call, int32_t paintOrder, Art* prep, int32_t orientation,
                       const HostPoint& anchor, ArtHandle& frame) {
    if (!std::isfinite(anchor.x) || !std::isfinite(anchor.y)) return kHostBadParameter;
    Art* made = nullptr;
    if (const HostError error = MakeFrame(call, {paintOrder, prep, orientation}, kPointText, &made))
        return error;
    auto& data = std::get<TextFrameData>(made->data);
    data.matrix.tx = anchor.x;
    data.matrix.ty = anchor.y;
    frame = made->handle;
    return kHostNoError;
}

/// Stored data can lack a path, so that none is refused without a fault.
HostError CheckFramePath(SuiteCall& call, const Art* path, const Art* prep) {
    if (!path) return kHostBadParameter;
    if (!path->path()) return call.Fault(kHostBadArt, "a frame's path that is none");
    const Layer* layer = call.document().LayerOf(*path);
    if (!layer) return call.Fault(kHostBadPlace, "a path that is no part of the tree");
    if (path == prep) return call.Fault(kHostBadPlace, "a frame beside its own path");
    return Document::CanChange(layer) ? kHostNoError : kHostBadPlace;
}

HostError NewFrameWithPath(SuiteCall& call, const FramePlace& place, int32_t kind, Art* path, const Art* base,
                           int32_t append, ArtHandle& frame) {
    if (base || append) return call.Fault(kHostBadParameter, "a frame that is linked when it is made");
    if (const HostError error = NeedDocument(call)) return error;
    if (const HostError error = CheckFramePath(call, path, place.prep)) return error;
    Art* made = nullptr;
    if (const HostError error = MakeFrame(call, place, kind, &made)) return error;
    call.document().Select(*path, false);
    call.document().DetachArt(*path);
    std::get<TextFrameData>(made->data).path = path->handle;
    frame = made->handle;
    return kHostNoError;
}

HostError NewAreaText(SuiteCall& call, int32_t paintOrder, Art* prep, int32_t orientation, Art* path,
                      Art* base, int32_t append, ArtHandle& frame) {
    return NewFrameWithPath(call, {paintOrder, prep, orientation}, kAreaText, path, base, append, frame);
}

HostError NewTextOnPath(SuiteCall& call, int32_t paintOrder, Art* prep, int32_t orientation, Art* path,
                        double start, double end, Art* base, int32_t append, ArtHandle& frame) {
    if (!std::isfinite(start) || !std::isfinite(end)) return kHostBadParameter;
    const HostError error =
        NewFrameWithPath(call, {paintOrder, prep, orientation}, kPathText, path, base, append, frame);
    if (error) return error;
    std::get<TextFrameData>(call.document().Find(frame)->data).pathStart = start;
    return kHostNoError;
}

// ATE TextFrame Suite

HostError GetMatrix(SuiteCall& call, EngineTextFrame& reference, HostMatrix& matrix) {
    Art* art = call.host().document ? call.document().Find(reference.frame) : nullptr;
    auto* data = art ? std::get_if<TextFrameData>(&art->data) : nullptr;
    if (!data) return call.Fault(kHostBadHandle, "a text frame whose art is gone");
    const HostMatrix& m = data->matrix;
    matrix = {m.a, -m.b, -m.c, m.d, m.tx, -m.ty};
    return kHostNoError;
}

} // namespace

const void* TextFrameSuiteTable() {
    static constexpr AITextFrameSuite table{
        Entry<"AI Text Frame Suite", "GetKind", GetKind>::Run,
        Entry<"AI Text Frame Suite", "GetOrientation", GetOrientation>::Run,
        Entry<"AI Text Frame Suite", "GetPointTextAnchor", GetPointTextAnchor>::Run,
        Entry<"AI Text Frame Suite", "GetTextRange", GetTextRange>::Run,
        Entry<"AI Text Frame Suite", "GetTextFrame", GetTextFrame>::Run,
        Entry<"AI Text Frame Suite", "GetPath", GetPath>::Run,
        Entry<"AI Text Frame Suite", "IsPartOfLinkedText", IsPartOfLinkedText>::Run,
        Entry<"AI Text Frame Suite", "NewPointText", NewPointText>::Run,
        Entry<"AI Text Frame Suite", "NewAreaText", NewAreaText>::Run,
        Entry<"AI Text Frame Suite", "NewTextOnPath", NewTextOnPath>::Run,
    };
    return &table;
}

const void* EngineTextFrameSuiteTable() {
    static constexpr ATETextFrameSuite table{
        Entry<"ATE TextFrame Suite", "AddRef", AddReference<EngineTextFrame>>::Run,
        Entry<"ATE TextFrame Suite", "Release", ReleaseReference<EngineTextFrame>, EntryKind::kDisposal>::Run,
        Entry<"ATE TextFrame Suite", "GetMatrix", GetMatrix>::Run,
    };
    return &table;
}

} // namespace workbench
