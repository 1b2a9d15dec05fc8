#include "plugin/rebuild/custom_color_rebuild.h"

#include <gmock/gmock.h>

#include "tests/plugin/rebuild/load_fixture.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class CustomColorTest : public LoadFixture {
protected:
    workbench::CustomColor& HaveColor(const std::string& name, const HostCustomColor& definition) {
        return document().NewCustomColor(name, definition);
    }
    /// Name of the document's colour in a row, empty if the row has none.
    std::string NameOfRow(int row) {
        const workbench::CustomColor* color = document().Find(globals->customHandles[row - 1]);
        return color ? color->name : "";
    }
    std::vector<std::string> Swatches() {
        std::vector<std::string> names;
        for (size_t i = 0; i < document().SwatchCount(); ++i) names.push_back(document().SwatchAt(i).name);
        return names;
    }
    HostCustomColor Definition(int row) {
        return document().Find(globals->customHandles[row - 1])->definition;
    }
};

constexpr HostCustomColor kCyan = {kCustomFour, {1, 0, 0, 0}, 0};

TEST_F(CustomColorTest, ANewColourGetsItsDefinitionAndASwatchAtTheEnd) {
    document().InsertSwatch(0).name = "first";
    LoadCustomColor("007 = \"Ink, red = warm\", 4, -2, 25, 12.3, 0, 100");
    EXPECT_EQ(globals->customCount, 7);
    EXPECT_EQ(NameOfRow(7), "Ink, red = warm");
    EXPECT_EQ(Definition(7).kind, kCustomFour);
    EXPECT_EQ(static_cast<int16_t>(Definition(7).flags), -2);
    EXPECT_DOUBLE_EQ(Definition(7).values[1], 0.123);
    EXPECT_DOUBLE_EQ(Definition(7).values[3], 1.0);
    EXPECT_THAT(Swatches(), ElementsAre("first", "Ink, red = warm"));
    const HostColor& swatch = document().SwatchAt(1).color;
    EXPECT_EQ(swatch.kind, kColorCustom);
    EXPECT_EQ(swatch.u.custom.color, globals->customHandles[6]);
    EXPECT_DOUBLE_EQ(swatch.u.custom.tint, 0);
    EXPECT_STREQ(globals->customColors[6].name, "Ink, red = warm");
    EXPECT_EQ(globals->customColors[6].nameLength, 15);
}

TEST_F(CustomColorTest, AnEqualColourOfThatNameIsUsedAndNoSwatchTouched) {
    HostCustomColor stored = kCyan;
    stored.values[1] = 0.12345; // stored as 12.3 percent
    const auto handle = HaveColor("Ink", stored).handle;
    LoadCustomColor("001 = \"Ink\", 4, 0, 100, 12.3, 0, 0");
    EXPECT_EQ(globals->customHandles[0], handle);
    EXPECT_THAT(Swatches(), IsEmpty());
}

TEST_F(CustomColorTest, AnotherColourOfThatNameGivesTheNextFreeNumber) {
    HaveColor("Ink", kCyan);
    HostCustomColor other = kCyan;
    other.flags = 1;
    HaveColor("Ink1", other);
    LoadCustomColor("001 = \"Ink\", 4, 0, 0, 0, 0, 100");
    EXPECT_EQ(NameOfRow(1), "Ink2");
    EXPECT_STREQ(globals->customColors[0].name, "Ink2");
    EXPECT_THAT(Swatches(), ElementsAre("Ink2"));
    // A second record with the same colour finds it.
    LoadCustomColor("002 = \"Ink\", 4, 0, 0, 0, 0, 100");
    EXPECT_EQ(globals->customHandles[1], globals->customHandles[0]);
}

TEST_F(CustomColorTest, AHundredOtherColoursLeaveTheRowEmpty) {
    HaveColor("Ink", kCyan);
    for (int i = 1; i <= 99; ++i) HaveColor("Ink" + std::to_string(i), kCyan);
    LoadCustomColor("001 = \"Ink\", 4, 0, 0, 0, 0, 100");
    EXPECT_EQ(globals->customCount, 0);
    EXPECT_EQ(globals->customHandles[0], nullptr);
    EXPECT_THAT(Swatches(), IsEmpty());
}

TEST_F(CustomColorTest, ASwatchOfThatNameStandsForTheColourInThreeKindsOnly) {
    for (const int32_t kind : {kColorCustom, kColorFour, kColorThree, kColorGray}) {
        workbench::Swatch& swatch = document().InsertSwatch(document().SwatchCount());
        swatch.name = "Ink" + std::to_string(kind);
        swatch.color.kind = kind;
        if (kind == kColorCustom) swatch.color.u.custom = {HaveColor("other", kCyan).handle, 0};
        LoadCustomColor(std::to_string(kind + 1) + " = \"" + swatch.name + "\", 4, 0, 0, 0, 0, 50");
    }
    EXPECT_THAT(Swatches(), ElementsAre("Ink3", "Ink1", "Ink5", "Ink0", "Ink0"));
}

TEST_F(CustomColorTest, NotesWithoutARuleAreIgnored) {
    for (const char* note :
         {"1 = \"Ink\", 1, 0, 50", "0 = \"Ink\", 4, 0, 1, 1, 1, 1", "256 = \"Ink\", 4, 0, 1, 1, 1, 1",
          "-1 = \"Ink\", 4, 0, 1, 1, 1, 1", "1 = \"\", 4, 0, 1, 1, 1, 1", "1 = \"Ink\"", "", "="})
        LoadCustomColor(note);
    EXPECT_EQ(globals->customCount, 0);
    EXPECT_THAT(Swatches(), IsEmpty());
    LoadCustomColor("255 = \"Last\", 4, 0, 1, 1, 1, 1");
    LoadCustomColor("254 = \"Next\", 4, 0, 1, 1, 1, 1"); // behind the last
    EXPECT_EQ(NameOfRow(255), "Last");
    EXPECT_EQ(NameOfRow(254), "");
}

// 254 bytes: 127 characters of two bytes.  With a number behind it the name loses a whole character.
TEST_F(CustomColorTest, ALongNameIsCutAtAWholeCharacter) {
    std::string name, inHost;
    for (int i = 0; i < 127; ++i) {
        name += "藍";
        inHost += reinterpret_cast<const char*>(u8"藍");
    }
    ASSERT_EQ(name.size(), 254u);
    HaveColor(inHost, kCyan);
    LoadCustomColor("001 = \"" + name + "\", 4, 0, 0, 0, 0, 100");
    EXPECT_EQ(NameOfRow(1), inHost.substr(0, 126 * 3) + "1");
    EXPECT_EQ(globals->customColors[0].nameLength, 253);
    LoadCustomColor("002 = \"a" + name + "\", 4, 0, 0, 0, 0, 100");
    EXPECT_EQ(NameOfRow(2), "a" + inHost.substr(0, 126 * 3));
}

} // namespace
