#include <algorithm>
#include <cmath>
#include <numbers>

#include "workbench/document/color.h"
#include "workbench/document/pattern_space.h"
#include "workbench/svg/path_art.h"
#include "workbench/svg/svg_text.h"
#include "workbench/svg/transforms.h"

namespace workbench {
namespace {

constexpr double kDegree = std::numbers::pi / 180;

bool SameColor(const WriteContext& context, const HostColor& a, const HostColor& b) {
    return a.kind == b.kind && ColorText(context.document, a) == ColorText(context.document, b);
}

/// The text of a colour that "#rrggbb" gives back exactly needs no other words.
bool IsScreenColor(const HostColor& color) {
    if (color.kind != kColorThree) return false;
    const auto exact = [](double value) {
        return value >= 0 && value <= 1 && std::round(value * 255) / 255.0 == value;
    };
    return exact(color.u.three.red) && exact(color.u.three.green) && exact(color.u.three.blue);
}

HostColor Mixed(const Document& document, const HostColor& a, const HostColor& b) {
    const Light first = LightOf(document, a), second = LightOf(document, b);
    return ThreeColor((first.red + second.red) / 2, (first.green + second.green) / 2,
                      (first.blue + second.blue) / 2);
}

void AppendStop(WriteContext& context, const HostColor& color, double opacity, double location,
                double midpoint, bool between, std::string* text) {
    *text += "<stop offset=\"";
    AppendNumber(text, location);
    *text += "%\"";
    AppendAttribute(text, "stop-color", ScreenColor(context.document, color));
    if (opacity != 1) AppendAttribute(text, "stop-opacity", NumbersText(opacity));
    if (between) AppendOwn(text, kOwnBetween, "true");
    if (!between && !IsScreenColor(color)) AppendOwn(text, kOwnStopColor, ColorText(context.document, color));
    if (midpoint != 50) AppendOwn(text, kOwnMidpoint, NumbersText(midpoint));
    *text += "/>";
}

/// The element that holds a gradient's stops; those that place it refer to it.
std::string StopsOf(WriteContext& context, const Gradient& gradient, const char* element) {
    std::string& id = context.stops[&gradient];
    if (!id.empty()) return id;
    id = context.NewId("stops");
    std::string text = "<" + std::string(element);
    AppendAttribute(&text, "id", id);
    AppendOwn(&text, kOwnName, gradient.name);
    text += ">";
    for (size_t i = 0; i < gradient.stops.size(); ++i) {
        const HostGradientStop& stop = gradient.stops[i];
        AppendStop(context, stop.color, stop.opacity, stop.location, stop.midpoint, false, &text);
        if (stop.midpoint == 50 || i + 1 == gradient.stops.size()) continue;
        const HostGradientStop& next = gradient.stops[i + 1];
        AppendStop(context, Mixed(context.document, stop.color, next.color),
                   (stop.opacity + next.opacity) / 2,
                   stop.location + (next.location - stop.location) * stop.midpoint / 100, 50, true, &text);
    }
    context.defs += text + "</" + element + ">\n";
    return id;
}

/// The element that holds a pattern's art; empty for one that contains itself.
std::string TileOf(WriteContext& context, const Pattern& pattern) {
    const auto known = context.tiles.find(&pattern);
    if (known != context.tiles.end()) return known->second;
    context.tiles[&pattern] = {}; // in hand: a use within its own art finds no tile
    std::string members;
    WriteArt(context, *pattern.art, &members);
    const std::string id = context.NewId("tile");
    context.defs += "<pattern";
    AppendAttribute(&context.defs, "id", id);
    AppendOwn(&context.defs, kOwnName, pattern.name);
    context.defs += ">\n" + members + "</pattern>\n";
    return context.tiles[&pattern] = id;
}

/// Defines a server once for each text.
std::string Define(WriteContext& context, const char* element, const std::string& attributes) {
    const std::string key = element + attributes;
    std::string& id = context.paints[key];
    if (id.empty()) {
        id = context.NewId("paint");
        context.defs += "<" + std::string(element) + " id=\"" + id + "\"" + attributes + "/>\n";
    }
    return "url(#" + id + ")";
}

std::string ColorAttribute(WriteContext& context, const HostColor& color) {
    if (color.kind == kColorGradient) return GradientReference(context, color.u.gradient);
    if (color.kind == kColorPattern) return PatternReference(context, color.u.pattern);
    return ScreenColor(context.document, color);
}

void AppendColor(WriteContext& context, const char* name, const char* ownName, bool painted,
                 const HostColor& color, const HostColor& unpainted, std::string* markup) {
    std::string value = painted ? ColorAttribute(context, color) : "none";
    if (value.empty()) {
        context.losses["paint"]++;
        value = "none";
    }
    AppendAttribute(markup, name, value);
    const std::string own = ColorText(context.document, color);
    const bool needed = painted ? !IsScreenColor(color) : !SameColor(context, color, unpainted);
    if (needed && !own.empty()) AppendOwn(markup, ownName, own);
}

} // namespace

std::string GradientReference(WriteContext& context, const HostGradientUse& use) {
    const Gradient* gradient = context.document.Find(use.gradient);
    if (!gradient) return {};
    const bool radial = gradient->type == kGradientRadial;
    const char* element = radial ? "radialGradient" : "linearGradient";
    std::string text;
    AppendAttribute(&text, "xlink:href", "#" + StopsOf(context, *gradient, element));
    AppendAttribute(&text, "gradientUnits", "userSpaceOnUse");
    const double angle = (radial ? use.highlightAngle : use.angle) * kDegree;
    const double reach = radial ? use.highlightLength * use.length : use.length;
    const HostPoint end{use.origin.x + reach * std::cos(angle), use.origin.y + reach * std::sin(angle)};
    AppendAttribute(&text, radial ? "cx" : "x1", NumbersText(use.origin.x));
    AppendAttribute(&text, radial ? "cy" : "y1", NumbersText(use.origin.y));
    if (radial) AppendAttribute(&text, "r", NumbersText(use.length));
    if (!radial || reach != 0) {
        AppendAttribute(&text, radial ? "fx" : "x2", NumbersText(end.x));
        AppendAttribute(&text, radial ? "fy" : "y2", NumbersText(end.y));
    }
    AppendAttribute(&text, "gradientTransform", MatrixText(use.matrix));
    AppendOwn(&text, kOwnGradient,
              NumbersText(use.angle, use.length, use.highlightAngle, use.highlightLength));
    return Define(context, element, text);
}

std::string PatternReference(WriteContext& context, const HostPatternUse& use) {
    const Pattern* pattern = context.document.Find(use.pattern);
    HostRect tile{};
    if (!pattern || !pattern->art || !context.document.Bounds(*pattern->art, &tile)) return {};
    const std::string base = TileOf(context, *pattern);
    if (base.empty()) return {};
    std::string text;
    AppendAttribute(&text, "xlink:href", "#" + base);
    AppendAttribute(&text, "patternUnits", "userSpaceOnUse");
    AppendAttribute(&text, "x", NumbersText(tile.left));
    AppendAttribute(&text, "y", NumbersText(tile.bottom));
    AppendAttribute(&text, "width", NumbersText(tile.right - tile.left));
    AppendAttribute(&text, "height", NumbersText(tile.top - tile.bottom));
    AppendAttribute(&text, "patternTransform",
                    MatrixText(Concat(PatternToArt(use), {1, 0, 0, 1, -tile.left, -tile.bottom})));
    const HostMatrix& m = use.matrix;
    AppendOwn(&text, kOwnPattern,
              NumbersText(use.shiftDistance, use.shiftAngle, use.scale.x, use.scale.y, use.rotation,
                          use.reflect ? 1 : 0, use.reflectAngle, use.shearAngle, use.shearAxis, m.a, m.b, m.c,
                          m.d, m.tx, m.ty));
    return Define(context, "pattern", text);
}

std::string PaintAttributes(WriteContext& context, const HostPathStyle& style, const HostPathStyle& plain) {
    std::string text;
    AppendColor(context, "fill", kOwnFill, style.fillPaint, style.fill, plain.fill, &text);
    AppendColor(context, "stroke", kOwnStroke, style.strokePaint, style.stroke, plain.stroke, &text);
    if (style.lineWidth != 1) AppendAttribute(&text, "stroke-width", NumbersText(style.lineWidth));
    if (style.strokePaint && style.lineWidth == 0) AppendOwn(&text, kOwnLineWidth, "0");
    static constexpr const char* kCaps[] = {"butt", "round", "square"};
    static constexpr const char* kJoins[] = {"miter", "round", "bevel"};
    if (style.lineCap > 0 && style.lineCap < 3)
        AppendAttribute(&text, "stroke-linecap", kCaps[style.lineCap]);
    if (style.lineJoin > 0 && style.lineJoin < 3)
        AppendAttribute(&text, "stroke-linejoin", kJoins[style.lineJoin]);
    if (style.miterLimit != 4) AppendAttribute(&text, "stroke-miterlimit", NumbersText(style.miterLimit));
    if (style.dash.count > 0) {
        std::string dashes;
        for (int32_t i = 0; i < std::min(style.dash.count, 6); ++i) {
            if (i > 0) dashes += ' ';
            AppendNumber(&dashes, style.dash.lengths[i]);
        }
        AppendAttribute(&text, "stroke-dasharray", dashes);
        if (style.dash.offset != 0)
            AppendAttribute(&text, "stroke-dashoffset", NumbersText(style.dash.offset));
    }
    if (style.fillOverprint || style.strokeOverprint)
        AppendOwn(&text, kOwnOverprint,
                  std::string(style.fillOverprint ? "fill" : "") + (style.strokeOverprint ? " stroke" : ""));
    if (style.resolution != plain.resolution) AppendOwn(&text, kOwnResolution, NumbersText(style.resolution));
    if (style.lockClip) AppendOwn(&text, kOwnLockClip, "true");
    return text;
}

} // namespace workbench
