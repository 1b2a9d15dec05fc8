#include "plugin/frame/preferences.h"

#include <gmock/gmock.h>

#include <cstring>
#include <memory>

#include "plugin/frame/globals.h"

namespace {

class PreferencesTest : public ::testing::Test {
protected:
    PreferencesTest() {
        globals = block_.get();
        SetDefaults(nullptr);
    }
    ~PreferencesTest() override { globals = nullptr; }

private:
    std::unique_ptr<Globals> block_ = std::make_unique<Globals>();
};

constexpr char kDefaults[] =
    "toolMode = 1\r\nsortMode = 0\r\nlayerOption = 0\r\nfindMode = 0\r\n"
    "browseMode = 1\r\nbrowseWidth = 0.3\r\noriginMode = 0\r\n"
    "aidbfpath = \"\"\r\naidbfname = \"\"\r\n"
    "flUseGrid = 1\r\nflUseFcur = 1\r\nflUseFcrs = 1\r\nflUseFops = 1\r\n"
    "flGrWidth = 14.1732\r\nflGrHeight = 14.1732\r\n"
    "flCnvFnMode = 0\r\nflCnvFnStr = \"\"\r\n"
    "flCnvCase = 0\r\nflCnvKanji = 0\r\nflCnvWord = 0\r\n"
    "aidbfpathEx1 = \"\"\r\naidbfpathEx2 = \"\"\r\naidbfpathEx3 = \"\"\r\n"
    "aidbfpathEx4 = \"\"\r\naidbfpathEx5 = \"\"\r\n"
    "language = JAPANESE\r\nproduct = \"Velquorne\"\r\n";

// Every setting with a value that no other one has, and hand-written, so that a key that reads or writes
// another's field shows.
constexpr char kChanged[] =
    "toolMode = 3\r\nsortMode = 2\r\nlayerOption = 4\r\nfindMode = 5\r\n"
    "browseMode = -6\r\nbrowseWidth = 0.875\r\noriginMode = 7\r\n"
    "aidbfpath = \"\\\\server\\\x95\\ \x83\\=,' x\"\r\n"
    "aidbfname = \"\\F\\\x94\\\\G\"\r\n"
    "flUseGrid = 70000\r\nflUseFcur = -2\r\nflUseFcrs = 10\r\nflUseFops = 11\r\n"
    "flGrWidth = 1e-07\r\nflGrHeight = 1.5e+300\r\n"
    "flCnvFnMode = 12\r\nflCnvFnStr = \"a  b\"\r\n"
    "flCnvCase = 13\r\nflCnvKanji = 14\r\nflCnvWord = 15\r\n"
    "aidbfpathEx1 = \"1\"\r\naidbfpathEx2 = \"2\"\r\naidbfpathEx3 = \"3\"\r\n"
    "aidbfpathEx4 = \"4\"\r\naidbfpathEx5 = \"5\"\r\n"
    "language = KOREAN\r\nproduct = \"Other\"\r\n";

} // namespace

TEST_F(PreferencesTest, EverySettingComesBackFromTheBytesThatItIsWrittenAs) {
    EXPECT_EQ(PreferencesText(), kDefaults);
    TakePreferences(kChanged);
    EXPECT_EQ(globals->toolMode, 3);
    EXPECT_EQ(globals->browseMode, -6);
    EXPECT_EQ(globals->browseWidth, 0.875f);
    EXPECT_STREQ(globals->aidbfpath, "\\\\server\\\x95\\ \x83\\=,' x"); // trail bytes are backslashes too
    EXPECT_EQ(globals->flUseGrid, 70000);
    EXPECT_EQ(globals->flGrHeight, 1.5e300);
    EXPECT_STREQ(globals->aidbfpathEx[4], "5");
    EXPECT_EQ(globals->language, 2);
    EXPECT_EQ(PreferencesText(), kChanged);
}

struct Line {
    const char* text;
    const char* written; ///< the line that the text comes to
};

TEST_F(PreferencesTest, WhatHandsMayHaveWritten) {
    const std::string longPath(300, 'p');
    const Line lines[] = {
        {"aidbfpath = C:\\My Art", "aidbfpath = \"C:\\MyArt\"\r\n"},
        {"aidbfpath = \"C:\\new\\table\"", "aidbfpath = \"C:\\new\\table\"\r\n"},
        {"'toolMode = 3", "toolMode = 1\r\n"},
        {"toolMode = 3, 4", "toolMode = 3\r\n"},
        {"toolMode = 2\ntoolMode = 3", "toolMode = 3\r\n"},
        {"toolMode", "toolMode = 0\r\n"},
        {"sortMode = +2x", "sortMode = 2\r\n"},
        {"browseWidth = 1e39", "browseWidth = 0\r\n"},
        {"LANGUAGE = ENGLISH", "language = JAPANESE\r\n"},
        {"language = english", "language = JAPANESE\r\n"},
        {"language = ENGLISH", "language = ENGLISH\r\n"},
        {"aidbfpathEx6 = x\naidbfpathEx0 = x\naidbfpathEx = x\naidbfpathEx12 = x", "aidbfpathEx1 = \"\"\r\n"},
        {"\r\n\t toolMode\t=\r2\r\n", "toolMode = 2\r\n"},
        {"product = \"open\ntoolMode = 2", "product = \"open\"\r\n"},
        {"product = \"open\ntoolMode = 2", "toolMode = 2\r\n"}, // quoting starts anew at each line
    };
    for (const Line& line : lines) {
        SetDefaults(nullptr);
        TakePreferences(line.text);
        EXPECT_THAT(PreferencesText(), testing::HasSubstr(line.written)) << line.text;
    }
    TakePreferences("aidbfpath = \"" + longPath + "\"\nproduct = " + longPath);
    EXPECT_EQ(std::strlen(globals->aidbfpath), 256 - std::strlen("aidbfpath=\""));
    EXPECT_EQ(std::strlen(globals->product), 63u);
}

TEST_F(PreferencesTest, TextsLoseWhatTheGrammarCannotHold) {
    std::strcpy(globals->flCnvFnStr, "\"a\r\nb\"\x81\x5C='\t");
    globals->language = 77;
    EXPECT_THAT(PreferencesText(), testing::HasSubstr("flCnvFnStr = \"ab\x81\x5C='\t\"\r\n"));
    EXPECT_THAT(PreferencesText(), testing::HasSubstr("language = JAPANESE\r\n"));
    std::memset(globals->product, 'x', sizeof globals->product); // no NUL
    EXPECT_THAT(PreferencesText(), testing::EndsWith("\"" + std::string(64, 'x') + "\"\r\n"));
}
