#include "tests/support/text_art.h"

#include <cstdio>

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

namespace {

std::string Number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, " %g", value);
    return text;
}

std::string Describe(const HostColor& color) {
    switch (color.kind) {
        case kColorGray:
            return " gray" + Number(color.u.gray.gray);
        case kColorFour:
            return " four" + Number(color.u.four.cyan) + Number(color.u.four.magenta) +
                   Number(color.u.four.yellow) + Number(color.u.four.black);
        case kColorThree:
            return " three" + Number(color.u.three.red) + Number(color.u.three.green) +
                   Number(color.u.three.blue);
        default:
            return " kind" + Number(color.kind);
    }
}

std::string Describe(const CharacterAttributes& c) {
    std::string text = " fill" + Number(c.fill) + Number(c.fillOverprint) +
                       (c.fill ? Describe(c.fillColor) : "") + " stroke" + Number(c.stroke) +
                       Number(c.strokeOverprint) + (c.stroke ? Describe(c.strokeColor) : "") + " line" +
                       Number(c.lineCap) + Number(c.lineJoin) + Number(c.lineWidth) + Number(c.miterLimit) +
                       " dash" + Number(c.dashOffset);
    for (const double dash : c.dashes) text += Number(dash);
    return text + " font " + c.font + Number(c.fontSize) + " leading" +
           (c.autoLeading ? " auto" : Number(c.leading)) + " shift" + Number(c.baselineShift) + " tracking" +
           Number(c.tracking) + " scale" + Number(c.horizontalScale) + Number(c.verticalScale) + " form" +
           Number(c.japaneseAlternate);
}

std::string Describe(const ParagraphAttributes& p) {
    std::string text = " indent" + Number(p.firstLineIndent) + Number(p.startIndent) + Number(p.endIndent) +
                       " justification" + Number(p.justification) + " hyphens" + Number(p.autoHyphenation) +
                       Number(p.hyphenBefore) + Number(p.hyphenAfter) + Number(p.hyphenLimit) + " words";
    for (const double spacing : p.wordSpacing) text += Number(spacing);
    text += " letters";
    for (const double spacing : p.letterSpacing) text += Number(spacing);
    text += " roman" + Number(p.hangingRoman) + " auto" + Number(p.autoLeading) + " japanese" +
            Number(p.repeatedCharacters) + Number(p.bunriKinshi) + Number(p.burasagari) + " kinsoku ";
    for (const char16_t unit : p.kinsoku.value_or(u"none")) text += static_cast<char>(unit);
    return text;
}

} // namespace

std::string DescribeStory(const workbench::Story& story) {
    std::string text, last;
    for (size_t at = 0; at <= story.text.size(); ++at) {
        const auto kerning = story.kerning.find(at);
        if (kerning != story.kerning.end()) text += "[" + std::to_string(kerning->second) + "]";
        if (at == story.text.size()) break;
        const workbench::CharacterStyle style = StyleOf(story, at);
        const std::string words = Describe(*style.character) + Describe(*style.paragraph);
        if (words != last) text += "<" + words + " >";
        last = words;
        char unit[16];
        std::snprintf(unit, sizeof unit, story.text[at] < 0x7F && story.text[at] >= ' ' ? "%c" : "{%04X}",
                      static_cast<unsigned>(story.text[at]));
        text += unit;
    }
    return text;
}
