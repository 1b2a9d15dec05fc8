// Fonts and the places of letters, with two families of fonts by their files: the machine's other fonts make
// no difference.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "workbench/document/story.h"
#include "workbench/text/font_config_list.h"
#include "workbench/text/frame_layout.h"

namespace workbench {
namespace {

constexpr const char* kFolder = "/usr/share/fonts/";

FontConfigList& Fonts() {
    static FontConfigList fonts({std::string(kFolder) + "truetype/dejavu/DejaVuSans.ttf",
                                 std::string(kFolder) + "truetype/dejavu/DejaVuSans-Bold.ttf",
                                 std::string(kFolder) + "truetype/dejavu/DejaVuSerif.ttf",
                                 std::string(kFolder) + "opentype/ipafont-gothic/ipag.ttf",
                                 std::string(kFolder) + "opentype/ipafont-gothic/ipagp.ttf",
                                 std::string(kFolder) + "opentype/ipafont-gothic/ipag.ttf"});
    return fonts;
}

class TextLayoutTest : public testing::Test {
protected:
    void SetUp() override {
        UseTextFonts(&Fonts());
        UsePangoTextLayout();
    }
    void TearDown() override {
        UseTextLayout(nullptr);
        UseTextFonts(nullptr);
    }

    using Change = std::function<void(CharacterAttributes&, ParagraphAttributes&)>;

    Art& AddFrame(int32_t kind, int32_t orientation, std::u16string_view text, const Change& change = {}) {
        Art* art = document_.PrependArt(kArtTextFrame, document_.LayerAt(0).root);
        auto& frame = TextOf(*art);
        frame.frameKind = kind;
        frame.orientation = orientation;
        CharacterAttributes character;
        ParagraphAttributes paragraph;
        character.font = orientation == kVerticalText ? "IPAGothic-Regular" : "DejaVuSans-Book";
        character.fontSize = 10;
        if (change) change(character, paragraph);
        InsertText(*frame.story, 0, text,
                   {std::make_shared<const CharacterAttributes>(character),
                    std::make_shared<const ParagraphAttributes>(paragraph)});
        return *art;
    }

    void SetPath(Art& art, const std::vector<HostPoint>& corners, bool closed) {
        Art* path = document_.PrependArt(kArtPath, nullptr);
        path->path()->closed = closed;
        for (const HostPoint& p : corners) path->path()->segments.push_back({p, p, p, 1});
        TextOf(art).path = path->handle;
    }

    static TextFrameData& TextOf(Art& art) { return std::get<TextFrameData>(art.data); }

