#include "app/compare_texts.h"

#include "workbench/document/story.h"
#include "workbench/document/utf16.h"

using workbench::CharacterAttributes;
using workbench::CharacterStyle;
using workbench::ParagraphAttributes;
using workbench::Story;
using workbench::TextFrameData;

namespace {

class TextComparison {
public:
    TextComparison(DifferenceList* differences, const TextPlace& where, const std::string& place)
        : differences_(*differences), where_(where), place_(place) {}

    void Matrix(const TextFrameData& a, const TextFrameData& b) {
        for (double HostMatrix::*member : {&HostMatrix::a, &HostMatrix::b, &HostMatrix::c, &HostMatrix::d})
            Near(a.matrix.*member, b.matrix.*member, "text matrix");
        if (a.frameKind != workbench::kPointText) return;
        Point({a.matrix.tx, a.matrix.ty}, {b.matrix.tx, b.matrix.ty}, 1, "text anchor");
    }

    /// A load turns the path back by the matrix and forth again, which makes its steps larger.
    void Path(const workbench::PathData* a, const workbench::PathData* b, double growth) {
        if (!a || !b) return Same(a != nullptr, b != nullptr, "text path");
        Same(a->closed, b->closed, "text path closed");
        Same(a->segments.size(), b->segments.size(), "text path's anchors");
        for (size_t i = 0; i < std::min(a->segments.size(), b->segments.size()); ++i) {
            Point(a->segments[i].anchor, b->segments[i].anchor, growth, "text path's anchor");
            Point(a->segments[i].in, b->segments[i].in, growth, "text path's in handle");
            Point(a->segments[i].out, b->segments[i].out, growth, "text path's out handle");
            Same(a->segments[i].corner != 0, b->segments[i].corner != 0, "text path's corner");
        }
    }

    bool Texts(const Story& a, const Story& b) {
        if (a.text != b.text)
            differences_.Add(place_ + ": text '" + workbench::Utf8Of(a.text) + "' became '" +
                             workbench::Utf8Of(b.text) + "'");
        if (a.kerning != b.kerning) {
            std::string line = place_ + ": kerning";
            for (const auto& [story, before] : {std::pair(&a, " "), std::pair(&b, " became ")}) {
                line += before;
                for (const auto& [at, value] : story->kerning)
                    line += std::to_string(at) + ":" + std::to_string(value) + " ";
            }
            differences_.Add(line);
        }
        return a.text == b.text;
    }

    void Characters(const CharacterAttributes& a, const CharacterAttributes& b) {
        if (a.font != b.font) differences_.Add(place_ + ": font '" + a.font + "' became '" + b.font + "'");
        Near(a.fontSize, b.fontSize, "font size");
        Same(a.autoLeading, b.autoLeading, "auto leading");
        if (!a.autoLeading && !b.autoLeading) Near(a.leading, b.leading, "leading");
        Near(a.baselineShift, b.baselineShift, "baseline shift");
        Same(a.tracking, b.tracking, "tracking");
        Percent(a.horizontalScale, b.horizontalScale, "horizontal scale");
        Percent(a.verticalScale, b.verticalScale, "vertical scale");
        Same(a.japaneseAlternate, b.japaneseAlternate, "Japanese alternate");
        Same(a.fill, b.fill, "text filled");
        Same(a.stroke, b.stroke, "text stroked");
        Same(a.fillOverprint, b.fillOverprint, "text fill overprint");
        Same(a.strokeOverprint, b.strokeOverprint, "text stroke overprint");
        Same(a.lineCap, b.lineCap, "text line cap");
        Same(a.lineJoin, b.lineJoin, "text line join");
        Near(a.lineWidth, b.lineWidth, "text line width");
        Near(a.miterLimit, b.miterLimit, "text miter limit");
        Near(a.dashOffset, b.dashOffset, "text dash offset");
        Same(a.dashes.size(), b.dashes.size(), "text dashes");
        for (size_t i = 0; i < std::min(a.dashes.size(), b.dashes.size()); ++i)
            Near(a.dashes[i], b.dashes[i], "text dash");
    }

