#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>

#include "workbench/svg/own_words.h"
#include "workbench/svg/paint_servers.h"
#include "workbench/svg/transforms.h"

namespace workbench {
namespace {

constexpr double kDegrees = 180 / std::numbers::pi;
constexpr size_t kMostStops = 10'000;

/// A gradient's geometry in its own space.
struct Geometry {
    HostPoint from{}, to{}; ///< linear: the ends; radial: centre and focus
    double radius = 0;
    HostMatrix toArt{1, 0, 0, 1, 0, 0};
};

struct StopColor {
    HostColor color{};
    double opacity = 1;
};

StopColor ReadStopColor(ReadContext& context, pugi::xml_node stop, const ComputedStyle& style) {
    const ColorValue shown = style.stopIsCurrentColor ? style.color : style.stopColor;
    StopColor result{ToHostColor(shown), style.stopOpacity * shown.alpha};
    const std::string_view own = context.Own(stop, kOwnStopColor);
    HostColor exact{};
    if (!own.empty() && ParseColorText(context.document, own, &exact) &&
        ScreenColor(context.document, exact) == HexColor(shown))
        result.color = exact;
    return result;
}

/// 0 to 100.  A percentage is taken as it is written, so that it comes back as the same number.
double ReadLocation(pugi::xml_node stop) {
    TextCursor cursor(Trim(stop.attribute("offset").value()));
    double offset = 0;
    if (!cursor.Number(&offset)) return 0;
    if (!cursor.Take('%')) offset *= 100;
    return std::clamp(offset, 0.0, 100.0);
}

double ReadMidpoint(ReadContext& context, pugi::xml_node stop) {
    TextCursor cursor(context.Own(stop, kOwnMidpoint));
    double midpoint = 50;
    return cursor.Number(&midpoint) ? std::clamp(midpoint, 0.0, 100.0) : 50;
}

std::vector<HostGradientStop> ReadStops(ReadContext& context, pugi::xml_node owner) {
    std::vector<HostGradientStop> stops;
    const ComputedStyle ownerStyle = StyleInPlace(context, owner);
    for (const pugi::xml_node child : owner.children()) {
        if (child.type() != pugi::node_element || context.KindOf(child) != ElementKind::kStop) continue;
        if (!context.Own(child, kOwnBetween).empty()) continue;
        if (stops.size() == kMostStops) {
            context.Lose("gradient stop");
            continue;
        }
        const StopColor color = ReadStopColor(context, child, ComputeStyle(child, ownerStyle, context.sheet));
        double location = ReadLocation(child);
        if (!stops.empty()) location = std::max(location, stops.back().location);
        stops.push_back({ReadMidpoint(context, child), location, color.color, color.opacity});
    }
    return stops;
}

/// The document's gradient for the stops of `owner`; elements that share stops share it.
GradientHandle GradientOf(ReadContext& context, pugi::xml_node owner, int32_t type,
                          std::vector<HostGradientStop> stops) {
    GradientHandle& known = context.gradients[{owner.internal_object(), type}];
    if (known) return known;
    Gradient& gradient = context.document.NewGradient(context.NameOf(owner));
    gradient.type = type;
    gradient.stops = std::move(stops);
    return known = gradient.handle;
}

/// False if the box that the gradient's units refer to is empty.
bool ReadGeometry(ReadContext& context, const ServerChain& chain, bool radial, const Surroundings& here,
                  const Box& box, Geometry* geometry) {
    const bool inBox = chain.Value("gradientUnits") != "userSpaceOnUse";
    if (inBox && (box.empty || !(box.width() > 0) || !(box.height() > 0))) return false;
    const auto read = [&](const char* name, double percent, double whole) {
        const Length length = chain.LengthOf(name, {percent, Unit::kPercent});
        return ToUserUnits(length, here.style.fontSize, inBox ? 1 : whole);
    };
    HostMatrix own;
    ParseTransform(chain.Value("gradientTransform"), &own);
    const HostMatrix units =
        inBox ? HostMatrix{box.width(), 0, 0, box.height(), box.left, box.top} : kIdentity;
    geometry->toArt = Concat(Concat(here.toArt, units), own);
    if (!radial) {
        geometry->from = {read("x1", 0, here.viewWidth), read("y1", 0, here.viewHeight)};
        geometry->to = {read("x2", 100, here.viewWidth), read("y2", 0, here.viewHeight)};
        return IsFinite(geometry->toArt);
    }
    geometry->from = {read("cx", 50, here.viewWidth), read("cy", 50, here.viewHeight)};
    geometry->radius = read("r", 50, ViewDiagonal(here));
    geometry->to = {chain.Has("fx") ? read("fx", 50, here.viewWidth) : geometry->from.x,
                    chain.Has("fy") ? read("fy", 50, here.viewHeight) : geometry->from.y};
    if (read("fr", 0, ViewDiagonal(here)) > 0) context.Lose("focal radius");
    return IsFinite(geometry->toArt);
}

/// A linear gradient has one form without a matrix: its colours run across the lines of equal colour.
bool PlaceLinear(const Geometry& geometry, HostGradientUse* use) {
    HostMatrix inverse;
    const double dx = geometry.to.x - geometry.from.x, dy = geometry.to.y - geometry.from.y;
    const double square = dx * dx + dy * dy;
    if (!(square > 0) || !Invert(geometry.toArt, &inverse)) return false;
    const HostPoint slope{(inverse.a * dx + inverse.b * dy) / square,
                          (inverse.c * dx + inverse.d * dy) / square};
    const double steepness = std::hypot(slope.x, slope.y);
    if (!(steepness > 0) || !std::isfinite(1 / steepness)) return false;
    use->matrix = kIdentity;
    use->origin = Apply(geometry.toArt, geometry.from);
    use->angle = std::atan2(slope.y, slope.x) * kDegrees;
    use->length = 1 / steepness;
    return true;
}

/// A radial gradient keeps a matrix only if it is an ellipse, with values near 1, which lose least where
/// numbers are stored with a fixed number of digits.
bool PlaceRadial(const Geometry& geometry, HostGradientUse* use) {
    const HostMatrix& m = geometry.toArt;
    const double scale = MeanScale(m);
    if (!(scale > 0) || !(geometry.radius > 0) || !std::isfinite(scale)) return false;
    HostMatrix shape{m.a / scale, m.b / scale, m.c / scale, m.d / scale, 0, 0};
    HostPoint focus{geometry.to.x - geometry.from.x, geometry.to.y - geometry.from.y};
    use->origin = Apply(m, geometry.from);
    use->length = geometry.radius * scale;
    use->highlightLength = std::min(std::hypot(focus.x, focus.y) / geometry.radius, 1.0);
    if (!IsUneven(m)) {
        focus = Apply(shape, focus);
        shape = kIdentity;
    } else if (Determinant(shape) < 0) {
        shape.c = -shape.c;
        shape.d = -shape.d;
        focus.y = -focus.y;
    }
    const HostPoint centre = Apply(shape, use->origin);
    use->matrix = shape;
    use->matrix.tx = use->origin.x - centre.x;
    use->matrix.ty = use->origin.y - centre.y;
    use->highlightAngle = use->highlightLength > 0 ? std::atan2(focus.y, focus.x) * kDegrees : 0;
    return true;
}

/// Our own files tell the document's very numbers; they count as long as the element's geometry agrees.
bool PlaceExactly(std::string_view text, const Geometry& geometry, bool radial, HostGradientUse* use) {
    const auto numbers = ParseNumbers(text, 4);
    if (numbers.size() != 4) return false;
    const double length = numbers[1];
    const double angle = (radial ? numbers[2] : numbers[0]) / kDegrees;
    const double reach = radial ? numbers[3] * length : length;
    const double tolerance = 1e-6 * std::max(1.0, std::abs(length));
    const auto near = [&](double a, double b) { return std::abs(a - b) <= tolerance; };
    if (radial && !near(geometry.radius, length)) return false;
    if (!near(geometry.from.x + reach * std::cos(angle), geometry.to.x) ||
        !near(geometry.from.y + reach * std::sin(angle), geometry.to.y))
        return false;
    *use = {nullptr, geometry.from, numbers[0], length, geometry.toArt, numbers[2], numbers[3]};
    return true;
}

/// What is left of a gradient that has no extent: its last colour.
Paint SolidPaint(const HostGradientStop& stop) {
    return {true, stop.color, stop.opacity};
}

bool IsNumber(const HostGradientUse& use) {
    return std::isfinite(use.origin.x) && std::isfinite(use.origin.y) && std::isfinite(use.length) &&
           std::isfinite(use.angle) && IsFinite(use.matrix) && std::isfinite(use.highlightAngle);
}

} // namespace

Paint GradientPaint(ReadContext& context, pugi::xml_node element, bool radial, const Surroundings& here,
                    const Box& box) {
    const ServerChain chain(context, element);
    const pugi::xml_node owner = chain.FirstWith([&](pugi::xml_node child) {
        return child.type() == pugi::node_element && context.KindOf(child) == ElementKind::kStop;
    });
    if (!owner) return {};
    const int32_t type = radial ? kGradientRadial : kGradientLinear;
    const auto known = context.gradients.find({owner.internal_object(), type});
    const Gradient* gradient =
        known == context.gradients.end() ? nullptr : context.document.Find(known->second);
    std::vector<HostGradientStop> stops = gradient ? gradient->stops : ReadStops(context, owner);
    if (stops.empty()) return {};
    if (stops.size() == 1) return SolidPaint(stops.front());

    Geometry geometry;
    if (!ReadGeometry(context, chain, radial, here, box, &geometry)) return {};
    const std::string_view spread = chain.Value("spreadMethod");
    if (spread == "reflect" || spread == "repeat") context.Lose("spreadMethod");

    HostGradientUse use{};
    const bool placed = PlaceExactly(context.Own(element, kOwnGradient), geometry, radial, &use) ||
                        (radial ? PlaceRadial(geometry, &use) : PlaceLinear(geometry, &use));
    if (!placed) return Determinant(geometry.toArt) == 0 ? Paint{} : SolidPaint(stops.back());
    if (!IsNumber(use)) return {};
    use.gradient = GradientOf(context, owner, type, std::move(stops));
    Paint paint;
    paint.painted = true;
    paint.color.kind = kColorGradient;
    paint.color.u.gradient = use;
    return paint;
}

} // namespace workbench
