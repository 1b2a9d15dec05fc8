#include "workbench/svg/text_style.h"

#include <algorithm>
#include <cmath>

#include "workbench/document/story.h"
#include "workbench/svg/path_art.h"
#include "workbench/svg/text_properties.h"
#include "workbench/text/font_config_list.h"
#include "workbench/text/shaping.h"

namespace workbench {
namespace {

constexpr double kUsualLineHeight = 1.2;

int32_t Thousandths(double part, double whole) {
    if (!(whole > 0)) return 0;
    return static_cast<int32_t>(std::lround(std::clamp(part / whole * 1000, -1e6, 1e6)));
}

int32_t JustificationOf(const TextProperties& text, bool area) {
    static constexpr int32_t kByAlign[] = {0, 1, 2, 3}, kByAnchor[] = {0, 2, 1};
    return area ? kByAlign[text.align] : kByAnchor[text.anchor];
}

bool HasServer(const ComputedStyle& style) {
    return style.fill.kind == PaintValue::Kind::kServer || style.stroke.kind == PaintValue::Kind::kServer;
}

} // namespace

std::string FontFor(ReadContext& context, const ComputedStyle& style) {
    const TextProperties& text = style.text;
    std::string key(text.families);
    for (const int number : {text.weight, text.slant, text.width}) key += '|' + std::to_string(number);
    const auto known = context.fonts.find(key);
    if (known != context.fonts.end()) return known->second;
    const FontMatch match =
        TextFonts().Match({FamiliesOf(text.families), text.weight, text.slant, text.width});
    if (!match.missing.empty()) context.report.missingFonts.emplace(match.missing, match.name);
    return context.fonts[key] = match.name;
}

std::shared_ptr<CharacterAttributes> TextStyles::NewCharacter(const TextPart& part, double shift,
                                                              double leading) {
    const ComputedStyle& style = part.here.style;
    auto attributes = std::make_shared<CharacterAttributes>();
    attributes->font = FontFor(context_, style);
    attributes->fontSize = style.fontSize * scale_;
    attributes->baselineShift = (part.rise + shift) * scale_;
    attributes->tracking = Thousandths(style.text.letterSpacing, style.fontSize);
    if (leading > 0) {
        attributes->autoLeading = false;
        attributes->leading = leading;
    }
    Paint(part, {}, attributes.get());
    if (HasServer(style)) unfinished_.push_back({&part, attributes});
    return attributes;
}

void TextStyles::Paint(const TextPart& part, const Box& box, CharacterAttributes* attributes) {
    double fillOpacity = 1, strokeOpacity = 1;
    const HostPathStyle paint =
        ReadPathStyle(context_, part.element, part.here, box, &fillOpacity, &strokeOpacity);
    SetPaint(*attributes, paint);
    if (!part.here.style.visible) attributes->fill = attributes->stroke = false;
    if (!attributes->fill && !attributes->stroke) return;
    const double opacity = attributes->fill ? fillOpacity : strokeOpacity;
    const bool both = attributes->fill && attributes->stroke && fillOpacity != strokeOpacity;
    if (both || (opacity_ && *opacity_ != opacity)) context_.Lose("opacity within text");
    if (!opacity_) opacity_ = opacity;
}

std::shared_ptr<const ParagraphAttributes> TextStyles::ParagraphFor(const TextPart& part,
                                                                    const CharacterAttributes& character,
                                                                    bool area) {
    const TextProperties& text = part.here.style.text;
    double wordSpacing = 1;
    if (text.wordSpacing != 0) {
        const double blank = BlankAdvance(character);
        if (blank > 0) wordSpacing = std::clamp(1 + text.wordSpacing * scale_ / blank, 0.0, 100.0);
    }
    const double height = text.lineHeight > 0 ? std::min(text.lineHeight, 100.0) : kUsualLineHeight;
    auto& made = paragraphs_[{JustificationOf(text, area), wordSpacing, height}];
    if (!made) {
        ParagraphAttributes paragraph;
        paragraph.justification = JustificationOf(text, area);
        paragraph.wordSpacing[1] = wordSpacing;
        paragraph.wordSpacing[0] = std::min(paragraph.wordSpacing[0], wordSpacing);
        paragraph.wordSpacing[2] = std::max(paragraph.wordSpacing[2], wordSpacing);
        paragraph.autoLeading = height;
        made = std::make_shared<const ParagraphAttributes>(std::move(paragraph));
    }
    return made;
}

CharacterStyle TextStyles::StyleFor(const TextPart& part, double shift, double leading, bool area) {
    CharacterStyle& style = made_[{&part, shift, leading}];
    if (!style.character) {
        style.character = NewCharacter(part, shift, leading);
        style.paragraph = ParagraphFor(part, *style.character, area);
    }
    return style;
}

void TextStyles::Finish(const Box& box) {
    for (const Unfinished& each : unfinished_) Paint(*each.part, box, each.attributes.get());
    unfinished_.clear();
}

} // namespace workbench
