#include "tests/workbench/svg/svg_helpers.h"

namespace workbench {
namespace {

constexpr char kRed[] = "three 1 0 0", kGreen[] = "three 0 1 0", kBlue[] = "three 0 0 1",
               kBlack[] = "three 0 0 0";

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

TEST(StyleSheets, SiblingsAreSelectedByPlusAndTilde) {
    const ReadFile file = ReadBody(
        "<style>.a+path{fill:#f00}.a~rect{fill:#0f0}</style><g class='a'/>"
        "<path id='next' d='M0 0h1'/><path id='far' d='M0 0h1'/><rect id='later' width='1' height='1'/>");
    EXPECT_EQ(FillOf(file, "next"), kRed);
    EXPECT_EQ(FillOf(file, "far"), kBlack);
    EXPECT_EQ(FillOf(file, "later"), kGreen);
}

TEST(StyleSheets, CDataAndSeveralSheetsCount) {
    const ReadFile file = ReadBody(
        "<defs><style type='text/css'><![CDATA[ .a > path {fill:#f00} ]]></style></defs>"
        "<g class='a'><path id='p' d='M0 0h1'/></g><style>path{stroke:blue}</style><style "
        "type='text/x'>path{fill:green !important}</style>");
    EXPECT_EQ(FillOf(file, "p"), kRed);
    EXPECT_TRUE(Named(*file.document, "p")->path()->style.strokePaint);
}

TEST(Style, IsHandedDownWhereThePropertyIs) {
    const ReadFile file = ReadBody(
        "<g fill='#f00' stroke='#00f' stroke-width='3' opacity='.5' stroke-linejoin='bevel' "
        "fill-rule='evenodd'>"
        "<g><path id='p' d='M0 0h1'/></g><path id='q' d='M0 0h1' fill='inherit' opacity='inherit' "
        "stroke='none'/></g>");
    const Art* p = Named(*file.document, "p");
    EXPECT_EQ(FillOf(file, "p"), kRed);
    EXPECT_EQ(p->path()->style.lineWidth, 3);
    EXPECT_EQ(p->path()->style.lineJoin, 2);
    EXPECT_EQ(p->path()->style.evenOdd, 1);
    EXPECT_EQ(p->blend.opacity, 1);
    EXPECT_EQ(OnlyArt(*file.document)->blend.opacity, 0.5);
    EXPECT_EQ(Named(*file.document, "q")->blend.opacity, 0.5);
    EXPECT_FALSE(Named(*file.document, "q")->path()->style.strokePaint);
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

TEST(Style, StrokesKeepAllTheirProperties) {
    const ReadFile file = ReadBody(
        "<path id='p' transform='scale(2)' d='M0 0h1' fill='none' stroke='#0f0' stroke-width='1.5' "
        "stroke-linecap='square' "
        "stroke-linejoin='round' stroke-miterlimit='7' stroke-dasharray='1,2 3' stroke-dashoffset='.5'/>");
    const HostPathStyle& style = Named(*file.document, "p")->path()->style;
    EXPECT_EQ(ColorOf(*file.document, style.stroke), kGreen);
    EXPECT_EQ(style.lineWidth, 3);
    EXPECT_EQ(style.lineCap, 2);
    EXPECT_EQ(style.lineJoin, 1);
    EXPECT_EQ(style.miterLimit, 7);
    ASSERT_EQ(style.dash.count, 3);
    EXPECT_EQ(style.dash.lengths[2], 6);
    EXPECT_EQ(style.dash.offset, 1);
    EXPECT_TRUE(file.report.losses.empty());
}

TEST(Style, WidthsInOtherUnitsAndNoWidth) {
    const auto stroke = [](const char* width) {
        const ReadFile file =
            ReadBody(std::string("<g font-size='10'><path id='p' d='M0 0h1' stroke='red' stroke-width='") +
                     width + "'/></g>");
        const HostPathStyle style = Named(*file.document, "p")->path()->style;
        return style.strokePaint ? style.lineWidth : -1;
    };
    EXPECT_EQ(stroke("2px"), 2);
    EXPECT_EQ(stroke("2em"), 20);
    EXPECT_NEAR(stroke("1%"), 1, 1e-12);
    EXPECT_EQ(stroke("0"), -1);
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

TEST(Style, OpacityOfOnePaintGoesOntoThePath) {
    const auto opacity = [](const char* attributes) {
        const ReadFile file = ReadBody(std::string("<path d='M0 0h1v1z' ") + attributes + "/>");
        return OnlyArt(*file.document)->path() ? OnlyArt(*file.document)->blend.opacity : -1;
    };
    EXPECT_EQ(opacity("opacity='.5' fill-opacity='.5'"), 0.25);
    EXPECT_EQ(opacity("fill='none' fill-opacity='.1' stroke='red' stroke-opacity='.5'"), 0.5);
    EXPECT_EQ(opacity("fill='rgba(0,0,0,.5)' fill-opacity='50%'"), 0.25);
    EXPECT_EQ(opacity("stroke='red'"), 1);
    EXPECT_EQ(opacity("stroke='red' fill-opacity='.5'"), -1);
}

// The inner half of a translucent stroke shows the fill below, which one object of one opacity can't.
TEST(Style, DifferentOpacitiesSplitFillAndStroke) {
    const ReadFile file = ReadBody(
        "<path id='p' d='M0 0h1v1z' opacity='.8' fill='#f00' fill-opacity='.5' stroke='#00f' "
        "stroke-opacity='.25'/>");
    const Art* group = OnlyArt(*file.document);
    ASSERT_EQ(Structure(*group), "g(p,p)");
    EXPECT_EQ(group->name, "p");
    EXPECT_EQ(group->blend.opacity, 0.8);
    const Art *stroke = group->firstChild, *fill = group->lastChild;
    EXPECT_TRUE(stroke->path()->style.strokePaint && !stroke->path()->style.fillPaint);
    EXPECT_EQ(stroke->blend.opacity, 0.25);
    EXPECT_TRUE(fill->path()->style.fillPaint && !fill->path()->style.strokePaint);
    EXPECT_EQ(fill->blend.opacity, 0.5);

    const ReadFile under = ReadBody("<path d='M0 0h1v1z' stroke='#00f' paint-order='stroke'/>");
    EXPECT_TRUE(OnlyArt(*under.document)->firstChild->path()->style.fillPaint);
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

TEST(Style, HiddenThingsAreKeptAndHidden) {
    const ReadFile file = ReadBody(
        "<g id='none' display='none'><path d='M0 0h1'/></g><g visibility='hidden'><path id='hidden' d='M0 "
        "0h1'/>"
        "<path id='shown' visibility='visible' d='M0 0h1'/></g>");
    EXPECT_TRUE(Named(*file.document, "none")->hidden);
    EXPECT_TRUE(Named(*file.document, "hidden")->hidden);
    EXPECT_FALSE(Named(*file.document, "shown")->hidden);
}

} // namespace
} // namespace workbench
