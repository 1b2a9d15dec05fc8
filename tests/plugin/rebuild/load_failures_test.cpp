// Whatever call the host refuses, a load ends with the document in order: what was built stays, nothing
// temporary does, and no call is made with a handle that was never given.

#include <gmock/gmock.h>

#include "tests/plugin/rebuild/load_fixture.h"

namespace {

class LoadFailureTest : public LoadFixture {
protected:
    /// Something of each kind: tags with a layer title, nesting, clipping, gradient, pattern, custom colours.
    void MakeRecord() {
        Note("GroupArt / Clipped=TRUE Opacity=50");
        AidbPathObject* path = Path(5);
        path->style.fillFlag = 1;
        path->style.fill.kind = kStoredGradient;
        path->style.fill.u.gradient.matrix = {Stored(1), 0, 0, Stored(1), 0, 0};
        path->block.ramp.stopCount = 3;
        path->block.ramp.stops[2].color.reference = 1 << 8;
        Note("CompoundPathArt /");
        PatternPath(2, 1);
        Note("/ CompoundPathArt");
        Note("/ GroupArt");
        Note("Tag = \"v\", string, n\rTag = \"Elsewhere\", string, aidb_layer_title\r");
        Path(3)->style.stroke.reference = 1 << 8;
        Note("CustomColor001 = \"Ink\", 4, 0, 1, 1, 1, 1");
        Note("PatternArt00001 /");
        Note("GroupArt /");
        Path(4);
        Note("/ GroupArt");
        Note("/ PatternArt00001");
        Store();
    }

    /// Suite calls that a load makes if none is refused.
    uint64_t CallsOfALoad() {
        const uint64_t before = host().callCount();
        Load();
        return host().callCount() - before;
    }

    /// What a load may leave on the current layer, in the order in which it builds: each stop leaves the end
    /// of this list.
    bool IsPossibleRest(const std::string& page) {
        // p1 is a path that still has the paint it was born with.
        static const std::vector<std::string> rests = {"",
                                                       "p1",
                                                       "p3",
                                                       "g() p3",
                                                       "g(c()) p3",
                                                       "g(c(p1)) p3",
                                                       "g(c(p2)) p3",
                                                       "g(p1 c(p2)) p3",
                                                       "g(p5 c(p2)) p3",
                                                       "g!(p5 c(p2)) p3"};
        return std::find(rests.begin(), rests.end(), page) != rests.end();
    }
};

// Refuses the first call, then the second and so on to the last.
TEST_F(LoadFailureTest, ARefusedCallLeavesWholeArtAndNothingTemporary) {
    MakeRecord();
    const uint64_t calls = CallsOfALoad();
    EXPECT_EQ(Page(), "g!(p5 c(p2)) p3");
    uint64_t stops = 0;
    for (uint64_t n = 1; n <= calls; ++n) {
        SCOPED_TRACE(n);
        OpenEmptyDocument();
        const auto beeps = BeepsSoFar();
        host().RefuseCall(n);
        Load();
        host().RefuseNone();

        const std::string page = Page();
        const bool stopped = page.find("p5") == std::string::npos;
        EXPECT_TRUE(IsPossibleRest(page)) << page;
        EXPECT_EQ(host().faults(), std::vector<std::string>());
        ExpectBeeps(beeps, stopped ? 1 : 0);
        stops += stopped;
    }
    // The layer and its two flags; a holder, the group in it, its path and paint; two containers; three paths
    // and their paints.
    EXPECT_EQ(stops, 3u + 4u + 2u + 6u);
    EXPECT_GT(calls, 80u);
}

TEST_F(LoadFailureTest, AllCallsRefusedFromOnePointOnLeaveNothingTemporary) {
    MakeRecord();
    globals->layerOption = 1;
    const uint64_t calls = CallsOfALoad();
    EXPECT_EQ(Page(), "p3");
    EXPECT_EQ(Describe(*document().LayerAt(0).root), "g(g!(p5 c(p2)))");
    for (uint64_t n = 1; n <= calls; ++n) {
        SCOPED_TRACE(n);
        OpenEmptyDocument();
        host().RefuseFrom(n);
        Load();
        host().RefuseNone();
        EXPECT_EQ(host().faults(), std::vector<std::string>());
    }
}

// The drop onto art builds all of the record and takes it away again, whatever fails on the way.
TEST_F(LoadFailureTest, ATagTransferLeavesNoArtOfItsOwn) {
    MakeRecord();
    globals->trackState = 2;
    globals->trackTarget = AddArt(kArtPath, nullptr)->handle;
    const uint64_t calls = CallsOfALoad();
    for (uint64_t n = 1; n <= calls; ++n) {
        SCOPED_TRACE(n);
        OpenEmptyDocument();
        globals->trackTarget = AddArt(kArtPath, nullptr)->handle;
        host().RefuseCall(n);
        Load();
        host().RefuseNone();
        EXPECT_EQ(Page(), "p1");
        EXPECT_EQ(host().faults(), std::vector<std::string>());
    }
}

} // namespace
