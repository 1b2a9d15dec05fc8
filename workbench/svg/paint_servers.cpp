#include "workbench/svg/paint_servers.h"

#include <algorithm>

namespace workbench {

ServerChain::ServerChain(ReadContext& context, pugi::xml_node element) {
    while (element) {
        if (std::ranges::find(links_, element) != links_.end() ||
            links_.size() == static_cast<size_t>(kMaxReferenceChain)) {
            context.Lose("reference");
            return;
        }
        links_.push_back(element);
        element = context.Target(element);
    }
}

std::string_view ServerChain::Value(const char* name) const {
    for (const pugi::xml_node link : links_)
        if (const pugi::xml_attribute attribute = link.attribute(name)) return attribute.value();
    return {};
}

bool ServerChain::Has(const char* name) const {
    return std::ranges::any_of(links_, [&](pugi::xml_node link) { return !link.attribute(name).empty(); });
}

Length ServerChain::LengthOf(const char* name, Length absent) const {
    Length length;
    return ParseLength(Value(name), &length) ? length : absent;
}

Paint ResolvePaint(ReadContext& context, const PaintValue& value, double opacity, const Surroundings& here,
                   const Box& box) {
    Paint paint;
    PaintValue::Kind kind = value.kind;
    if (kind == PaintValue::Kind::kServer) {
        const pugi::xml_node server = context.Find(value.server);
        const ElementKind found = server ? context.KindOf(server) : ElementKind::kUnknown;
        if (found == ElementKind::kLinearGradient || found == ElementKind::kRadialGradient)
            paint = GradientPaint(context, server, found == ElementKind::kRadialGradient, here, box);
        else if (found == ElementKind::kPattern)
            paint = PatternPaint(context, server, here, box);
        else if (!value.hasFallback)
            context.Lose("reference");
        if (paint.painted) {
            paint.opacity *= opacity;
            return paint;
        }
        kind = value.fallback;
    }
    ColorValue color;
    paint.painted = PlainColor(here.style, kind, value.color, &color);
    if (paint.painted) paint.color = ToHostColor(color);
    paint.opacity = opacity * color.alpha;
    return paint;
}

} // namespace workbench
