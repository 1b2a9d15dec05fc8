#include "workbench/svg/svg_values.h"

#include "tests/workbench/svg/svg_helpers.h"
#include "workbench/svg/svg_limits.h"

namespace workbench {
namespace {

TEST(Numbers, HaveManyFormsAndNoneIsInfinite) {
    const std::pair<const char*, double> cases[] = {{"1", 1},
                                                    {"+.5", .5},
                                                    {"-0.25e1", -2.5},
                                                    {"7.", 7},
                                                    {"3e", 3},
                                                    {"2em", 2},
                                                    {"1e400", kLargestNumber},
                                                    {"-1e400", -kLargestNumber},
                                                    {"1e-400", 0},
                                                    {"1e39", kLargestNumber}};
    for (const auto& [text, expected] : cases) {
        TextCursor cursor(text);
        double value = 99;
        EXPECT_TRUE(cursor.Number(&value)) << text;
        EXPECT_DOUBLE_EQ(value, expected) << text;
    }
    for (const char* text : {"", "nan", "inf", "-", ".", "e5", "- 1", "0x"}) {
        TextCursor cursor(text);
        double value = 99;
        const bool number = cursor.Number(&value);
        EXPECT_EQ(number, std::string(text) == "0x") << text;
    }
}

TEST(Lengths, HaveUnits) {
    const std::pair<const char*, double> points[] = {{"8", 6},       {"8px", 6},     {"8pt", 8},  {"1in", 72},
                                                     {"2.54cm", 72}, {"25.4mm", 72}, {"6pc", 72}, {"2em", 15},
                                                     {"2ex", 7.5},   {"50%", 150}};
    for (const auto& [text, expected] : points) {
        Length length;
        ASSERT_TRUE(ParseLength(text, &length)) << text;
        EXPECT_DOUBLE_EQ(ToPoints(length, 10, 300), expected) << text;
        EXPECT_DOUBLE_EQ(ToUserUnits(length, 10, 400), expected / 0.75) << text;
    }
    Length length;
    for (const char* text : {"", "px", "5parsec", "5 px 6"}) EXPECT_FALSE(ParseLength(text, &length)) << text;
}

std::string Show(const char* text) {
    TextCursor cursor(text);
    ColorValue color;
    if (!TakeColor(cursor, &color)) return "none";
    Document document;
    std::string shown = ColorOf(document, ToHostColor(color));
    if (color.alpha != 1) shown += " alpha " + std::to_string(color.alpha);
    return shown;
}

TEST(Colors, HaveManyForms) {
    EXPECT_EQ(Show("#f00"), "three 1 0 0");
    EXPECT_EQ(Show("#FF8000"), Show("rgb(255,128,0)"));
    EXPECT_EQ(Show("#f008"), Show("#ff000088"));
    EXPECT_EQ(Show("#00ff0080").substr(0, 24), "three 0 1 0 alpha 0.5019");
    EXPECT_EQ(Show("rgb(100%, 50%, 0%)"), "three 1 0.5 0");
    EXPECT_EQ(Show("rgba(0,0,0,.5)"), "three 0 0 0 alpha 0.500000");
    EXPECT_EQ(Show("rgb(0 255 0 / 25%)"), "three 0 1 0 alpha 0.250000");
    EXPECT_EQ(Show("RGB(300,-5,0)"), "three 1 0 0");
    EXPECT_EQ(Show("hsl(120, 100%, 50%)"), "three 0 1 0");
    EXPECT_EQ(Show("hsl(240deg 100% 25%)"), "three 0 0 0.5");
    EXPECT_EQ(Show("device-cmyk(0.25, 0.5, 100%, 0)"), "four 0.25 0.5 1 0");
    EXPECT_EQ(Show("LightGoldenrodYellow"), Show("#fafad2"));
    EXPECT_EQ(Show("transparent"), "three 0 0 0 alpha 0.000000");
    for (const char* bad : {"", "#", "#12345", "#1234567", "#123456789", "rgb(1,2)", "rgb(1,2,3", "rgb",
                            "nocolor", "rgb(a,b,c)"})
        EXPECT_EQ(Show(bad), "none") << bad;
}

} // namespace
} // namespace workbench
