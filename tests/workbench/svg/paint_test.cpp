#include <cmath>

#include "tests/workbench/svg/svg_helpers.h"

namespace workbench {
namespace {

const HostPathStyle& StyleOf(const ReadFile& file, const char* name = "p") {
    static const HostPathStyle none{};
    const Art* art = Named(*file.document, name);
    EXPECT_TRUE(art && art->path()) << name;
    return art && art->path() ? art->path()->style : none;
}

HostGradientUse GradientOf(const ReadFile& file, const char* name = "p") {
    const HostPathStyle& style = StyleOf(file, name);
    EXPECT_TRUE(style.fillPaint && style.fill.kind == kColorGradient);
    return style.fill.u.gradient;
}

const std::string kStops =
    "<stop offset='0' stop-color='#f00'/><stop offset='1' stop-color='#00f' stop-opacity='.5'/>";

void ExpectLine(const HostGradientUse& use, HostPoint from, HostPoint to) {
    const double angle = use.angle / 180 * std::acos(-1.0);
    EXPECT_NEAR(use.origin.x, from.x, 1e-9);
    EXPECT_NEAR(use.origin.y, from.y, 1e-9);
    EXPECT_NEAR(use.origin.x + use.length * std::cos(angle), to.x, 1e-9);
    EXPECT_NEAR(use.origin.y + use.length * std::sin(angle), to.y, 1e-9);
    EXPECT_EQ(use.matrix.a, 1);
    EXPECT_EQ(use.matrix.ty, 0);
}

TEST(Gradients, LinearInUserSpace) {
    const ReadFile file = ReadBody(
        "<linearGradient id='g' gradientUnits='userSpaceOnUse' x1='10' y1='20' x2='40' y2='60'>" + kStops +
        "</linearGradient><rect id='p' width='9' height='9' fill='url(#g)'/><rect id='q' width='9' "
        "height='9' fill='url(\"#g\")'/>");
    const HostGradientUse use = GradientOf(file);
    ExpectLine(use, {10, 80}, {40, 40});
    EXPECT_NEAR(use.length, 50, 1e-9);
    const Gradient* gradient = file.document->Find(use.gradient);
    ASSERT_TRUE(gradient);
    EXPECT_EQ(gradient->name, "g");
    EXPECT_EQ(gradient->type, kGradientLinear);
    ASSERT_EQ(gradient->stops.size(), 2u);
    EXPECT_EQ(gradient->stops[1].location, 100);
    EXPECT_EQ(gradient->stops[1].opacity, 0.5);
    EXPECT_EQ(gradient->stops[0].midpoint, 50);
    EXPECT_EQ(ColorOf(*file.document, gradient->stops[0].color), "three 1 0 0");
    EXPECT_EQ(GradientOf(file, "q").gradient, use.gradient) << "one gradient for all that name it";
}

TEST(Gradients, LinearInUnitsOfTheBoxSlantsWithIt) {
    // From corner to corner of a box of 2 to 1: the lines of equal colour run along the other diagonal.
    const ReadFile file =
        ReadBody("<linearGradient id='g' x1='0' y1='0' x2='1' y2='1'>" + kStops +
                 "</linearGradient><rect id='p' x='20' y='40' width='40' height='20' fill='url(#g)'/>");
    const HostGradientUse use = GradientOf(file);
    // In the file's space: from (20, 40), steepest along (1/40, 1/20), reaching 2 halves at that slope.
    const double length = 2 / std::hypot(1 / 40.0, 1 / 20.0);
    const double x = 1 / 40.0 / std::hypot(1 / 40.0, 1 / 20.0), y = 1 / 20.0 / std::hypot(1 / 40.0, 1 / 20.0);
    ExpectLine(use, {20, 60}, {20 + length * x, 60 - length * y});
}

TEST(Gradients, TheTransformAndTheChainCount) {
    const ReadFile file = ReadBody(
        "<linearGradient id='s'>" + kStops +
        "</linearGradient>"
        "<linearGradient id='h' xlink:href='#s' gradientUnits='userSpaceOnUse' x1='1' x2='11'/>"
        "<linearGradient id='g' xlink:href='#h' x1='0' gradientTransform='translate(5,7) rotate(90)'/>"
        "<g transform='scale(2)'><rect id='p' width='9' height='9' fill='url(#g)'/></g>");
    ExpectLine(GradientOf(file), {10, 86}, {10, 64});
    EXPECT_EQ(file.document->Find(GradientOf(file).gradient)->name, "s");
}

TEST(Gradients, RadialCirclesHaveNoMatrixAndAFocus) {
    const ReadFile file = ReadBody(
        "<radialGradient id='g' gradientUnits='userSpaceOnUse' cx='50' cy='40' r='20' fx='50' fy='30'>" +
        kStops + "</radialGradient><rect id='p' width='9' height='9' fill='url(#g)'/>");
    const HostGradientUse use = GradientOf(file);
    EXPECT_EQ(file.document->Find(use.gradient)->type, kGradientRadial);
    EXPECT_NEAR(use.origin.x, 50, 1e-9);
    EXPECT_NEAR(use.origin.y, 60, 1e-9);
    EXPECT_NEAR(use.length, 20, 1e-9);
    EXPECT_NEAR(use.highlightLength, 0.5, 1e-9);
    EXPECT_NEAR(use.highlightAngle, 90, 1e-9) << "upward";
    EXPECT_EQ(use.matrix.a, 1);
    EXPECT_EQ(use.matrix.d, 1);
    EXPECT_EQ(use.matrix.tx, 0);
}

TEST(Gradients, RadialEllipsesMapTheUnitCircleToTheirEdge) {
    const ReadFile file =
        ReadBody("<radialGradient id='g'>" + kStops +
                 "</radialGradient><rect id='p' x='20' y='40' width='40' height='10' fill='url(#g)'/>");
    const HostGradientUse use = GradientOf(file);
    const auto edge = [&](double x, double y) {
        const HostPoint p{use.origin.x + use.length * x, use.origin.y + use.length * y};
        return HostPoint{use.matrix.a * p.x + use.matrix.c * p.y + use.matrix.tx,
                         use.matrix.b * p.x + use.matrix.d * p.y + use.matrix.ty};
    };
    EXPECT_NEAR(edge(0, 0).x, 40, 1e-9);
    EXPECT_NEAR(edge(0, 0).y, 55, 1e-9);
    EXPECT_NEAR(edge(1, 0).x, 60, 1e-9);
    EXPECT_NEAR(edge(1, 0).y, 55, 1e-9);
    EXPECT_NEAR(edge(0, 1).y, 60, 1e-9);
    EXPECT_GT(use.matrix.d, 0) << "not mirrored";
    EXPECT_NEAR(use.matrix.a * use.matrix.d, 1, 1e-9);
}

TEST(Gradients, StopsAreOrderedClampedAndAsManyAsThereAre) {
    std::string stops =
        "<stop offset='-1' style='stop-color:currentColor;stop-opacity:.25'/><stop offset='60%'/><stop "
        "offset='.4'/>";
    for (int i = 0; i < 40; ++i) stops += "<stop offset='.7'/>";
    const ReadFile file =
        ReadBody("<g color='#0f0'><linearGradient id='g'>" + stops +
                 "<stop offset='9'/></linearGradient></g><rect id='p' width='9' height='9' fill='url(#g)'/>");
    const auto& read = file.document->Find(GradientOf(file).gradient)->stops;
    ASSERT_EQ(read.size(), 44u);
    EXPECT_EQ(read[0].location, 0);
    EXPECT_EQ(read[0].opacity, 0.25);
    EXPECT_EQ(ColorOf(*file.document, read[0].color), "three 0 1 0");
    EXPECT_EQ(read[1].location, 60);
    EXPECT_EQ(read[2].location, 60);
    EXPECT_EQ(read.back().location, 100);
}

TEST(Gradients, DegenerateOnesAreWhatTheyShow) {
    const auto fill = [](const std::string& definitions,
                         const std::string& shape = "<rect id='p' width='9' height='9' fill='url(#g)'/>") {
        const ReadFile file = ReadBody(definitions + shape);
        const HostPathStyle& style = StyleOf(file);
        return style.fillPaint ? ColorOf(*file.document, style.fill) : "none";
    };
    EXPECT_EQ(fill("<linearGradient id='g'/>"), "none");
    EXPECT_EQ(fill("<linearGradient id='g'><stop stop-color='#0f0'/></linearGradient>"), "three 0 1 0");
    EXPECT_EQ(fill("<linearGradient id='g' x1='1' x2='1'>" + kStops + "</linearGradient>"), "three 0 0 1");
    EXPECT_EQ(fill("<radialGradient id='g' r='0'>" + kStops + "</radialGradient>"), "three 0 0 1");
    EXPECT_EQ(fill("<linearGradient id='g' gradientTransform='scale(0)'>" + kStops + "</linearGradient>"),
              "none");
    EXPECT_EQ(fill("<linearGradient id='g' xlink:href='#h'/><linearGradient id='h' xlink:href='#g'/>"),
              "none");
    EXPECT_EQ(fill("<linearGradient id='g'>" + kStops + "</linearGradient>",
                   "<path id='p' d='M0 0h9' fill='url(#g) #0f0'/>"),
              "three 0 1 0");
    EXPECT_EQ(fill("<rect id='g'/>"), "none");
}

TEST(Gradients, SpreadIsCountedAndStrokesHaveThemToo) {
    const ReadFile file = ReadBody("<linearGradient id='g' spreadMethod='reflect'>" + kStops +
                                   "</linearGradient><rect id='p' width='9' height='9' fill='none' "
                                   "stroke='url(#g)' stroke-opacity='.5'/>");
    EXPECT_EQ(StyleOf(file).stroke.kind, kColorGradient);
    EXPECT_EQ(Named(*file.document, "p")->blend.opacity, 0.5);
    EXPECT_EQ(file.report.losses, (std::map<std::string, int>{{"spreadMethod", 1}}));
}

HostPoint OnPage(const HostPatternUse& use, double x, double y) {
    return {use.matrix.a * x + use.matrix.c * y + use.matrix.tx,
            use.matrix.b * x + use.matrix.d * y + use.matrix.ty};
}

TEST(Patterns, HoldOneClippedGroupOfTheTile) {
    const ReadFile file = ReadBody(
        "<pattern id='t' patternUnits='userSpaceOnUse' x='3' y='4' width='10' height='20' "
        "patternTransform='scale(2)'>"
        "<path id='m' d='M3 4L13 24'/></pattern><rect id='p' width='50' height='50' fill='url(#t)'/>");
    const HostPatternUse& use = StyleOf(file).fill.u.pattern;
    ASSERT_EQ(StyleOf(file).fill.kind, kColorPattern);
    const Pattern* pattern = file.document->Find(use.pattern);
    ASSERT_TRUE(pattern && pattern->art);
    EXPECT_EQ(pattern->name, "t");
    ASSERT_EQ(Structure(*pattern->art), "g(clip(p,p))");
    const Art* tile = pattern->art->firstChild;
    // The tile is in points of the page, its lower left corner at the origin.
    EXPECT_EQ(Outline(*tile->firstChild), "M0,0 L20,0 L20,40 L0,40 Z");
    EXPECT_EQ(Outline(*tile->lastChild), "M0,40 L20,0");
    EXPECT_EQ(use.scale.x, 1);
    EXPECT_EQ(use.matrix.a, 1);
    EXPECT_EQ(use.matrix.d, 1);
    // The corner at (3, 24) of the pattern's space is at (6, 48) in the file.
    EXPECT_NEAR(OnPage(use, 0, 0).x, 6, 1e-9);
    EXPECT_NEAR(OnPage(use, 0, 0).y, 52, 1e-9);
}

TEST(Patterns, UnitsOfTheBoxAndViewBoxes) {
    const ReadFile file = ReadBody(
        "<pattern id='t' width='.25' height='.5' viewBox='0 0 1 1' preserveAspectRatio='none'><path d='M0 "
        "0L1 1'/></pattern>"
        "<pattern id='u' width='.5' height='.5' patternContentUnits='objectBoundingBox'><path d='M0 0L.5 "
        ".5'/></pattern>"
        "<rect id='p' x='10' y='10' width='40' height='20' fill='url(#t)'/><rect id='q' width='40' "
        "height='20' fill='url(#u)'/>");
    const auto tile = [&](const char* name) {
        return file.document->Find(StyleOf(file, name).fill.u.pattern.pattern)->art->firstChild;
    };
    EXPECT_EQ(Outline(*tile("p")->firstChild), "M0,0 L10,0 L10,10 L0,10 Z");
    EXPECT_EQ(Outline(*tile("p")->lastChild), "M0,10 L10,0");
    EXPECT_NEAR(OnPage(StyleOf(file, "p").fill.u.pattern, 0, 10).x, 10, 1e-9);
    EXPECT_NEAR(OnPage(StyleOf(file, "p").fill.u.pattern, 0, 10).y, 90, 1e-9);
    EXPECT_EQ(Outline(*tile("q")->lastChild), "M0,10 L20,0");
}

TEST(Patterns, ChainsShareTheArtAndOwnCirclesEnd) {
    const ReadFile file = ReadBody(
        "<pattern id='base'><path d='M0 0L1 1'/></pattern><pattern id='t' xlink:href='#base' "
        "patternUnits='userSpaceOnUse' width='5' height='5'/>"
        "<pattern id='self' patternUnits='userSpaceOnUse' width='5' height='5'><rect width='5' height='5' "
        "fill='url(#self) #0f0'/></pattern>"
        "<rect id='p' width='9' height='9' fill='url(#t)'/><rect id='q' width='9' height='9' "
        "fill='url(#t)'/><rect id='r' width='9' height='9' fill='url(#self)'/>");
    EXPECT_EQ(StyleOf(file, "p").fill.u.pattern.pattern, StyleOf(file, "q").fill.u.pattern.pattern);
    const Art* self = file.document->Find(StyleOf(file, "r").fill.u.pattern.pattern)->art->firstChild;
    EXPECT_EQ(ColorOf(*file.document, self->lastChild->path()->style.fill), "three 0 1 0");
    EXPECT_EQ(file.report.losses.at("reference"), 1);
}

TEST(Patterns, WithoutATileTheFallbackCounts) {
    for (const char* attributes :
         {"width='0' height='5'", "width='5'", "width='5' height='5' patternTransform='scale(0)'"}) {
        const ReadFile file =
            ReadBody(std::string("<pattern id='t' patternUnits='userSpaceOnUse' ") + attributes +
                     "><path d='M0 0h1'/></pattern><rect id='p' width='9' height='9' fill='url(#t) #f00'/>");
        EXPECT_EQ(ColorOf(*file.document, StyleOf(file).fill), "three 1 0 0") << attributes;
    }
    const ReadFile empty = ReadBody(
        "<pattern id='t' patternUnits='userSpaceOnUse' width='5' height='5'/><rect id='p' width='9' "
        "height='9' fill='url(#t)'/>");
    EXPECT_FALSE(StyleOf(empty).fillPaint);
}

} // namespace
} // namespace workbench
