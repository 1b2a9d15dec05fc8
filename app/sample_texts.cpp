// Live text: at a point, in an area, on a path, down the page, and in a chain of frames.

#include "app/sample_cells.h"
#include "workbench/document/story.h"

using workbench::Art;
using workbench::CharacterAttributes;
using workbench::Document;
using workbench::ParagraphAttributes;
using workbench::TextFrameData;

namespace sample {

namespace {

constexpr char kLatinFont[] = "DejaVuSans-Book";
constexpr char kJapaneseFont[] = "IPAGothic-Regular";

struct Words {
    std::u16string text;
    CharacterAttributes character{};
    ParagraphAttributes paragraph{};
};

CharacterAttributes Letters(const char* font, double size) {
    CharacterAttributes letters;
    letters.font = font;
    letters.fontSize = size;
    return letters;
}

void Append(workbench::Story& story, const Words& words) {
    workbench::InsertText(story, story.text.size(), words.text,
                          {std::make_shared<const CharacterAttributes>(words.character),
                           std::make_shared<const ParagraphAttributes>(words.paragraph)});
}

TextFrameData& AddFrame(Document& document, Art* layer, int32_t kind, int32_t orientation,
                        std::shared_ptr<workbench::Story> story) {
    Art& art = *document.PrependArt(kArtTextFrame, layer);
    auto& frame = std::get<TextFrameData>(art.data);
    frame.frameKind = kind;
    frame.orientation = orientation;
    frame.story = std::move(story);
    frame.story->frames.push_back(art.handle);
    return frame;
}

/// The frame's own path, out of the tree.
void TakePath(Document& document, TextFrameData& frame, Art& path) {
    Art* own = document.CopyArt(path);
    document.DisposeArt(&path);
    frame.path = own->handle;
}

void AddPointText(Document& document, Art* layer) {
    const HostRect cell = Cell(3, 3);
    auto story = std::make_shared<workbench::Story>();
    Words words{u"Ten years ", Letters(kLatinFont, 15)};
    Append(*story, words);
    words.text = u"of art";
    words.character.fillColor = workbench::FourColor(0, 0.9, 0.8, 0);
    words.character.stroke = true;
    words.character.strokeColor = workbench::GrayColor(0.8);
    words.character.lineWidth = 0.4;
    words.character.tracking = 120;
    words.character.baselineShift = 3;
    words.character.horizontalScale = 0.8;
    Append(*story, words);
    words = {u"\rkept in line", Letters(kLatinFont, 11)};
    words.character.leading = 20;
    words.character.autoLeading = false;
    Append(*story, words);
    workbench::SetKerning(*story, 1, -80);
    workbench::SetKerning(*story, 2, 40);
    TextFrameData& frame =
        AddFrame(document, layer, workbench::kPointText, workbench::kHorizontalText, story);
    frame.matrix = {0.98, 0.17, -0.17, 0.98, cell.left, cell.bottom + 40};
}

void AddPathText(Document& document, Art* layer) {
    const HostRect cell = Cell(0, 4);
    auto story = std::make_shared<workbench::Story>();
    Append(*story, {u"along a curve and on", Letters(kLatinFont, 11)});
    TextFrameData& frame = AddFrame(document, layer, workbench::kPathText, workbench::kHorizontalText, story);
    Art& path = AddLine(document, layer, {{cell.left, cell.bottom + 25}, {cell.right, cell.bottom + 25}});
    path.path()->segments[0].out = {cell.left + 30, cell.bottom + 95};
    path.path()->segments[1].in = {cell.right - 30, cell.bottom - 45};
    TakePath(document, frame, path);
}

// "Vertical writing" and "hangs, doesn't break before a full stop", with a set of rules for line ends.
void AddVerticalText(Document& document, Art* layer) {
    const HostRect cell = Cell(1, 4);
    auto story = std::make_shared<workbench::Story>();
    Words words{u"\u7E26\u66F8\u304D\u306E\u6587\u7AE0\u3002", Letters(kJapaneseFont, 14)};
    words.paragraph.kinsoku = u"Hard";
    words.paragraph.burasagari = 1;
    words.paragraph.bunriKinshi = true;
    words.paragraph.justification = 3;
    words.character.japaneseAlternate = 3;
    Append(*story, words);
    words.text = u"\r\u300C\u56F3\u6848\u300D\u3092\uFF11\uFF10\u5E74\u3001\u4FDD\u7BA1\u3002";
    words.paragraph.kinsoku = u"Soft";
    words.character.japaneseAlternate = 0;
    words.character.fillColor = workbench::ThreeColor(0.1, 0.3, 0.6);
    Append(*story, words);
    workbench::SetKerning(*story, 3, 100);
    workbench::SetKerning(*story, story->text.size(), 50);
    TextFrameData& frame = AddFrame(document, layer, workbench::kAreaText, workbench::kVerticalText, story);
    TakePath(document, frame, AddRectangle(document, layer, cell));
}

void AddChain(Document& document, Art* layer) {
    auto story = std::make_shared<workbench::Story>();
    Words words{
        u"A record stands on its own. Its colours are kept by value, its patterns come along as art, and "
        u"every place is counted from its lower left corner. It needs no document, no swatch and no layer to "
        u"be put on a page again, ten years later as on the first day.\r",
        Letters(kLatinFont, 9)};
    words.paragraph.justification = 3;
    words.paragraph.firstLineIndent = 10;
    words.paragraph.autoHyphenation = true;
    Append(*story, words);
    words.text = u"The rest of this story stands in the second frame of the chain, set to the right.";
    words.paragraph = {};
    words.paragraph.justification = 1;
    words.paragraph.startIndent = 6;
    words.paragraph.endIndent = 6;
    words.paragraph.wordSpacing[1] = 1.1;
    words.paragraph.letterSpacing[1] = 0.02;
    Append(*story, words);
    for (const int column : {0, 1}) {
        const HostRect cell = Cell(column, 5);
        TextFrameData& frame =
            AddFrame(document, layer, workbench::kAreaText, workbench::kHorizontalText, story);
        TakePath(document, frame, AddRectangle(document, layer, Part(cell, 0, 0, 1, 1)));
    }
}

// "Flowers and birds", in the paint of an ink, over "ﾊﾅ" in half-width letters; part of a group that is seen
// through.
void AddInkedText(Document& document, Art* layer) {
    const HostRect cell = Cell(2, 5);
    Art* group = document.PrependArt(kArtGroup, layer);
    group->blend.opacity = 0.8;
    auto story = std::make_shared<workbench::Story>();
    Words words{u"\u82B1\u3068\u9CE5", Letters(kJapaneseFont, 34)};
    if (const workbench::CustomColor* ink = document.FindCustomColor("Indigo, dark = 1")) {
        words.character.fillColor.kind = kColorCustom;
        words.character.fillColor.u.custom = {ink->handle, 0.25};
    }
    Append(*story, words);
    words.text = u"\r\uFF8A\uFF85";
    words.character.fontSize = 18;
    words.character.verticalScale = 1.5;
    words.character.dashes = {2, 1};
    words.character.stroke = true;
    words.character.fill = false;
    words.character.strokeColor = workbench::FourColor(0, 0.6, 0.9, 0.1);
    Append(*story, words);
    TextFrameData& frame =
        AddFrame(document, group, workbench::kPointText, workbench::kHorizontalText, story);
    frame.matrix = {1, 0, 0.2, 1, cell.left, cell.bottom + 60};
}

} // namespace

void AddTexts(Document& document, Art* layer) {
    AddPointText(document, layer);
    AddPathText(document, layer);
    AddVerticalText(document, layer);
    AddChain(document, layer);
    AddInkedText(document, layer);
}

} // namespace sample
