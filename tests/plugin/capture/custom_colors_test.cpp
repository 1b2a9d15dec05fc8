#include "plugin/capture/custom_colors.h"

#include <cstring>

#include "tests/plugin/capture/capture_fixture.h"

using ::testing::ElementsAre;

namespace {

class CustomColorsTest : public CaptureTest {
protected:
    static customColorEntry Entry(const char* name, int32_t kind, std::vector<double> values,
                                  int16_t flags = 0) {
        customColorEntry entry{};
        entry.kind = kind;
        std::copy(values.begin(), values.end(), entry.values);
        entry.flags = flags;
        entry.nameLength = static_cast<uint8_t>(std::strlen(name));
        std::strcpy(entry.name, name);
        return entry;
    }
    /// How many rows the entries make.
    static int32_t Rows(const std::vector<customColorEntry>& entries) {
        globals->customCount = 0;
        for (const auto& entry : entries) AddCustomColor(entry);
        return globals->customCount;
    }
    static Strings Notes(const std::vector<customColorEntry>& entries) {
        Rows(entries);
        FreeHandle(globals->curRecord);
        globals->curRecord = NewHandle(kEmptyRecordBytes, kRecordGrain);
        const uint32_t size = kEmptyRecordBytes;
        std::memcpy(BlockBytes(globals->curRecord) + 4, &size, sizeof size);
        WriteCustomColorNotes();
        return Stream();
    }
};

TEST_F(CustomColorsTest, NotesOfAllKinds) {
    EXPECT_THAT(
        Notes({Entry("Ink", kCustomFour, {0.25, 0, 0, 1}),
               Entry("藍", kCustomThree, {0.12345, 0.99999, 1}, 3),
               Entry("Lab", kCustomLab, {51.27, -12.39, 0.04}), Entry("One", kCustomOne, {0.5}, -1)}),
        ElementsAre("CustomColor001 = \"Ink\", 4, 0, 25, 0, 0, 100",
                    "CustomColor002 = \"藍\", 3, 3, 12.3, 99.9, 100",
                    "CustomColor003 = \"Lab\", 2, 0, 51.2, -12.3, 0", "CustomColor004 = \"One\", 1, -1, 50"));
}

TEST_F(CustomColorsTest, EqualValuesShareARowWhateverTheName) {
    const auto a = Entry("A", kCustomFour, {1, 0, 0, 0}), b = Entry("B", kCustomFour, {0, 1, 0, 0});
    EXPECT_EQ(Rows({a, Entry("B", kCustomFour, {1, 0, 0, 0})}), 1);
    EXPECT_EQ(Rows({a, Entry("A", kCustomFour, {1, 0, 0, 0.5})}), 2);
    EXPECT_EQ(Rows({a, Entry("A", kCustomFour, {1, 0, 0, 0}, 1)}), 2);
    // The fourth value of a three-colour means nothing.
    EXPECT_EQ(Rows({Entry("A", kCustomThree, {1, 0, 0, 0}), Entry("A", kCustomThree, {1, 0, 0, 9})}), 1);
    // One row is looked at and no more, so a colour behind another of its kind is entered at each use, and
    // so are those of the kinds that no row is looked at for.
    EXPECT_EQ(Rows({a, b, b, a}), 3);
    EXPECT_EQ(Rows({Entry("A", kCustomLab, {50, 0, 0}), Entry("A", kCustomLab, {50, 0, 0})}), 2);
    EXPECT_EQ(Rows({Entry("A", kCustomOne, {1}), Entry("A", kCustomOne, {1})}), 2);
}

TEST_F(CustomColorsTest, TheTableEndsAt255Rows) {
    for (int i = 0; i < 256; ++i) {
        const auto& color = document().NewCustomColor("C" + std::to_string(i), {kCustomFour, {i / 256.0}, 0});
        Fill(AddLine(root()), PaintOf(color));
    }
    CaptureAll();
    EXPECT_EQ(globals->customCount, 255);
    EXPECT_EQ(PathAt(254).style.fill.reference, 0xFF00);
    EXPECT_EQ(PathAt(255).style.fill.reference, 0);
    EXPECT_EQ(PathAt(255).style.fill.kind, kStoredFour);
    EXPECT_EQ(Stream().back().substr(0, 14), "CustomColor255");
}

} // namespace
