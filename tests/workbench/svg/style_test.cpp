#include "tests/workbench/svg/svg_helpers.h"

namespace workbench {
namespace {

constexpr char kRed[] = "three 1 0 0";

std::string FillOf(const ReadFile& file, const char* name) {
    const Art* art = Named(*file.document, name);
    if (!art || !art->path()) return "missing";
    const HostPathStyle& style = art->path()->style;
    return style.fillPaint ? ColorOf(*file.document, style.fill) : "none";
}

std::string FillUnder(const std::string& sheet, const std::string& attributes) {
    return FillOf(ReadBody("<style>" + sheet + "</style><g class='outer' id='o'><g><path id='p' d='M0 0h1' " +
                           attributes + "/></g></g>"),
                  "p");
}

// Red must win in each; the other rules are green or blue.
TEST(StyleSheets, TheStrongestRuleWins) {
    const std::pair<const char*, const char*> cases[] = {
        {"path{fill:#f00}", "fill='#0f0'"},
        {"*{fill:#0f0} path{fill:#f00}", ""},
        {"path{fill:#f00} *{fill:#0f0}", ""},
        {".a{fill:#f00} path{fill:#0f0}", "class='a'"},
        {"#p{fill:#f00} .a.b{fill:#0f0}", "class='b a'"},
        {".a{fill:#0f0} .b{fill:#f00}", "class='b a'"},
        {"g .a{fill:#f00} .a{fill:#0f0}", "class='a'"},
        {".outer path{fill:#f00} .outer>path{fill:#0f0}", ""},
        {".outer > g > path{fill:#f00}", ""},
        {"#o path{fill:#f00}", "fill='#00f'"},
        {"path{fill:#0f0}", "style='fill:#f00'"},
        {"path{fill:#f00 ! important}", "style='fill:#0f0'"},
        {"path{fill:#0f0 !important}", "style='fill:#f00!important'"},
        {"path,rect{fill:#f00}", ""},
        {"path[id=p]{fill:#f00} path{fill:#0f0}", ""},
        {"path[d]{fill:#f00}", ""},
        {"/* path{fill:#0f0} */ path{ /* ; */ fill : #f00 ; }", ""},
        {"@import url(x.css); @media print{path{fill:#0f0}} @media screen{path{fill:#f00}}", ""},
        {"@font-face{font-family:x} path{fill:#f00}", ""},
        {"path:hover{fill:#0f0} path::before{fill:#0f0} path{fill:#f00} p{}", ""},
        {"path:first-child{fill:#f00}", ""},
        {"path{fill:#f00;fill:nonsense}", ""},
        {"path{fill:#f00", ""},
        {"}} path{fill:#0f0} rect{} path{fill:#f00}", ""},
    };
    for (const auto& [sheet, attributes] : cases) EXPECT_EQ(FillUnder(sheet, attributes), kRed) << sheet;
}

TEST(Style, FourInksBehindAFallbackCount) {
    EXPECT_EQ(FillUnder("", "fill='#f00 device-cmyk(0.5, 0.25, 0, 1)'"), "four 0.5 0.25 0 1");
    EXPECT_EQ(FillUnder("", "fill='#f00 icc-color(acmecmyk, 0.11, 0.48, 0.83, 0)'"), kRed);
    EXPECT_EQ(FillUnder("", "fill='rubbish'"), "three 0 0 0");
}

TEST(Style, WhatADocumentCantHoldIsCounted) {
    const std::pair<const char*, std::map<std::string, int>> cases[] = {
        {"<path d='M0 0h1' stroke='red' stroke-dasharray='1 2 3 4 5 6 7 8'/>", {{"dash entries", 1}}},
        {"<path d='M0 0h1' stroke='red' transform='scale(1,2)'/>", {{"stroke under uneven scale", 1}}},
        {"<path d='M0 0h1' transform='scale(1,2)'/>", {}},
        {"<path d='M0 0h1' stroke='red' vector-effect='non-scaling-stroke'/>", {{"vector-effect", 1}}},
        {"<path d='M0 0h1' marker-end='url(#m)'/>", {{"marker", 1}}},
        {"<path d='M0 0h1' style='mix-blend-mode:plus-lighter'/>", {{"blending mode", 1}}},
        {"<path d='M0 0h1' style='mix-blend-mode:luminosity'/>", {}},
        {"<linearGradient id='g' spreadMethod='reflect'><stop/><stop offset='1'/></linearGradient>"
         "<rect width='9' height='9' fill='url(#g)'/>",
         {{"spreadMethod", 1}}},
        {"<text rotate='10' textLength='30' text-decoration='underline'>a<tspan fill-opacity='.5'>b</tspan>"
         "</text>",
         {{"rotated letters", 1}, {"textLength", 1}, {"text decoration", 1}, {"opacity within text", 1}}},
    };
    for (const auto& [body, losses] : cases) EXPECT_EQ(ReadBody(body).report.losses, losses) << body;
}

TEST(Style, DegenerateGradientsAreWhatTheyShow) {
    const std::string stops = "<stop stop-color='#00f'/><stop offset='1' stop-color='#f00'/>";
    const std::pair<std::string, std::string> cases[] = {
        {"<linearGradient id='g'/>", "none"},
        {"<linearGradient id='g'><stop stop-color='#f00'/></linearGradient>", kRed},
        {"<linearGradient id='g' x1='1' x2='1'>" + stops + "</linearGradient>", kRed},
        {"<radialGradient id='g' r='0'>" + stops + "</radialGradient>", kRed},
        {"<linearGradient id='g' gradientTransform='scale(0)'>" + stops + "</linearGradient>", "none"},
        {"<linearGradient id='g' xlink:href='#h'/><linearGradient id='h' xlink:href='#g'/>", "none"},
        {"<rect id='g'/>", "none"}};
    for (const auto& [gradient, fill] : cases)
        EXPECT_EQ(FillOf(ReadBody(gradient + "<rect id='p' width='9' height='9' fill='url(#g)'/>"), "p"),
                  fill)
            << gradient;
}

// One gradient and one pattern for all that name it; a pattern in itself ends.
TEST(Style, PaintIsSharedAndOwnCirclesEnd) {
    const ReadFile file = ReadBody(
        "<linearGradient id='g'><stop/><stop offset='1'/></linearGradient>"
        "<pattern id='base'><path d='M0 0L1 1'/></pattern><pattern id='t' xlink:href='#base' "
        "patternUnits='userSpaceOnUse' width='5' height='5'/>"
        "<pattern id='self' patternUnits='userSpaceOnUse' width='5' height='5'><rect width='5' height='5' "
        "fill='url(#self) #0f0'/></pattern>"
        "<g stroke='url(#g)'><rect id='p' width='9' height='9' fill='url(#t)'/><rect id='q' width='9' "
        "height='9' fill='url(\"#t\")'/></g><rect id='r' width='9' height='9' fill='url(#self)'/>");
    const auto style = [&](const char* name) { return Named(*file.document, name)->path()->style; };
    EXPECT_EQ(style("p").fill.u.pattern.pattern, style("q").fill.u.pattern.pattern);
    EXPECT_EQ(style("p").stroke.u.gradient.gradient, style("q").stroke.u.gradient.gradient);
    const Art* self = file.document->Find(style("r").fill.u.pattern.pattern)->art->firstChild;
    EXPECT_EQ(ColorOf(*file.document, self->lastChild->path()->style.fill), "three 0 1 0");
    EXPECT_EQ(file.report.losses.at("reference"), 1);
}

} // namespace
} // namespace workbench
