// Text objects, captured or made by hand, and the frames that a load makes of them.
#include <gmock/gmock.h>

#include <cstring>

#include "plugin/capture/post_art.h"
#include "suites/text.h"
#include "tests/plugin/rebuild/load_fixture.h"
#include "tests/support/text_art.h"

using workbench::Art;
using workbench::CharacterAttributes;
using workbench::ParagraphAttributes;

namespace {

class TextTest : public LoadFixture {
protected:
    void SetUp() override {
        LoadFixture::SetUp();
        host().SetFontList(&fonts_);
    }

    /// Appends a text object of that many runs, each of one letter in usual attributes, with a path of three
    /// points for other kinds than point text.  The pointer stands until the next append.
    AidbTextObject* Text(uint16_t frameKind, const std::vector<std::string>& runs) {
        const uint32_t segments = frameKind == kTextFramePoint ? 1 : 3;
        const auto pathsOffset =
            static_cast<uint32_t>(sizeof(AidbTextObject) + runs.size() * sizeof(AidbTextRun));
        const auto pathsSize = static_cast<uint32_t>(sizeof(AidbTextPath) + segments * sizeof(AidbSegment));
        uint8_t* bytes = AppendObject(globals->curRecord, kTextObject, pathsOffset + pathsSize);
        auto* text = reinterpret_cast<AidbTextObject*>(bytes);
        text->header.opacity = Stored(1);
        text->frameKind = frameKind;
        text->pathsOffset = pathsOffset;
        text->pathsSize = pathsSize;
        text->pathCount = 1;
        text->runCount = static_cast<uint16_t>(runs.size());
        for (size_t i = 0; i < runs.size(); ++i) {
            AidbTextRun& run = Runs(text)[i];
            run.style.fillFlag = 1;
            run.character.fontSize = Stored(12);
            run.para.justification = 1;
            std::memcpy(run.text, runs[i].data(), runs[i].size());
        }
        auto* path = reinterpret_cast<AidbTextPath*>(bytes + pathsOffset);
        path->matrix = {Stored(1), 0, 0, Stored(1), Stored(5), Stored(7)};
        path->closed = 1;
        path->segmentCount = static_cast<uint16_t>(segments);
        for (uint32_t i = 0; i < segments; ++i) {
            auto* segment = reinterpret_cast<AidbSegment*>(path + 1) + i;
            segment->anchor = segment->in = segment->out = {Stored(10 * i), Stored(5 * i * i)};
        }
        return text;
    }
    static AidbTextRun* Runs(AidbTextObject* text) { return reinterpret_cast<AidbTextRun*>(text + 1); }
    static AidbTextPath* PathOf(AidbTextObject* text) {
        return reinterpret_cast<AidbTextPath*>(reinterpret_cast<uint8_t*>(text) + text->pathsOffset);
    }

    static std::u16string StoryText(const Art& frame) { return TextOf(frame).story->text; }
    static CharacterAttributes CharacterAt(const Art& frame, size_t at) {
        return *StyleOf(*TextOf(frame).story, at).character;
    }
    static ParagraphAttributes ParagraphAt(const Art& frame, size_t at) {
        return *StyleOf(*TextOf(frame).story, at).paragraph;
    }

