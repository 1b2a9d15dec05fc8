#include <gmock/gmock.h>

#include <cstdio>
#include <cstring>

#include "plugin/store/record_layout.h"
#include "tests/plugin/rebuild/load_fixture.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using LoadArtTest = LoadFixture;

// ---- Where the art lands ----

struct OriginCase {
    int16_t mode;
    double dx, dy; ///< from placePoint to the art's lower left corner, for art of 100 by 50
};

class OriginModeTest : public LoadFixture, public testing::WithParamInterface<OriginCase> {};

TEST_P(OriginModeTest, PutsThatPointOfTheArtOnThePlacePoint) {
    Path(1);
    globals->originMode = GetParam().mode;
    globals->placePoint = {1000, 2000};
    EXPECT_EQ(Load(), kHostNoError);
    ASSERT_EQ(Page(), "p1");
    const auto& segment = First().path()->segments.at(1);
    EXPECT_DOUBLE_EQ(segment.anchor.x, 1000 + GetParam().dx + 10);
    EXPECT_DOUBLE_EQ(segment.anchor.y, 2000 + GetParam().dy);
    EXPECT_DOUBLE_EQ(segment.in.x, segment.anchor.x);
    EXPECT_DOUBLE_EQ(segment.out.y, segment.anchor.y);
}

INSTANTIATE_TEST_SUITE_P(AllModes, OriginModeTest,
                         testing::Values(OriginCase{0, 0, -50}, OriginCase{1, 0, -25}, OriginCase{2, 0, 0},
                                         OriginCase{3, -50, -50}, OriginCase{4, -50, -25},
                                         OriginCase{5, -50, 0}, OriginCase{6, -100, -50},
                                         OriginCase{7, -100, -25}, OriginCase{8, -100, 0},
                                         OriginCase{9, 0, -50}, OriginCase{-1, 0, -50}));

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

// The name of a linked file may hold the word of a later rule.
TEST_F(LoadArtTest, ObjectsAndNotesWithoutARebuildArePassedOver) {
    Path(1);
    Note("PlacedFile = \"Tag.tif\"\rTag = \"wrong\", string, name\r");
    ASSERT_NE(AppendObject(globals->curRecord, 77, 128), nullptr);
    Path(2);
    EXPECT_EQ(Load(), kHostNoError);
    EXPECT_EQ(Page(), "p1 p2");
    EXPECT_THAT(TagsOf(First()), IsEmpty());
}

// ---- Deep and unbalanced brackets ----

TEST_F(LoadArtTest, BracketsBeyondTheLastEntryOnlyCount) {
    constexpr int kTooMany = 1030;
    for (int i = 0; i < kTooMany; ++i) Note("GroupArt / Clipped=TRUE");
    Path(1);
    for (int i = 0; i < kTooMany; ++i) Note("/ GroupArt");
    Path(2);
    EXPECT_EQ(Load(), kHostNoError);

    const workbench::Art* art = &First();
    int depth = 0;
    for (; art->kind == kArtGroup; art = art->firstChild) {
        EXPECT_TRUE(art->group()->clipped);
        ASSERT_NE(art->firstChild, nullptr);
        ++depth;
    }
    EXPECT_EQ(depth, 1023);
    EXPECT_EQ(Describe(*art), "p1");
    EXPECT_EQ(Describe(*First().below), "p2");
}

// The innermost of 1024 brackets has no entry; its tags stand behind it.
TEST_F(LoadArtTest, TagsOfAGroupThatIsOnlyCountedReachNoOtherArt) {
    for (int i = 0; i < 1024; ++i) Note("GroupArt /");
    Path(1);
    Note("/ GroupArt");
    Note("Tag = \"lost\", string, name\r");
    for (int i = 0; i < 1023; ++i) Note("/ GroupArt");
    Load();
    const workbench::Art* art = &First();
    while (art->kind == kArtGroup) {
        EXPECT_THAT(TagsOf(*art), IsEmpty());
        art = art->firstChild;
    }
    EXPECT_THAT(TagsOf(*art), IsEmpty());
}

// ---- Layers, undo, missing records ----

TEST_F(LoadArtTest, AHiddenOrLockedLayerBeepsAndGetsNothing) {
    Path(1);
    Store();
    for (const bool hidden : {true, false}) {
        document().CurrentLayer().visible = !hidden;
        document().CurrentLayer().locked = !hidden;
        const auto beeps = BeepsSoFar();
        EXPECT_EQ(Load(), kHostNoError);
        EXPECT_EQ(Page(), "");
        ExpectBeeps(beeps, 1);
        EXPECT_NE(document().undoText, "");
    }
}

