#include "workbench/svg/produced_art.h"

#include <algorithm>

#include "workbench/svg/element_reader.h"
#include "workbench/svg/own_words.h"
#include "workbench/svg/path_art.h"
#include "workbench/svg/tag_words.h"

namespace workbench {
namespace {

using Text = std::string_view;

constexpr char kPartArt[] = "art";
constexpr char kPartDrawn[] = "drawn";
constexpr char kPartEdit[] = "edit";
constexpr char kPartResult[] = "result";
constexpr char kPartMember[] = "member";

void AppendPart(const char* part, bool displayed, const std::string& members, std::string* markup) {
    *markup += "<g";
    AppendOwn(markup, kOwnPart, part);
    if (!displayed) AppendAttribute(markup, "display", "none");
    *markup += ">\n" + members + "</g>\n";
}

bool IsElement(const ReadContext& context, pugi::xml_node node) {
    return node.type() == pugi::node_element && context.KindOf(node) != ElementKind::kForeign;
}

pugi::xml_node PartOf(const ReadContext& context, pugi::xml_node element, const char* part) {
    for (const pugi::xml_node child : element.children())
        if (IsElement(context, child) && context.Own(child, kOwnPart) == part) return child;
    return {};
}

/// What a part holds, onto the top of `container`.  Whether the part is displayed says nothing of it.
Art* ReadPart(ReadContext& context, pugi::xml_node part, const Surroundings& here, Art* container) {
    const auto count = std::ranges::count_if(part.children(),
                                             [&](pugi::xml_node child) { return IsElement(context, child); });
    if (count != 1) {
        Art* group = count == 0 ? nullptr : ReadElement(context, part, here, container);
        if (group) group->hidden = false;
        return group;
    }
    const Visit visit(context);
    if (!visit) return nullptr;
    const Surroundings inside = Enter(context, part, here);
    for (const pugi::xml_node child : part.children())
        if (IsElement(context, child)) return ReadElement(context, child, inside, container);
    return nullptr;
}

} // namespace

const Art* StyledArtOf(const Document& document, const Art& art) {
    const Art* drawn = document.Find(art.styledArt);
    return drawn == &art ? nullptr : drawn;
}

void WriteStyledArt(WriteContext& context, const Art& art, const Art& drawn, const std::string& artMarkup,
                    std::string* markup) {
    std::string drawnMarkup;
    WriteArt(context, drawn, &drawnMarkup);
    *markup += "<g";
    AppendOwn(markup, kOwnStyled, "true");
    *markup += ">\n";
    AppendPart(kPartArt, false, artMarkup, markup);
    AppendPart(kPartDrawn, !art.hidden, drawnMarkup, markup);
    *markup += "</g>\n";
}

void WritePluginArt(WriteContext& context, const Art& art, const std::string& nature, std::string* markup) {
    const auto& plugin = std::get<PluginArtData>(art.data);
    *markup += "<g" + nature;
    AppendOwn(markup, kOwnPlugin, PercentText(plugin.groupName));
    AppendOwn(markup, kOwnVersion, NumbersText(plugin.major, plugin.minor));
    if (!plugin.data.empty())
        AppendOwn(markup, kOwnData,
                  PercentText({reinterpret_cast<const char*>(plugin.data.data()), plugin.data.size()}));
    *markup += ">\n";
    for (const Art* member = art.lastChild; member; member = member->above) {
        const bool result = member->handle == plugin.result;
        const char* part = result ? kPartResult : member->handle == plugin.edit ? kPartEdit : kPartMember;
        std::string members;
        WriteArt(context, *member, &members);
        AppendPart(part, result, members, markup);
    }
    *markup += "</g>\n";
}

bool IsStyledArt(const ReadContext& context, pugi::xml_node element) {
    return context.Own(element, kOwnStyled) == "true" && PartOf(context, element, kPartArt) &&
           PartOf(context, element, kPartDrawn);
}

bool IsPluginArt(const ReadContext& context, pugi::xml_node element) {
    return !context.ownPrefix.empty() && element.attribute((context.ownPrefix + kOwnPlugin).c_str());
}

Art* ReadStyledArt(ReadContext& context, pugi::xml_node element, const Surroundings& here, Art* container) {
    Art* art = ReadPart(context, PartOf(context, element, kPartArt), here, container);
    if (!art) return nullptr;
    Art* drawn = ReadPart(context, PartOf(context, element, kPartDrawn), here, nullptr);
    if (drawn) art->styledArt = drawn->handle;
    return art;
}

Art* ReadPluginArt(ReadContext& context, pugi::xml_node element, const Surroundings& here, Art* container) {
    Art* art = context.NewArt(kArtPlugin, container);
    if (!art) return nullptr;
    auto& plugin = std::get<PluginArtData>(art->data);
    plugin.groupName = BytesOfPercentText(context.Own(element, kOwnPlugin));
    const std::string data = BytesOfPercentText(context.Own(element, kOwnData));
    plugin.data.assign(data.begin(), data.end());
    const std::vector<double> version = ParseNumbers(context.Own(element, kOwnVersion), 2);
    const auto number = [&](size_t i) {
        constexpr double kLargest = INT32_MAX;
        return i < version.size() ? static_cast<int32_t>(std::clamp(version[i], -kLargest - 1, kLargest)) : 0;
    };
    plugin.major = number(0);
    plugin.minor = number(1);
    for (const pugi::xml_node child : element.children()) {
        if (context.refused() || !IsElement(context, child)) continue;
        const Text part = context.Own(child, kOwnPart);
        const Art* member =
            part.empty() ? ReadElement(context, child, here, art) : ReadPart(context, child, here, art);
        if (member && part == kPartEdit) plugin.edit = member->handle;
        if (member && part == kPartResult) plugin.result = member->handle;
    }
    art->blend = ReadBlend(context, element, here.style);
    SetNature(context, element, here, *art);
    return art;
}

std::string ArtStyleReference(WriteContext& context, const Art& art) {
    const ArtStyle* style = context.document.Find(art.artStyle);
    if (!style) return {};
    std::string text = PaintAttributes(context, style->paint, DefaultPathStyle());
    if (style->paint.evenOdd) AppendAttribute(&text, "fill-rule", "evenodd");
    if (style->paint.clip) AppendOwn(&text, kOwnClip, "true");
    std::string& id = context.paints["style" + std::to_string(reinterpret_cast<uintptr_t>(art.artStyle))];
    if (!id.empty()) return id;
    id = context.NewId("style");
    context.defs += "<path id=\"" + id + "\"" + text + "/>\n";
    return id;
}

void ReadArtStyle(ReadContext& context, pugi::xml_node element, const Surroundings& here, Art& art) {
    const std::string id(context.Own(element, kOwnArtStyle));
    if (id.empty()) return;
    ArtStyleHandle& style = context.artStyles[id];
    if (const pugi::xml_node painted = style ? pugi::xml_node{} : context.Find(id)) {
        // The transform of an image is its own; a style's paint lies where the art lies.
        Surroundings own = here;
        own.toArt = here.outerToArt;
        own.style = ComputeStyle(painted, ComputedStyle{}, context.sheet);
        style = context.document.NewArtStyle(ReadPathStyle(context, painted, own, Box{}, nullptr, nullptr))
                    .handle;
    }
    art.artStyle = style;
}

} // namespace workbench
