#include "workbench/svg/own_words.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "workbench/document/color.h"

namespace workbench {
namespace {

using Text = std::string_view;

struct ColorWord {
    Text word;
    int32_t kind;
    int numbers;
};
constexpr ColorWord kColorWords[] = {
    {"gray", kColorGray, 1}, {"four", kColorFour, 4}, {"three", kColorThree, 3}, {"custom", kColorCustom, 1}};
constexpr ColorWord kDefinitionWords[] = {
    {"four", kCustomFour, 4}, {"three", kCustomThree, 3}, {"lab", kCustomLab, 3}, {"one", kCustomOne, 1}};

template <size_t count>
const ColorWord* TakeColorWord(const ColorWord (&words)[count], TextCursor& cursor, double (&values)[4]) {
    for (const ColorWord& word : words) {
        if (!cursor.TakeWord(word.word)) continue;
        for (int i = 0; i < word.numbers; ++i) {
            cursor.SkipBlanks();
            if (!cursor.Number(&values[i])) return nullptr;
        }
        return &word;
    }
    return nullptr;
}

void AppendPoint(std::string* text, HostPoint point) {
    AppendNumber(text, point.x);
    *text += ' ';
    AppendNumber(text, point.y);
    *text += ' ';
}

bool TakePoint(TextCursor& cursor, HostPoint* point) {
    cursor.SkipBlanks();
    if (!cursor.Number(&point->x)) return false;
    cursor.SkipBlanks();
    return cursor.Number(&point->y);
}

std::string HexText(double red, double green, double blue) {
    const auto byte = [](double value) {
        return static_cast<unsigned>(std::lround(std::clamp(value, 0.0, 1.0) * 255));
    };
    char text[8];
    std::snprintf(text, sizeof text, "#%02x%02x%02x", byte(red), byte(green), byte(blue));
    return text;
}

} // namespace

void AppendNumber(std::string* text, double value) {
    char digits[32];
    if (!std::isfinite(value) || value == 0) value = 0;
    const auto result = std::to_chars(digits, digits + sizeof digits, value == 0 ? 0.0 : value);
    text->append(digits, result.ptr);
}

std::string ColorText(const Document& document, const HostColor& color) {
    switch (color.kind) {
        case kColorGray:
            return "gray " + NumbersText(color.u.gray.gray);
        case kColorFour:
            return "four " + NumbersText(color.u.four.cyan, color.u.four.magenta, color.u.four.yellow,
                                         color.u.four.black);
        case kColorThree:
            return "three " + NumbersText(color.u.three.red, color.u.three.green, color.u.three.blue);
        case kColorCustom: {
            const CustomColor* custom = document.Find(color.u.custom.color);
            return custom ? "custom " + NumbersText(color.u.custom.tint) + " " + custom->name : std::string{};
        }
        default:
            return {};
    }
}

bool ParseColorText(Document& document, Text text, HostColor* color) {
    TextCursor cursor(text);
    double v[4]{};
    const ColorWord* word = TakeColorWord(kColorWords, cursor, v);
    if (!word) return false;
    switch (word->kind) {
        case kColorGray:
            *color = GrayColor(v[0]);
            return cursor.AtEnd();
        case kColorFour:
            *color = FourColor(v[0], v[1], v[2], v[3]);
            return cursor.AtEnd();
        case kColorThree:
            *color = ThreeColor(v[0], v[1], v[2]);
            return cursor.AtEnd();
        default:
            break;
    }
    if (!cursor.Take(' ')) return false;
    const CustomColor* custom = document.FindCustomColor(cursor.Rest());
    if (!custom) return false;
    *color = {};
    color->kind = kColorCustom;
    color->u.custom = {custom->handle, v[0]};
    return true;
}

std::string DefinitionText(const HostCustomColor& definition) {
    std::string text;
    for (const ColorWord& word : kDefinitionWords) {
        if (word.kind != definition.kind) continue;
        text = word.word;
        for (int i = 0; i < word.numbers; ++i) {
            text += ' ';
            AppendNumber(&text, definition.values[i]);
        }
    }
    return text + " " + std::to_string(definition.flags);
}

bool ParseDefinitionText(Text text, HostCustomColor* definition) {
    TextCursor cursor(text);
    *definition = {};
    const ColorWord* word = TakeColorWord(kDefinitionWords, cursor, definition->values);
    if (!word) return false;
    definition->kind = word->kind;
    cursor.SkipBlanks();
    return std::from_chars(cursor.at, cursor.end, definition->flags).ptr == cursor.end;
}

std::string ScreenColor(const Document& document, const HostColor& color) {
    const Light light = LightOf(document, color);
    return HexText(light.red, light.green, light.blue);
}

std::string HexColor(const ColorValue& color) {
    return HexText(color.channel[0], color.channel[1], color.channel[2]);
}

std::string MarkOf(Text text) {
    uint64_t hash = 0xCBF29CE484222325u;
    for (const char c : text) hash = (hash ^ static_cast<uint8_t>(c)) * 0x100000001B3u;
    char digits[17];
    std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(hash));
    return digits;
}

std::string SegmentsText(const Subpaths& subpaths, Text pathData) {
    std::string text = MarkOf(pathData);
    for (const Subpath& subpath : subpaths) {
        text += subpath.closed ? " closed " : " open ";
        for (const HostPathSegment& segment : subpath.segments) {
            AppendPoint(&text, segment.anchor);
            AppendPoint(&text, segment.in);
            AppendPoint(&text, segment.out);
            text += segment.corner ? "c" : "s";
        }
    }
    return text;
}

bool ParseSegmentsText(Text text, Text pathData, size_t most, Subpaths* subpaths) {
    const std::string mark = MarkOf(pathData);
    if (!text.starts_with(mark)) return false;
    TextCursor cursor(text.substr(mark.size()));
    subpaths->clear();
    size_t count = 0;
    while (!cursor.AtEnd()) {
        cursor.SkipBlanks();
        HostPathSegment segment{};
        if (cursor.TakeWord("closed")) {
            subpaths->push_back({{}, true});
        } else if (cursor.TakeWord("open")) {
            subpaths->push_back({{}, false});
        } else {
            const bool good = !subpaths->empty() && ++count <= most && TakePoint(cursor, &segment.anchor) &&
                              TakePoint(cursor, &segment.in) && TakePoint(cursor, &segment.out);
            if (!good) return false;
            cursor.SkipBlanks();
            segment.corner = cursor.Take('c');
            if (!segment.corner && !cursor.Take('s')) return false;
            subpaths->back().segments.push_back(segment);
        }
    }
    return !subpaths->empty() &&
           std::ranges::none_of(*subpaths, [](const Subpath& s) { return s.segments.empty(); });
}

} // namespace workbench