TEST_F(LoadArtTest, UndoTextsFollowTheLanguage) {
    Path(1);
    globals->language = 0;
    Load();
    EXPECT_EQ(document().undoText, reinterpret_cast<const char*>(u8"配置の取り消し"));
    EXPECT_EQ(document().redoText, reinterpret_cast<const char*>(u8"配置のやり直し"));
    globals->language = 2;
    Load();
    EXPECT_EQ(document().undoText, "Undo Placement");
    EXPECT_EQ(document().redoText, "Redo Placement");
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

class PluginArtTest : public LoadFixture {
protected:
    void PluginNote(const char* name, uint32_t dataBytes) {
        AidbPluginNote note{};
        std::memcpy(note.text, kPluginNoteText, sizeof kPluginNoteText);
        std::memcpy(note.groupName, name, std::strlen(name));
        note.major = 3;
        note.minor = 4;
        note.dataBytes = dataBytes;
        for (int i = 0; i < 255; ++i) note.data[i] = static_cast<uint8_t>(i);
        ASSERT_EQ(AddNoteBytes(&note, sizeof note), 0);
    }
    void PluginRecord(const char* name, uint32_t dataBytes) {
        PluginNote(name, dataBytes);
        Note("GroupArt /");
        Path(1);
        Note("/ GroupArt");
        Note("/ PluginArt");
        Path(2);
        host().AddPluginGroup("Other");
        host().AddPluginGroup("Blend");
    }
};

TEST_F(PluginArtTest, TheGroupWithinTheBracketsBecomesTheEditArt) {
    PluginRecord("Blend", 255);
    EXPECT_EQ(Load(), kHostNoError);
    ASSERT_EQ(Page(), "x(g(p1)) p2");
    const auto& data = std::get<workbench::PluginArtData>(First().data);
    EXPECT_EQ(data.groupName, "Blend");
    EXPECT_EQ(data.edit, First().firstChild->handle);
    EXPECT_EQ(data.major, 3);
    EXPECT_EQ(data.minor, 4);
    ASSERT_EQ(data.data.size(), 255u);
    EXPECT_EQ(data.data[254], 254);
}

TEST_F(PluginArtTest, AnUnknownNameLeavesAPlainGroup) {
    PluginRecord("blend", 8);
    EXPECT_EQ(Load(), kHostNoError);
    EXPECT_EQ(Page(), "g(p1) p2");
}

TEST_F(PluginArtTest, WithoutAGroupOrAnOpeningNoteNothingIsMade) {
    PluginNote("Blend", 8);
    Path(1);
    Note("/ PluginArt");
    PluginNote("Blend", 8);
    host().AddPluginGroup("Blend");
    EXPECT_EQ(Load(), kHostNoError);
    EXPECT_EQ(Page(), "p1");
}

// ---- Damage ----

// The swap has clipped what it could; the load meets objects whose own numbers still lie.
TEST_F(LoadArtTest, ObjectsShorterThanTheirKindArePassedOver) {
    Path(1);
    ASSERT_NE(AppendObject(globals->curRecord, kPathObject, 24), nullptr);
    ASSERT_NE(AppendObject(globals->curRecord, kPathObject, kPathBaseBytes - 1), nullptr);
    ASSERT_NE(AppendObject(globals->curRecord, kNoteObject, 24), nullptr);
    Path(2);
    EXPECT_EQ(Load(), kHostNoError);
    EXPECT_EQ(Page(), "p1 p2");
}

TEST_F(LoadArtTest, ASegmentCountBeyondTheObjectGivesTheSegmentsThatAreThere) {
    Path(1)->segmentCount = 30000;
    Path(2)->segmentCount = -1;
    EXPECT_EQ(Load(), kHostNoError);
    ASSERT_EQ(Page(), "p1 p2");
    EXPECT_EQ(First().path()->segments.size(), 3u);
    EXPECT_EQ(First().below->path()->segments.size(), 0u);
}

// A note need not hold an ending 0 byte; the word must not be found in what lies behind it.
TEST_F(LoadArtTest, ANoteEndsWithItsObject) {
    uint8_t* note = AppendObject(globals->curRecord, kNoteObject, 24 + 5);
    ASSERT_NE(note, nullptr);
    std::memcpy(note + 24, "/ Gro", 5);
    note = AppendObject(globals->curRecord, kNoteObject, 24 + 5);
    std::memcpy(note + 24, "upArt", 5);
    Path(1);
    Load();
    EXPECT_EQ(Page(), "p1");
}

} // namespace