    Document document_;
};

TEST_F(TextLayoutTest, FontsHaveStableNamesAndClasses) {
    std::vector<std::string> names;
    for (size_t i = 0; i < Fonts().Count(); ++i) names.push_back(Fonts().At(i).name);
    EXPECT_EQ(names, (std::vector<std::string>{"DejaVuSans-Bold", "DejaVuSans-Book", "DejaVuSerif-Book",
                                               "IPAGothic-Regular", "IPAPGothic-Regular"}));
    const auto standIn = [&](size_t a, size_t b) {
        const auto &x = Fonts().At(a).words, &y = Fonts().At(b).words;
        return x[2] == y[2] && x[3] == y[3] && x[4] == y[4];
    };
    EXPECT_TRUE(standIn(0, 1));
    EXPECT_FALSE(standIn(1, 2)) << "sans and serif";
    EXPECT_FALSE(standIn(1, 3)) << "Latin and Japanese";
    EXPECT_FALSE(standIn(3, 4)) << "fixed and proportional";
    EXPECT_EQ(Fonts().At(0).words[6], 700);

    EXPECT_EQ(Fonts().Match({{"No Such", "dejavu sans"}, 800, 0, 100}).name, "DejaVuSans-Bold");
    EXPECT_EQ(Fonts().Match({{"IPA\u30B4\u30B7\u30C3\u30AF"}, 400, 0, 100}).name, "IPAGothic-Regular");
    EXPECT_EQ(Fonts().Match({{"DejaVu Serif"}, 400, 0, 100}).missing, "");
    const FontMatch none = Fonts().Match({{"No Such"}, 400, 0, 100});
    EXPECT_EQ(none.missing, "No Such");
    EXPECT_TRUE(Fonts().Has(none.name));
}

// Everything is shaped at one size and scaled, so twice the attributes must be exactly twice the place.
TEST_F(TextLayoutTest, PlacesGrowInProportion) {
    const auto layoutOf = [&](double scale) {
        Art& art = AddFrame(kPointText, kHorizontalText, u"Two lines,\rAVA kerned",
                            [&](CharacterAttributes& c, ParagraphAttributes& p) {
                                c.fontSize = 10 * scale;
                                c.tracking = 50;
                                c.horizontalScale = 1.5;
                                p.startIndent = 7 * scale;
                                p.letterSpacing[1] = 0.1;
                            });
        SetKerning(*TextOf(art).story, 13, -200);
        return LayFrame(document_, art);
    };
    const FrameLayout one = layoutOf(1), three = layoutOf(3);
    ASSERT_EQ(one.places.size(), three.places.size());
    ASSERT_EQ(one.places.size(), 20U);
    for (size_t i = 0; i < one.places.size(); ++i) {
        EXPECT_NEAR(one.places[i].origin.x * 3, three.places[i].origin.x, 1e-6);
        EXPECT_NEAR(one.places[i].origin.y * 3, three.places[i].origin.y, 1e-6);
    }
    EXPECT_NEAR(one.places[11].origin.y, -12, 1e-9) << "auto leading is 1.2";
    const LetterPlace &before = one.places[11], &kerned = one.places[12];
    EXPECT_EQ(kerned.first, 13U);
    EXPECT_NEAR(kerned.origin.x, before.origin.x + before.advance - 2, 1e-9) << "-200/1000 of 10";
}

TEST_F(TextLayoutTest, JustificationSharesOutTheRoom) {
    struct Case {
        int32_t justification;
        bool justified; ///< the first line reaches from one edge to the other
    };
    const Case cases[] = {{0, false}, {3, true}, {6, true}};
    for (const Case& each : cases) {
        Art& art = AddFrame(
            kAreaText, kHorizontalText, u"several words that take more than one of the lines",
            [&](CharacterAttributes&, ParagraphAttributes& p) { p.justification = each.justification; });
        SetPath(art, {{0, 100}, {200, 100}, {200, 0}, {0, 0}}, true);
        const FrameLayout layout = LayFrame(document_, art);
        ASSERT_EQ(layout.lines.size(), 2U);
        EXPECT_NEAR(layout.lines[0].start.x, 0, 1e-9);
        EXPECT_EQ(std::abs(layout.lines[0].stop.x - 200) < 1e-9, each.justified);
        EXPECT_NEAR(layout.lines[1].start.x, 0, 1e-9);
        EXPECT_EQ(std::abs(layout.lines[1].stop.x - 200) < 1e-9, each.justification == 6);
    }
    for (const int32_t justification : {1, 2}) {
        Art& art =
            AddFrame(kPointText, kHorizontalText, u"word ",
                     [&](CharacterAttributes&, ParagraphAttributes& p) { p.justification = justification; });
        const LinePlace line = LayFrame(document_, art).lines.at(0);
        EXPECT_NEAR(justification == 1 ? line.stop.x : line.start.x + line.stop.x, 0, 1e-9);
    }
}

// Whatever the shape, no letter may stand outside of it, none may be missing, and the next frame of the chain
// goes on where one ends.
TEST_F(TextLayoutTest, AreasAndChainsHoldEachLetterOnce) {
    std::u16string text;
    for (int i = 0; i < 60; ++i) text += i % 9 == 8 ? u"end.\r" : u"word \u6F22\u5B57\u3002";
    for (const int32_t orientation : {kHorizontalText, kVerticalText}) {
        Art& first = AddFrame(kAreaText, orientation, text);
        Art& second = AddFrame(kAreaText, orientation, u"");
        SetPath(first, {{0, 0}, {80, 120}, {160, 0}, {80, -60}}, true);
        SetPath(second, {{200, 200}, {900, 200}, {900, -900}, {200, -900}}, true);
        TextOf(second).story = TextOf(first).story;
        TextOf(first).story->frames.push_back(second.handle);
        const StoryRange range = ShownRange(document_, first);
        EXPECT_GT(range.end, 20U);
        EXPECT_EQ(ShownRange(document_, second), (StoryRange{range.end, text.size()}));
        size_t unit = 0;
        for (Art* art : {&first, &second}) {
            for (const LetterPlace& place : LayFrame(document_, *art).places) {
                if (text[unit] == u'\r') ++unit;
                EXPECT_EQ(place.first, unit);
                unit = place.end;
                if (art != &first || text[place.first] == u' ') continue;
                const double x = place.origin.x, y = place.origin.y;
                EXPECT_LE(std::abs(x - 80) / 80 + (y > 0 ? y / 120 : -y / 60), 1 + 1e-6) << x << " " << y;
            }
        }
        EXPECT_EQ(unit + 1, text.size() + (text.back() == u'\r' ? 0 : 1));
        document_.DisposeArt(&first);
        document_.DisposeArt(&second);
    }
}

// The frame's matrix stretches what was laid out in front of it: the lines break where they did.
TEST_F(TextLayoutTest, AMatrixStretchesAreasAndPathsWhole) {
    for (const int32_t kind : {kAreaText, kPathText}) {
        Art& art = AddFrame(kind, kHorizontalText, u"words on lines or on a way");
        SetPath(art, {{0, 0}, {90, 40}, {90, -40}, {0, -40}}, kind == kAreaText);
        const FrameLayout before = LayFrame(document_, art);
        const HostMatrix matrix{2, 1, -1, 1, 30, 40};
        document_.Transform(art, matrix, 1);
        const FrameLayout after = LayFrame(document_, art);
        ASSERT_GT(before.letters.size(), 10U);
        ASSERT_EQ(after.letters.size(), before.letters.size());
        for (size_t i = 0; i < before.letters.size(); ++i) {
            const HostMatrix &a = before.letters[i].toArt, &b = after.letters[i].toArt;
            EXPECT_NEAR(b.tx, 2 * a.tx - a.ty + 30, 1e-6);
            EXPECT_NEAR(b.ty, a.tx + a.ty + 40, 1e-6);
            EXPECT_NEAR(b.a, 2 * a.a - a.b, 1e-6);
        }
    }
}

// Attributes come from files too: none of these may hang, crash or give a place that isn't a number.
TEST_F(TextLayoutTest, OddNumbersDoNoHarm) {
    for (const double odd : {0.0, -1.0, 1e-300, 1e300, std::nan(""), HUGE_VAL, -HUGE_VAL}) {
        for (int field = 0; field < 8; ++field) {
            for (const int32_t kind : {kPointText, kAreaText, kPathText}) {
                Art& art = AddFrame(kind, field % 2, u"a\tb c\r\r\xD800 \u0627\u0628",
                                    [&](CharacterAttributes& c, ParagraphAttributes& p) {
                                        double* const fields[] = {&c.fontSize,         &c.leading,
                                                                  &c.baselineShift,    &c.horizontalScale,
                                                                  &p.startIndent,      &p.wordSpacing[1],
                                                                  &p.letterSpacing[1], &p.autoLeading};
                                        *fields[field] = odd;
                                        c.autoLeading = field != 1;
                                        p.justification = 6;
                                    });
                SetPath(art, {{0, 0}, {90, 40}, {90, -40}, {0, -40}}, field < 4);
                const FrameLayout layout = LayFrame(document_, art);
                EXPECT_LE(layout.end, 12U);
                HostRect bounds{};
                document_.Bounds(art, &bounds);
                document_.DisposeArt(&art);
            }
        }
    }
}

} // namespace
} // namespace workbench
