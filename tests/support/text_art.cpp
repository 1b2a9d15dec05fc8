#include "tests/support/text_art.h"

using workbench::Art;
using workbench::CharacterAttributes;
using workbench::Document;
using workbench::ParagraphAttributes;
using workbench::TextFrameData;

void TestFonts::Add(std::string name, int32_t firstClass) {
    workbench::FontEntry entry;
    entry.name = std::move(name);
    for (int32_t i = 0; i < 12; ++i) entry.words[static_cast<size_t>(2 + i)] = firstClass + i;
    fonts_.push_back(std::move(entry));
}

TestFonts FewFonts() {
    TestFonts fonts;
    fonts.Add("Sans-Regular", 1);
    fonts.Add("Ryumin-KL", 100);
    fonts.Add("GothicBBB-Medium", 200);
    return fonts;
}

TextFrameData& TextOf(Art& frame) {
    return std::get<TextFrameData>(frame.data);
}
const TextFrameData& TextOf(const Art& frame) {
    return std::get<TextFrameData>(frame.data);
}

Art& AddPointText(Document& document, Art& parent, std::u16string_view text, HostPoint anchor) {
    Art& frame = *document.AppendArt(kArtTextFrame, &parent);
    TextOf(frame).matrix.tx = anchor.x;
    TextOf(frame).matrix.ty = anchor.y;
    InsertText(*TextOf(frame).story, 0, text);
    return frame;
}

Art& AddPathText(Document& document, Art& parent, int32_t frameKind, std::u16string_view text,
                 HostPoint corner, double side) {
    Art& frame = AddPointText(document, parent, text);
    TextOf(frame).frameKind = frameKind;
    Art& path = *document.AppendArt(kArtPath, nullptr);
    for (const HostPoint& point :
         {corner, HostPoint{corner.x + side, corner.y}, HostPoint{corner.x, corner.y + side}})
        path.path()->segments.push_back({point, point, {point.x + 1, point.y}, 1});
    path.path()->closed = true;
    TextOf(frame).path = path.handle;
    return frame;
}

CharacterAttributes OddCharacter() {
    CharacterAttributes odd;
    odd.fill = odd.stroke = true;
    odd.fillColor = {kColorFour, {}};
    odd.fillColor.u.four = {0.25, 0.5, 0.75, 1};
    odd.strokeColor = {kColorThree, {}};
    odd.strokeColor.u.three = {1, 0.5, 0.25};
    odd.fillOverprint = odd.strokeOverprint = true;
    odd.lineCap = 1;
    odd.lineJoin = 2;
    odd.lineWidth = 2.5;
    odd.miterLimit = 7;
    odd.dashOffset = 1.5;
    odd.dashes = {3, 2, 1};
    odd.font = "Ryumin-KL";
    odd.fontSize = 24;
    odd.leading = 30;
    odd.autoLeading = false;
    odd.baselineShift = -3;
    odd.tracking = -50;
    odd.horizontalScale = 0.5;
    odd.verticalScale = 2;
    odd.japaneseAlternate = 3;
    return odd;
}

ParagraphAttributes OddParagraph() {
    ParagraphAttributes odd;
    odd.firstLineIndent = 10;
    odd.startIndent = 20;
    odd.endIndent = -5;
    odd.justification = 3;
    odd.autoHyphenation = true;
    odd.hyphenBefore = 3;
    odd.hyphenAfter = 4;
    odd.hyphenLimit = 5;
    for (int i = 0; i < 3; ++i) odd.wordSpacing[i] = 0.5 + 0.25 * i;
    for (int i = 0; i < 3; ++i) odd.letterSpacing[i] = 0.25 * i - 0.25;
    odd.hangingRoman = true;
    odd.repeatedCharacters = odd.bunriKinshi = true;
    odd.burasagari = 2;
    odd.kinsoku = u"Hard";
    return odd;
}

void SetCharacter(Art& frame, size_t first, size_t end, const CharacterAttributes& attributes) {
    SetStyle(*TextOf(frame).story, first, end,
             {std::make_shared<const CharacterAttributes>(attributes), nullptr});
}

void SetParagraph(Art& frame, size_t first, size_t end, const ParagraphAttributes& attributes) {
    SetStyle(*TextOf(frame).story, first, end,
             {nullptr, std::make_shared<const ParagraphAttributes>(attributes)});
}
