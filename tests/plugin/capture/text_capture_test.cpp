#include "plugin/capture/text_capture.h"

#include <cstring>

#include "plugin/objects/object_stream.h"
#include "tests/plugin/capture/capture_fixture.h"
#include "tests/support/text_art.h"

using workbench::Art;
using workbench::CharacterAttributes;

namespace {

using Bytes = std::vector<uint8_t>;

class TextCaptureTest : public CaptureTest {
protected:
    void SetUp() override {
        CaptureTest::SetUp();
        host().SetFontList(&fonts_);
    }

    Art& Text(std::u16string_view text, HostPoint anchor = {0, 0}) {
        return AddPointText(document(), root(), text, anchor);
    }

    /// The text objects of the stream, after a capture of everything.
    std::vector<Bytes> CaptureTexts() {
        CaptureAll();
        std::vector<Bytes> texts;
        for (Bytes& object : ObjectsOf(globals->curRecord)) {
            if (HeaderOf(object)->type == kTextObject) texts.push_back(std::move(object));
        }
        return texts;
    }
    Bytes CaptureOneText() {
        auto texts = CaptureTexts();
        EXPECT_EQ(texts.size(), 1u);
        return texts.size() == 1 ? texts[0] : Bytes(sizeof(AidbTextObject));
    }
    static std::vector<AidbTextRun> RunsOf(Bytes object) {
        const auto runs = TextRuns(object);
        return {runs.begin(), runs.end()};
    }
    std::vector<AidbTextRun> CaptureRuns() { return RunsOf(CaptureOneText()); }

