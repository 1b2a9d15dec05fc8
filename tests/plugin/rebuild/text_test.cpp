// Text objects made by hand, and the frames that a load makes of them.
#include <gmock/gmock.h>

#include <cstring>

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

private:
    TestFonts fonts_ = FewFonts();
};

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
    uint64_t kept = 0, complete = 0;
    const uint64_t calls = RefuseEachCall([&](HostError) {
        const Art* frame = Root().firstChild ? First().below : nullptr;
        if (!frame) return;
        ASSERT_EQ(frame->kind, kArtTextFrame);
        const std::u16string story = StoryText(*frame);
        EXPECT_TRUE(std::u16string_view(u"a\u4E9C").substr(0, story.size()) == story || story == u"\u4E9C");
        ++kept;
        complete += story == u"a\u4E9C";
    });
    EXPECT_GT(calls, 200u);
    EXPECT_GT(kept, calls - 40);
    EXPECT_GT(complete, kept - 20);
}

} // namespace
