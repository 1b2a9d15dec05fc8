#include "tests/workbench/svg/svg_helpers.h"

namespace workbench {
namespace {

constexpr char kRed[] = "three 1 0 0", kBlue[] = "three 0 0 1", kBlack[] = "three 0 0 0";

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

TEST(Style, PaintsHaveFallbacksAndCurrentColor) {
    const auto fill = [](const std::string& value) {
        return FillOf(ReadBody("<g color='#00f'><path id='p' d='M0 0h1' fill='" + value + "'/></g>"), "p");
    };
    EXPECT_EQ(fill("currentColor"), kBlue);
    EXPECT_EQ(fill("url(#nothing) #f00"), kRed);
    EXPECT_EQ(fill("url(#nothing) none"), "none");
    EXPECT_EQ(fill("url(#nothing)"), "none");
    EXPECT_EQ(fill("#f00 icc-color(acmecmyk, 0.11, 0.48, 0.83, 0)"), kRed);
    EXPECT_EQ(fill("#f00 device-cmyk(0.5, 0.25, 0, 1)"), "four 0.5 0.25 0 1");
    EXPECT_EQ(fill("rubbish"), kBlack);
}

TEST(Style, LossesOfStrokesAreCounted) {
    const ReadFile file = ReadBody(
        "<path d='M0 0h1' stroke='red' stroke-dasharray='1 2 3 4 5 6 7 8'/><path d='M0 0h1' stroke='red' "
        "transform='scale(1,2)'/>"
        "<path d='M0 0h1' stroke='red' vector-effect='non-scaling-stroke'/><path d='M0 0h1' "
        "marker-end='url(#m)'/>"
        "<path d='M0 0h1' transform='scale(1,2)'/>");
    const std::map<std::string, int> expected{
        {"dash entries", 1}, {"stroke under uneven scale", 1}, {"vector-effect", 1}, {"marker", 1}};
    EXPECT_EQ(file.report.losses, expected);
}

TEST(Style, BlendingModesAndIsolation) {
    const ReadFile file = ReadBody(
        "<g style='isolation:isolate;mix-blend-mode:multiply'><path id='p' d='M0 0h1' "
        "style='mix-blend-mode:luminosity'/>"
        "<path d='M0 0h1' style='mix-blend-mode:plus-lighter'/></g>");
    EXPECT_EQ(OnlyArt(*file.document)->blend.mode, kBlendMultiply);
    EXPECT_EQ(OnlyArt(*file.document)->blend.isolated, 1);
    EXPECT_EQ(Named(*file.document, "p")->blend.mode, kBlendLuminosity);
    EXPECT_EQ(file.report.losses, (std::map<std::string, int>{{"blending mode", 1}}));
}

} // namespace
} // namespace workbench
