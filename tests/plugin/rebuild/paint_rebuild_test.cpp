#include <gmock/gmock.h>

#include <limits>

#include "tests/plugin/rebuild/load_fixture.h"

namespace {

class GradientTest : public LoadFixture {
protected:
    /// A path filled with a gradient of `stops` gray stops, stop i at location i and of gray i / 64.
    AidbPathObject* GradientPath(int id, uint16_t stops) {
        AidbPathObject* path = Path(id);
        path->style.fillFlag = 1;
        path->style.fill.kind = kStoredGradient;
        auto& use = path->style.fill.u.gradient;
        use.origin = {Stored(3), Stored(4)};
        use.angle = Stored(30);
        use.length = Stored(20);
        use.matrix = {Stored(1), 0, 0, Stored(1), 0, 0};
        use.translation = {kAbsentFixed, kAbsentFixed};
        path->block.ramp.type = kGradientRadial;
        path->block.ramp.stopCount = stops;
        for (int i = 0; i < kMaxStops; ++i) {
            path->block.ramp.stops[i].location = Stored(i);
            path->block.ramp.stops[i].midpoint = Stored(50);
            path->block.ramp.stops[i].color.u.gray = Stored(i / 64.0);
        }
        return path;
    }
    const HostGradientUse& Use(const workbench::Art& art) { return art.path()->style.fill.u.gradient; }
    const workbench::Gradient& GradientOf(const workbench::Art& art) {
        const workbench::Gradient* gradient = document().Find(Use(art).gradient);
        EXPECT_NE(gradient, nullptr);
        return *gradient;
    }
    std::vector<double> Locations(const workbench::Art& art) {
        std::vector<double> locations;
        for (const HostGradientStop& stop : GradientOf(art).stops) locations.push_back(stop.location);
        return locations;
    }
};

TEST_F(GradientTest, StopsComeBackInTheirOrderAndOpaque) {
    GradientPath(1, 4);
    EXPECT_EQ(Load(), kHostNoError);
    ASSERT_EQ(First().path()->style.fill.kind, kColorGradient);
    EXPECT_EQ(GradientOf(First()).type, kGradientRadial);
    EXPECT_EQ(Locations(First()), (std::vector<double>{0, 1, 2, 3}));
    for (const HostGradientStop& stop : GradientOf(First()).stops) {
        EXPECT_DOUBLE_EQ(stop.color.u.gray.gray, stop.location / 64);
        EXPECT_DOUBLE_EQ(stop.midpoint, 50);
        EXPECT_DOUBLE_EQ(stop.opacity, 1);
    }
    EXPECT_DOUBLE_EQ(Use(First()).angle, 30);
    EXPECT_DOUBLE_EQ(Use(First()).length, 20);
}

TEST_F(GradientTest, StrangeStopCountsStayWithinTheTable) {
    GradientPath(1, 0);
    GradientPath(2, 1);
    GradientPath(3, 2);
    GradientPath(4, 60000);
    EXPECT_EQ(Load(), kHostNoError);
    ASSERT_EQ(Page(), "p1 p2 p3 p4");
    const workbench::Art* art = &First();
    EXPECT_EQ(Locations(*art), (std::vector<double>{0, 100})); // the host's own two stops
    EXPECT_EQ(Locations(*(art = art->below)), (std::vector<double>{0, 0}));
    EXPECT_EQ(Locations(*(art = art->below)), (std::vector<double>{0, 1}));
    const auto all = Locations(*(art = art->below));
    ASSERT_EQ(all.size(), 32u);
    EXPECT_EQ(all.back(), 31);
}

TEST_F(GradientTest, TheOriginMovesWithTheArtAsSeenThroughTheMatrix) {
    AidbPathObject* path = GradientPath(1, 2);
    path->style.fill.u.gradient.matrix = {0, Stored(2), Stored(-2), 0, Stored(7), Stored(9)};
    path->style.fill.u.gradient.translation = {Stored(5), Stored(6)};
    globals->placePoint = {100, 200};
    Load();
    const HostGradientUse& use = Use(First());
    // The matrix turns by 90 degrees, doubles, and stands where it was stored; (100, 200) on the page is
    // (100, -50) in a space that is turned back and halved.
    EXPECT_DOUBLE_EQ(use.matrix.tx, 5);
    EXPECT_DOUBLE_EQ(use.matrix.ty, 6);
    EXPECT_DOUBLE_EQ(use.matrix.b, 2);
    EXPECT_DOUBLE_EQ(use.origin.x, 3 + 100);
    EXPECT_DOUBLE_EQ(use.origin.y, 4 - 50);
}

TEST_F(GradientTest, WithoutAStoredTranslationTheHardOriginIsTakenOutOfTheMatrix) {
    document().hardOrigin = {10, 20};
    AidbPathObject* path = GradientPath(1, 2);
    path->style.fill.u.gradient.matrix.tx = Stored(13);
    path->style.fill.u.gradient.matrix.ty = Stored(4);
    path->style.fill.u.gradient.translation = {Stored(77), kAbsentFixed};
    Load();
    EXPECT_DOUBLE_EQ(Use(First()).matrix.tx, 3);
    EXPECT_DOUBLE_EQ(Use(First()).matrix.ty, 24);
    EXPECT_DOUBLE_EQ(Use(First()).origin.x, 3);
}

TEST_F(GradientTest, AMatrixWithoutAnInverseLeavesTheOriginAlone) {
    AidbPathObject* path = GradientPath(1, 2);
    path->style.fill.u.gradient.matrix = {};
    globals->placePoint = {100, 200};
    EXPECT_EQ(Load(), kHostNoError);
    EXPECT_DOUBLE_EQ(Use(First()).origin.x, 3);
    EXPECT_DOUBLE_EQ(Use(First()).origin.y, 4);
}

TEST_F(GradientTest, StrokesAndUnpaintedFillsBecomeGray) {
    AidbPathObject* path = GradientPath(1, 2);
    path->style.fillFlag = 0;
    path->style.stroke = path->style.fill;
    path->style.stroke.u.gradient.number = 0x12345;
    EXPECT_EQ(Load(), kHostNoError);
    ASSERT_EQ(Page(), "p1");
    const HostPathStyle& style = First().path()->style;
    EXPECT_TRUE(style.strokePaint);
    EXPECT_FALSE(style.fillPaint);
    EXPECT_EQ(style.stroke.kind, kColorGray);
    EXPECT_DOUBLE_EQ(style.stroke.u.gray.gray, 0);
}

// A damaged or foreign record can hold colours that nothing resolves; the path is worth keeping.
TEST_F(GradientTest, UnresolvedCustomAndUnknownColoursBecomeGray) {
    AidbPathObject* path = GradientPath(1, 2);
    path->block.ramp.stops[0].color.kind = kStoredCustom;
    path->block.ramp.stops[1].color.kind = kStoredPattern;
    path->block.ramp.stops[1].color.u.pattern.number = 0xFFFFFFFF;
    path->style.stroke.kind = kStoredCustom;
    path = Path(2);
    path->style.fillFlag = 1;
    path->style.fill.kind = 99;
    EXPECT_EQ(Load(), kHostNoError);
    ASSERT_EQ(Page(), "p1 p2");
    EXPECT_EQ(First().path()->style.stroke.kind, kColorGray);
    for (const HostGradientStop& stop : GradientOf(First()).stops) EXPECT_EQ(stop.color.kind, kColorGray);
    EXPECT_EQ(First().below->path()->style.fill.kind, kColorGray);
}

// ---- Patterns ----

class PatternTest : public LoadFixture {
protected:
    void PatternRun(const char* number, int id) {
        Note(std::string("PatternArt") + number + " /");
        Path(id);
        Note(std::string("/ PatternArt") + number);
    }
    /// Description of the art of the pattern that fills the path.
    std::string PatternOf(const workbench::Art& art) {
        const HostColor& fill = art.path()->style.fill;
        if (!art.path()->style.fillPaint || fill.kind != kColorPattern) return "none";
        const workbench::Pattern* pattern = document().Find(fill.u.pattern.pattern);
        return pattern && pattern->art ? Describe(*pattern->art) : "lost";
    }
};

TEST_F(PatternTest, ThePathGetsACopyOfTheRunsArtAndTheHolderGoes) {
    AidbPathObject* path = PatternPath(1, 2);
    path->style.fill.u.pattern.rotation = Stored(45);
    path->style.fill.u.pattern.matrix = {Stored(2), 0, 0, Stored(2), Stored(3), 0};
    PatternRun("00001", 8);
    PatternRun("00002", 9);
    globals->placePoint = {100, 200};
    EXPECT_EQ(Load(), kHostNoError);
    ASSERT_EQ(Page(), "p1");
    EXPECT_EQ(PatternOf(First()), "g(p9)");
    const HostPatternUse& use = First().path()->style.fill.u.pattern;
    EXPECT_DOUBLE_EQ(use.rotation, 45);
    EXPECT_DOUBLE_EQ(use.matrix.tx, 3);
    // Pattern art stands at its own place, whatever the placement.
    const workbench::Art& tile = *document().Find(use.pattern)->art->firstChild;
    EXPECT_DOUBLE_EQ(tile.path()->segments[1].anchor.x, 10);
    EXPECT_DOUBLE_EQ(First().path()->segments[1].anchor.x, 110);
}

TEST_F(PatternTest, APatternOfAStroke) {
    AidbPathObject* path = PatternPath(1, 1);
    path->style.stroke = path->style.fill;
    path->style.stroke.u.pattern.number = 3;
    PatternRun("00001", 8);
    EXPECT_EQ(Load(), kHostNoError);
    EXPECT_TRUE(First().path()->style.fillPaint);
    EXPECT_FALSE(First().path()->style.strokePaint);
    EXPECT_EQ(First().path()->style.stroke.kind, kColorGray);
}

TEST_F(PatternTest, ContainersInARunAreRealAndStayInThePattern) {
    PatternPath(1, 1);
    Note("PatternArt00001 /");
    Note("GroupArt / Clipped=TRUE");
    Path(2);
    Note("CompoundPathArt /");
    Path(3);
    Note("/ CompoundPathArt");
    Note("/ GroupArt");
    Path(4);
    Note("/ PatternArt00001");
    EXPECT_EQ(Load(), kHostNoError);
    ASSERT_EQ(Page(), "p1");
    EXPECT_EQ(PatternOf(First()), "g(g!(p2 c(p3)) p4)");
}

TEST_F(PatternTest, TheRunsEndDropsWhatIsStillOpenInItAndKeepsWhatIsOpenOnThePage) {
    Note("GroupArt /");
    PatternPath(1, 1);
    Note("PatternArt00001 /");
    Path(2);
    Note("/ GroupArt");
    Note("/ PatternArt00001");
    Path(3);
    Note("/ GroupArt");
    EXPECT_EQ(Load(), kHostNoError);
    ASSERT_EQ(Page(), "g(p1 p3)");
    EXPECT_EQ(PatternOf(*First().firstChild), "g(g(p2))");
}

TEST_F(PatternTest, LayerTitlesDontApplyInARun) {
    globals->layerOption = 1;
    PatternPath(1, 1);
    Note("PatternArt00001 /");
    Path(2);
    Note("Tag = \"Elsewhere\", string, aidb_layer_title\rTag = \"v\", string, n\r");
    Note("/ PatternArt00001");
    Load();
    EXPECT_EQ(document().LayerCount(), 1u);
    EXPECT_EQ(PatternOf(First()), "g(p2)");
    const workbench::Art& tile =
        *document().Find(First().path()->style.fill.u.pattern.pattern)->art->firstChild;
    EXPECT_THAT(TagsOf(tile), testing::ElementsAre("n=v"));
}

TEST_F(PatternTest, NumbersWithoutAHolderLeaveThePathUnfilled) {
    for (const uint32_t number : {0u, 7u, 1023u, 1024u, 0xFFFFFFFFu}) PatternPath(1, number);
    PatternRun("00001", 8);
    EXPECT_EQ(Load(), kHostNoError);
    for (const workbench::Art* art = Root().firstChild; art; art = art->below)
        EXPECT_EQ(PatternOf(*art), "none");
}

TEST_F(PatternTest, RunsOfNumbersOutOfRangeAreOrdinaryArt) {
    PatternRun("00000", 1);
    PatternRun("01024", 2);
    PatternRun("-0001", 3);
    Note("/ PatternArt");
    Path(4);
    EXPECT_EQ(Load(), kHostNoError);
    EXPECT_EQ(Page(), "p1 p2 p3 p4");
}

// Only five digits count: what follows them is no part of the number.
TEST_F(PatternTest, TheNumberIsReadFromFiveCharacters) {
    PatternPath(1, 1);
    Note("PatternArt00001 /");
    Path(2);
    Note("/ PatternArt000019");
    Load();
    EXPECT_EQ(PatternOf(First()), "g(p2)");
}

TEST_F(PatternTest, ANumberThatStandsTwiceLeavesNoHolderOnThePage) {
    PatternPath(1, 1);
    PatternRun("00001", 2);
    PatternPath(3, 1);
    PatternRun("00001", 4);
    EXPECT_EQ(Load(), kHostNoError);
    ASSERT_EQ(Page(), "p1 p3");
    EXPECT_EQ(PatternOf(First()), "g(p2)");
    EXPECT_EQ(PatternOf(*First().below), "g(p4)");
}

TEST_F(PatternTest, BracketsInARunNestBeyondTheLastEntryToo) {
    PatternPath(1, 1);
    Note("PatternArt00001 /");
    for (int i = 0; i < 1030; ++i) Note("GroupArt /");
    Path(2);
    for (int i = 0; i < 1030; ++i) Note("/ GroupArt");
    Path(3);
    Note("/ PatternArt00001");
    EXPECT_EQ(Load(), kHostNoError);
    const std::string art = PatternOf(First());
    EXPECT_EQ(art.find("p2"), 2u * 1024);
    EXPECT_EQ(art.substr(art.size() - 4), " p3)");
}

} // namespace