    void Paragraphs(const ParagraphAttributes& a, const ParagraphAttributes& b) {
        Near(a.firstLineIndent, b.firstLineIndent, "first-line indent");
        Near(a.startIndent, b.startIndent, "start indent");
        Near(a.endIndent, b.endIndent, "end indent");
        Same(a.justification, b.justification, "justification");
        Same(a.autoHyphenation, b.autoHyphenation, "auto hyphenation");
        Same(a.hyphenBefore, b.hyphenBefore, "hyphen before");
        Same(a.hyphenAfter, b.hyphenAfter, "hyphen after");
        Same(a.hyphenLimit, b.hyphenLimit, "hyphen limit");
        for (int i = 0; i < 3; ++i) {
            Percent(a.wordSpacing[i], b.wordSpacing[i], "word spacing");
            Percent(a.letterSpacing[i], b.letterSpacing[i], "letter spacing");
        }
        Same(a.hangingRoman, b.hangingRoman, "hanging roman");
        Near(a.autoLeading, b.autoLeading, "auto leading's share");
        Same(a.repeatedCharacters, b.repeatedCharacters, "repeated characters");
        Same(a.bunriKinshi, b.bunriKinshi, "bunri-kinshi");
        Same(a.burasagari, b.burasagari, "burasagari");
        if (a.kinsoku != b.kinsoku)
            differences_.Add(place_ + ": kinsoku '" + workbench::Utf8Of(a.kinsoku.value_or(u"none")) +
                             "' became '" + workbench::Utf8Of(b.kinsoku.value_or(u"none")) + "'");
    }

private:
    template <typename Number>
    void Same(Number a, Number b, const char* what) {
        differences_.Same(static_cast<int32_t>(a), static_cast<int32_t>(b), place_, what);
    }
    void Near(double a, double b, const char* what) { differences_.Near(a, b, place_, what); }
    void Percent(double a, double b, const char* what) {
        differences_.Near(a, b, ToleranceOf(a * 100) / 100, place_, what);
    }
    void Point(const HostPoint& a, const HostPoint& b, double growth, const char* what) {
        const HostPoint &origin = where_.origin, &offset = where_.offset;
        const double x = a.x - origin.x + offset.x, y = a.y - origin.y + offset.y;
        const double room = growth * (ToleranceOf(a.x - origin.x) + ToleranceOf(a.y - origin.y));
        differences_.Near(x, b.x, room, place_, (std::string(what) + " x").c_str());
        differences_.Near(y, b.y, room, place_, (std::string(what) + " y").c_str());
    }

    DifferenceList& differences_;
    const TextPlace& where_;
    const std::string place_;
};

} // namespace

void CompareTexts(
    const workbench::Document& stored, const workbench::Art& expected, const workbench::Document& rebuilt,
    const workbench::Art& actual, const TextPlace& where, const std::string& place,
    DifferenceList* differences,
    const std::function<void(const HostColor&, const HostColor&, const std::string&)>& compareColors) {
    const auto& a = std::get<TextFrameData>(expected.data);
    const auto& b = std::get<TextFrameData>(actual.data);
    TextComparison frames(differences, where, place);
    differences->Same(a.frameKind, b.frameKind, place, "frame kind");
    differences->Same(a.orientation, b.orientation, place, "orientation");
    differences->Near(a.pathStart, b.pathStart, place, "start on the path");
    frames.Matrix(a, b);
    const workbench::Art *pathA = stored.Find(a.path), *pathB = rebuilt.Find(b.path);
    const HostMatrix& m = a.matrix;
    const double stretch = std::abs(m.a) + std::abs(m.b) + std::abs(m.c) + std::abs(m.d);
    const double determinant = std::abs(m.a * m.d - m.b * m.c);
    const double growth = determinant > 0 ? 1 + stretch * stretch / determinant : 1;
    frames.Path(pathA ? pathA->path() : nullptr, pathB ? pathB->path() : nullptr, growth);
    if (!a.story || !b.story || !frames.Texts(*a.story, *b.story)) return;
    CharacterStyle lastA, lastB;
    for (size_t at = 0; at < a.story->text.size(); ++at) {
        const CharacterStyle styleA = StyleOf(*a.story, at), styleB = StyleOf(*b.story, at);
        const bool same = styleA.character == lastA.character && styleB.character == lastB.character &&
                          styleA.paragraph == lastA.paragraph && styleB.paragraph == lastB.paragraph;
        if (same) continue;
        lastA = styleA;
        lastB = styleB;
        const std::string character = place + " letter " + std::to_string(at);
        TextComparison letters(differences, where, character);
        letters.Characters(*styleA.character, *styleB.character);
        letters.Paragraphs(*styleA.paragraph, *styleB.paragraph);
        if (styleA.character->fill && styleB.character->fill)
            compareColors(styleA.character->fillColor, styleB.character->fillColor, character + " fill");
        if (styleA.character->stroke && styleB.character->stroke)
            compareColors(styleA.character->strokeColor, styleB.character->strokeColor,
                          character + " stroke");
    }
}
