#include "workbench/svg/text_properties.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace workbench {
namespace {

using Text = std::string_view;

struct Word {
    Text word;
    int value;
};

template <size_t count>
void Choose(Text value, const Word (&words)[count], int* choice) {
    for (const Word& word : words)
        if (value == word.word) *choice = word.value;
}

void SetWeight(Text value, int* weight) {
    static constexpr Word kWeights[] = {{"normal", 400}, {"bold", 700}};
    TextCursor cursor(value);
    double number = 0;
    if (cursor.Number(&number) && cursor.AtEnd()) {
        if (number >= 1 && number <= 1000) *weight = static_cast<int>(number);
        return;
    }
    if (value == "bolder") *weight = *weight < 350 ? 400 : *weight < 550 ? 700 : 900;
    if (value == "lighter") *weight = *weight < 550 ? 100 : *weight < 750 ? 400 : 700;
    Choose(value, kWeights, weight);
}

void SetWidth(Text value, int* width) {
    static constexpr Word kWidths[] = {
        {"ultra-condensed", 50}, {"extra-condensed", 63}, {"condensed", 75},
        {"semi-condensed", 87},  {"normal", 100},         {"semi-expanded", 113},
        {"expanded", 125},       {"extra-expanded", 150}, {"ultra-expanded", 200}};
    Choose(value, kWidths, width);
}

void SetSpacing(Text value, double fontSize, double* spacing) {
    Length length;
    if (value == "normal")
        *spacing = 0;
    else if (ParseLength(value, &length))
        *spacing = ToUserUnits(length, fontSize, fontSize);
}

void SetLineHeight(Text value, double fontSize, double* height) {
    Length length;
    if (value == "normal") *height = 0;
    if (!ParseLength(value, &length) || !(length.value >= 0)) return;
    if (length.unit == Unit::kUser)
        *height = length.value;
    else if (fontSize > 0)
        *height = ToUserUnits(length, fontSize, fontSize) / fontSize;
}

void SetBaselineShift(Text value, double fontSize, double* shift) {
    Length length;
    if (value == "sub")
        *shift = -0.2 * fontSize;
    else if (value == "super")
        *shift = 0.4 * fontSize;
    else if (value == "baseline")
        *shift = 0;
    else if (ParseLength(value, &length))
        *shift = ToUserUnits(length, fontSize, fontSize);
}

} // namespace

void SetTextProperty(Property property, Text value, double fontSize, TextProperties* text) {
    static constexpr Word kSlants[] = {{"normal", 0}, {"italic", 1}, {"oblique", 2}};
    static constexpr Word kAnchors[] = {{"start", 0}, {"middle", 1}, {"end", 2}};
    static constexpr Word kAligns[] = {{"start", 0}, {"left", 0},   {"end", 1},
                                       {"right", 1}, {"center", 2}, {"justify", 3}};
    switch (property) {
        case Property::kBaselineShift:
            SetBaselineShift(value, fontSize, &text->baselineShift);
            break;
        case Property::kFontFamily:
            text->families = value;
            break;
        case Property::kFontStretch:
            SetWidth(value, &text->width);
            break;
        case Property::kFontStyle:
            Choose(value, kSlants, &text->slant);
            break;
        case Property::kFontWeight:
            SetWeight(value, &text->weight);
            break;
        case Property::kLetterSpacing:
            SetSpacing(value, fontSize, &text->letterSpacing);
            break;
        case Property::kLineHeight:
            SetLineHeight(value, fontSize, &text->lineHeight);
            break;
        case Property::kTextAlign:
            Choose(value, kAligns, &text->align);
            break;
        case Property::kTextAnchor:
            Choose(value, kAnchors, &text->anchor);
            break;
        case Property::kTextDecoration:
            text->decorated = value != "none" && !value.empty();
            break;
        case Property::kWhiteSpace:
            text->keepsBlanks = value.starts_with("pre") || value == "break-spaces";
            break;
        case Property::kWordSpacing:
            SetSpacing(value, fontSize, &text->wordSpacing);
            break;
        case Property::kWritingMode:
            text->vertical = value.starts_with("tb") || value.starts_with("vertical");
            break;
        default:
            break;
    }
}

void InheritTextProperty(Property property, const TextProperties& parent, TextProperties* text) {
    switch (property) {
        case Property::kFont: {
            const TextProperties own = std::exchange(*text, parent);
            text->anchor = own.anchor;
            text->vertical = own.vertical;
            text->baselineShift = own.baselineShift;
            break;
        }
        case Property::kFontFamily:
            text->families = parent.families;
            break;
        case Property::kFontStretch:
            text->width = parent.width;
            break;
        case Property::kFontStyle:
            text->slant = parent.slant;
            break;
        case Property::kFontWeight:
            text->weight = parent.weight;
            break;
        case Property::kLetterSpacing:
            text->letterSpacing = parent.letterSpacing;
            break;
        case Property::kLineHeight:
            text->lineHeight = parent.lineHeight;
            break;
        case Property::kTextAlign:
            text->align = parent.align;
            break;
        case Property::kTextAnchor:
            text->anchor = parent.anchor;
            break;
        case Property::kWhiteSpace:
            text->keepsBlanks = parent.keepsBlanks;
            break;
        case Property::kWordSpacing:
            text->wordSpacing = parent.wordSpacing;
            break;
        case Property::kWritingMode:
            text->vertical = parent.vertical;
            break;
        default:
            break;
    }
}

std::vector<std::string> FamiliesOf(Text list) {
    std::vector<std::string> families;
    while (!list.empty() && families.size() < 16) {
        const size_t stop = std::min(list.find(','), list.size());
        Text name = Trim(list.substr(0, stop));
        if (name.size() >= 2 && (name.front() == '\'' || name.front() == '"') && name.back() == name.front())
            name = Trim(name.substr(1, name.size() - 2));
        if (!name.empty()) families.emplace_back(name.substr(0, 256));
        list.remove_prefix(std::min(stop + 1, list.size()));
    }
    return families;
}

} // namespace workbench
