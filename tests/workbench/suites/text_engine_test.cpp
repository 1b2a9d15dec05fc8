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

// Only what has a value is laid over a range, unit by unit; what differs within a range has none.
TEST_F(TextEngineTest, FeaturesKnowWhatHasAValue) {
    Art& frame = Frame(u"abcd");
    SetCharacter(frame, 1, 3, OddCharacter());
    const TextRangeRef range = RangeOf(frame);
    const CharFeaturesRef features = FeaturesOf(range);
    double size = 0;
    int32_t stroke = -1, fill = -1;
    EXPECT_EQ(characters.GetFontSize(features, &size), kHostNotFound);
    EXPECT_EQ(characters.GetStroke(features, &stroke), kHostNotFound);
    EXPECT_EQ(characters.GetFill(features, &fill), kHostNoError);
    EXPECT_EQ(characters.SetFontSize(features, -1), kHostBadParameter);
    EXPECT_EQ(characters.SetBaselineShift(features, 9), kHostNoError);
    EXPECT_EQ(ranges.SetRange(range, 2, 4), kHostNoError);
    EXPECT_EQ(ranges.SetLocalCharFeatures(range, features), kHostNoError);
    const Story& story = *TextOf(frame).story;
    std::vector<double> shifts, sizes;
    for (size_t at = 0; at < 4; ++at) {
        shifts.push_back(StyleOf(story, at).character->baselineShift);
        sizes.push_back(StyleOf(story, at).character->fontSize);
    }
    EXPECT_THAT(shifts, ElementsAre(0, -3, 9, 9));
    EXPECT_THAT(sizes, ElementsAre(12, 24, 24, 12));
    ranges.Release(range);
    characters.Release(features);
}

TEST_F(TextEngineTest, WhatIsInsertedHasTheFeaturesOfItsPlace) {
    Art& frame = Frame(u"ab");
    SetCharacter(frame, 1, 2, OddCharacter());
    SetKerning(*TextOf(frame).story, 1, 10);
    const TextRangeRef range = RangeOf(frame);
    const CharFeaturesRef features = FeaturesOf(range);
    characters.SetTracking(features, 77);
    ranges.SetRange(range, 1, 1);
    ranges.SetLocalCharFeatures(range, features);
    EXPECT_EQ(ranges.InsertAfter(range, u"xy", 2), kHostNoError);
    int32_t start = 0, size = 0, length = 0, kerning = 0;
    ranges.GetStart(range, &start);
    ranges.GetSize(range, &size);
    EXPECT_EQ(start * 10 + size, 12);
    char text[3];
    ranges.SetRange(range, 0, 4);
    EXPECT_EQ(ranges.GetContents(range, text, sizeof text, &length), kHostNoError);
    EXPECT_STREQ(text, "ax");
    EXPECT_EQ(length, 4);
    const Story& story = *TextOf(frame).story;
    EXPECT_EQ(StyleOf(story, 2).character->tracking, 77);
    EXPECT_EQ(StyleOf(story, 2).character->fontSize, 12); // the letter before is plain
    EXPECT_EQ(StyleOf(story, 3).character->tracking, -50);
    ranges.SetRange(range, 3, 3);
    StoryRef reference = nullptr;
    ranges.GetStory(range, &reference);
    EXPECT_EQ(stories.GetKerning(reference, range, &kerning), kHostNoError);
    EXPECT_EQ(kerning, 10);
    EXPECT_EQ(ranges.SetRange(range, 2, 5), kHostBadParameter);
    EXPECT_EQ(stories.SetKerning(reference, 5, 1), kHostBadParameter);
    EXPECT_EQ(TakeFaults().size(), 2u);
    stories.Release(reference);
    characters.Release(features);
    ranges.Release(range);
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
