// Stories against a plain model: a list of units, each with its style and the kerning in front of it.
#include "workbench/document/story.h"

#include <gtest/gtest.h>

#include <random>

namespace workbench {
namespace {

CharacterStyle NewStyle(double size) {
    CharacterAttributes character;
    character.fontSize = size;
    ParagraphAttributes paragraph;
    paragraph.startIndent = size;
    return {std::make_shared<const CharacterAttributes>(character),
            std::make_shared<const ParagraphAttributes>(paragraph)};
}

struct ModelUnit {
    char16_t unit;
    CharacterStyle style;
    int32_t kerning = 0;
};

struct Model {
    std::vector<ModelUnit> units;
    CharacterStyle defaults;
    int32_t kerningAtEnd = 0;

    CharacterStyle StyleFor(size_t at) const {
        return units.empty() ? defaults : units[at == 0 ? 0 : at - 1].style;
    }
    int32_t& KerningAt(size_t at) { return at < units.size() ? units[at].kerning : kerningAtEnd; }
};

void ExpectSame(const Story& story, Model& model) {
    ASSERT_EQ(story.text.size(), model.units.size());
    ASSERT_EQ(story.styles.size(), model.units.size());
    for (size_t at = 0; at <= model.units.size(); ++at) {
        const auto found = story.kerning.find(at);
        ASSERT_EQ(found == story.kerning.end() ? 0 : found->second, model.KerningAt(at)) << at;
        if (at == model.units.size()) break;
        ASSERT_EQ(story.text[at], model.units[at].unit);
        ASSERT_EQ(StyleOf(story, at).character, model.units[at].style.character);
        ASSERT_EQ(StyleOf(story, at).paragraph, model.units[at].style.paragraph);
    }
}

TEST(Story, TextStylesAndKerningStayInStep) {
    std::mt19937 random(7);
    const auto below = [&](size_t bound) { return std::uniform_int_distribution<size_t>(0, bound)(random); };
    const CharacterStyle styles[] = {NewStyle(1), NewStyle(2), NewStyle(3)};
    for (int round = 0; round < 60; ++round) {
        Story story;
        story.defaults = styles[0];
        Model model{{}, styles[0], 0};
        for (int step = 0; step < 40; ++step) {
            const size_t first = below(model.units.size()), end = first + below(model.units.size() - first);
            const CharacterStyle& style = styles[below(2)];
            const auto begin = model.units.begin();
            const auto place = [&](size_t at) { return begin + static_cast<std::ptrdiff_t>(at); };
            if (const size_t what = below(9); what < 4) {
                const std::u16string text(1 + below(3), static_cast<char16_t>(u'a' + step));
                const bool styled = below(1) == 0;
                const CharacterStyle own = styled ? style : model.StyleFor(first);
                InsertText(story, first, text, styled ? style : CharacterStyle{});
                model.units.insert(place(first), text.size(), {text[0], own, 0});
            } else if (what < 6) {
                RemoveText(story, first, end);
                if (first == 0 && end == model.units.size() && end > 0) model.defaults = model.units[0].style;
                model.units.erase(place(first), place(end));
            } else if (what < 8) {
                SetKerning(story, first, static_cast<int32_t>(below(2)));
                const auto found = story.kerning.find(first);
                model.KerningAt(first) = found == story.kerning.end() ? 0 : found->second;
            } else {
                SetStyle(story, first, end, {style.character, nullptr});
                for (size_t at = first; at < end; ++at) model.units[at].style.character = style.character;
                if (model.units.empty()) model.defaults.character = style.character;
            }
            ASSERT_NO_FATAL_FAILURE(ExpectSame(story, model)) << "round " << round << " step " << step;
        }
    }
}

TextFrameData& TextOf(Art& art) {
    return std::get<TextFrameData>(art.data);
}

// A copy must not write into the text of what it was copied from, and a chain stays a chain.
TEST(TextFrames, CopiesShareACopyOfTheStory) {
    Document document;
    Art* group = document.PrependArt(kArtGroup, document.LayerAt(0).root);
    Art* first = document.PrependArt(kArtTextFrame, group);
    Art* second = document.PrependArt(kArtTextFrame, group);
    TextOf(*second).story = TextOf(*first).story;
    TextOf(*first).story->frames.push_back(second->handle);
    InsertText(*TextOf(*first).story, 0, u"text");
    Art* path = document.PrependArt(kArtPath, nullptr);
    TextOf(*second).path = path->handle;

    Art* copy = document.CopyArt(*group);
    Art &copyOfSecond = *copy->firstChild, &copyOfFirst = *copy->lastChild;
    const auto story = TextOf(copyOfFirst).story;
    EXPECT_NE(story, TextOf(*first).story);
    EXPECT_EQ(story, TextOf(copyOfSecond).story);
    EXPECT_EQ(story->frames, (std::vector{copyOfFirst.handle, copyOfSecond.handle}));
    EXPECT_NE(TextOf(copyOfSecond).path, path->handle);
    EXPECT_TRUE(document.Find(TextOf(copyOfSecond).path));

    const ArtHandle gone = TextOf(copyOfSecond).path;
    document.DisposeArt(&copyOfSecond);
    EXPECT_EQ(story->frames, std::vector{copyOfFirst.handle});
    EXPECT_FALSE(document.Find(gone));
    EXPECT_EQ(TextOf(*first).story->frames.size(), 2U);
}

// Letters go with the matrix of point text, and with the path of other text; their paint lies on the page.
TEST(TextFrames, AreTransformedWithPathAndPaint) {
    Document document;
    const HostMatrix matrix{0, 2, -2, 0, 10, 20};
    for (const int32_t kind : {kPointText, kAreaText}) {
        Art* art = document.PrependArt(kArtTextFrame, document.LayerAt(0).root);
        TextFrameData& frame = TextOf(*art);
        frame.frameKind = kind;
        CharacterAttributes letters;
        letters.lineWidth = 3;
        letters.fillColor.kind = kColorPattern;
        letters.fillColor.u.pattern = {};
        letters.fillColor.u.pattern.matrix = {1, 0, 0, 1, 5, 0};
        InsertText(*frame.story, 0, u"ab", {std::make_shared<const CharacterAttributes>(letters), nullptr});
        Art* path = document.PrependArt(kArtPath, nullptr);
        path->path()->segments.push_back({{1, 0}, {1, 0}, {1, 0}, 1});
        frame.path = kind == kAreaText ? path->handle : nullptr;
        document.Transform(*art, matrix, 2);
        EXPECT_EQ(frame.matrix.b, 2);
        EXPECT_EQ(frame.matrix.tx, kind == kPointText ? 10 : 0);
        EXPECT_EQ(path->path()->segments[0].anchor.y, kind == kAreaText ? 22 : 0);
        const CharacterAttributes& moved = *StyleOf(*frame.story, 1).character;
        EXPECT_EQ(moved.lineWidth, 6);
        EXPECT_EQ(moved.fillColor.u.pattern.matrix.ty, 30);
        EXPECT_EQ(StyleOf(*frame.story, 0).character.get(), &moved);
        EXPECT_EQ(letters.lineWidth, 3);
    }
}

} // namespace
} // namespace workbench
