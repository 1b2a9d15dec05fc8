#include "app/hands_file.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace {

TEST(HandsFile, TakesEachKindOfStepAndPassesOverComments) {
    std::string error;
    const auto steps = ParseHands(
        "# a tour\n"
        "\n"
        "  drag 1 -2 30 40 5   # with a hand\r\n"
        "type \"a \\\"果物\\\\\"\n"
        "key Control+A\n"
        "control 1001 4 -5\n"
        "control 16\n"
        "pick menu \"Help\" \"About #1\"\n"
        "pick flyout 9\n"
        "answer no",
        &error);
    ASSERT_TRUE(steps) << error;
    ASSERT_EQ(steps->size(), 8u);
    EXPECT_EQ((*steps)[0].line, 3);
    EXPECT_EQ((*steps)[0].numbers, (std::vector<int>{1, -2, 30, 40, 5}));
    EXPECT_EQ((*steps)[1].texts, std::vector<std::string>{"a \"果物\\"});
    EXPECT_EQ((*steps)[2].key, 'A');
    EXPECT_EQ((*steps)[2].modifier, VK_CONTROL);
    EXPECT_EQ((*steps)[3].hand, Hand::kControlAt);
    EXPECT_EQ((*steps)[4].hand, Hand::kControl);
    EXPECT_EQ((*steps)[5].texts, (std::vector<std::string>{"Help", "About #1"}));
    EXPECT_EQ((*steps)[6].hand, Hand::kPickFlyout);
    EXPECT_EQ((*steps)[7].numbers, std::vector<int>{0});
    EXPECT_EQ((*steps)[7].line, 10);
}

TEST(HandsFile, RefusesALineThatIsNoStepAndNamesIt) {
    const std::pair<const char*, const char*> kBad[] = {
        {"jump", "there is no step 'jump'"},
        {"click 1", "something is missing at the end"},
        {"click 1 2 3", "'3' can't stand there"},
        {"click 1 2x", "'2x' can't stand there"},
        {"click 1 9999999999", "'9999999999' can't stand there"},
        {"pause -1", "'-1' can't stand there"},
        {"type \"open", "a quote isn't closed"},
        {"type bare", "'bare' can't stand there"},
        {"type \"\xF0\x9F\x8D\x8E\"", "can't stand there"}, // no letter of the plug-in's texts
        {"key Hyper", "'Hyper' can't stand there"},
        {"picture ../up", "'../up' can't stand there"},
        {"answer maybe", "'maybe' can't stand there"},
        {"pick", "something is missing at the end"},
        {"pick nose 3", "'nose' can't stand there"},
    };
    for (const auto& [line, reason] : kBad) {
        std::string error;
        EXPECT_FALSE(ParseHands(std::string("move 1 2\n") + line + "\nrelease\n", &error)) << line;
        EXPECT_TRUE(error.starts_with("line 2: ")) << line << ": " << error;
        EXPECT_NE(error.find(reason), std::string::npos) << line << ": " << error;
    }
}

} // namespace
