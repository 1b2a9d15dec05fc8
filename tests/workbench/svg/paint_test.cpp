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

} // namespace
} // namespace workbench
