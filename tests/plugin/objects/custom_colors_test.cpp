/// Custom colours on their way into a record, over the stand-in host.
#include <cstring>
#include <string>

#include "plugin/objects/conversions.h"
#include "tests/support/plugin_fixture.h"

namespace {

class CustomColorTest : public PluginFixture {
protected:
    CustomColorHandle Ink(const std::string& name, int32_t kind, double v0, double v1 = 0, double v2 = 0,
                          double v3 = 0, int32_t flags = 0) {
        return document().NewCustomColor(name, {kind, {v0, v1, v2, v3}, flags}).handle;
    }

    /// What the capture does for each custom colour, without its rule on which rows are alike.
    static void AddRow(CustomColorHandle ink) {
        ASSERT_EQ(FetchCustomColor(ink, &globals->customColors[globals->customCount]), kHostNoError);
        ++globals->customCount;
    }

    static AidbColor Stored(CustomColorHandle ink, double tint) {
        HostColor color = {};
        color.kind = kColorCustom;
        color.u.custom = {ink, tint};
        AidbColor stored = {};
        ColorToRecord(color, &stored);
        return stored;
    }
};

TEST_F(CustomColorTest, NameIsCutAt254Bytes) {
    const auto ink = Ink(std::string(300, 'n'), kCustomOne, 1);
    customColorEntry entry;
    ASSERT_EQ(FetchCustomColor(ink, &entry), kHostNoError);
    EXPECT_EQ(entry.nameLength, 254);
    EXPECT_EQ(entry.name[253], 'n');
    EXPECT_EQ(entry.name[254], 0);
}

TEST_F(CustomColorTest, TintedInkIsStoredAsItsProcessEquivalent) {
    const AidbColor four = Stored(Ink("four", kCustomFour, 1, 0.5, 0.25, 0), 0.5);
    EXPECT_EQ(four.kind + 0, kStoredFour);
    EXPECT_EQ(four.u.four.cyan + 0, 0x8000);
    EXPECT_EQ(four.u.four.magenta + 0, 0x4000);
    EXPECT_EQ(four.u.four.yellow + 0, 0x2000);
    EXPECT_EQ(four.u.four.black + 0, 0);

    // Light adds up where ink subtracts: half a tint goes half the way to white.
    const AidbColor three = Stored(Ink("three", kCustomThree, 1, 0.5, 0), 0.5);
    EXPECT_EQ(three.kind + 0, kStoredThree);
    EXPECT_EQ(three.u.three.red + 0, 0x10000);
    EXPECT_EQ(three.u.three.green + 0, 0xC000);
    EXPECT_EQ(three.u.three.blue + 0, 0x8000);

    const AidbColor lab = Stored(Ink("lab", kCustomLab, 50, 20, -20), 0);
    EXPECT_EQ(lab.kind + 0, kStoredGray);
    EXPECT_EQ(lab.u.gray + 0, 0);

    EXPECT_EQ(Stored(Ink("one", kCustomOne, 0.5), 0).kind + 0, kStoredCustom);
}

TEST_F(CustomColorTest, ReferenceHoldsRowAndTint) {
    const auto first = Ink("first", kCustomFour, 1), second = Ink("second", kCustomThree, 1);
    const auto third = Ink("third", kCustomLab, 50, 1, 2);
    AddRow(first);
    AddRow(second);
    AddRow(third);
    EXPECT_EQ(Stored(first, 0).reference + 0, 0x0100);
    EXPECT_EQ(Stored(second, 1).reference + 0, 0x02C8);
    EXPECT_EQ(Stored(third, 0.5).reference + 0, 0x0364);
    EXPECT_EQ(Stored(third, 0.0024).reference + 0, 0x0300); // 0.98 of a step rounds down
    EXPECT_EQ(Stored(third, 0.0026).reference + 0, 0x0301);
    EXPECT_EQ(Stored(Ink("stranger", kCustomLab, 50, 1, 2), 0).reference + 0, 0);
    EXPECT_EQ(Stored(third, 1e300).reference + 0, 0x0300); // no tint at all
}

// Without its own row the ink is still there by its values, only its name is lost.
TEST_F(CustomColorTest, FirstRowOfTheSameInkDecides) {
    const auto ink = Ink("ink", kCustomFour, 1, 0, 0, 0);
    AddRow(ink);
    AddRow(ink);
    globals->customColors[0].values[3] = 0.5;
    EXPECT_EQ(Stored(ink, 0).reference + 0, 0); // row 2 would match, but isn't looked at
    globals->customColors[0].flags = 1;         // now row 1 is another ink
    EXPECT_EQ(Stored(ink, 0).reference + 0, 0x0200);
}

// Of four-value inks all values decide, of three-value inks three; one-value inks never match.  Rows beyond
// the table are not read.
TEST_F(CustomColorTest, ComparesAsManyValuesAsTheKindHas) {
    const CustomColorHandle inks[] = {Ink("four", kCustomFour, 0.1, 0.2, 0.3, 0.4),
                                      Ink("three", kCustomThree, 0.1, 0.2, 0.3, 0.4),
                                      Ink("one", kCustomOne, 0.1)};
    for (const CustomColorHandle ink : inks) AddRow(ink);
    for (int row = 0; row < 3; ++row) globals->customColors[row].values[3] = 0.9;
    const int32_t references[] = {0, 0x0200, 0};
    for (size_t i = 0; i < 3; ++i) EXPECT_EQ(Stored(inks[i], 0).reference + 0, references[i]) << i;
    const CustomColorHandle stranger = Ink("stranger", kCustomFour, 1);
    for (const int32_t count : {INT32_MAX, -1}) {
        globals->customCount = count;
        EXPECT_EQ(Stored(stranger, 0).reference + 0, 0) << count;
    }
    globals->customCount = 0;
}

} // namespace