    /// Texts of runs with the kerning in front: "ab", "[20]c".
    static Strings TextsOf(const std::vector<AidbTextRun>& runs) {
        Strings texts;
        for (const AidbTextRun& run : runs) {
            const std::string kerning =
                run.kerning ? "[" + std::to_string(static_cast<int32_t>(run.kerning)) + "]" : "";
            texts.push_back(kerning + run.text);
        }
        return texts;
    }

private:
    TestFonts fonts_ = FewFonts();
};

/// Numbers of one width, one behind the other from an offset on.
struct StoredNumbers {
    size_t offset, width;
    std::vector<int64_t> values;
};

constexpr int64_t kOne = 0x10000;

// All bytes of a run with every attribute set, worked out by hand; what isn't named is 0.
const StoredNumbers kGoldenRun[] = {
    {0, 2, {1, 1}},                                             // filled, stroked
    {4, 2, {1}},                                                // the fill has four colours
    {8, 4, {kOne / 4, kOne / 2, 3 * kOne / 4, kOne}},           // which are these
    {72, 2, {1}},                                               // and overprints
    {76, 2, {5}},                                               // the stroke has three
    {80, 4, {kOne, kOne / 2, kOne / 4}},                        // which are these
    {144, 2, {1}},                                              // and overprints
    {148, 4, {5 * kOne / 2}},                                   // line width
    {152, 2, {3}},                                              // dashes
    {156, 4, {3 * kOne / 2, 3 * kOne, 2 * kOne, kOne}},         // their offset, their lengths
    {184, 2, {1, 2}},                                           // cap, join
    {188, 4, {7 * kOne}},                                       // miter limit
    {204 + 4, 4, {50 * kOne, 75 * kOne, 100 * kOne}},           // word spacing
    {204 + 16, 4, {-25 * kOne, 0, 25 * kOne}},                  // letter spacing
    {204 + 28, 4, {10 * kOne, 20 * kOne, -5 * kOne}},           // indents
    {204 + 40, 2, {4, 1, 1, 0, 1, 0, 3, 4, 5}},                 // justification to hyphens
    {204 + 60, 4, {25 * kOne}},                                 // a constant
    {204 + 64, 2, {1, 0, 1, 1, 1, 1, 1}},                       // "Hard" and flags
    {284, 1, {9, 'R', 'y', 'u', 'm', 'i', 'n', '-', 'K', 'L'}}, // the font's name
    {540, 2, {100, 101, 102, 0, 0, 103, 104, 105, 106, 107, 108, 109, 110, 111}}, // and its classes
    {568, 4, {24 * kOne, -3 * kOne, 30 * kOne, -50 * kOne}}, // size, shift, leading, tracking
    {588, 4, {50 * kOne, 200 * kOne}},                       // scales
    {620, 2, {1}},                                           // an alternate form
    {624, 4, {1}},                                           // the host's 3
    {756, 4, {-20}},                                         // kerning
    {5632, 1, {'A', 0x88, 0x9F, '\r'}},                      // U+4E9C between the two
};

TEST_F(TextCaptureTest, EachByteOfARunIsKnown) {
    Art& text = Text(u"A\u4E9C\r");
    SetCharacter(text, 0, 3, OddCharacter());
    SetParagraph(text, 0, 3, OddParagraph());
    for (size_t at = 0; at < 3; ++at) SetKerning(*TextOf(text).story, at, -20);
    const Bytes object = CaptureOneText();
    ASSERT_EQ(object.size(), 40u + 5888 + 56);
    Bytes golden(5888);
    for (const StoredNumbers& row : kGoldenRun) {
        for (size_t i = 0; i < row.values.size(); ++i)
            std::memcpy(&golden[row.offset + i * row.width], &row.values[i], row.width);
    }
    for (size_t at = 0; at < golden.size(); ++at) ASSERT_EQ(object[40 + at], golden[at]) << "at " << at;
}

// Runs end where attributes change and before they would reach 255 bytes, never within a character.
TEST_F(TextCaptureTest, RunsAreCutByBytes) {
    const std::u16string a(253, u'a'), ideographs(127, u'\u4E9C');
    const struct {
        std::u16string text;
        std::vector<size_t> lengths; ///< in bytes
    } cases[] = {
        {u"", {}},
        {u"abc", {3}},
        {a + u"b", {254}},
        {a + u"bc", {254, 1}},
        {a + u"\u4E9C", {253, 2}},
        {ideographs, {254}},
        {ideographs + u"a", {254, 1}},
        {u"a" + ideographs + u"b", {253, 3}},
        {a + a + a, {254, 254, 251}},
    };
    for (const auto& each : cases) {
        OpenEmptyDocument();
        Text(each.text);
        std::vector<size_t> lengths;
        for (const AidbTextRun& run : CaptureRuns()) lengths.push_back(std::strlen(run.text));
        EXPECT_EQ(lengths, each.lengths) << each.text.size();
    }
}

// What cp932 hasn't, a NUL and both halves of a pair are one question mark each.
TEST_F(TextCaptureTest, CharactersWithoutAPlaceInTheEncodingAreQuestionMarks) {
    Text(std::u16string(u"a\u00E9\0\U0001F600\u2460b", 7));
    EXPECT_EQ(TextsOf(CaptureRuns()), (Strings{"a???\x87\x40"
                                               "b"}));
}

TEST_F(TextCaptureTest, KerningOpensRunsAndTheTextsEndHasOneOfItsOwn) {
    Art& text = Text(u"abcde");
    SetKerning(*TextOf(text).story, 2, 30);
    SetKerning(*TextOf(text).story, 5, -7);
    EXPECT_EQ(TextsOf(CaptureRuns()), (Strings{"ab", "[30]c", "de", "[-7]\r"}));
}

// A colour that a character doesn't show is that of the last one that did, byte for byte, and bytes that a
// kind of colour doesn't use are what the kind before left.
TEST_F(TextCaptureTest, WhatACharacterHasNotCarriesOver) {
    Art& text = Text(u"abcd");
    CharacterAttributes c;
    c.fillColor = workbench::FourColor(0.25, 0.5, 0.75, 1);
    SetCharacter(text, 0, 1, c);
    c.fill = false;
    c.fillColor = workbench::GrayColor(1);
    SetCharacter(text, 1, 2, c);
    c.fill = true;
    SetCharacter(text, 2, 3, c);
    c.fillColor.kind = kColorGradient;
    c.fillColor.u.gradient = {};
    c.fillColor.u.gradient.gradient = document().NewGradient("").handle;
    SetCharacter(text, 3, 4, c);
    const auto runs = CaptureRuns();
    ASSERT_EQ(TextsOf(runs), (Strings{"a", "b", "c", "d"}));
    EXPECT_EQ(std::memcmp(&runs[1].style.fill, &runs[0].style.fill, sizeof(AidbColor)), 0);
    EXPECT_EQ(runs[1].style.fillFlag, 0);
    for (const size_t gray : {2, 3}) {
        EXPECT_EQ(runs[gray].style.fill.kind, kStoredGray);
        EXPECT_EQ(runs[gray].style.fill.u.gray, gray == 2 ? Fix(1) : 0);
        EXPECT_EQ(runs[gray].style.fill.u.four.magenta, Fix(0.5));
    }
}

// Relative to the lower left corner of the whole, for which text in an area is measured by its area; a
// chain's text stands in each of its frames.
TEST_F(TextCaptureTest, AFrameIsStoredWithItsMatrixAndItsPath) {
    Art& area = AddPathText(document(), root(), workbench::kAreaText, u"ab", {100, 200}, 30);
    Art& onPath = AddPathText(document(), root(), workbench::kPathText, u"", {200, 300}, 10);
    TextOf(onPath).matrix.d = 2;
    TextOf(onPath).story = TextOf(area).story;
    TextOf(area).story->frames.push_back(onPath.handle);
    Art& pathless = Text(u"", {110, 220});
    TextOf(pathless).frameKind = workbench::kAreaText;
    Text(u"", {110, 220});

    auto texts = CaptureTexts();
    ASSERT_EQ(texts.size(), 4u);
    EXPECT_EQ(Header().header.boundsRight, Fix(111)); // a handle stands out
    EXPECT_EQ(Header().header.boundsTop, Fix(110));
    for (const size_t frame : {1, 2}) {
        Bytes& text = texts[frame - 1];
        const auto* stored = ViewAt<AidbTextObject>(text);
        EXPECT_EQ(stored->frameKind, frame);
        EXPECT_EQ(TextsOf(RunsOf(text)), (Strings{"ab"}));
        ASSERT_EQ(text.size(), 40u + 5888 + 28 + 3 * 28);
        EXPECT_EQ(stored->pathsOffset, 40u + 5888);
        EXPECT_EQ(stored->pathsSize, 28u + 3 * 28);
        const auto* path = ViewAt<AidbTextPath>(text, stored->pathsOffset);
        EXPECT_EQ(path->closed, 1);
        EXPECT_EQ(path->matrix.d, Fix(frame));
        EXPECT_EQ(path->matrix.tx, Fix(-100)); // no anchor: 0 less the origin
        const auto* corner = ViewAt<AidbSegment>(text, stored->pathsOffset + 28 + 28);
        EXPECT_EQ(corner->anchor.x, Fix(frame == 1 ? 30 : 110));
        EXPECT_EQ(corner->out.x, Fix(frame == 1 ? 31 : 111));
        EXPECT_EQ(corner->corner, 1);
    }
    EXPECT_EQ(texts[2].size(), 40u);
    EXPECT_EQ(ViewAt<AidbTextObject>(texts[2])->pathCount, 0);
    // Point text has a path of one point.
    ASSERT_EQ(texts[3].size(), 96u);
    EXPECT_EQ(ViewAt<AidbTextPath>(texts[3], 40)->segmentCount, 1);
    EXPECT_EQ(ViewAt<AidbTextPath>(texts[3], 40)->matrix.ty, Fix(20));
    const auto* anchor = ViewAt<AidbSegment>(texts[3], 68);
    EXPECT_EQ((std::vector<Fixed>{anchor->anchor.x, anchor->in.y, anchor->out.x, anchor->corner}),
              (std::vector<Fixed>{Fix(10), Fix(20), Fix(10), 0}));
}

} // namespace
