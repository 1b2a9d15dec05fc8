// Text elements of others and our own.  What is compared with another renderer stands in the tests of
// render/.
#include <cmath>

#include "tests/workbench/svg/svg_helpers.h"
#include "workbench/document/story.h"
#include "workbench/document/utf16.h"
#include "workbench/svg/svg_limits.h"
#include "workbench/svg/svg_writer.h"
#include "workbench/text/frame_layout.h"

namespace workbench {
namespace {

std::string Short(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", std::abs(value) < 1e-9 ? 0 : value);
    return text;
}

/// "kind orientation anchor: [size leading shift tracking]text ... kerning": what texts are told apart by.
std::string FrameText(const Art& art) {
    const auto& frame = std::get<TextFrameData>(art.data);
    const Story& story = *frame.story;
    std::string text = std::string(1, "pao"[frame.frameKind]) + (frame.orientation ? "v " : " ") +
                       Short(frame.matrix.tx) + "," + Short(frame.matrix.ty) + ":";
    const CharacterAttributes* last = nullptr;
    for (size_t at = 0; at < story.text.size(); ++at) {
        const CharacterAttributes& c = *StyleOf(story, at).character;
        if (&c != last) {
            text += "[" + Short(c.fontSize);
            if (!c.autoLeading) text += " l" + Short(c.leading);
            if (c.baselineShift != 0) text += " s" + Short(c.baselineShift);
            if (c.tracking) text += " t" + std::to_string(c.tracking);
            text += "]";
        }
        last = &c;
        text += story.text[at] == u'\r' ? "|" : Utf8Of(std::u16string(1, story.text[at]));
    }
    for (const auto& [at, value] : story.kerning)
        text += " k" + std::to_string(at) + ":" + std::to_string(value);
    if (const int32_t justification = StyleOf(story, 0).paragraph->justification)
        text += " j" + std::to_string(justification);
    return text;
}

std::string Frames(const Document& document) {
    std::string text;
    ForEachArt(*document.LayerAt(0).root, [&](const Art& art) {
        if (art.kind == kArtTextFrame) text = FrameText(art) + (text.empty() ? "" : "; ") + text;
    });
    return text;
}

TEST(SvgText, BecomesFramesByItsPlaces) {
    struct Case {
        const char* body;
        const char* frames; ///< on a page of 100 x 100 points, one user unit each
    };
    const Case cases[] = {
        {"<text x='10' y='30'>  two \n words </text>", "p 10,70:[16]two words"},
        {"<text x='10' y='30' xml:space='preserve'>  two </text>", "p 10,70:[16]  two "},
        {"<text x='1' y='2'>a <tspan font-size='8'>b</tspan> <tspan> c</tspan></text>",
         "p 1,98:[16]a [8]b[16] [16]c"},
        // Lines below each other are one frame; others are frames of their own.
        {"<text font-size='10'><tspan x='5' y='10'>a</tspan><tspan x='5' dy='12'>b</tspan><tspan x='5' "
         "y='40'>c</tspan></text>",
         "p 5,90:[10]a|[10 l12]b|[10 l18]c"},
        {"<text font-size='10'><tspan x='5' y='10'>a</tspan><tspan x='50' y='10'>b</tspan></text>",
         "p 5,90:[10]a; p 50,90:[10]b"},
        {"<text x='9' y='9' dx='2' dy='3'>a<tspan dx='4' dy='-1' font-size='10'>bc</tspan></text>",
         "p 11,88:[16]a[10 s1]bc k1:400"},
        {"<text x='9' y='9' text-anchor='middle'>a</text><text x='9' y='9' style='text-anchor:end'>b</text>",
         "p 9,91:[16]a j2; p 9,91:[16]b j1"},
        {"<text y='20' font-size='10' letter-spacing='.5' baseline-shift='2'>a<tspan "
         "baseline-shift='super'>b</tspan></text>",
         "p 0,80:[10 s2 t50]a[10 s6 t50]b"},
        {"<text x='50' y='5' writing-mode='tb' font-size='10'>ab<tspan x='30' y='5'>c</tspan></text>",
         "pv 50,95:[10]ab|[10 l20]c"},
        {"<g transform='scale(2)'><text transform='translate(3 4)' font-size='5'>a</text></g>",
         "p 6,92:[10]a"},
        {"<text><tspan display='none'>a</tspan><title>t</title><!-- c --></text><text/>", ""},
        {"<path id='w' d='M0 0h50'/><text font-size='10'><textPath href='#w' "
         "startOffset='50%'>a</textPath></text>",
         "o 0,0:[10]a"},
        {"<text><textPath href='#none'>a</textPath></text>", ""},
        {"<flowRoot font-size='10'><flowRegion><rect width='50' height='20'/></flowRegion><flowPara>one "
         "</flowPara><flowPara>two</flowPara></flowRoot>",
         "a 0,0:[10]one|[10]two"},
        {"<style>text{font:italic bold 20px/1.5 'IPAGothic',serif} tspan{font-size:50%}</style>"
         "<text>\xE6\xBC\xA2<tspan>x</tspan></text>",
         "p 0,100:[20]\xE6\xBC\xA2[10]x"},
    };
    for (const Case& each : cases) EXPECT_EQ(Frames(*ReadBody(each.body).document), each.frames) << each.body;
}

// A list of places is kerning: the letters then stand where the file wants them, to a thousandth of an em.
TEST(SvgText, LettersStandWhereTheirListsPutThem) {
    const ReadFile file =
        ReadBody("<text font-family='DejaVu Sans' font-size='10' x='10 25 31.5' y='20 21 24'>abcd</text>");
    const Art* art = OnlyArt(*file.document);
    EXPECT_EQ(std::get<TextFrameData>(art->data).story->text, u"abcd");
    const ReadFile again =
        ReadBody("<text font-family='DejaVu Sans' font-size='10' x='10' y='20'>abcd</text>");
    HostRect loose{}, tight{};
    EXPECT_EQ(FrameText(*art), "p 10,80:[10]a[10 s-1]b[10 s-4]cd k1:887 k2:15");
    UsePangoTextLayout();
    ASSERT_TRUE(file.document->Bounds(*art, &loose));
    ASSERT_TRUE(again.document->Bounds(*OnlyArt(*again.document), &tight));
    // c begins at 31.5; c and d together are as wide as ever.
    const ReadFile rest =
        ReadBody("<text font-family='DejaVu Sans' font-size='10' x='31.5' y='20'>cd</text>");
    HostRect end{};
    ASSERT_TRUE(rest.document->Bounds(*OnlyArt(*rest.document), &end));
    EXPECT_NEAR(loose.right, end.right, 0.011);
    EXPECT_GT(loose.right, tight.right);
    UseTextLayout(nullptr);
}

TEST(SvgText, AFontThatIsMissingIsToldWithItsStandIn) {
    const ReadFile file = ReadBody("<text font-family='No Such Font'>a</text>");
    ASSERT_TRUE(file.report.missingFonts.contains("No Such Font"));
    EXPECT_FALSE(file.report.missingFonts.at("No Such Font").empty());
}

// Whoever changes what the file shows changes the text, also if our own words still say what it was.
TEST(SvgText, OwnWordsYieldToWhatOthersChanged) {
    Document document;
    std::vector<Art*> frames;
    for (int i = 0; i < 3; ++i)
        frames.push_back(document.PrependArt(kArtTextFrame, document.LayerAt(0).root));
    auto &lone = std::get<TextFrameData>(frames[0]->data), &first = std::get<TextFrameData>(frames[1]->data),
         &second = std::get<TextFrameData>(frames[2]->data);
    InsertText(*lone.story, 0, u"alone");
    InsertText(*first.story, 0, u"chained");
    second.story = first.story;
    second.story->frames.push_back(frames[2]->handle);
    SetKerning(*lone.story, 0, 7); // which SVG has no word for at a line's start
    const std::string text = WriteSvg(document);
    const auto kerned = [](const std::string& svg) {
        const ReadFile file = ReadText(svg);
        EXPECT_TRUE(file.document) << file.error;
        size_t kernings = 0, chained = 0;
        ForEachArt(*file.document->LayerAt(0).root, [&](const Art& art) {
            if (const auto* frame = std::get_if<TextFrameData>(&art.data)) {
                kernings += frame->story->kerning.size();
                chained += frame->story->frames.size() > 1;
            }
        });
        return std::pair(kernings, chained);
    };
    const auto changed = [&](const std::string& from, const std::string& to) {
        std::string other = text;
        const size_t at = other.find(from);
        EXPECT_NE(at, std::string::npos) << text;
        return at == std::string::npos ? other : other.replace(at, from.size(), to);
    };
    EXPECT_EQ(kerned(text), (std::pair<size_t, size_t>(1, 2)));
    EXPECT_EQ(kerned(changed(">alone<", ">changed<")), (std::pair<size_t, size_t>(0, 2)));
    EXPECT_EQ(kerned(changed("<text", "<text id='new' style='opacity:.5'")),
              (std::pair<size_t, size_t>(1, 2)));
    EXPECT_EQ(kerned(changed(">chained<", ">loose<")), (std::pair<size_t, size_t>(1, 0)));
    EXPECT_EQ(kerned(changed("frames=\"2\"", "frames=\"3\"")), (std::pair<size_t, size_t>(1, 0)));
    EXPECT_EQ(kerned(changed("character=\"12", "character=\"x")), (std::pair<size_t, size_t>(0, 2)));
}

TEST(SvgText, HostileTextIsReadInBoundedTimeAndMemory) {
    std::string nested = "a", lists, many;
    for (int i = 0; i < 3000; ++i) nested = "<tspan x='1 2 3' dx='1'>" + nested + "b</tspan>";
    for (int i = 0; i < 20000; ++i) lists += std::to_string(i % 77) + " ";
    for (int i = 0; i < 3000; ++i) many += "<tspan x='" + std::to_string(i * 7 % 90) + "' y='5'>a</tspan>";
    const std::string bodies[] = {
        "<text>" + nested + "</text>",
        "<text x='" + lists + "' y='" + lists + "'>" + std::string(20000, 'x') + "</text>",
        "<text>" + many + "</text>",
        "<text id='t' font-size='1e300' letter-spacing='1e300'>a<textPath href='#t'>b</textPath></text>",
        "<path id='p' d='M0 0h1e38'/><text font-size='0'><textPath href='#p' "
        "startOffset='1e38'>b</textPath></text>",
        "<text transform='scale(0)'>a</text><text transform='scale(1e30)' font-size='1e-30'>a</text>",
        "<text font-family=\"'\" style='font:1'>\xEF\xBF\xBE&#xD;</text>",
    };
    for (const std::string& body : bodies) {
        const ReadFile file = ReadBody(body);
        HostRect bounds{};
        file.document->Bounds(*file.document->LayerAt(0).root, &bounds);
    }
    const ReadFile file = ReadText("<svg><text>" + std::string(kMaxTextUnits + 1, 'x') + "</text></svg>");
    EXPECT_FALSE(file.document);
    EXPECT_EQ(file.error, "the file has too much text");
}

} // namespace
} // namespace workbench