    TestFonts& fonts() { return fonts_; }

private:
    TestFonts fonts_ = FewFonts();
};

// ---- There and back ----

TEST_F(TextTest, AllThatARecordKeepsComesBack) {
    Art& root = *document().CurrentLayer().root;
    Art& many =
        AddPointText(document(), root, u"ab\r\u4E9C" + std::u16string(300, u'\u3042') + u"z", {40, 60});
    SetCharacter(many, 1, 2, OddCharacter());
    SetParagraph(many, 0, 3, OddParagraph());
    CharacterAttributes plain;
    plain.font = "GothicBBB-Medium";
    plain.fill = false;
    SetCharacter(many, 3, 4, plain);
    plain.font = "Sans-Regular";
    plain.fill = true;
    SetCharacter(many, 0, 1, plain);
    SetCharacter(many, 2, 3, plain);
    SetCharacter(many, 4, 305, plain);
    SetKerning(*TextOf(many).story, 1, -20);
    SetKerning(*TextOf(many).story, 305, 45);
    TextOf(many).matrix = {0, 2, -0.5, 0, 40, 60};
    TextOf(many).orientation = workbench::kVerticalText;
    AddPathText(document(), root, workbench::kAreaText, u"", {100, 200}, 50);
    Art& onPath = AddPathText(document(), root, workbench::kPathText, u"", {100, 300}, 50);
    TextOf(onPath).matrix = {0, 1, -1, 0, 0, 0};
    onPath.blend = {workbench::kBlendScreen, 0.5, 1, 1, 1};
    document().SelectAll();
    ASSERT_EQ(AidbPostArt(), kHostNoError);
    const std::string story = DescribeStory(*TextOf(many).story);
    HostRect bounds{};
    MeasureSelection(&bounds, false); // takes the record away
    ASSERT_EQ(AidbPostArt(), kHostNoError);
    const auto before = host().Close();
    OpenEmptyDocument();
    globals->placePoint = {bounds.left + 1000, bounds.bottom};
    ASSERT_EQ(RebuildCurrentRecord(), kHostNoError);

    const Art& first = First();
    ASSERT_EQ(first.kind, kArtTextFrame);
    EXPECT_EQ(DescribeStory(*TextOf(first).story), story);
    EXPECT_EQ(TextOf(first).orientation, workbench::kVerticalText);
    const HostMatrix& m = TextOf(first).matrix;
    EXPECT_EQ((std::vector<double>{m.a, m.b, m.c, m.d}), (std::vector<double>{0, 2, -0.5, 0}));
    EXPECT_NEAR(m.tx, 1040, 1e-3);
    EXPECT_NEAR(m.ty, 60, 1e-3);
    ASSERT_TRUE(first.below && first.below->below && !first.below->below->below);
    for (const Art* frame = first.below; frame; frame = frame->below) {
        const bool area = frame == first.below;
        EXPECT_EQ(TextOf(*frame).frameKind, area ? workbench::kAreaText : workbench::kPathText);
        EXPECT_EQ(TextOf(*frame).matrix.b, area ? 0 : 1);
        EXPECT_EQ(TextOf(*frame).matrix.c, area ? 0 : -1);
        const Art* path = document().Find(TextOf(*frame).path);
        ASSERT_NE(path, nullptr);
        EXPECT_EQ(path->parent, nullptr);
        EXPECT_TRUE(path->path()->closed);
        ASSERT_EQ(path->path()->segments.size(), 3u);
        EXPECT_NEAR(path->path()->segments[1].anchor.x, 1150, 1e-3);
        EXPECT_NEAR(path->path()->segments[1].out.x, 1151, 1e-3);
        EXPECT_NEAR(path->path()->segments[2].anchor.y, area ? 250 : 350, 1e-3);
    }
    EXPECT_EQ(first.below->below->blend, (workbench::Blend{workbench::kBlendScreen, 0.5, 1, 1, 1}));
}

// A pattern of text, which is moved along with the placement like text on the page.
TEST_F(TextTest, PatternsOnTextAndTextInPatternsComeBack) {
    Note("GroupArt /");
    AidbTextObject* text = Text(kTextFramePoint, {"a"});
    Runs(text)->style.fill.kind = kStoredPattern;
    Runs(text)->style.fill.u.pattern.number = 1;
    Runs(text)->style.strokeFlag = 1;
    Runs(text)->style.stroke.kind = kStoredPattern;
    Runs(text)->style.stroke.u.pattern.number = 9;
    Note("/ GroupArt");
    Note("PatternArt00001 /");
    Text(kTextFramePoint, {"p"});
    Note("/ PatternArt00001");
    globals->placePoint = {100, 200};
    globals->originMode = 0;
    EXPECT_EQ(Load(), kHostNoError);
    ASSERT_EQ(First().kind, kArtGroup);
    const Art& frame = *First().firstChild;
    const CharacterAttributes c = CharacterAt(frame, 0);
    EXPECT_TRUE(c.fill);
    EXPECT_FALSE(c.stroke);
    ASSERT_EQ(c.fillColor.kind, kColorPattern);
    const workbench::Pattern* pattern = document().Find(c.fillColor.u.pattern.pattern);
    ASSERT_TRUE(pattern && pattern->art && pattern->art->firstChild);
    const Art& inside = *pattern->art->firstChild;
    EXPECT_EQ(StoryText(inside), u"p");
    EXPECT_EQ(TextOf(inside).matrix.tx, TextOf(frame).matrix.tx);
    EXPECT_NE(TextOf(inside).matrix.tx, 5);
    EXPECT_NE(TextOf(inside).story, TextOf(frame).story);
}

// ---- Odd and damaged records ----

TEST_F(TextTest, ALastReturnThatCarriesKerningIsNoText) {
    const struct {
        std::vector<std::string> runs;
        uint32_t kerning; ///< of the last run
        std::u16string text;
        std::map<size_t, int32_t> found;
    } cases[] = {
        {{"ab", "\r"}, 40, u"ab", {{2, 40}}},
        {{"ab", "\r"}, 0, u"ab\r", {}},
        {{"ab", "\r", "c"}, static_cast<uint32_t>(-5), u"ab\rc", {{3, -5}}},
        {{"ab", "\rx"}, 40, u"ab\rx", {{2, 40}}},
        {{"\r"}, 40, u"", {{0, 40}}},
        {{"", "", "b"}, 7, u"b", {{0, 7}}},
    };
    for (const auto& each : cases) {
        NewRecordOf(10, 10);
        OpenEmptyDocument();
        AidbTextObject* text = Text(kTextFramePoint, each.runs);
        Runs(text)[each.runs.size() - 1].kerning = each.kerning;
        EXPECT_EQ(Load(), kHostNoError);
        EXPECT_EQ(StoryText(First()), each.text);
        EXPECT_EQ(TextOf(First()).story->kerning, each.found);
    }
}

TEST_F(TextTest, StoredValuesBecomeTheHostsOwn) {
    AidbTextObject* text = Text(kTextFramePoint, std::vector<std::string>(9, "a"));
    for (uint16_t i = 0; i < 9; ++i) {
        AidbTextRun& run = Runs(text)[i];
        run.para.justification = i;
        run.para.burasagari = i < 4 ? 0 : 2;
        run.para.burasagariForced = i % 2;
        run.para.kinsoku = i ? 1 : 0;
        run.para.kinsokuKind = i % 3;
        run.character.hasAlternateForm = i < 6;
        run.character.alternateForm = i;
        run.character.leading = Stored(i);
        run.character.horizontalScale = Stored(i * 0.5 - 1);
        run.character.verticalScale = Stored(i * 100);
        run.character.fontSize = Stored(i - 1.0);
        run.style.lineCap = i;
        run.style.dashCount = i;
        run.style.fill.kind = i < 2 ? kStoredGradient : kStoredCustom;
    }
    Load();
    std::string justifications, burasagari, kinsoku, forms, leading, scales, sizes, caps, dashes;
    for (size_t i = 0; i < 9; ++i) {
        const CharacterAttributes c = CharacterAt(First(), i);
        const ParagraphAttributes p = ParagraphAt(First(), i);
        justifications += std::to_string(p.justification);
        burasagari += std::to_string(p.burasagari);
        EXPECT_EQ(p.hangingRoman, i >= 4);
        kinsoku += p.kinsoku ? *p.kinsoku == u"Hard" ? 'H' : 'S' : '-';
        forms += std::to_string(c.japaneseAlternate);
        leading += c.autoLeading ? 'a' : static_cast<char>('0' + static_cast<int>(c.leading));
        scales += std::to_string(static_cast<int>(c.horizontalScale * 1000)) + " ";
        EXPECT_EQ(c.verticalScale, i ? static_cast<double>(i) : 1);
        sizes += std::to_string(static_cast<int>(c.fontSize)) + " ";
        caps += std::to_string(c.lineCap);
        dashes += std::to_string(c.dashes.size());
        EXPECT_EQ(c.fillColor.kind, kColorGray);
        EXPECT_EQ(c.fillColor.u.gray.gray, 0);
    }
    EXPECT_EQ(justifications, "002136000");
    EXPECT_EQ(burasagari, "000012121");
    EXPECT_EQ(kinsoku, "-HHSHHSHH"); // a kind without a set keeps the one before
    EXPECT_EQ(forms, "432100000");
    EXPECT_EQ(leading, "a12345678");
    EXPECT_EQ(scales, "-10 1000 1000 1000 10 15 20 25 30 ");
    EXPECT_EQ(sizes, "12 12 1 2 3 4 5 6 7 "); // what the host refuses keeps the one before
    EXPECT_EQ(caps, "012222222");
    EXPECT_EQ(dashes, "012345666");
}

TEST_F(TextTest, AFontThatIsNotFoundLeavesTheOneBefore) {
    AidbTextObject* text = Text(kTextFramePoint, {"a", "b", "c"});
    const char* names[] = {"Nobody", "Ryumin-KL", "Nobody"};
    for (size_t i = 0; i < 3; ++i) {
        std::memcpy(Runs(text)[i].font.name, names[i], std::strlen(names[i]));
        std::fill_n(Runs(text)[i].font.classFirst, 3, uint16_t{0xFFFF});
    }
    Load();
    std::vector<std::string> fonts;
    for (size_t i = 0; i < 3; ++i) fonts.push_back(CharacterAt(First(), i).font);
    EXPECT_EQ(fonts, (std::vector<std::string>{"", "Ryumin-KL", "Ryumin-KL"}));
}

// Counts and places beyond the object count for what is there; what no frame can be made for is told, and
// the walk goes on.
TEST_F(TextTest, DamagedObjectsAreTakenAsFarAsTheyGo) {
    const auto loadTwo = [&](auto&& damage) {
        NewRecordOf(10, 10);
        OpenEmptyDocument();
        Path(1);
        damage(Text(kTextFrameArea, {"a", "b"}));
        const HostError error = Load();
        EXPECT_EQ(First().kind, kArtPath);
        return error;
    };
    loadTwo([](AidbTextObject* text) { text->runCount = 60000; });
    EXPECT_EQ(StoryText(*First().below), u"ab");
    loadTwo([](AidbTextObject* text) { PathOf(text)->segmentCount = 60000; });
    EXPECT_EQ(document().Find(TextOf(*First().below).path)->path()->segments.size(), 3u);
    loadTwo([](AidbTextObject* text) { PathOf(text)->matrix = {}; });
    EXPECT_EQ(StoryText(*First().below), u"ab");
    loadTwo([](AidbTextObject* text) { std::memset(Runs(text)[1].text, 'x', kRunTextBytes); });
    EXPECT_EQ(StoryText(*First().below).size(), 256u);
    for (const uint32_t offset : {0xFFFFFFF0u, 12000u}) {
        loadTwo([&](AidbTextObject* text) { text->pathsOffset = offset; });
        EXPECT_EQ(First().below, nullptr); // no area, no text in it
    }
    loadTwo([](AidbTextObject* text) { text->frameKind = 3; });
    EXPECT_EQ(First().below, nullptr);
    loadTwo([](AidbTextObject* text) { text->orientation = 2; });
    ASSERT_NE(First().below, nullptr); // the path that no frame took over
    EXPECT_EQ(First().below->kind, kArtPath);

    NewRecordOf(10, 10);
    OpenEmptyDocument();
    Text(3, {"a"});
    EXPECT_EQ(Load(), -1);
}

// ---- Refusals ----

TEST_F(TextTest, ARefusedCallCostsAtMostWhatItWasFor) {
    Path(1);
    AidbTextObject* text = Text(kTextFramePoint, {"a", "\x88\x9F", "\r"});
    Runs(text)[0].style.fill.kind = kStoredPattern;
    Runs(text)[0].style.fill.u.pattern.number = 1;
    Runs(text)[1].para.kinsoku = 1;
    Runs(text)[2].kerning = 12;
    Note("PatternArt00001 /");
    Text(kTextFrameOnPath, {"p"});
    Note("/ PatternArt00001");
    Store();
    const uint64_t before = host().callCount();
    ASSERT_EQ(Load(), kHostNoError);
    const uint64_t calls = host().callCount() - before;

    uint64_t kept = 0, complete = 0;
    for (uint64_t n = 1; n <= calls; ++n) {
        SCOPED_TRACE(n);
        OpenEmptyDocument();
        host().RefuseCall(n);
        Load();
        host().RefuseNone();
        ReleaseSuites(); // the host reports what was never released
        ASSERT_EQ(host().faults(), std::vector<std::string>());
        HoldSuites();
        const Art* frame = Root().firstChild ? First().below : nullptr;
        if (!frame) continue;
        ASSERT_EQ(frame->kind, kArtTextFrame);
        const std::u16string story = StoryText(*frame);
        EXPECT_TRUE(std::u16string_view(u"a\u4E9C").substr(0, story.size()) == story || story == u"\u4E9C");
        ++kept;
        complete += story == u"a\u4E9C";
    }
    EXPECT_GT(calls, 200u);
    EXPECT_GT(kept, calls - 40);
    EXPECT_GT(complete, kept - 20);
}

} // namespace
