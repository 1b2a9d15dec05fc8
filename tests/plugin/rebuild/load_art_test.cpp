#include <gmock/gmock.h>

#include <cstdio>
#include <cstring>

#include "plugin/store/record_layout.h"
#include "tests/plugin/rebuild/load_fixture.h"

using testing::IsEmpty;

namespace {

using LoadArtTest = LoadFixture;

// ---- Where the art lands ----

// Modes count down the columns; those that don't exist are the first.
TEST_F(LoadArtTest, TheModesPointOfTheArtComesToThePlacePoint) {
    Path(1);
    Store();
    globals->placePoint = {1000, 2000};
    for (int16_t mode = -1; mode <= 9; ++mode) {
        SCOPED_TRACE(mode);
        OpenEmptyDocument();
        globals->originMode = mode;
        EXPECT_EQ(Load(), kHostNoError);
        ASSERT_EQ(Page(), "p1");
        const int cell = mode < 0 || mode > 8 ? 0 : mode;
        const auto& segment = First().path()->segments.at(1);
        EXPECT_DOUBLE_EQ(segment.anchor.x, 1000 - cell / 3 * 50 + 10);
        EXPECT_DOUBLE_EQ(segment.anchor.y, 2000 - (2 - cell % 3) * 25);
        EXPECT_DOUBLE_EQ(segment.in.x, segment.anchor.x);
        EXPECT_DOUBLE_EQ(segment.out.y, segment.anchor.y);
    }
}

// ---- The walk ----

/// Objects from the first to the last: "p3" is a path, "f3 12" one filled with pattern 12, all else a note.
struct WalkCase {
    std::vector<std::string> objects;
    const char* page; ///< as DescribeAll tells it
};

class WalkTest : public LoadFixture, public testing::WithParamInterface<WalkCase> {};

TEST_P(WalkTest, MakesThatPage) {
    for (const std::string& object : GetParam().objects) {
        int id = 0;
        unsigned pattern = 0;
        if (std::sscanf(object.c_str(), "f%d %u", &id, &pattern) == 2)
            PatternPath(id, pattern);
        else if (std::sscanf(object.c_str(), "p%d", &id) == 1)
            Path(id);
        else
            Note(object);
    }
    EXPECT_EQ(Load(), kHostNoError);
    std::string page;
    for (const workbench::Art* art = Root().firstChild; art; art = art->below)
        page += (page.empty() ? "" : " ") + DescribeAll(document(), *art);
    EXPECT_EQ(page, GetParam().page);
    EXPECT_FALSE(Root().group()->clipped) << "the layer's own group";
    EXPECT_EQ(Root().blend.opacity, 1);
    EXPECT_EQ(document().LayerCount(), 1u);
}

INSTANTIATE_TEST_SUITE_P(
    Brackets, WalkTest,
    testing::Values(WalkCase{{}, ""},
                    WalkCase{{"p1", "GroupArt /", "p2", "CompoundPathArt /", "p3", "p4", "/ CompoundPathArt",
                              "GroupArt /", "/ GroupArt", "/ GroupArt", "p5"},
                             "p1 g(p2 c(p3 p4) g()) p5"},
                    WalkCase{{"GroupArt / Clipped=TRUE Opacity=50", "p1", "/ GroupArt"}, "g!(p1)"},
                    // A word counts wherever it stands, in the order of the rules, and only as it is written.
                    WalkCase{{"GroupArt /", "p1", "Tag = \"see / GroupArt\", string, note\r"}, "g(p1)"},
                    WalkCase{{"StyledArt /", "p1", "/ StyledArt", "grouPart /", ""}, "p1"},
                    // Walking backwards the compound path's note closes the group, and the group's own finds
                    // nothing open.
                    WalkCase{
                        {"GroupArt / Clipped=TRUE Opacity=10", "CompoundPathArt /", "p1", "/ GroupArt", "p2"},
                        "g(p1) p2"},
                    WalkCase{{"GroupArt / Clipped=TRUE", "p1", "/ CompoundPathArt"}, "c(p1)"}));

INSTANTIATE_TEST_SUITE_P(
    Patterns, WalkTest,
    testing::Values(
        // Containers in a run are real and stay in the pattern.
        WalkCase{{"f1 1", "PatternArt00001 /", "GroupArt / Clipped=TRUE", "p2", "CompoundPathArt /", "p3",
                  "/ CompoundPathArt", "/ GroupArt", "p4", "/ PatternArt00001"},
                 "p1[g(g!(p2 c(p3)) p4)]"},
        // The run's end drops what is still open in it, and keeps what is open on the page.
        WalkCase{{"GroupArt /", "f1 1", "PatternArt00001 /", "p2", "/ GroupArt", "/ PatternArt00001", "p3",
                  "/ GroupArt"},
                 "g(p1[g(g(p2))] p3)"},
        WalkCase{{"PatternArt00000 /", "p1", "/ PatternArt00000", "PatternArt01024 /", "p2",
                  "/ PatternArt01024", "PatternArt-0001 /", "p3", "/ PatternArt-0001", "/ PatternArt", "p4"},
                 "p1 p2 p3 p4"},
        // Only five digits count: what follows them is no part of the number.
        WalkCase{{"f1 1", "PatternArt00001 /", "p2", "/ PatternArt000019"}, "p1[g(p2)]"},
        // A number that stands twice leaves no holder on the page.
        WalkCase{{"f1 1", "PatternArt00001 /", "p2", "/ PatternArt00001", "f3 1", "PatternArt00001 /", "p4",
                  "/ PatternArt00001"},
                 "p1[g(p2)] p3[g(p4)]"},
        WalkCase{{"f1 0", "f2 7", "f3 1023", "f4 1024", "f5 4294967295", "PatternArt00001 /", "p8",
                  "/ PatternArt00001"},
                 "p1 p2 p3 p4 p5"}));

INSTANTIATE_TEST_SUITE_P(
    Tags, WalkTest,
    testing::Values(
        WalkCase{{"GroupArt /", "CompoundPathArt /", "p1", "Tag = \"p\", string, n\r", "/ CompoundPathArt",
                  "Tag = \"c\", string, n\r", "p2", "/ GroupArt",
                  "Tag = \"g\", string, n\rTag = \"x\", number, m\r"},
                 "g(c(p1#n=p)#n=c p2)#n=g"},
        WalkCase{{"p1", "Tag = \"a = b, c\\d\", string, one\rTag = 2, string, two\r'Tag = 3, string, no\r\r"},
                 "p1#one=a = b, c\\d#two=2"},
        WalkCase{{"p1",
                  "tag = \"1\", string, a\rTags = \"2\", string, b\rTag = \"3\", string\rTag\r"
                  "Tag = \"\", string, c"},
                 "p1#c="},
        // Without the option a layer's title neither moves art nor becomes a tag, nor ever does so in a run.
        WalkCase{{"p1", "Tag = \"v\", string, n\rTag = \"Top\", string, aidb_layer_title\r"}, "p1#n=v"},
        WalkCase{
            {"f1 1", "PatternArt00001 /", "p2",
             "Tag = \"Elsewhere\", string, aidb_layer_title\rTag = \"v\", string, n\r", "/ PatternArt00001"},
            "p1[g(p2#n=v)]"}));

// Where the header's fields lie; a round trip would also come through with two of them in each other's place.
TEST_F(LoadArtTest, ThePathsHeaderSaysHowItBlends) {
    AidbPathObject* path = Path(3);
    path->header.blendMode = workbench::kBlendMultiply;
    path->header.opacity = Stored(0.25);
    path->header.isolated = 1;
    path->header.knockout = 2;
    path->header.alphaIsShape = 0;
    Load();
    EXPECT_EQ(First().blend, (workbench::Blend{workbench::kBlendMultiply, 0.25, 1, 2, 0}));
}

// Beyond the last entry brackets only count, and the tags of such a group reach no other art.
TEST_F(LoadArtTest, BracketsBeyondTheLastEntryOnlyCount) {
    constexpr int kTooMany = 1030;
    for (int i = 0; i < kTooMany; ++i) Note("GroupArt / Clipped=TRUE");
    Path(1);
    Note("/ GroupArt");
    Note("Tag = \"lost\", string, name\r");
    for (int i = 1; i < kTooMany; ++i) Note("/ GroupArt");
    Path(2);
    EXPECT_EQ(Load(), kHostNoError);

    const workbench::Art* art = &First();
    int depth = 0;
    for (; art->kind == kArtGroup; art = art->firstChild) {
        EXPECT_TRUE(art->group()->clipped);
        EXPECT_THAT(TagsOf(*art), IsEmpty());
        ASSERT_NE(art->firstChild, nullptr);
        ++depth;
    }
    EXPECT_EQ(depth, 1023);
    EXPECT_EQ(Describe(*art), "p1");
    EXPECT_THAT(TagsOf(*art), IsEmpty());
    EXPECT_EQ(Describe(*First().below), "p2");
}

// ---- Layers, undo, missing records ----

TEST_F(LoadArtTest, AHiddenOrLockedLayerBeepsAndGetsNothing) {
    Path(1);
    Store();
    for (const bool hidden : {true, false}) {
        document().CurrentLayer().visible = !hidden;
        document().CurrentLayer().locked = !hidden;
        globals->language = hidden ? 0 : 2;
        const auto beeps = BeepsSoFar();
        EXPECT_EQ(Load(), kHostNoError);
        EXPECT_EQ(Page(), "");
        ExpectBeeps(beeps, 1);
        EXPECT_EQ(document().undoText,
                  hidden ? reinterpret_cast<const char*>(u8"配置の取り消し") : "Undo Placement");
        EXPECT_EQ(document().redoText,
                  hidden ? reinterpret_cast<const char*>(u8"配置のやり直し") : "Redo Placement");
    }
}

TEST_F(LoadArtTest, AMissingRecordChangesNothingAndIsNoError) {
    Path(1);
    Store();
    const auto beeps = BeepsSoFar();
    EXPECT_EQ(AidbLoadArt("\\Folder\\Group", 1), kHostNoError);
    EXPECT_EQ(AidbLoadArt("\\Nowhere", 0), kHostNoError);
    EXPECT_EQ(Page(), "");
    EXPECT_EQ(document().undoText, "");
    ExpectBeeps(beeps, 0);
    EXPECT_EQ(globals->curRecord, nullptr);
}

TEST_F(LoadArtTest, ALoadEmptiesTheTablesOfTheLastOne) {
    globals->customCount = 3;
    globals->linkCount = 2;
    globals->linkNames = NewHandle(64, kSmallGrain);
    globals->pendingTagCount = 4;
    globals->pendingTags = NewHandle(4 * sizeof(pendingTag), kSmallGrain);
    Path(1);
    Load();
    EXPECT_EQ(globals->customCount, 0);
    EXPECT_EQ(globals->linkCount, 0);
    EXPECT_EQ(globals->linkNames, nullptr);
    EXPECT_EQ(globals->pendingTags, nullptr);
    EXPECT_THAT(TagsOf(First()), IsEmpty());
}

// ---- Plug-in art ----

TEST_F(LoadArtTest, TheGroupWithinThePluginsBracketsBecomesItsEditArt) {
    const auto pluginNote = [](const char* name) {
        AidbPluginNote note{};
        std::memcpy(note.text, kPluginNoteText, sizeof kPluginNoteText);
        std::memcpy(note.groupName, name, std::strlen(name));
        note.major = 3;
        note.minor = 4;
        note.dataBytes = 255;
        for (int i = 0; i < 255; ++i) note.data[i] = static_cast<uint8_t>(i);
        ASSERT_EQ(AddNoteBytes(&note, sizeof note), 0);
    };
    int id = 0;
    for (const char* name : {"Blend", "blend"}) { // the second is nobody's
        pluginNote(name);
        Note("GroupArt /");
        Path(++id);
        Note("/ GroupArt");
        Note("/ PluginArt");
        Path(++id);
    }
    pluginNote("Blend"); // without a group, and without a closing note
    Path(5);
    Note("/ PluginArt");
    pluginNote("Blend");
    host().AddPluginGroup("Other");
    host().AddPluginGroup("Blend");
    EXPECT_EQ(Load(), kHostNoError);
    ASSERT_EQ(Page(), "x(g(p1)) p2 g(p3) p4 p5");
    const auto& data = std::get<workbench::PluginArtData>(First().data);
    EXPECT_EQ(data.groupName, "Blend");
    EXPECT_EQ(data.edit, First().firstChild->handle);
    EXPECT_EQ(data.major, 3);
    EXPECT_EQ(data.minor, 4);
    ASSERT_EQ(data.data.size(), 255u);
    EXPECT_EQ(data.data[254], 254);
}

// ---- Damage ----

// The swap has clipped what it could; the load meets objects whose own numbers still lie.
TEST_F(LoadArtTest, WhatIsUnknownOrDamagedIsPassedOver) {
    Path(1)->segmentCount = 30000;
    // The name of a linked file may hold the word of a later rule.
    Note("PlacedFile = \"Tag.tif\"\rTag = \"wrong\", string, name\r");
    for (const auto& [type, size] : {std::pair{77u, 128u},
                                     {uint32_t{kPathObject}, 24u},
                                     {uint32_t{kPathObject}, kPathBaseBytes - 1},
                                     {uint32_t{kNoteObject}, 24u}})
        ASSERT_NE(AppendObject(globals->curRecord, type, size), nullptr);
    // A note need not hold an ending 0 byte; the word must not be found in what lies behind it.
    for (const char* half : {"/ Gro", "upArt"}) {
        uint8_t* note = AppendObject(globals->curRecord, kNoteObject, 24 + 5);
        ASSERT_NE(note, nullptr);
        std::memcpy(note + 24, half, 5);
    }
    Path(2)->segmentCount = -1;
    EXPECT_EQ(Load(), kHostNoError);
    ASSERT_EQ(Page(), "p1 p2");
    EXPECT_THAT(TagsOf(First()), IsEmpty());
    EXPECT_EQ(First().path()->segments.size(), 3u);
    EXPECT_EQ(First().below->path()->segments.size(), 0u);
}

} // namespace
