#include "plugin/frame/line_grammar.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;

namespace {

// Lines of preferences are in preferences_test.cpp.
TEST(LineGrammarTest, TagNotesEndLinesAtCarriageReturnsOnly) {
    LineReader reader("Tag = \"a=b, c\nd\te\", string, n\rTag = 2\r\r", kTagNoteGrammar);
    std::vector<std::string> lines;
    for (std::string line; reader.Next(line);) lines.push_back(line);
    EXPECT_THAT(lines, ElementsAre("Tag=\"a=b, cde\",string,n", "Tag=2"));
    EXPECT_THAT(SplitTokens(lines.at(0), 3), ElementsAre("Tag", "a=b, cde", "string"));
}

TEST(LineGrammarTest, NumbersStopAtTheFirstStrangeByteAndStayInRange) {
    EXPECT_EQ(DecimalInteger("  -12x"), -12);
    EXPECT_EQ(DecimalInteger("+7"), 7);
    EXPECT_EQ(DecimalInteger("x"), 0);
    EXPECT_EQ(DecimalInteger("+-7"), 0);
    EXPECT_EQ(DecimalInteger(""), 0);
    EXPECT_EQ(DecimalInteger("99999999999"), INT32_MAX);
    EXPECT_EQ(DecimalInteger("-99999999999"), INT32_MIN);
    EXPECT_DOUBLE_EQ(DecimalReal("14.1732"), 14.1732);
    EXPECT_DOUBLE_EQ(DecimalReal("-2.5e-1,"), -0.25);
    EXPECT_EQ(DecimalReal("nan"), 0.0);
    EXPECT_EQ(DecimalReal("1e999"), 0.0);
    EXPECT_EQ(DecimalReal(""), 0.0);
}

} // namespace
