#include "workbench/svg/path_art.h"

#include <algorithm>
#include <cmath>

#include "workbench/svg/metadata.h"
#include "workbench/svg/own_words.h"
#include "workbench/svg/paint_servers.h"
#include "workbench/svg/produced_art.h"
#include "workbench/svg/shapes.h"
#include "workbench/svg/tag_words.h"
#include "workbench/svg/transforms.h"

namespace workbench {
namespace {

constexpr size_t kMostDashes = 6;

void SetDash(ReadContext& context, const Surroundings& here, double scale, HostPathStyle* style) {
    double lengths[kMostDashes]{}, sum = 0;
    size_t count = 0;
    TextCursor cursor(here.style.dashArray);
    cursor.SkipBlanks();
    Length length;
    while (!cursor.AtEnd() && TakeLength(cursor, &length)) {
        const double value = ToUserUnits(length, here.style.fontSize, ViewDiagonal(here));
        if (value < 0) return;
        if (count < kMostDashes) lengths[count] = value * scale;
        sum += value;
        ++count;
        cursor.SkipSeparators();
    }
    if (!(sum > 0)) return;
    if (count > kMostDashes && style->strokePaint) context.Lose("dash entries");
    style->dash.count = static_cast<int32_t>(std::min(count, kMostDashes));
    style->dash.offset = scale * ToUserUnits(here.style.dashOffset, here.style.fontSize, ViewDiagonal(here));
    std::ranges::copy(lengths, style->dash.lengths);
}

void SetStroke(ReadContext& context, pugi::xml_node element, const Surroundings& here, HostPathStyle* style) {
    double scale = MeanScale(here.toArt);
    if (here.style.fixedStrokeWidth) {
        scale = 0.75;
        if (style->strokePaint) context.Lose("vector-effect");
    } else if (style->strokePaint && IsUneven(here.toArt)) {
        context.Lose("stroke under uneven scale");
    }
    style->lineWidth = scale * ToUserUnits(here.style.strokeWidth, here.style.fontSize, ViewDiagonal(here));
    style->lineCap = here.style.lineCap;
    style->lineJoin = here.style.lineJoin;
    style->miterLimit = here.style.miterLimit;
    SetDash(context, here, scale, style);
    // No width is no line; a host may well draw a hair line for it.
    if (!(style->lineWidth > 0)) {
        style->lineWidth = 0;
        if (context.Own(element, kOwnLineWidth) != "0") style->strokePaint = 0;
    }
    if (!std::isfinite(style->lineWidth)) style->lineWidth = kLargestNumber;
}

/// Our own word for a colour, if the file still shows the colour that it stands for.
void SetOwnColor(ReadContext& context, pugi::xml_node element, const char* name, bool painted,
                 HostColor* color) {
    const std::string_view text = context.Own(element, name);
    HostColor exact{};
    if (text.empty() || !ParseColorText(context.document, text, &exact)) return;
    if (!painted || ScreenColor(context.document, exact) == ScreenColor(context.document, *color))
        *color = exact;
}

double OwnNumber(ReadContext& context, pugi::xml_node element, const char* name, double absent) {
    TextCursor cursor(context.Own(element, name));
    double value = 0;
    return cursor.Number(&value) ? value : absent;
}

void SetOwnFields(ReadContext& context, pugi::xml_node element, HostPathStyle* style) {
    if (context.ownPrefix.empty()) return;
    SetOwnColor(context, element, kOwnFill, style->fillPaint, &style->fill);
    SetOwnColor(context, element, kOwnStroke, style->strokePaint, &style->stroke);
    const std::string_view overprint = context.Own(element, kOwnOverprint);
    style->fillOverprint = overprint.find("fill") != std::string_view::npos;
    style->strokeOverprint = overprint.find("stroke") != std::string_view::npos;
    style->resolution = OwnNumber(context, element, kOwnResolution, style->resolution);
    style->clip = context.Own(element, kOwnClip) == "true";
    style->lockClip = context.Own(element, kOwnLockClip) == "true";
}

void MarkGuide(ReadContext& context, pugi::xml_node element, Art& art) {
    if (context.Own(element, kOwnGuide) != "true") return;
    art.hidden = context.Own(element, kOwnHidden) == "true";
    if (PathData* path = art.path()) path->guide = true;
    for (Art* member = art.firstChild; member; member = member->below)
        if (PathData* path = member->path()) path->guide = true;
}

/// Fill and stroke as two objects in a group.
Art* MakeSplitArt(ReadContext& context, const Subpaths& subpaths, const HostPathStyle& style,
                  const Blend& blend, double fillOpacity, double strokeOpacity, bool strokeFirst,
                  Art* container) {
    Art* group = context.NewArt(kArtGroup, container);
    if (!group) return nullptr;
    group->blend = blend;
    const HostPathStyle plain = DefaultPathStyle();
    HostPathStyle fillOnly = style, strokeOnly = style;
    fillOnly.strokePaint = 0;
    fillOnly.stroke = plain.stroke;
    strokeOnly.fillPaint = 0;
    strokeOnly.fill = plain.fill;
    for (const bool stroke : {strokeFirst, !strokeFirst}) {
        Blend part;
        part.opacity = stroke ? strokeOpacity : fillOpacity;
        if (!MakePathArt(context, subpaths, stroke ? strokeOnly : fillOnly, part, group)) return nullptr;
    }
    return group;
}

} // namespace

HostPathStyle ClippingStyle(bool evenOdd) {
    HostPathStyle style = DefaultPathStyle();
    style.fillPaint = style.strokePaint = 0;
    style.clip = 1;
    style.evenOdd = evenOdd;
    return style;
}

bool ToArt(ReadContext& context, const HostMatrix& matrix, Subpaths* subpaths) {
    bool finite = true;
    for (Subpath& subpath : *subpaths) {
        for (HostPathSegment& segment : subpath.segments) {
            for (HostPoint* point : {&segment.anchor, &segment.in, &segment.out}) {
                *point = Apply(matrix, *point);
                finite = finite && std::isfinite(point->x) && std::isfinite(point->y);
            }
        }
    }
    if (!finite) context.Lose("number out of range");
    return finite;
}

Art* MakePathArt(ReadContext& context, Subpaths subpaths, const HostPathStyle& style, const Blend& blend,
                 Art* container, bool compound) {
    if (subpaths.empty()) return nullptr;
    compound = compound || subpaths.size() > 1;
    Art* const whole = compound ? context.NewArt(kArtCompoundPath, container) : nullptr;
    if (compound && !whole) return nullptr;
    Art* art = nullptr;
    for (Subpath& subpath : subpaths) {
        art = context.NewArt(kArtPath, compound ? whole : container);
        if (!art) return nullptr;
        art->blend = blend;
        PathData& path = *art->path();
        path.segments = std::move(subpath.segments);
        path.closed = subpath.closed;
        path.style = style;
    }
    return compound ? whole : art;
}

Blend ReadBlend(ReadContext& context, pugi::xml_node element, const ComputedStyle& style) {
    Blend blend;
    blend.mode = style.blendMode;
    blend.opacity = style.opacity;
    blend.isolated = style.isolated;
    if (style.unknownBlend) context.Lose("blending mode");
    if (context.ownPrefix.empty()) return blend;
    blend.knockout = std::clamp(static_cast<int32_t>(OwnNumber(context, element, kOwnKnockout, 0)), 0, 2);
    blend.alphaIsShape = context.Own(element, kOwnAlphaIsShape) == "true";
    return blend;
}

void SetNature(ReadContext& context, pugi::xml_node element, const Surroundings& here, Art& art) {
    if (!here.style.displayed) art.hidden = true;
    for (const pugi::xml_attribute attribute : element.attributes())
        if (LocalName(attribute.name()) == "insensitive" && std::string_view(attribute.value()) == "true")
            art.locked = true;
    ReadArtStyle(context, element, here, art);
    if (here.instance) return;
    art.tags = ReadTags(element, context.ownPrefix);
    art.name = context.NameOf(element);
    if (art.name.empty()) art.name = TitleOf(element);
}

HostPathStyle ReadPathStyle(ReadContext& context, pugi::xml_node element, const Surroundings& here,
                            const Box& box, double* fillOpacity, double* strokeOpacity) {
    HostPathStyle style = DefaultPathStyle();
    const Paint fill = ResolvePaint(context, here.style.fill, here.style.fillOpacity, here, box);
    const Paint stroke = ResolvePaint(context, here.style.stroke, here.style.strokeOpacity, here, box);
    style.fillPaint = fill.painted;
    style.strokePaint = stroke.painted;
    if (fill.painted) style.fill = fill.color;
    SetStroke(context, element, here, &style);
    if (style.strokePaint) style.stroke = stroke.color;
    style.evenOdd = here.style.evenOdd;
    SetOwnFields(context, element, &style);
    if (fillOpacity) *fillOpacity = fill.opacity;
    if (strokeOpacity) *strokeOpacity = stroke.opacity;
    return style;
}

Art* ReadShape(ReadContext& context, pugi::xml_node element, ElementKind kind, const Surroundings& here,
               Art* container) {
    Subpaths subpaths = ShapeGeometry(context, element, kind, here);
    if (subpaths.empty()) return nullptr;
    const auto needsBox = [](const PaintValue& paint) { return paint.kind == PaintValue::Kind::kServer; };
    const Box box = needsBox(here.style.fill) || needsBox(here.style.stroke) ? Extent(subpaths) : Box{};
    double fillOpacity = 1, strokeOpacity = 1;
    HostPathStyle style = ReadPathStyle(context, element, here, box, &fillOpacity, &strokeOpacity);
    if (kind == ElementKind::kLine) style.fillPaint = 0;
    if (!ToArt(context, here.toArt, &subpaths)) return nullptr;
    if (here.style.marked) context.Lose("marker");

    Blend blend = ReadBlend(context, element, here.style);
    const bool both = style.fillPaint && style.strokePaint;
    Art* art = nullptr;
    if (both && (fillOpacity < 1 || strokeOpacity < 1 || here.style.strokeFirst)) {
        art = MakeSplitArt(context, subpaths, style, blend, fillOpacity, strokeOpacity,
                           here.style.strokeFirst, container);
    } else {
        if (style.fillPaint) blend.opacity *= fillOpacity;
        if (style.strokePaint) blend.opacity *= strokeOpacity;
        const bool compound = context.Own(element, kOwnCompound) == "true";
        art = MakePathArt(context, std::move(subpaths), style, blend, container, compound);
    }
    if (!art) return nullptr;
    SetNature(context, element, here, *art);
    if (!here.style.visible) art->hidden = true;
    MarkGuide(context, element, *art);
    return art;
}

} // namespace workbench
