#include "tests/support/random_text.h"

#include <cmath>
#include <iterator>
#include <string>

#include "workbench/document/story.h"

using workbench::Art;
using workbench::CharacterAttributes;
using workbench::ParagraphAttributes;
using workbench::TextFrameData;

namespace {

constexpr size_t kLongRun = 300; ///< letters, more than a record's run takes

class Writer {
public:
    explicit Writer(const RandomTextSource& source) : source_(source) {}

    void SetFrame(workbench::Document& document, TextFrameData& frame) {
        frame.frameKind = source_.steady ? workbench::kAreaText : Below(3);
        frame.orientation = Below(2);
        frame.matrix = source_.matrix();
        if (frame.frameKind == workbench::kPointText) return;
        frame.matrix.tx = frame.matrix.ty = 0;
        if (frame.frameKind == workbench::kPathText && Often(40)) frame.pathStart = Share() * 2;
        Art* path = document.AppendArt(kArtPath, nullptr);
        path->path()->closed = Often(50);
        path->path()->style.strokePaint = 0;
        for (int i = 2 + Below(4); i-- > 0;) {
            const HostPoint anchor = source_.point();
            path->path()->segments.push_back({anchor, Often(50) ? anchor : source_.point(),
                                              Often(50) ? anchor : source_.point(), Below(2)});
        }
        frame.path = path->handle;
    }

    void SetStory(workbench::Story& story) {
        for (int runs = Below(5); runs-- > 0;) {
            const std::u16string words = Words();
            CharacterAttributes attributes = Character();
            // Each letter in an ink of Lab values takes a row of a record's table, which has 255.
            if (source_.recordable && words.size() >= kLongRun)
                attributes.fillColor = attributes.strokeColor = HostColor{};
            const auto character = std::make_shared<const CharacterAttributes>(attributes);
            const auto paragraph = std::make_shared<const ParagraphAttributes>(Paragraph());
            InsertText(story, story.text.size(), words, {character, paragraph});
        }
        if (story.text.empty()) return;
        // Neighbours of the same kerning are one run to a record, so no two are the same.
        for (int i = Below(4); i > 0; --i)
            SetKerning(story, static_cast<size_t>(Below(static_cast<int>(story.text.size()) + 1)),
                       (Often(50) ? 1 : -1) * (100 * i + Below(100)));
    }

private:
    int Below(int bound) { return std::uniform_int_distribution<>(0, bound - 1)(source_.random); }
    bool Often(int percent) { return Below(100) < percent; }
    double Share() { return std::uniform_real_distribution<>(0, 1)(source_.random); }

    std::u16string Words() {
        static const std::u16string kWords[] = {u"Letters & <more> ",
                                                u"\u7E26\u66F8\u304D\u3001\u300C",
                                                u"  two ",
                                                u"end\r",
                                                u"\r",
                                                u"\uFF76\uFF85\u30FC\u3002",
                                                u"x"};
        static const std::u16string kRare[] = {u"\u00E9\u0142", u"\U0001F600", u"\xD800.",
                                               u"\x3\\u0041\uFFFE\x1", u"\t\n"};
        std::u16string words = kWords[Below(std::size(kWords))];
        if (!source_.recordable && Often(30)) words += kRare[Below(std::size(kRare))];
        if (source_.recordable && Often(10)) words += u"\u00E9";
        if (Often(3)) words = std::u16string(kLongRun, u'\u9577');
        return words;
    }

    CharacterAttributes Character() {
        static const char* const kFonts[] = {"DejaVuSans-Book", "IPAGothic-Regular", "DejaVuSerif-Bold"};
        CharacterAttributes character;
        SetPaint(character, source_.paint());
        character.font = kFonts[Below(3)];
        if (!source_.recordable && Often(10)) character.font = Often(50) ? "" : "None & <such>-Here";
        character.fontSize = 1 + Share() * 40;
        character.autoLeading = Often(50);
        character.leading = character.autoLeading ? 0 : Share() * 50;
        character.baselineShift = Often(60) ? 0 : Share() * 20 - 10;
        character.tracking = Often(60) ? 0 : Below(2000) - 1000;
        if (Often(30)) character.horizontalScale = 0.5 + Share();
        if (Often(30)) character.verticalScale = 0.5 + Share();
        character.japaneseAlternate = Often(70) ? 0 : Below(5);
        return character;
    }

    ParagraphAttributes Paragraph() {
        static const char16_t* const kSets[] = {u"Soft", u"Hard", u"House rules"};
        ParagraphAttributes paragraph;
        if (Often(40)) paragraph.firstLineIndent = Share() * 30 - 10;
        if (Often(40)) paragraph.startIndent = Share() * 30;
        if (Often(40)) paragraph.endIndent = Share() * 30;
        paragraph.justification = Below(7);
        paragraph.autoHyphenation = Often(30);
        paragraph.hyphenBefore = 1 + Below(9);
        paragraph.hyphenAfter = 1 + Below(9);
        paragraph.hyphenLimit = Below(5);
        for (int i = 0; i < 3; ++i) {
            paragraph.wordSpacing[i] = Share() * 2;
            paragraph.letterSpacing[i] = Share() - 0.5;
        }
        paragraph.burasagari = Below(3);
        paragraph.hangingRoman = Often(90) ? paragraph.burasagari != 0 : Often(50);
        if (Often(20)) paragraph.autoLeading = 1 + Share();
        paragraph.repeatedCharacters = Often(30);
        paragraph.bunriKinshi = Often(30);
        if (Often(40)) paragraph.kinsoku = kSets[Below(Often(80) ? 2 : 3)];
        return paragraph;
    }

    const RandomTextSource& source_;
};

} // namespace

void MakeRandomText(workbench::Document& document, Art& art, const RandomTextSource& source) {
    auto& frame = std::get<TextFrameData>(art.data);
    Writer writer(source);
    writer.SetFrame(document, frame);
    writer.SetStory(*frame.story);
}
