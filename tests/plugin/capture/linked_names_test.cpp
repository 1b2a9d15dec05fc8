#include "plugin/capture/linked_names.h"

#include <cstring>

#include "plugin/objects/object_stream.h"
#include "tests/plugin/capture/capture_fixture.h"

using ::testing::ElementsAre;

namespace {

class LinkedNamesTest : public CaptureTest {
protected:
    static std::string Register(const std::string& path) {
        char text[kLinkPathBytes] = {};
        path.copy(text, sizeof text - 1);
        RegisterLinkedFile(text);
        return text;
    }
    static Strings RegisterAll(const Strings& paths) {
        Strings names;
        for (const std::string& path : paths) names.push_back(Register(path));
        return names;
    }
};

TEST_F(LinkedNamesTest, EachFileGetsAStoredNameOfItsOwn) {
    const std::string base(63, 'b');
    std::string wide = "a";
    for (int i = 0; i < 40; ++i) wide += "図";
    const std::pair<Strings, Strings> cases[] = {
        {{"C:\\a\\x.tif", "C:\\a\\x.tif"}, {"x.tif", "x.tif"}},
        {{"C:\\a\\x.tif", "C:\\b\\x.tif", "C:\\c\\x.tif", "\\a\\y", "\\b\\y"},
         {"x.tif", "x1.tif", "x2.tif", "y", "y1"}},
        // On Windows these would overwrite each other, or each other's notes.
        {{"\\a\\A.tif", "\\a\\a.tif", "\\a\\a.eps", "\\a\\A"}, {"A.tif", "a1.tif", "a2.eps", "A3"}},
        // ア is 83 41, メ 83 61: bytes that are "A" and "a" only where they are characters by themselves.
        {{"\\a\\ア.tif", "\\a\\メ.tif"}, {"ア.tif", "メ.tif"}},
        // The second byte of 表 is a backslash, of ア a letter; neither ends a folder's name or starts an
        // extension.
        {{"C:\\図.d\\表紙", "C:\\図\\見表.tif"}, {"表紙", "見表.tif"}},
        // A number goes before the first point of the base.
        {{"\\a\\x.v2.tif", "\\b\\x.v2.tif", "\\a\\.tif", "\\b\\.tif", "\\a\\.x.tif"},
         {"x.v2.tif", "x1.v2.tif", "1.tif", "2.tif", "3.x.tif"}},
        // Names fit their block at any number, and cuts leave whole characters: 63 bytes less ".tif" are 59,
        // one and 29 characters of two bytes; with a digit there is room for 58, and the half character goes.
        {{"\\a\\" + base + ".tif", "\\b\\" + base + ".tif"},
         {base.substr(0, 59) + ".tif", base.substr(0, 58) + "1.tif"}},
        {{"\\" + wide + ".tif", "\\b\\" + wide + ".tif"},
         {wide.substr(0, 59) + ".tif", wide.substr(0, 57) + "1.tif"}},
        // With a shorter extension there is less room in the note's name than in the file's.
        {{"\\a\\" + base + ".im", "\\b\\" + base + ".im"},
         {base.substr(0, 60) + ".im", base.substr(0, 58) + "1.im"}},
        {{"\\shot 12:30\"表.png"}, {"shot 12_30_表.png"}},
        {{"\\a\\" + std::string(200, 'c') + "." + std::string(40, 'e')},
         {std::string(48, 'c') + "." + std::string(14, 'e')}},
    };
    for (const auto& [paths, names] : cases) {
        globals->linkCount = 0;
        EXPECT_EQ(RegisterAll(paths), names);
    }
}

TEST_F(LinkedNamesTest, ManyFilesOfOneName) {
    for (int i = 0; i < 600; ++i) Register("\\" + std::to_string(i) + "\\x.tif");
    EXPECT_EQ(globals->linkCount, 600);
    EXPECT_EQ(Register("\\599\\x.tif"), "x599.tif");
}

class PlacedNoteTest : public CaptureTest {
protected:
    workbench::Art& AddPlaced(workbench::Art& parent) {
        workbench::Art& placed = *document().AppendArt(kArtPlaced, &parent);
        auto& data = std::get<workbench::PlacedData>(placed.data);
        data.file = "/pics/photo.tif";
        data.matrix = {2, 0, 0, 0.5, 30, 40};
        data.width = 10;
        data.height = 20;
        data.method = 1;
        data.alignment = 4;
        data.clip = 1;
        return placed;
    }
};

TEST_F(PlacedNoteTest, FileMatrixAndOptionsAlsoOfLinkedImages) {
    AddPlaced(root());
    workbench::Art& linked = *document().AppendArt(kArtRaster, &root());
    auto& data = std::get<workbench::RasterData>(linked.data);
    data.file = "/pics/scan.png";
    data.matrix = {1, 0, 0, 1, 30, 48};
    data.record = workbench::NewRasterRecord(8, 8, workbench::kSpaceThree);
    CaptureAll();
    // The translation is the centre of the picture, which covers 30 to 50 and 40 to 50.
    EXPECT_THAT(
        Stream(),
        ElementsAre(
            "PlacedFile = \"photo.tif\"\rPlacedMatrix = 2, 0, 0, 0.5, 10, 5\rPlaceOptions = 1, 4, 1\r",
            ::testing::StartsWith("PlacedFile = \"scan.png\"\rPlacedMatrix = 1, 0, 0, 1, ")));
    EXPECT_EQ(globals->linkCount, 2);
}

TEST_F(PlacedNoteTest, StyleFollowsTheText) {
    HostPathStyle paint{};
    paint.fillPaint = 1;
    paint.fill = PaintOf(AddPattern());
    paint.strokePaint = 1;
    paint.stroke = PaintOf(document().NewCustomColor("Ink", {kCustomFour, {0, 0, 0, 1}, 0}));
    workbench::Art& placed = AddPlaced(root());
    placed.artStyle = document().NewArtStyle(paint).handle;
    placed.blend.opacity = 0.5;
    CaptureAll();

    auto note = ObjectsOf(globals->curRecord).at(0);
    EXPECT_EQ(note.size(), StreamOf(globals->curRecord).at(0).size() + 29 + 5084);
    const AidbNoteStyle* style = FindNoteStyle(note);
    ASSERT_NE(style, nullptr);
    EXPECT_EQ(style->opacity, Fix(0.5));
    EXPECT_EQ(style->style.fill.kind, kStoredGray);
    EXPECT_EQ(style->style.stroke.kind, kStoredFour);
    EXPECT_EQ(style->style.stroke.reference, 0x0100);
    EXPECT_THAT(Stream(),
                ElementsAre(::testing::StartsWith("PlacedFile"), ::testing::StartsWith("CustomColor")));

    placed.artStyle = document().NewArtStyle({}).handle; // it paints nothing
    CaptureAll();
    EXPECT_EQ(ObjectsOf(globals->curRecord).at(0).size(), Stream().at(0).size() + 29);
}

// A placed file in a pattern couldn't be found again: only what is selected itself is taken.
TEST_F(PlacedNoteTest, PlacedArtInPatternsIsDropped) {
    auto& pattern = AddPattern();
    AddPlaced(*pattern.art);
    Fill(AddLine(root()), PaintOf(pattern));
    CaptureAll();
    EXPECT_THAT(Stream(), ElementsAre("path", "PatternArt00001 /", "path", "/ PatternArt00001"));
    EXPECT_EQ(globals->linkCount, 0);
}

} // namespace
