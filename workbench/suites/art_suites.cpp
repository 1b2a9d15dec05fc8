// The tables of suites/art.h over the front document.

#include "suites/art.h"

#include <algorithm>
#include <cmath>

#include "workbench/suites/art_places.h"
#include "workbench/suites/finite.h"

namespace workbench {

namespace {

HostError Put(int32_t& out, bool flag) {
    out = flag ? 1 : 0;
    return kHostNoError;
}

ArtHandle HandleOf(const Art* art) {
    return art ? art->handle : nullptr;
}

// AI Art Suite

HostError GetFirstArtOfLayer(SuiteCall&, Layer& layer, ArtHandle& art) {
    art = layer.root->handle;
    return kHostNoError;
}

HostError GetArtKind(SuiteCall&, Art& art, int32_t& kind) {
    kind = art.kind;
    return kHostNoError;
}

HostError GetArtAttributes(SuiteCall&, Art& art, int32_t mask, int32_t& attributes) {
    int32_t all = 0;
    if (art.selected) all |= kArtSelected;
    if (art.locked) all |= kArtLocked;
    if (art.hidden) all |= kArtHidden;
    attributes = all & mask;
    return kHostNoError;
}

HostError GetFirstChild(SuiteCall&, Art& art, ArtHandle& child) {
    child = HandleOf(art.firstChild);
    return kHostNoError;
}

HostError GetNextSibling(SuiteCall&, Art& art, ArtHandle& sibling) {
    sibling = HandleOf(art.below);
    return kHostNoError;
}

HostError GetParent(SuiteCall&, Art& art, ArtHandle& parent) {
    parent = HandleOf(art.parent);
    return kHostNoError;
}

HostError GetArtBounds(SuiteCall& call, Art& art, HostRect& bounds) {
    bounds = {};
    call.document().Bounds(art, &bounds);
    return kHostNoError;
}

HostError GetLayerOfArt(SuiteCall& call, Art& art, LayerHandle& layer) {
    const Layer* found = call.document().LayerOf(art);
    if (!found) return kHostNotFound;
    layer = found->handle;
    return kHostNoError;
}

HostError NewArt(SuiteCall& call, int32_t kind, int32_t paintOrder, Art* prep, ArtHandle& art) {
    if (const HostError error = NeedDocument(call)) return error;
    if (const HostError error = CheckPaintOrder(call, paintOrder, prep)) return error;
    Art* made = nullptr;
    const HostError error = call.document().NewArt(kind, paintOrder, prep, &made);
    if (error == kHostBadParameter) return call.Fault(error, "no such kind of art");
    if (error) return Placed(call, error, paintOrder, prep);
    art = made->handle;
    return kHostNoError;
}

/// Layers' roots, and art that belongs to a pattern or a style, aren't the plug-in's to move or remove.
HostError CheckMovable(SuiteCall& call, const Art& art) {
    if (art.layer) return call.Fault(kHostBadPlace, "a layer's root group");
    const Layer* layer = call.document().LayerOf(art);
    if (!layer) return call.Fault(kHostBadPlace, "art that is no part of the tree");
    return Document::CanChange(layer) ? kHostNoError : kHostBadPlace;
}

HostError DisposeArt(SuiteCall& call, Art& art) {
    if (const HostError error = CheckMovable(call, art)) return error;
    return call.document().DisposeArt(&art);
}

HostError ReorderArt(SuiteCall& call, Art& art, int32_t paintOrder, Art* prep) {
    if (const HostError error = CheckMovable(call, art)) return error;
    if (const HostError error = CheckPaintOrder(call, paintOrder, prep)) return error;
    return Placed(call, call.document().ReorderArt(&art, paintOrder, prep), paintOrder, prep);
}

// AI Group Suite

HostError GetGroupClipped(SuiteCall&, Of<GroupData> group, int32_t& clipped) {
    return Put(clipped, group.data.clipped);
}

HostError SetGroupClipped(SuiteCall&, Of<GroupData> group, int32_t clipped) {
    group.data.clipped = clipped != 0;
    return kHostNoError;
}

// AI Path Suite

HostError GetPathSegmentCount(SuiteCall&, Of<PathData> path, int32_t& count) {
    count = static_cast<int32_t>(path.data.segments.size());
    return kHostNoError;
}

bool IsRange(int32_t first, int32_t count, size_t size) {
    return first >= 0 && count >= 0 && static_cast<uint64_t>(first) + static_cast<uint64_t>(count) <= size;
}

HostError GetPathSegments(SuiteCall& call, Of<PathData> path, int32_t first, int32_t count,
                          HostPathSegment* segments) {
    if (!IsRange(first, count, path.data.segments.size())) {
        return call.FaultUnlessRefused(kHostBadParameter, "segments beyond the path");
    }
    if (!segments && count > 0) return call.Fault(kHostBadParameter, "a pointer is missing");
    std::copy_n(path.data.segments.begin() + first, count, segments);
    return kHostNoError;
}

HostError SetPathSegments(SuiteCall& call, Of<PathData> path, int32_t first, int32_t count,
                          const HostPathSegment* segments) {
    auto& all = path.data.segments;
    if (count < 0 || !IsRange(first, 0, all.size())) {
        return call.FaultUnlessRefused(kHostBadParameter, "segments that leave a gap in the path");
    }
    if (!segments && count > 0) return call.Fault(kHostBadParameter, "a pointer is missing");
    const bool finite = std::all_of(segments, segments + count, [](const HostPathSegment& segment) {
        return IsFinite(segment.anchor) && IsFinite(segment.in) && IsFinite(segment.out);
    });
    if (!finite) return kHostBadParameter;
    const size_t end = static_cast<size_t>(first) + static_cast<size_t>(count);
    if (end > all.size()) all.resize(end);
    std::copy_n(segments, count, all.begin() + first);
    return kHostNoError;
}

HostError DeletePathSegments(SuiteCall& call, Of<PathData> path, int32_t first, int32_t count) {
    auto& all = path.data.segments;
    if (!IsRange(first, count, all.size()))
        return call.FaultUnlessRefused(kHostBadParameter, "segments beyond the path");
    all.erase(all.begin() + first, all.begin() + first + count);
    return kHostNoError;
}

HostError GetPathClosed(SuiteCall&, Of<PathData> path, int32_t& closed) {
    return Put(closed, path.data.closed);
}

HostError SetPathClosed(SuiteCall&, Of<PathData> path, int32_t closed) {
    path.data.closed = closed != 0;
    return kHostNoError;
}

HostError GetPathGuide(SuiteCall&, Of<PathData> path, int32_t& guide) {
    return Put(guide, path.data.guide);
}

// AI Blend Style Suite.  Values out of range come from stored data and are refused without a fault.

template <auto field>
HostError GetBlendField(SuiteCall&, Art& art, int32_t& value) {
    value = art.blend.*field;
    return kHostNoError;
}

template <auto field, int32_t greatest>
HostError SetBlendField(SuiteCall&, Art& art, int32_t value) {
    if (value < 0 || value > greatest) return kHostBadParameter;
    art.blend.*field = value;
    return kHostNoError;
}

HostError GetOpacity(SuiteCall&, Art& art, double& opacity) {
    opacity = art.blend.opacity;
    return kHostNoError;
}

HostError SetOpacity(SuiteCall&, Art& art, double opacity) {
    if (!(opacity >= 0 && opacity <= 1)) return kHostBadParameter;
    art.blend.opacity = opacity;
    return kHostNoError;
}

// AI Art Style Suite

HostError GetStyledArt(SuiteCall& call, Art& art, ArtHandle& styled) {
    if (call.document().Find(art.styledArt))
        styled = art.styledArt;
    else
        styled = art.artStyle ? art.handle : nullptr;
    return kHostNoError;
}

HostError GetArtStyle(SuiteCall&, Art& art, ArtStyleHandle& style) {
    style = art.artStyle;
    return kHostNoError;
}

HostError NewStyleFromPathStyle(SuiteCall& call, const HostPathStyle& paint, int32_t, int32_t,
                                ArtStyleHandle& style) {
    if (const HostError error = NeedDocument(call)) return error;
    HostPathStyle own = paint;
    for (const auto& [painted, color] :
         {std::pair(paint.fillPaint, &own.fill), std::pair(paint.strokePaint, &own.stroke)}) {
        if (call.document().Knows(*color)) continue;
        if (painted) return call.Fault(kHostBadHandle, "a colour that names nothing");
        *color = GrayColor(0);
    }
    style = call.document().NewArtStyle(own).handle;
    return kHostNoError;
}

HostError SetArtStyle(SuiteCall&, Art& art, ArtStyle& style) {
    art.artStyle = style.handle;
    return kHostNoError;
}

HostError GetPaintAttributes(SuiteCall&, ArtStyle& style, HostPathStyle& paint) {
    paint = style.paint;
    return kHostNoError;
}

// AI Plugin Group Suite

constexpr int32_t kLongestPluginData = 0x1000000;

HostError GetResultArt(SuiteCall& call, Of<PluginArtData> plugin, ArtHandle& result) {
    result = HandleOf(call.document().Find(plugin.data.result));
    return kHostNoError;
}

HostError CountPluginGroups(SuiteCall& call, int32_t& count) {
    count = static_cast<int32_t>(call.host().pluginGroups.size());
    return kHostNoError;
}

HostError GetNthPluginGroup(SuiteCall& call, int32_t index, PluginGroupHandle& group) {
    const auto& groups = call.host().pluginGroups;
    if (!IsRange(index, 1, groups.size())) return call.Fault(kHostBadParameter, "no such plug-in group");
    group = groups[static_cast<size_t>(index)]->handle;
    return kHostNoError;
}

HostError GetPluginGroupName(SuiteCall& call, HostPluginGroup& group, const char*& name) {
    name = call.Lend(group.name);
    return kHostNoError;
}

HostError UsePluginGroup(SuiteCall&, Of<PluginArtData> plugin, HostPluginGroup& group) {
    plugin.data.groupName = group.name;
    return kHostNoError;
}

HostError SetEditArt(SuiteCall& call, Of<PluginArtData> plugin, Art& edit) {
    if (const HostError error = CheckMovable(call, edit)) return error;
    const HostError error = call.document().SetEditArt(plugin.art, edit);
    return error ? call.Fault(error, "not a group beside the plug-in art") : kHostNoError;
}

HostError SetVersion(SuiteCall&, Of<PluginArtData> plugin, int32_t major, int32_t minor) {
    plugin.data.major = major;
    plugin.data.minor = minor;
    return kHostNoError;
}

HostError SetDataSize(SuiteCall&, Of<PluginArtData> plugin, int32_t bytes) {
    if (bytes < 0 || bytes > kLongestPluginData) return kHostBadParameter;
    plugin.data.data.resize(static_cast<size_t>(bytes));
    return kHostNoError;
}

HostError SetDataRange(SuiteCall& call, Of<PluginArtData> plugin, const void* data, int32_t start,
                       int32_t bytes) {
    if (!IsRange(start, bytes, plugin.data.data.size())) {
        return call.FaultUnlessRefused(kHostBadParameter, "a range beyond the data");
    }
    if (!data && bytes > 0) return call.Fault(kHostBadParameter, "a pointer is missing");
    std::copy_n(static_cast<const uint8_t*>(data), bytes, plugin.data.data.begin() + start);
    return kHostNoError;
}

// AI Tag Suite

std::vector<Tag>::iterator FindTag(Art& art, const char* name) {
    return std::find_if(art.tags.begin(), art.tags.end(), [&](const Tag& tag) { return tag.name == name; });
}

HostError CountTags(SuiteCall&, Art& art, int32_t& count) {
    count = static_cast<int32_t>(art.tags.size());
    return kHostNoError;
}

HostError GetNthTagName(SuiteCall& call, Art& art, int32_t index, const char*& name) {
    if (!IsRange(index, 1, art.tags.size())) {
        return call.FaultUnlessRefused(kHostBadParameter, "no tag of this number");
    }
    name = call.Lend(art.tags[static_cast<size_t>(index)].name);
    return kHostNoError;
}

HostError GetTagType(SuiteCall& call, Art& art, Name name, const char*& type) {
    const auto tag = FindTag(art, name.text);
    if (tag == art.tags.end()) return kHostNotFound;
    type = call.Lend(tag->type);
    return kHostNoError;
}

HostError GetTagString(SuiteCall& call, Art& art, Name name, const char*& value) {
    const auto tag = FindTag(art, name.text);
    if (tag == art.tags.end() || tag->type != "string") return kHostNotFound;
    value = call.Lend(tag->value);
    return kHostNoError;
}

HostError SetTag(SuiteCall&, Art& art, Name name, Name type, Name value) {
    if (!*name.text) return kHostBadParameter;
    const Tag made{name.text, type.text, value.text};
    const auto tag = FindTag(art, name.text);
    if (tag == art.tags.end())
        art.tags.push_back(made);
    else
        *tag = made;
    return kHostNoError;
}

HostError RemoveTag(SuiteCall&, Art& art, Name name) {
    const auto tag = FindTag(art, name.text);
    if (tag == art.tags.end()) return kHostNotFound;
    art.tags.erase(tag);
    return kHostNoError;
}

} // namespace

const void* ArtSuiteTable() {
    static constexpr AIArtSuite table{
        Entry<"AI Art Suite", "GetFirstArtOfLayer", GetFirstArtOfLayer>::Run,
        Entry<"AI Art Suite", "GetArtKind", GetArtKind>::Run,
        Entry<"AI Art Suite", "GetArtAttributes", GetArtAttributes>::Run,
        Entry<"AI Art Suite", "GetFirstChild", GetFirstChild>::Run,
        Entry<"AI Art Suite", "GetNextSibling", GetNextSibling>::Run,
        Entry<"AI Art Suite", "GetParent", GetParent>::Run,
        Entry<"AI Art Suite", "GetArtBounds", GetArtBounds>::Run,
        Entry<"AI Art Suite", "GetLayerOfArt", GetLayerOfArt>::Run,
        Entry<"AI Art Suite", "NewArt", NewArt>::Run,
        Entry<"AI Art Suite", "DisposeArt", DisposeArt>::Run,
        Entry<"AI Art Suite", "ReorderArt", ReorderArt>::Run,
    };
    return &table;
}

const void* GroupSuiteTable() {
    static constexpr AIGroupSuite table{
        Entry<"AI Group Suite", "GetGroupClipped", GetGroupClipped>::Run,
        Entry<"AI Group Suite", "SetGroupClipped", SetGroupClipped>::Run,
    };
    return &table;
}

const void* PathSuiteTable() {
    static constexpr AIPathSuite table{
        Entry<"AI Path Suite", "GetPathSegmentCount", GetPathSegmentCount>::Run,
        Entry<"AI Path Suite", "GetPathSegments", GetPathSegments>::Run,
        Entry<"AI Path Suite", "SetPathSegments", SetPathSegments>::Run,
        Entry<"AI Path Suite", "DeletePathSegments", DeletePathSegments>::Run,
        Entry<"AI Path Suite", "GetPathClosed", GetPathClosed>::Run,
        Entry<"AI Path Suite", "SetPathClosed", SetPathClosed>::Run,
        Entry<"AI Path Suite", "GetPathGuide", GetPathGuide>::Run,
    };
    return &table;
}

const void* BlendStyleSuiteTable() {
    static constexpr AIBlendStyleSuite table{
        Entry<"AI Blend Style Suite", "GetBlendingMode", GetBlendField<&Blend::mode>>::Run,
        Entry<"AI Blend Style Suite", "SetBlendingMode",
              SetBlendField<&Blend::mode, kBlendModeCount - 1>>::Run,
        Entry<"AI Blend Style Suite", "GetOpacity", GetOpacity>::Run,
        Entry<"AI Blend Style Suite", "SetOpacity", SetOpacity>::Run,
        Entry<"AI Blend Style Suite", "GetIsolated", GetBlendField<&Blend::isolated>>::Run,
        Entry<"AI Blend Style Suite", "SetIsolated", SetBlendField<&Blend::isolated, 1>>::Run,
        Entry<"AI Blend Style Suite", "GetKnockout", GetBlendField<&Blend::knockout>>::Run,
        Entry<"AI Blend Style Suite", "SetKnockout", SetBlendField<&Blend::knockout, 2>>::Run,
        Entry<"AI Blend Style Suite", "GetAlphaIsShape", GetBlendField<&Blend::alphaIsShape>>::Run,
        Entry<"AI Blend Style Suite", "SetAlphaIsShape", SetBlendField<&Blend::alphaIsShape, 1>>::Run,
    };
    return &table;
}

const void* ArtStyleSuiteTable() {
    static constexpr AIArtStyleSuite table{
        Entry<"AI Art Style Suite", "GetStyledArt", GetStyledArt>::Run,
        Entry<"AI Art Style Suite", "GetArtStyle", GetArtStyle>::Run,
        Entry<"AI Art Style Suite", "GetPaintAttributes", GetPaintAttributes>::Run,
        Entry<"AI Art Style Suite", "NewStyleFromPathStyle", NewStyleFromPathStyle>::Run,
        Entry<"AI Art Style Suite", "SetArtStyle", SetArtStyle>::Run,
    };
    return &table;
}

const void* PluginGroupSuiteTable() {
    static constexpr AIPluginGroupSuite table{
        Entry<"AI Plugin Group Suite", "GetResultArt", GetResultArt>::Run,
        Entry<"AI Plugin Group Suite", "CountPluginGroups", CountPluginGroups>::Run,
        Entry<"AI Plugin Group Suite", "GetNthPluginGroup", GetNthPluginGroup>::Run,
        Entry<"AI Plugin Group Suite", "GetPluginGroupName", GetPluginGroupName>::Run,
        Entry<"AI Plugin Group Suite", "UsePluginGroup", UsePluginGroup>::Run,
        Entry<"AI Plugin Group Suite", "SetEditArt", SetEditArt>::Run,
        Entry<"AI Plugin Group Suite", "SetVersion", SetVersion>::Run,
        Entry<"AI Plugin Group Suite", "SetDataSize", SetDataSize>::Run,
        Entry<"AI Plugin Group Suite", "SetDataRange", SetDataRange>::Run,
    };
    return &table;
}

const void* TagSuiteTable() {
    static constexpr AITagSuite table{
        Entry<"AI Tag Suite", "CountTags", CountTags>::Run,
        Entry<"AI Tag Suite", "GetNthTagName", GetNthTagName>::Run,
        Entry<"AI Tag Suite", "GetTagType", GetTagType>::Run,
        Entry<"AI Tag Suite", "GetTagString", GetTagString>::Run,
        Entry<"AI Tag Suite", "SetTag", SetTag>::Run,
        Entry<"AI Tag Suite", "RemoveTag", RemoveTag>::Run,
    };
    return &table;
}

} // namespace workbench
