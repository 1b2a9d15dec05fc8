#include <algorithm>
#include <ctime>

#include "tests/plugin/capture/capture_fixture.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using workbench::Art;

namespace {

class PostArtTest : public CaptureTest {};

// The order that a load relies on when it reads from the end: patterns, colours, art.
TEST_F(PostArtTest, ArtThenColorNotesThenPatterns) {
    const auto& ink = document().NewCustomColor("Ink", {kCustomFour, {0.25, 0, 0, 1}, 0});
    const auto& pattern = AddPattern();
    Art& group = AddGroup(root());
    group.group()->clipped = true;
    group.blend.opacity = 0.5;
    Art& first = AddLine(group);
    Fill(first, PaintOf(ink));
    Art& second = AddLine(group);
    Fill(second, PaintOf(pattern));
    second.tags.push_back({"part", "string", "lid"});
    CaptureAll();

    EXPECT_THAT(Stream(), ElementsAre("GroupArt / Clipped=TRUE Opacity=50", "path", "path",
                                      "Tag = \"lid\", string, part\r", "/ GroupArt",
                                      "CustomColor001 = \"Ink\", 4, 0, 25, 0, 0, 100", "PatternArt00001 /",
                                      "path", "/ PatternArt00001"));
    EXPECT_EQ(PathAt(0).style.fill.reference, 0x0100);
    EXPECT_EQ(PathAt(1).style.fill.u.pattern.number, 1u);
}

TEST_F(PostArtTest, HeaderHoldsSizeAndStamps) {
    AddPath(root(), {{10, 20}, {110, 70.5}});
    const auto before = static_cast<uint32_t>(std::time(nullptr) + 2082844800);
    CaptureAll();
    const RecordHeader header = Header().header;
    EXPECT_EQ(header.objectCount, 1u);
    EXPECT_EQ(header.size, 65964u + 5160u);
    EXPECT_EQ(header.boundsLeft, 0);
    EXPECT_EQ(header.boundsTop, Fix(50.5));
    EXPECT_EQ(header.boundsRight, Fix(100));
    EXPECT_EQ(header.boundsBottom, 0);
    EXPECT_GE(header.created, before);
    EXPECT_LE(header.created, before + 60);
    EXPECT_EQ(header.modified, header.created);
    EXPECT_STREQ(header.name, "");
}

TEST_F(PostArtTest, OnlySelectedArtThatDrawsIsTaken) {
    globals->layerOption = 1; // the layer isn't selected as a whole, so it has no brackets
    Art& group = AddGroup(root());
    document().Select(AddPath(group, {{0, 0}, {1, 1}}), true);
    AddPath(group, {{-50, 0}});
    Art& compound = AddCompoundPath(root());
    document().Select(AddPath(compound, {{0, 0}, {2, 2}}), true);
    AddPath(compound, {{-50, 0}});
    Art& guide = AddPath(root(), {{-500, -500}, {900, 900}});
    guide.path()->guide = true;
    document().Select(guide, true);
    Art& empty = AddPath(root(), {});
    empty.tags.push_back({"part", "string", "lid"});
    document().Select(empty, true);
    Capture();
    EXPECT_THAT(Stream(), ElementsAre("path", "path"));
    EXPECT_EQ(Header().header.boundsRight, Fix(2));

    document().LayerAt(0).title = "<<Sorvenna Preview>>"; // made by others
    Capture();
    EXPECT_THAT(Stream(), IsEmpty());
    EXPECT_EQ(Header().header.boundsRight, 0);
}

TEST_F(PostArtTest, AGroupsOpacityIsATruncatedPercentageOfTwoDigits) {
    Art& group = AddGroup(root());
    AddLine(group);
    for (const auto& [opacity, note] : {std::pair{1.0, "GroupArt /"},
                                        {0.99, "GroupArt /"},
                                        {0.989, "GroupArt / Opacity=99"},
                                        {0.98, "GroupArt / Opacity=98"},
                                        {0.554, "GroupArt / Opacity=55"},
                                        {0.05, "GroupArt / Opacity=05"},
                                        {0.0, "GroupArt / Opacity=00"}}) {
        group.blend.opacity = opacity;
        CaptureAll();
        EXPECT_EQ(Stream().at(0), note);
    }
}

// The layer's own group has brackets only to carry the layer's title.
TEST_F(PostArtTest, LayerOptionBracketsTheLayerAndKeepsItsTitle) {
    document().LayerAt(0).title = "\xE5\x9B\xB3"; // 図 in UTF-8
    AddLine(AddGroup(root()));
    CaptureAll();
    EXPECT_THAT(Stream(), ElementsAre("GroupArt /", "path", "/ GroupArt"));

    globals->layerOption = 1;
    Capture();
    EXPECT_THAT(Stream(), ElementsAre("GroupArt /", "GroupArt /", "path", "/ GroupArt", "/ GroupArt",
                                      "Tag = \"図\", string, aidb_layer_title\r"));
}

// What a style draws is taken whole, though nobody can select it.
TEST_F(PostArtTest, StyledArtStandsForItsPath) {
    Art& path = AddPath(root(), {{0, 0}, {100, 100}, {200, 0}});
    path.tags.push_back({"part", "string", "lid"});
    Art& produced = FreeGroup();
    AddLine(produced);
    path.styledArt = produced.handle;
    AddLine(root());
    document().Select(path, true);
    Capture();
    EXPECT_THAT(Stream(), ElementsAre("StyledArt /", "GroupArt /", "path", "path", "/ GroupArt",
                                      "/ StyledArt", "Tag = \"lid\", string, part\r"));

    path.blend.opacity = 0.5;
    Capture();
    EXPECT_THAT(Stream(), ElementsAre("path", "Tag = \"lid\", string, part\r"));
    EXPECT_EQ(PathAt(0).segmentCount, 3);
}

// Art that a broken style draws in its own place must not keep the host busy for ever.
TEST_F(PostArtTest, AStyleThatLeadsInACircleEnds) {
    Art& path = AddLine(root());
    Art& produced = FreeGroup();
    produced.firstChild->styledArt = path.handle;
    path.styledArt = produced.handle;
    CaptureAll();
    const Strings stream = Stream();
    EXPECT_EQ(std::count(stream.begin(), stream.end(), "path"), 1);
    EXPECT_EQ(std::count(stream.begin(), stream.end(), "StyledArt /"),
              std::count(stream.begin(), stream.end(), "/ StyledArt"));
}

// Beyond 1023 levels the brackets end, the art doesn't.
TEST_F(PostArtTest, VeryDeepArtIsTakenWithoutBrackets) {
    constexpr int kLevels = 100000;
    Art* group = &root();
    for (int level = 0; level < kLevels; ++level) group = &AddGroup(*group);
    AddLine(*group);
    CaptureAll();
    const Strings stream = Stream();
    EXPECT_EQ(stream.size(), 2 * 1023u + 1);
    EXPECT_EQ(stream[1023], "path");
}

} // namespace
