// What the text engine's references mean, and what it holds against a plug-in.

#include "suites/text.h"
#include "tests/support/text_art.h"
#include "tests/workbench/suites/suites_fixture.h"

namespace workbench {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

class TextEngineTest : public SuitesFixture {
protected:
    const AITextFrameSuite& frames = Use<AITextFrameSuite>("AI Text Frame Suite", 4);
    const ATETextRangeSuite& ranges = Use<ATETextRangeSuite>("ATE TextRange Suite", 1);
    const ATECharFeaturesSuite& characters = Use<ATECharFeaturesSuite>("ATE CharFeatures Suite", 101);
    const ATEStorySuite& stories = Use<ATEStorySuite>("ATE Story Suite", 1);

    Art& Frame(std::u16string_view text) {
        return AddPointText(document(), *document().CurrentLayer().root, text);
    }
    TextRangeRef RangeOf(const Art& frame) {
        TextRangeRef range = nullptr;
        EXPECT_EQ(frames.GetTextRange(frame.handle, &range), kHostNoError);
        return range;
    }
    CharFeaturesRef FeaturesOf(TextRangeRef range) {
        CharFeaturesRef features = nullptr;
        EXPECT_EQ(ranges.GetLocalCharFeatures(range, &features), kHostNoError);
        return features;
    }
};

TEST_F(TextEngineTest, AReferenceIsGoodUntilItsLastUseIsReleased) {
    const TextRangeRef range = RangeOf(Frame(u"abc"));
    int32_t size = 0;
    EXPECT_EQ(ranges.AddRef(range), kHostNoError);
    EXPECT_EQ(ranges.Release(range), kHostNoError);
    EXPECT_EQ(ranges.GetSize(range, &size), kHostNoError);
    EXPECT_EQ(size, 3);
    host_.RefuseCall(1); // which ends the use none the less
    EXPECT_EQ(ranges.Release(range), kHostRefused);
    host_.RefuseNone();
    EXPECT_EQ(ranges.GetSize(range, &size), kHostBadHandle);
    EXPECT_THAT(TakeFaults(), ElementsAre(HasSubstr("is no living text range")));
    // A reference of another kind is none, however it got there.
    const CharFeaturesRef wrong = FeaturesOf(RangeOf(Frame(u"x")));
    EXPECT_EQ(ranges.GetSize(reinterpret_cast<TextRangeRef>(wrong), &size), kHostBadHandle);
    TakeFaults();
    ReleaseAll();
    EXPECT_THAT(TakeFaults(), ElementsAre(HasSubstr("was never released"), HasSubstr("was never released")));
}

// The path leaves the tree with its frame's making, and goes where the frame goes.
TEST_F(TextEngineTest, AFrameTakesItsPathOver) {
    Art* path = NewPath();
    const ArtHandle handle = path->handle;
    ArtHandle frame = nullptr, none = nullptr;
    const auto area = [&](ArtHandle of, ArtHandle* made) {
        return frames.NewAreaText(kPlaceAboveAll, nullptr, 0, of, nullptr, 0, made);
    };
    EXPECT_EQ(area(nullptr, &none), kHostBadParameter);
    EXPECT_EQ(host_.faultCount(), 0u);
    ASSERT_EQ(area(handle, &frame), kHostNoError);
    EXPECT_EQ(path->parent, nullptr);
    EXPECT_EQ(document().CurrentLayer().root->firstChild->handle, frame);
    EXPECT_EQ(area(handle, &none), kHostBadPlace);
    EXPECT_THAT(TakeFaults(), ElementsAre(HasSubstr("no part of the tree")));
    EXPECT_EQ(ArtSuite().DisposeArt(frame), kHostNoError);
    EXPECT_EQ(document().Find(handle), nullptr);
}

} // namespace

} // namespace workbench
