#include <gmock/gmock.h>

#include <cstring>

#include "plugin/store/record_layout.h"
#include "tests/plugin/rebuild/load_fixture.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class LoadArtTest : public LoadFixture {
protected:
    static void ExpectPoint(const HostPoint& point, double x, double y) {
        EXPECT_DOUBLE_EQ(point.x, x);
        EXPECT_DOUBLE_EQ(point.y, y);
    }
};

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

TEST_F(LoadArtTest, StackingAndNestingComeBack) {
    Path(1);
    Note("GroupArt /");
    Path(2);
    Note("CompoundPathArt /");
    Path(3);
    Path(4);
    Note("/ CompoundPathArt");
    Note("GroupArt /");
    Note("/ GroupArt");
    Note("/ GroupArt");
    Path(5);
    EXPECT_EQ(Load(), kHostNoError);
    EXPECT_EQ(Page(), "p1 g(p2 c(p3 p4) g()) p5");
}

TEST_F(LoadArtTest, NewArtLandsAboveWhatTheLayerHolds) {
    AddArt(kArtGroup, nullptr);
    Path(1);
    Load();
    EXPECT_EQ(Page(), "p1 g()");
}

TEST_F(LoadArtTest, ClippingAndOpacityOfAGroupComeFromItsNote) {
    Note("GroupArt / Clipped=TRUE Opacity=50");
    Path(1);
    Note("/ GroupArt");
    Note("GroupArt / Opacity=05");
    Note("/ GroupArt");
    Load();
    ASSERT_EQ(Page(), "g!(p1) g()");
    EXPECT_DOUBLE_EQ(First().blend.opacity, 0.5);
    EXPECT_DOUBLE_EQ(First().below->blend.opacity, 0.05);
}

TEST_F(LoadArtTest, APathKeepsItsBlendPaintSegmentsAndClosedFlag) {
    AidbPathObject* path = Path(3);
    path->header.blendMode = workbench::kBlendMultiply;
    path->header.opacity = Stored(0.25);
    path->header.isolated = 1;
    path->header.knockout = 2;
    path->header.alphaIsShape = 1;
    path->style.fillFlag = 1;
    path->style.fill.kind = kStoredThree;
    path->style.fill.u.three = {Stored(0.5), Stored(0.25), Stored(1)};
    path->style.evenOdd = 1;
    path->style.dashCount = 2;
    path->style.dashes[0] = Stored(4);
    path->style.dashes[1] = Stored(2);
    path->closed = 1;
    auto* segments = reinterpret_cast<AidbSegment*>(path + 1);
    segments[1].out = {Stored(12.5), Stored(-3)};
    segments[1].corner = 0;
    EXPECT_EQ(Load(), kHostNoError);

    ASSERT_EQ(Page(), "p3");
    const workbench::Art& art = First();
    EXPECT_EQ(art.blend, (workbench::Blend{workbench::kBlendMultiply, 0.25, 1, 2, 1}));
    EXPECT_TRUE(art.path()->closed);
    EXPECT_TRUE(art.path()->style.evenOdd);
    EXPECT_EQ(art.path()->style.dash.count, 2);
    EXPECT_DOUBLE_EQ(art.path()->style.dash.lengths[1], 2);
    EXPECT_EQ(art.path()->style.fill.kind, kColorThree);
    EXPECT_DOUBLE_EQ(art.path()->style.fill.u.three.green, 0.25);
    ASSERT_EQ(art.path()->segments.size(), 3u);
    ExpectPoint(art.path()->segments[1].out, 12.5, -3);
    EXPECT_EQ(art.path()->segments[1].corner, 0);
    EXPECT_EQ(art.path()->segments[2].corner, 1);
}

TEST_F(LoadArtTest, APathWithoutSegmentsKeepsItsPaintAndClosedFlag) {
    Path(4, {})->closed = 1;
    Load();
    ASSERT_EQ(Page(), "p4");
    EXPECT_THAT(First().path()->segments, IsEmpty());
    EXPECT_TRUE(First().path()->closed);
}

TEST_F(LoadArtTest, NotesAreMatchedByContainingTheWordInTheOrderOfTheRules) {
    Note("GroupArt /");
    Path(1);
    Note("Tag = \"see / GroupArt\", string, note\r");
    Load();
    EXPECT_EQ(Page(), "g(p1)");
    EXPECT_THAT(TagsOf(First()), IsEmpty());
}

TEST_F(LoadArtTest, StyledArtIsOrdinaryArtAndStrangeNotesDoNothing) {
    Note("StyledArt /");
    Path(1);
    Note("/ StyledArt");
    Note("grouPart /");
    Note("");
    Load();
    EXPECT_EQ(Page(), "p1");
}

// The name of a linked file may hold the word of a later rule.
TEST_F(LoadArtTest, ObjectsAndNotesWithoutARebuildArePassedOver) {
    Path(1);
    Note("PlacedFile = \"Tag.tif\"\rTag = \"wrong\", string, name\r");
    for (const uint32_t type : {uint32_t{kTextObject}, uint32_t{kRasterObject}, uint32_t{kMeshObject}, 77u})
        ASSERT_NE(AppendObject(globals->curRecord, type, 128), nullptr);
    Path(2);
    EXPECT_EQ(Load(), kHostNoError);
    EXPECT_EQ(Page(), "p1 p2");
    EXPECT_THAT(TagsOf(First()), IsEmpty());
}

TEST_F(LoadArtTest, AnEmptyRecordAddsNothing) {
    EXPECT_EQ(Load(), kHostNoError);
    EXPECT_EQ(Page(), "");
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

TEST_F(LoadArtTest, ClosingMoreThanIsOpenNeverTouchesTheLayersGroup) {
    Note("GroupArt / Clipped=TRUE Opacity=10");
    Note("CompoundPathArt /");
    Path(1);
    Note("/ GroupArt");
    Path(2);
    EXPECT_EQ(Load(), kHostNoError);
    // Walking backwards the compound path's note closes the group, and the group's own finds nothing open.
    EXPECT_EQ(Page(), "g(p1) p2");
    EXPECT_FALSE(Root().group()->clipped);
    EXPECT_DOUBLE_EQ(Root().blend.opacity, 1.0);
}

TEST_F(LoadArtTest, AGroupsNoteThatClosesACompoundPathClipsNothing) {
    Note("GroupArt / Clipped=TRUE");
    Path(1);
    Note("/ CompoundPathArt");
    Load();
    EXPECT_EQ(Page(), "c(p1)");
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

TEST_F(PluginArtTest, ADataSizeBeyondTheNoteLeavesAPlainGroup) {
    PluginRecord("Blend", 256);
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
