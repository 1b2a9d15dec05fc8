// Texts between the host and a plug-in.  The bytes are written out by hand, so that no compiler's character
// set takes part.
#include "tests/workbench/suites/suites_fixture.h"
#include "workbench/suites/text_encoding.h"

namespace workbench {
namespace {

// The second byte of each of the first three characters is that of a backslash.
constexpr char kHyoNoSoCp932[] = "\x95\x5C\x94\x5C\x83\x5C.aid"; // table, ability, katakana so
constexpr char kHyoNoSoUtf8[] = "\xE8\xA1\xA8\xE8\x83\xBD\xE3\x82\xBD.aid";

TEST(TextEncodingTest, TrailBytesAreNoBackslashes) {
    for (const int32_t encoding : {kEncodingPlatform, kEncodingCp932}) {
        EXPECT_EQ(DecodeText(kHyoNoSoCp932, encoding), kHyoNoSoUtf8);
        EXPECT_EQ(EncodeText(kHyoNoSoUtf8, encoding), kHyoNoSoCp932);
    }
    EXPECT_EQ(DecodeText("\\a\\", kEncodingCp932), "\\a\\");
}

TEST(TextEncodingTest, HalfWidthKanaAreSingleBytes) {
    EXPECT_EQ(DecodeText("\xB1\x5C", kEncodingCp932), "\xEF\xBD\xB1\\"); // half-width a, then a backslash
    EXPECT_EQ(EncodeText("\xEF\xBD\xB1\\", kEncodingCp932), "\xB1\x5C");
}

TEST(TextEncodingTest, WhatMeansNothingIsReplaced) {
    const std::string replacement = "\xEF\xBF\xBD";
    EXPECT_EQ(DecodeText("a\x95", kEncodingCp932), "a" + replacement) << "half a character at the end";
    EXPECT_EQ(DecodeText("\x95 b", kEncodingCp932), replacement + " b") << "no trail byte";
    EXPECT_EQ(DecodeText("\xFF\xC0\x80z", kEncodingUtf8), replacement + replacement + replacement + "z");
    EXPECT_EQ(DecodeText("\xED\xA0\x80", kEncodingUtf8), replacement + replacement + replacement)
        << "surrogate";
    EXPECT_EQ(DecodeText("\xF0\x9F\x98\x80", kEncodingUtf8), "\xF0\x9F\x98\x80");
    EXPECT_EQ(EncodeText("\xC3\xA9\xF0\x9F\x98\x80", kEncodingCp932), "??") << "e acute, a smiley";
    EXPECT_EQ(DecodeText("a", 99), std::nullopt);
    EXPECT_EQ(EncodeText("a", 99), std::nullopt);
}

// Every two-byte character that decodes must be one character, whatever it is.
TEST(TextEncodingTest, EveryByteSequenceDecodesToSomethingThatEncodes) {
    for (int lead = 0x80; lead < 0x100; ++lead) {
        for (int trail = 0x20; trail < 0x100; ++trail) {
            const char bytes[]{static_cast<char>(lead), static_cast<char>(trail)};
            const auto utf8 = DecodeText({bytes, 2}, kEncodingCp932);
            ASSERT_TRUE(utf8 && !utf8->empty());
            const auto again = DecodeText(*EncodeText(*utf8, kEncodingCp932), kEncodingCp932);
            if (utf8->find("\xEF\xBF\xBD") == std::string::npos) {
                ASSERT_EQ(again, utf8) << std::hex << lead << ' ' << trail;
            }
        }
    }
}

using TextSuiteTest = SuitesFixture;

TEST_F(TextSuiteTest, BytesAreCutAtTheCapacityAndTheLengthIsTheWholeTexts) {
    const AIUnicodeStringSuite& suite = TextSuite();
    UnicodeStringHandle text = nullptr;
    ASSERT_EQ(suite.New(kHyoNoSoCp932, sizeof kHyoNoSoCp932 - 1, kEncodingPlatform, &text), kHostNoError);
    char bytes[4] = {'#', '#', '#', '#'};
    uint64_t length = 0;
    EXPECT_EQ(suite.GetBytes(text, kEncodingCp932, bytes, 3, &length), kHostNoError);
    EXPECT_EQ(length, 10u);
    EXPECT_EQ(std::string(bytes, 4), "\x95\x5C\x94#");
    EXPECT_EQ(suite.GetBytes(text, kEncodingUtf8, nullptr, 0, &length), kHostNoError);
    EXPECT_EQ(length, 13u);
    EXPECT_EQ(suite.Dispose(text), kHostNoError);
}

TEST_F(TextSuiteTest, AssignedTextsAreIndependent) {
    const AIUnicodeStringSuite& suite = TextSuite();
    UnicodeStringHandle source = nullptr, target = nullptr;
    ASSERT_EQ(suite.New("one", 3, kEncodingUtf8, &source), kHostNoError);
    ASSERT_EQ(suite.NewEmpty(&target), kHostNoError);
    EXPECT_EQ(suite.Assign(target, source), kHostNoError);
    EXPECT_EQ(suite.Assign(source, source), kHostNoError);
    EXPECT_EQ(suite.Dispose(source), kHostNoError);
    char bytes[3];
    uint64_t length = 0;
    EXPECT_EQ(suite.GetBytes(target, kEncodingPlatform, bytes, sizeof bytes, &length), kHostNoError);
    EXPECT_EQ(std::string(bytes, 3), "one");
    EXPECT_EQ(suite.Dispose(target), kHostNoError);
}

} // namespace
} // namespace workbench
