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

TEST_F(LoadFailureTest, ARefusedCallLeavesWholeArtAndNothingTemporary) {
    MakeRecord();
    uint64_t stops = 0;
    auto beeps = BeepsSoFar();
    const uint64_t calls = RefuseEachCall(
        [&](HostError) {
            const std::string page = Page();
            const bool stopped = page.find("p5") == std::string::npos;
            EXPECT_TRUE(IsPossibleRest(page)) << page;
            ExpectBeeps(beeps, stopped ? 1 : 0);
            stops += stopped;
        },
        false, [&] { beeps = BeepsSoFar(); });
    // The layer and its two flags; a holder, the group in it, its path and paint; two containers; three paths
    // and their paints.
    EXPECT_EQ(stops, 3u + 4u + 2u + 6u);
    EXPECT_GT(calls, 80u);

    globals->layerOption = 1;
    Load();
    EXPECT_EQ(Describe(*document().LayerAt(0).root), "g(g!(p5 c(p2)))");
    RefuseEachCall([](HostError) {}, true);
}

// The drop onto art builds all of the record and takes it away again, whatever fails on the way.
TEST_F(LoadFailureTest, ATagTransferLeavesNoArtOfItsOwn) {
    MakeRecord();
    globals->trackState = 2;
    RefuseEachCall([&](HostError) { EXPECT_EQ(Page(), "p1"); }, false,
                   [&] { globals->trackTarget = AddArt(kArtPath, nullptr)->handle; });
}

} // namespace
