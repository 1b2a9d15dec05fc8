#include "workbench/svg/computed_style.h"

#include <algorithm>
#include <iterator>

#include "workbench/document/art.h"
#include "workbench/svg/text_properties.h"

namespace workbench {
namespace {

using Text = std::string_view;
using Kind = PaintValue::Kind;

constexpr Text kBlendNames[] = {
    "normal", "multiply", "screen",     "overlay",   "soft-light", "hard-light", "color-dodge", "color-burn",
    "darken", "lighten",  "difference", "exclusion", "hue",        "saturation", "color",       "luminosity"};
static_assert(std::size(kBlendNames) == kBlendModeCount);

bool Is(Text value, Text word) {
    return value.size() == word.size() && TextCursor(value).TakeWord(word);
}

void SetPaint(Text value, PaintValue* paint) {
    TextCursor cursor(value);
    const auto plain = [&](Kind* kind, ColorValue* color) {
        if (Is(cursor.Rest(), "none") || Is(cursor.Rest(), "context-fill") ||
            Is(cursor.Rest(), "context-stroke"))
            return *kind = Kind::kNone, true;
        if (cursor.TakeWord("currentColor")) return *kind = Kind::kCurrentColor, true;
        if (!TakeColor(cursor, color)) return false;
        *kind = Kind::kColor;
        cursor.SkipBlanks();
        // Inks beside the screen colour are what the designer chose; a profile we don't have isn't.
        ColorValue inks;
        if (cursor.Rest().starts_with("device-cmyk") && TakeColor(cursor, &inks)) *color = inks;
        return true;
    };
    PaintValue result;
    if (TextCursor(value).TakeWord("url(")) {
        result.kind = Kind::kServer;
        result.server = TakeReference(cursor);
        cursor.SkipBlanks();
        result.hasFallback = plain(&result.fallback, &result.color);
        *paint = result;
    } else if (plain(&result.kind, &result.color)) {
        *paint = result;
    }
}

void SetOpacity(Text value, double* opacity) {
    TextCursor cursor(value);
    double number = 0;
    if (!cursor.Number(&number)) return;
    if (cursor.Take('%')) number /= 100;
    if (cursor.AtEnd()) *opacity = std::clamp(number, 0.0, 1.0);
}

void SetLength(Text value, Length* length) {
    Length parsed;
    if (ParseLength(value, &parsed)) *length = parsed;
}

/// The index of `value` among the words; `old` if it is none of them.
int Choice(Text value, std::initializer_list<Text> words, int old) {
    int index = 0;
    for (const Text word : words) {
        if (value == word) return index;
        ++index;
    }
    return old;
}

void SetFontSize(Text value, const ComputedStyle& parent, double* size) {
    Length length;
    if (ParseLength(value, &length)) {
        const double user = ToUserUnits(length, parent.fontSize, parent.fontSize);
        if (user >= 0) *size = user;
        return;
    }
    static constexpr double kSizes[] = {9, 10, 13, 16, 18, 24, 32};
    const int named =
        Choice(value, {"xx-small", "x-small", "small", "medium", "large", "x-large", "xx-large"}, -1);
    if (named >= 0) *size = kSizes[named];
}

/// The shorthand: words of style, variant, weight and stretch, then the size with the line's height, then
/// the families.
void SetFont(Text value, const ComputedStyle& parent, ComputedStyle* style) {
    style->text.weight = 400;
    style->text.slant = 0;
    style->text.width = 100;
    style->text.lineHeight = 0;
    while (!value.empty()) {
        const size_t stop = std::min(value.find(' '), value.size());
        const Text word = value.substr(0, stop);
        value = Trim(value.substr(stop));
        const size_t slash = std::min(word.find('/'), word.size());
        Length size;
        const bool number = word.find_first_not_of("0123456789") == Text::npos; // a weight, not a size
        if (number || !ParseLength(word.substr(0, slash), &size)) {
            for (const Property property :
                 {Property::kFontStyle, Property::kFontWeight, Property::kFontStretch})
                if (word != "normal") SetTextProperty(property, word, style->fontSize, &style->text);
            continue;
        }
        SetFontSize(word.substr(0, slash), parent, &style->fontSize);
        if (slash < word.size())
            SetTextProperty(Property::kLineHeight, word.substr(slash + 1), style->fontSize, &style->text);
        style->text.families = value;
        return;
    }
}

void SetBlendMode(Text value, ComputedStyle* style) {
    const auto found = std::ranges::find(kBlendNames, value);
    style->unknownBlend = found == std::end(kBlendNames);
    style->blendMode = style->unknownBlend ? 0 : static_cast<int>(found - std::begin(kBlendNames));
}

void SetStopColor(Text value, ComputedStyle* style) {
    TextCursor cursor(value);
    ColorValue color;
    if (cursor.TakeWord("currentColor")) {
        style->stopIsCurrentColor = true;
    } else if (TakeColor(cursor, &color)) {
        style->stopIsCurrentColor = false;
        style->stopColor = color;
    }
}

/// "inherit" takes the parent's value, also of properties that aren't handed down by themselves.
void Inherit(Property property, const ComputedStyle& parent, ComputedStyle* style) {
    switch (property) {
        case Property::kClipPath:
            style->clipPath = parent.clipPath;
            break;
        case Property::kClipRule:
            style->clipEvenOdd = parent.clipEvenOdd;
            break;
        case Property::kColor:
            style->color = parent.color;
            break;
        case Property::kDisplay:
            style->displayed = parent.displayed;
            break;
        case Property::kFill:
            style->fill = parent.fill;
            break;
        case Property::kFillOpacity:
            style->fillOpacity = parent.fillOpacity;
            break;
        case Property::kFillRule:
            style->evenOdd = parent.evenOdd;
            break;
        case Property::kFontSize:
            style->fontSize = parent.fontSize;
            break;
        case Property::kFont:
        case Property::kFontFamily:
        case Property::kFontStretch:
        case Property::kFontStyle:
        case Property::kFontWeight:
        case Property::kLetterSpacing:
        case Property::kLineHeight:
        case Property::kTextAlign:
        case Property::kTextAnchor:
        case Property::kWhiteSpace:
        case Property::kWordSpacing:
        case Property::kWritingMode:
            InheritTextProperty(property, parent.text, &style->text);
            if (property == Property::kFont) style->fontSize = parent.fontSize;
            break;
        case Property::kMixBlendMode:
            style->blendMode = parent.blendMode;
            break;
        case Property::kOpacity:
            style->opacity = parent.opacity;
            break;
        case Property::kStopColor:
            style->stopColor = parent.stopColor;
            style->stopIsCurrentColor = parent.stopIsCurrentColor;
            break;
        case Property::kStopOpacity:
            style->stopOpacity = parent.stopOpacity;
            break;
        case Property::kStroke:
            style->stroke = parent.stroke;
            break;
        case Property::kStrokeDasharray:
            style->dashArray = parent.dashArray;
            break;
        case Property::kStrokeDashoffset:
            style->dashOffset = parent.dashOffset;
            break;
        case Property::kStrokeLinecap:
            style->lineCap = parent.lineCap;
            break;
        case Property::kStrokeLinejoin:
            style->lineJoin = parent.lineJoin;
            break;
        case Property::kStrokeMiterlimit:
            style->miterLimit = parent.miterLimit;
            break;
        case Property::kStrokeOpacity:
            style->strokeOpacity = parent.strokeOpacity;
            break;
        case Property::kStrokeWidth:
            style->strokeWidth = parent.strokeWidth;
            break;
        case Property::kVisibility:
            style->visible = parent.visible;
            break;
        default:
            break;
    }
}

void SetMiterLimit(Text value, ComputedStyle* style) {
    TextCursor cursor(value);
    double limit = 0;
    if (cursor.Number(&limit) && limit >= 1) style->miterLimit = limit;
}

void SetColor(Text value, ComputedStyle* style) {
    TextCursor cursor(value);
    ColorValue color;
    if (TakeColor(cursor, &color)) style->color = color;
}

/// One flag stands for all markers, so only the shorthand can take them away.
void SetMarker(Property property, Text value, ComputedStyle* style) {
    if (value.find("url(") != Text::npos)
        style->marked = true;
    else if (property == Property::kMarker)
        style->marked = false;
}

void SetProperty(Property property, Text value, const ComputedStyle& parent, ComputedStyle* style) {
    TextCursor cursor(value);
    switch (property) {
        case Property::kFont:
            SetFont(value, parent, style);
            break;
        case Property::kBaselineShift:
        case Property::kFontFamily:
        case Property::kFontStretch:
        case Property::kFontStyle:
        case Property::kFontWeight:
        case Property::kLetterSpacing:
        case Property::kLineHeight:
        case Property::kTextAlign:
        case Property::kTextAnchor:
        case Property::kTextDecoration:
        case Property::kWhiteSpace:
        case Property::kWordSpacing:
        case Property::kWritingMode:
            SetTextProperty(property, value, style->fontSize, &style->text);
            break;
        case Property::kClipPath:
            style->clipPath = TakeReference(cursor);
            break;
        case Property::kClipRule:
            style->clipEvenOdd = Choice(value, {"nonzero", "evenodd"}, style->clipEvenOdd);
            break;
        case Property::kColor:
            SetColor(value, style);
            break;
        case Property::kDisplay:
            style->displayed = value != "none";
            break;
        case Property::kFill:
            SetPaint(value, &style->fill);
            break;
        case Property::kFillOpacity:
            SetOpacity(value, &style->fillOpacity);
            break;
        case Property::kFillRule:
            style->evenOdd = Choice(value, {"nonzero", "evenodd"}, style->evenOdd);
            break;
        case Property::kFilter:
            style->filtered = value != "none";
            break;
        case Property::kFontSize:
            SetFontSize(value, parent, &style->fontSize);
            break;
        case Property::kIsolation:
            style->isolated = value == "isolate";
            break;
        case Property::kMarker:
        case Property::kMarkerEnd:
        case Property::kMarkerMid:
        case Property::kMarkerStart:
            SetMarker(property, value, style);
            break;
        case Property::kMask:
            style->masked = value.find("url(") != Text::npos;
            break;
        case Property::kMixBlendMode:
            SetBlendMode(value, style);
            break;
        case Property::kOpacity:
            SetOpacity(value, &style->opacity);
            break;
        case Property::kOverflow:
            style->overflows = value == "visible" || value == "auto";
            break;
        case Property::kPaintOrder:
            style->strokeFirst = value.starts_with("stroke");
            break;
        case Property::kStopColor:
            SetStopColor(value, style);
            break;
        case Property::kStopOpacity:
            SetOpacity(value, &style->stopOpacity);
            break;
        case Property::kStroke:
            SetPaint(value, &style->stroke);
            break;
        case Property::kStrokeDasharray:
            style->dashArray = value == "none" ? Text{} : value;
            break;
        case Property::kStrokeDashoffset:
            SetLength(value, &style->dashOffset);
            break;
        case Property::kStrokeLinecap:
            style->lineCap = Choice(value, {"butt", "round", "square"}, style->lineCap);
            break;
        case Property::kStrokeLinejoin:
            style->lineJoin = Choice(value, {"miter", "round", "bevel"}, style->lineJoin);
            break;
        case Property::kStrokeMiterlimit:
            SetMiterLimit(value, style);
            break;
        case Property::kStrokeOpacity:
            SetOpacity(value, &style->strokeOpacity);
            break;
        case Property::kStrokeWidth:
            SetLength(value, &style->strokeWidth);
            break;
        case Property::kTransform:
            style->transform = value;
            break;
        case Property::kVectorEffect:
            style->fixedStrokeWidth = value == "non-scaling-stroke";
            break;
        case Property::kVisibility:
            style->visible = Choice(value, {"hidden", "visible", "collapse"}, style->visible) == 1;
            break;
        case Property::kCount:
            break;
    }
}

void Declare(const Declaration& declaration, const ComputedStyle& parent, ComputedStyle* style) {
    if (declaration.value == "inherit")
        Inherit(declaration.property, parent, style);
    else
        SetProperty(declaration.property, declaration.value, parent, style);
}

/// What an element starts from: the inherited half of its parent's style.
ComputedStyle Inherited(const ComputedStyle& parent) {
    ComputedStyle style = parent;
    const ComputedStyle initial;
    style.displayed = initial.displayed;
    style.isolated = initial.isolated;
    style.overflows = initial.overflows;
    style.fixedStrokeWidth = initial.fixedStrokeWidth;
    style.unknownBlend = initial.unknownBlend;
    style.blendMode = initial.blendMode;
    style.opacity = initial.opacity;
    style.stopColor = initial.stopColor;
    style.stopIsCurrentColor = initial.stopIsCurrentColor;
    style.stopOpacity = initial.stopOpacity;
    style.clipPath = initial.clipPath;
    style.masked = initial.masked;
    style.filtered = initial.filtered;
    style.transform = initial.transform;
    style.text.baselineShift = initial.text.baselineShift;
    return style;
}

/// Lengths in em are handed down as what they are here.
void Settle(Length* length, double fontSize) {
    if (length->unit == Unit::kEm || length->unit == Unit::kEx)
        *length = {ToUserUnits(*length, fontSize, 0), Unit::kUser};
}

} // namespace

std::string_view BlendModeName(int mode) {
    return mode >= 0 && mode < kBlendModeCount ? kBlendNames[mode] : kBlendNames[0];
}

ComputedStyle ComputeStyle(pugi::xml_node element, const ComputedStyle& parent, StyleSheet& sheet) {
    ComputedStyle style = Inherited(parent);
    Text styleText;
    for (const pugi::xml_attribute attribute : element.attributes()) {
        const Text name = attribute.name();
        if (name == "style") {
            styleText = attribute.value();
        } else if (name == "xml:space") {
            style.text.keepsBlanks = Text(attribute.value()) == "preserve";
        } else if (const auto property = FindProperty(name);
                   property && *property != Property::kTransform && *property != Property::kFont) {
            Declare({*property, false, Trim(attribute.value())}, parent, &style);
        }
    }
    if (!styleText.empty() || !sheet.empty()) {
        std::vector<Declaration> rules, own;
        if (!sheet.empty()) sheet.Match(element, &rules);
        if (!styleText.empty()) ParseDeclarations(styleText, &own);
        for (const bool important : {false, true})
            for (const auto* declarations : {&rules, &own})
                for (const Declaration& declaration : *declarations)
                    if (declaration.important == important) Declare(declaration, parent, &style);
    }
    Settle(&style.strokeWidth, style.fontSize);
    Settle(&style.dashOffset, style.fontSize);
    return style;
}

bool PlainColor(const ComputedStyle& style, Kind kind, const ColorValue& given, ColorValue* color) {
    if (kind == Kind::kNone || kind == Kind::kServer) return false;
    *color = kind == Kind::kCurrentColor ? style.color : given;
    return true;
}

} // namespace workbench
