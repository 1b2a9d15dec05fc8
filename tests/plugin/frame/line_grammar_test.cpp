#include "plugin/frame/line_grammar.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Tokens = std::vector<std::string>;

std::vector<std::string> Lines(std::string_view text, const LineGrammar& grammar) {
    std::vector<std::string> lines;
    LineReader reader(text, grammar);
    for (std::string line; reader.Next(line);) lines.push_back(line);
    return lines;
}

Tokens TokensOfLine(std::string_view text) {
    std::string line;
    LineReader(text, kPreferencesGrammar).Next(line);
    return SplitTokens(line, 6);
}

TEST(LineGrammarTest, BlanksMatterOnlyInQuotes) {
    EXPECT_THAT(TokensOfLine("aidbfpath = C:\\My Art\r\n"), ElementsAre("aidbfpath", "C:\\MyArt"));
    EXPECT_THAT(TokensOfLine("aidbfpath = \"C:\\My Art\"\r\n"), ElementsAre("aidbfpath", "C:\\My Art"));
    EXPECT_EQ(TokensOfLine("a = 1"), TokensOfLine("a=1"));
}

TEST(LineGrammarTest, SeparatorsAndBackslashesInQuotesAreText) {
    EXPECT_THAT(TokensOfLine("Tag = \"a=b, c\\n\", string, name"),
                ElementsAre("Tag", "a=b, c\\n", "string", "name"));
}

TEST(LineGrammarTest, PreferencesSkipCommentsAndEmptyLinesAndKeepAnUnendedLastLine) {
    EXPECT_THAT(Lines("'toolMode = 3\r\n\r\n   \n  'x\nb\t = 2\nlast", kPreferencesGrammar),
                ElementsAre("b=2", "last"));
}

TEST(LineGrammarTest, TagNotesEndLinesAtCarriageReturnsOnly) {
    EXPECT_THAT(Lines("Tag = \"a\nb\tc\", string, n\rTag = 2\r\r", kTagNoteGrammar),
                ElementsAre("Tag=\"abc\",string,n", "Tag=2"));
}

// A quote left open at a line's end would otherwise swallow every line behind it.
TEST(LineGrammarTest, QuotingStartsAnewAtEachLine) {
    EXPECT_THAT(Lines("a = \"open\nb = 2", kPreferencesGrammar), ElementsAre("a=\"open", "b=2"));
}

TEST(LineGrammarTest, ALongLineKeepsItsStartAndTheNextLineIsWhole) {
    const std::string text = "k = \"" + std::string(400, 'x') + "\"\nnext = 1\n";
    const auto lines = Lines(text, kPreferencesGrammar);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0], "k=\"" + std::string(253, 'x'));
    EXPECT_EQ(lines[1], "next=1");
}

TEST(LineGrammarTest, TokensBehindTheLimitArePassedOver) {
    EXPECT_THAT(SplitTokens("a=b,c,d", 3), ElementsAre("a", "b", "c"));
    EXPECT_THAT(SplitTokens("=,", 9), ElementsAre("", "", ""));
    EXPECT_THAT(SplitTokens("", 9), ElementsAre(""));
}

TEST(LineGrammarTest, TokenAtCutsAndForgivesMissingTokens) {
    const Tokens tokens = {"key", "value"};
    EXPECT_EQ(TokenAt(tokens, 1, 3), "val");
    EXPECT_THAT(TokenAt(tokens, 2), IsEmpty());
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
