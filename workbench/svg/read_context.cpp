#include "workbench/svg/read_context.h"

#include <algorithm>
#include <cmath>

#include "workbench/svg/own_words.h"
#include "workbench/svg/svg_writer.h"
#include "workbench/svg/transforms.h"

namespace workbench {
namespace {

using Text = std::string_view;

constexpr Text kSvgNamespace = "http://www.w3.org/2000/svg";

const std::unordered_map<Text, ElementKind>& Kinds() {
    using enum ElementKind;
    static const std::unordered_map<Text, ElementKind> kinds{{"g", kGroup},
                                                             {"a", kGroup},
                                                             {"switch", kSwitch},
                                                             {"use", kUse},
                                                             {"svg", kSvg},
                                                             {"symbol", kSymbol},
                                                             {"path", kPath},
                                                             {"rect", kRect},
                                                             {"circle", kCircle},
                                                             {"ellipse", kEllipse},
                                                             {"line", kLine},
                                                             {"polyline", kPolyline},
                                                             {"polygon", kPolygon},
                                                             {"text", kText},
                                                             {"flowRoot", kText},
                                                             {"flowDiv", kText},
                                                             {"flow", kText},
                                                             {"image", kImage},
                                                             {"foreignObject", kForeignObject},
                                                             {"video", kForeignObject},
                                                             {"audio", kForeignObject},
                                                             {"iframe", kForeignObject},
                                                             {"canvas", kForeignObject},
                                                             {"linearGradient", kLinearGradient},
                                                             {"radialGradient", kRadialGradient},
                                                             {"stop", kStop},
                                                             {"pattern", kPattern},
                                                             {"clipPath", kClipPath},
                                                             {"style", kStyle},
                                                             {"animate", kAnimation},
                                                             {"animateTransform", kAnimation},
                                                             {"animateMotion", kAnimation},
                                                             {"animateColor", kAnimation},
                                                             {"set", kAnimation},
                                                             {"defs", kDefinition},
                                                             {"title", kDefinition},
                                                             {"desc", kDefinition},
                                                             {"metadata", kDefinition},
                                                             {"marker", kDefinition},
                                                             {"mask", kDefinition},
                                                             {"filter", kDefinition},
                                                             {"font", kDefinition},
                                                             {"font-face", kDefinition},
                                                             {"script", kDefinition},
                                                             {"view", kDefinition},
                                                             {"cursor", kDefinition},
                                                             {"color-profile", kDefinition},
                                                             {"solidColor", kDefinition},
                                                             {"flowDef", kDefinition}};
    return kinds;
}

bool IsOne(const std::vector<std::string>& prefixes, Text prefix) {
    return std::ranges::find(prefixes, prefix) != prefixes.end();
}

} // namespace

Text Href(pugi::xml_node element) {
    Text found;
    for (const pugi::xml_attribute attribute : element.attributes()) {
        if (Text(attribute.name()) == "href") return attribute.value();
        if (LocalName(attribute.name()) == "href") found = attribute.value();
    }
    return found;
}

void ReadContext::Index(pugi::xml_node svg) {
    root = svg;
    // In document order, without recursion: the tree may be as deep as the file is long.
    size_t count = 0;
    pugi::xml_node node = svg;
    while (node) {
        if (node.type() == pugi::node_element) {
            ++count;
            for (const pugi::xml_attribute attribute : node.attributes()) {
                const Text name = attribute.name();
                if (name == "id") {
                    ids.emplace(attribute.value(), node);
                } else if (name.starts_with("xmlns:")) {
                    const std::string prefix = std::string(name.substr(6)) + ":";
                    if (attribute.value() == kSvgNamespace && !IsOne(svgPrefixes, prefix))
                        svgPrefixes.push_back(prefix);
                    if (Text(attribute.value()) == kDocumentNamespace) ownPrefix = prefix;
                }
            }
        }
        if (node.first_child()) {
            node = node.first_child();
            continue;
        }
        while (node && node != svg && !node.next_sibling()) node = node.parent();
        node = node == svg ? pugi::xml_node{} : node.next_sibling();
    }
    if (svgPrefixes.empty()) svgPrefixes.push_back("svg:");
    visitsLeft = count + kMaxRepeatedElements;
}

ElementKind ReadContext::KindOf(pugi::xml_node element) const {
    Text name = element.name();
    const size_t colon = name.find(':');
    if (colon != Text::npos) {
        if (!IsOne(svgPrefixes, name.substr(0, colon + 1))) return ElementKind::kForeign;
        name.remove_prefix(colon + 1);
    }
    // An element that changes the default namespace takes itself out of SVG.
    const pugi::xml_attribute space =
        colon == Text::npos ? element.attribute("xmlns") : pugi::xml_attribute{};
    if (space && space.value()[0] != '\0' && space.value() != kSvgNamespace) return ElementKind::kForeign;
    const auto found = Kinds().find(name);
    return found == Kinds().end() ? ElementKind::kUnknown : found->second;
}

pugi::xml_node ReadContext::Find(Text id) const {
    const auto found = ids.find(id);
    return found == ids.end() ? pugi::xml_node{} : found->second;
}

pugi::xml_node ReadContext::Target(pugi::xml_node element) const {
    const Text href = Trim(Href(element));
    return href.starts_with('#') ? Find(href.substr(1)) : pugi::xml_node{};
}

Text ReadContext::Own(pugi::xml_node element, const char* name) const {
    if (ownPrefix.empty()) return {};
    return element.attribute((ownPrefix + name).c_str()).value();
}

std::string ReadContext::NameOf(pugi::xml_node element) const {
    const Text own = Own(element, kOwnName);
    return std::string(own.empty() ? Text(element.attribute("id").value()) : own);
}

Art* ReadContext::NewArt(int32_t kind, Art* container) {
    if (artLeft == 0) {
        if (refusal.empty()) refusal = "the file asks for more than " + std::to_string(kMaxArt) + " objects";
        return nullptr;
    }
    --artLeft;
    return document.PrependArt(kind, container);
}

Visit::Visit(ReadContext& context) : context_(context) {
    ++context_.depth;
    if (context_.depth > kMaxElementDepth) {
        context_.Lose("nesting");
        good_ = false;
    } else if (context_.visitsLeft == 0) {
        if (context_.refusal.empty())
            context_.refusal = "the file draws its elements again and again without end";
        good_ = false;
    } else {
        --context_.visitsLeft;
    }
    if (context_.refused()) good_ = false;
}

Reference::Reference(ReadContext& context, pugi::xml_node element)
    : context_(context),
      good_(context.references < kMaxReferenceDepth &&
            std::ranges::find(context.inHand, element) == context.inHand.end()) {
    if (!good_) return;
    context_.inHand.push_back(element);
    ++context_.references;
}

Reference::~Reference() {
    if (!good_) return;
    context_.inHand.pop_back();
    --context_.references;
}

ComputedStyle StyleInPlace(ReadContext& context, pugi::xml_node element) {
    std::vector<pugi::xml_node> line;
    for (pugi::xml_node node = element; node && node.type() == pugi::node_element; node = node.parent()) {
        line.push_back(node);
        if (line.size() > static_cast<size_t>(kMaxElementDepth)) break;
    }
    ComputedStyle style;
    for (; !line.empty(); line.pop_back()) style = ComputeStyle(line.back(), style, context.sheet);
    return style;
}

HostMatrix OwnTransform(pugi::xml_node element, const ComputedStyle& style, const char* attribute) {
    HostMatrix matrix;
    ParseTransform(style.transform.empty() ? Text(element.attribute(attribute).value()) : style.transform,
                   &matrix);
    return matrix;
}

double LengthAttribute(pugi::xml_node element, const char* name, double fontSize, double percentOf,
                       double absent) {
    Length length;
    if (!ParseLength(element.attribute(name).value(), &length)) return absent;
    return ToUserUnits(length, fontSize, percentOf);
}

double ViewDiagonal(const Surroundings& here) {
    return std::hypot(here.viewWidth, here.viewHeight) / std::sqrt(2.0);
}

} // namespace workbench
