#include "workbench/svg/element_reader.h"

#include <algorithm>

#include "workbench/svg/clip_paths.h"
#include "workbench/svg/images.h"
#include "workbench/svg/mesh_words.h"
#include "workbench/svg/own_words.h"
#include "workbench/svg/path_art.h"
#include "workbench/svg/produced_art.h"
#include "workbench/svg/text_reader.h"
#include "workbench/svg/transforms.h"

namespace workbench {
namespace {

using Text = std::string_view;

/// Filters and masks change what is seen, so the art without them is not the whole art.
void CountUnknownEffects(ReadContext& context, const ComputedStyle& style) {
    if (style.filtered) context.Lose("filter");
    if (style.masked) context.Lose("mask");
}

/// Elements that draw, but not yet here.
void CountUnread(ReadContext& context, ElementKind kind) {
    switch (kind) {
        case ElementKind::kForeignObject:
            context.Lose("foreignObject");
            break;
        case ElementKind::kAnimation:
            context.Lose("animation");
            break;
        case ElementKind::kUnknown:
            context.Lose("unknown element");
            break;
        default:
            break;
    }
}

/// The member of a switch that is for us: no extensions, and a language that a reader of English takes.
pugi::xml_node ChooseMember(ReadContext& context, pugi::xml_node element) {
    for (const pugi::xml_node child : element.children()) {
        if (child.type() != pugi::node_element || context.KindOf(child) == ElementKind::kForeign) continue;
        if (child.attribute("requiredExtensions")) continue;
        const pugi::xml_attribute languages = child.attribute("systemLanguage");
        if (languages && Text(languages.value()).find("en") == Text::npos) continue;
        return child;
    }
    return {};
}

/// The place and size of a nested viewport; a symbol's are told by the `use` that draws it.
struct Viewport {
    ViewBox place;
    bool sized = false; ///< has a size of its own, so that what sticks out is cut off
};

Viewport ReadViewport(pugi::xml_node element, pugi::xml_node use, const Surroundings& around, bool symbol) {
    const double font = around.style.fontSize;
    const auto size = [&](const char* name, double whole) {
        const pugi::xml_node first = use && use.attribute(name) ? use : symbol ? pugi::xml_node{} : element;
        return LengthAttribute(first, name, font, whole, whole);
    };
    Viewport viewport;
    viewport.place.width = size("width", around.viewWidth);
    viewport.place.height = size("height", around.viewHeight);
    if (!symbol) {
        viewport.place.x = LengthAttribute(element, "x", font, around.viewWidth, 0);
        viewport.place.y = LengthAttribute(element, "y", font, around.viewHeight, 0);
    }
    viewport.sized =
        element.attribute("viewBox") || element.attribute("width") || (use && use.attribute("width"));
    return viewport;
}

/// The members of a nested svg or of a symbol.
/// @param here  the element's own, before its view box
void ReadViewportMembers(ReadContext& context, pugi::xml_node element, pugi::xml_node use,
                         const Surroundings& here, bool symbol, Art* group) {
    const Viewport viewport = ReadViewport(element, use, here, symbol);
    const ViewBox& place = viewport.place;
    if (!(place.width > 0) || !(place.height > 0)) return;
    Surroundings inside = here;
    ViewBox view;
    if (ParseViewBox(element.attribute("viewBox").value(), &view)) {
        inside.toArt =
            Concat(here.toArt, FitViewBox(view, place, element.attribute("preserveAspectRatio").value()));
        inside.viewWidth = view.width;
        inside.viewHeight = view.height;
    } else {
        inside.toArt = Concat(here.toArt, {1, 0, 0, 1, place.x, place.y});
        inside.viewWidth = place.width;
        inside.viewHeight = place.height;
    }
    ReadMembers(context, element, inside, group);
    if (viewport.sized && !here.style.overflows && group->firstChild)
        ClipToViewport(context, place, here, group);
}

void ReadUsed(ReadContext& context, pugi::xml_node use, const Surroundings& here, Art* group) {
    const pugi::xml_node target = context.Target(use);
    const ElementKind kind = target ? context.KindOf(target) : ElementKind::kUnknown;
    const Reference reference(context, target);
    if (!target || !reference) {
        context.Lose("reference");
        return;
    }
    Surroundings inside = here;
    inside.instance = true;
    const double x = LengthAttribute(use, "x", here.style.fontSize, here.viewWidth, 0);
    const double y = LengthAttribute(use, "y", here.style.fontSize, here.viewHeight, 0);
    inside.toArt = Concat(here.toArt, {1, 0, 0, 1, x, y});
    if (kind != ElementKind::kSymbol && kind != ElementKind::kSvg) {
        ReadElement(context, target, inside, group);
        return;
    }
    const Visit visit(context);
    if (!visit) return;
    const Surroundings own = Enter(context, target, inside);
    ReadViewportMembers(context, target, use, own, kind == ElementKind::kSymbol, group);
    CountUnknownEffects(context, own.style);
    group->blend.opacity *= own.style.opacity;
}

void FillGroup(ReadContext& context, pugi::xml_node element, ElementKind kind, const Surroundings& here,
               Art* group) {
    switch (kind) {
        case ElementKind::kSvg:
            ReadViewportMembers(context, element, {}, here, false, group);
            break;
        case ElementKind::kUse:
            ReadUsed(context, element, here, group);
            break;
        case ElementKind::kSwitch:
            if (const pugi::xml_node chosen = ChooseMember(context, element))
                ReadElement(context, chosen, here, group);
            break;
        default:
            ReadMembers(context, element, here, group);
            break;
    }
}

Art* ReadGroup(ReadContext& context, pugi::xml_node element, ElementKind kind, const Surroundings& here,
               Art* container) {
    Art* group = context.NewArt(kArtGroup, container);
    if (!group) return nullptr;
    {
        const InHand inHand(context, element);
        FillGroup(context, element, kind, here, group);
    }
    if (!group->firstChild && context.Own(element, kOwnEmpty) != "true") {
        context.document.DisposeArt(group);
        return nullptr;
    }
    const double inner = group->blend.opacity;
    group->blend = ReadBlend(context, element, here.style);
    group->blend.opacity *= inner;
    SetNature(context, element, here, *group);
    if (context.Own(element, kOwnClipped) == "true") group->group()->clipped = true;
    return group;
}

/// A group of our own files that stands for art of another kind.
bool IsOtherArt(const ReadContext& context, pugi::xml_node element, ElementKind kind) {
    return kind == ElementKind::kGroup && !context.ownPrefix.empty() &&
           (IsMesh(context, element) || IsStyledArt(context, element) || IsPluginArt(context, element));
}

Art* ReadOtherArt(ReadContext& context, pugi::xml_node element, const Surroundings& here, Art* container) {
    if (IsStyledArt(context, element)) return ReadStyledArt(context, element, here, container);
    if (IsPluginArt(context, element)) return ReadPluginArt(context, element, here, container);
    Art* mesh = ReadMesh(context, element, here, container);
    // Its picture is better than nothing.
    return mesh || context.refused() ? mesh
                                     : ReadGroup(context, element, ElementKind::kGroup, here, container);
}

/// An element by itself, whatever clips it.
Art* ReadPlain(ReadContext& context, pugi::xml_node element, ElementKind kind, const Surroundings& here,
               Art* container) {
    if (kind == ElementKind::kImage) return ReadImage(context, element, here, container);
    if (kind == ElementKind::kText) return ReadText(context, element, here, container);
    if (IsOtherArt(context, element, kind)) return ReadOtherArt(context, element, here, container);
    return IsShape(kind) ? ReadShape(context, element, kind, here, container)
                         : ReadGroup(context, element, kind, here, container);
}

/// An element with a clip path: the clip's links from the outermost inwards are groups; a group element is
/// the innermost of them itself.
Art* ReadClipped(ReadContext& context, pugi::xml_node element, ElementKind kind, const Surroundings& here,
                 const std::vector<pugi::xml_node>& clips, Art* container) {
    // An element that is clipped by its own viewport can't carry a second clip.
    const bool ownGroup = kind == ElementKind::kGroup && !IsOtherArt(context, element, kind);
    std::vector<Art*> groups;
    Art* inner = container;
    for (size_t i = clips.size(); i-- > (ownGroup ? 1u : 0u);) {
        inner = context.NewArt(kArtGroup, inner);
        if (!inner) return nullptr;
        groups.push_back(inner);
    }
    Art* const art = ReadPlain(context, element, kind, here, inner);
    if (!art) {
        if (!groups.empty()) context.document.DisposeArt(groups.front());
        return nullptr;
    }
    if (ownGroup) groups.push_back(art);
    for (size_t i = 0; i < groups.size(); ++i) AddClip(context, clips[clips.size() - 1 - i], here, groups[i]);
    return groups.front();
}

} // namespace

Surroundings Enter(ReadContext& context, pugi::xml_node element, const Surroundings& around) {
    Surroundings here = around;
    here.outerToArt = around.toArt;
    here.style = ComputeStyle(element, around.style, context.sheet);
    here.toArt = Concat(around.toArt, OwnTransform(element, here.style));
    return here;
}

Art* ReadElement(ReadContext& context, pugi::xml_node element, const Surroundings& around, Art* container) {
    const ElementKind kind = context.KindOf(element);
    const bool group = kind >= ElementKind::kGroup && kind <= ElementKind::kSvg;
    if (!group && !IsShape(kind) && kind != ElementKind::kImage && kind != ElementKind::kText) {
        CountUnread(context, kind);
        return nullptr;
    }
    const Visit visit(context);
    if (!visit) return nullptr;
    const Surroundings here = Enter(context, element, around);
    CountUnknownEffects(context, here.style);
    std::vector<pugi::xml_node> clips;
    if (!here.style.clipPath.empty()) clips = ClipLinks(context, here.style.clipPath);
    if (!clips.empty()) return ReadClipped(context, element, kind, here, clips, container);
    return ReadPlain(context, element, kind, here, container);
}

void ClipToViewport(ReadContext& context, const ViewBox& place, const Surroundings& around, Art* group) {
    Box box;
    HostMatrix toUser;
    if (!Invert(around.toArt, &toUser)) return;
    AddExtentOf(*group, toUser, &box);
    const double right = place.x + place.width, bottom = place.y + place.height;
    if (box.empty ||
        (box.left >= place.x && box.top >= place.y && box.right <= right && box.bottom <= bottom))
        return;
    PathBuilder builder(4);
    builder.MoveTo({place.x, place.y});
    builder.LineTo({right, place.y});
    builder.LineTo({right, bottom});
    builder.LineTo({place.x, bottom});
    builder.Close();
    Subpaths subpaths = builder.Finish();
    if (ToArt(context, around.toArt, &subpaths) &&
        MakePathArt(context, std::move(subpaths), ClippingStyle(false), {}, group))
        group->group()->clipped = true;
}

void ReadMembers(ReadContext& context, pugi::xml_node parent, const Surroundings& inside, Art* container) {
    for (const pugi::xml_node child : parent.children()) {
        if (context.refused()) return;
        if (child.type() == pugi::node_element) ReadElement(context, child, inside, container);
    }
}

} // namespace workbench
