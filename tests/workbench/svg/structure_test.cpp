#include <cmath>

#include "tests/workbench/svg/svg_helpers.h"

namespace workbench {
namespace {

TEST(Structure, ForeignAndUnreadElements) {
    const ReadFile file = ReadText(
        "<s:svg xmlns:s='http://www.w3.org/2000/svg' xmlns:e='urn:editor' "
        "xmlns:xlink='http://www.w3.org/1999/xlink'>"
        "<e:view><s:path d='M0 0h1'/></e:view><s:text>words</s:text><s:text> </s:text><s:image "
        "xlink:href='data:,'/><s:foreignObject/>"
        "<s:nonsense/><s:g filter='url(#f)' mask='url(#m)'><s:path d='M0 "
        "0h1'><s:animate/></s:path></s:g><div xmlns='http://www.w3.org/1999/xhtml'/></s:svg>");
    ASSERT_TRUE(file.document) << file.error;
    EXPECT_EQ(Structure(*file.document), "g(g(p),t)");
    const std::map<std::string, int> expected{
        {"image", 1}, {"foreignObject", 1}, {"unknown element", 1}, {"filter", 1}, {"mask", 1}};
    EXPECT_EQ(file.report.losses, expected);
    // Missing namespaces are forgiven, and the last member is on top.
    EXPECT_EQ(Structure(*ReadText("<svg:svg><svg:g/><svg:path d='M0 0h1'/></svg:svg>").document), "g(p)");
    EXPECT_EQ(Structure(*ReadText("<svg><g><path d='M0 0h1'/></g><path d='M0 0h1'/></svg>").document),
              "g(p,g(p))");
}

TEST(Structure, ReferencesThatLeadNowhereOrInCirclesAreCounted) {
    const ReadFile file = ReadBody(
        "<g id='a'><path d='M0 0h1'/><use xlink:href='#b'/></g><g id='b'><use xlink:href='#a'/></g><use "
        "xlink:href='#none'/><use/><use xlink:href='other.svg#a'/>");
    EXPECT_GT(file.report.losses.at("reference"), 3);
    EXPECT_EQ(Structure(*file.document), "g(g(g(g(p))),g(p))");
}

TEST(Clips, SeveralShapesClipToAllOfThem) {
    // The second runs the other way round; as it is, the overlap would be a hole.
    const ReadFile file = ReadBody(
        "<path id='s' d='M5 5V15H15V5z'/><clipPath id='c'><rect width='10' height='10'/><use "
        "xlink:href='#s'/></clipPath><rect width='20' height='20' clip-path='url(#c)'/>");
    const Art* clip = file.document->LayerAt(0).root->firstChild->firstChild;
    ASSERT_EQ(Structure(*clip), "c(p,p)");
    const auto area = [](const Art* art) {
        double sum = 0;
        const auto& s = art->path()->segments;
        for (size_t i = 0; i < s.size(); ++i) {
            const HostPoint a = s[i].anchor, b = s[(i + 1) % s.size()].anchor;
            sum += a.x * b.y - b.x * a.y;
        }
        return sum;
    };
    EXPECT_EQ(std::signbit(area(clip->firstChild)), std::signbit(area(clip->lastChild)));
    EXPECT_TRUE(clip->firstChild->path()->style.clip && clip->lastChild->path()->style.clip);
}

TEST(Clips, AClipOfAClipIsAGroupAround) {
    const ReadFile file = ReadBody(
        "<clipPath id='a' clip-path='url(#b)'><rect width='10' height='10'/></clipPath><clipPath "
        "id='b'><rect width='5' height='5'/></clipPath>"
        "<g clip-path='url(#a)'><path d='M0 0h9'/></g>");
    const Art* outer = OnlyArt(*file.document);
    ASSERT_EQ(Structure(*outer), "clip(p,clip(p,p))");
    EXPECT_EQ(outer->firstChild->path()->segments[2].anchor.x, 5);
}

TEST(Clips, NothingClipsToNothingAndWhatIsMissingDoesNotClip) {
    const ReadFile nothing = ReadBody("<clipPath id='c'/><path d='M0 0h9' clip-path='url(#c)'/>");
    EXPECT_TRUE(OnlyArt(*nothing.document)->hidden);
    EXPECT_EQ(Structure(*ReadBody("<path d='M0 0h9' clip-path='url(#none)'/>").document), "g(p)");
    const ReadFile circle = ReadBody(
        "<clipPath id='c' clip-path='url(#c)'><rect width='9' height='9'/></clipPath><path d='M0 0h9' "
        "clip-path='url(#c)'/>");
    EXPECT_EQ(Structure(*circle.document), "g(clip(p,p))");
    EXPECT_EQ(circle.report.losses.at("reference"), 1);
    const ReadFile text =
        ReadBody("<clipPath id='c'><text>A</text></clipPath><path d='M0 0h9' clip-path='url(#c)'/>");
    EXPECT_FALSE(OnlyArt(*text.document)->hidden);
    EXPECT_EQ(text.report.losses.at("text"), 1);
}

TEST(Layers, AreThoseOfTheEditorsAndTheLastIsTheTopmost) {
    const ReadFile file = ReadText(
        "<svg xmlns='http://www.w3.org/2000/svg' xmlns:i='urn:i' xmlns:s='urn:s'><defs/>"
        "<g i:groupmode='layer' i:label='Back' s:insensitive='true'><path d='M0 0h1'/></g><path id='loose' "
        "d='M0 0h1'/><path d='M0 0h1'/>"
        "<g i:groupmode='layer' i:label='Front' style='display:none' transform='translate(8)'><g "
        "i:groupmode='layer' id='sub'><path id='p' d='M0 0h1'/></g></g>"
        "<g i:groupmode='layer' i:label='Pale' opacity='.5'><path d='M0 0h1'/></g></svg>");
    ASSERT_TRUE(file.document);
    Document& document = *file.document;
    ASSERT_EQ(document.LayerCount(), 4u);
    EXPECT_EQ(Structure(document), "g(g(p)) g(g(p)) g(p,p) g(p)");
    EXPECT_EQ(document.LayerAt(0).title, "Pale");
    EXPECT_EQ(document.LayerAt(0).root->firstChild->blend.opacity, 0.5);
    EXPECT_EQ(document.LayerAt(1).title, "Front");
    EXPECT_FALSE(document.LayerAt(1).visible);
    EXPECT_EQ(Named(document, "p")->path()->segments[0].anchor.x, 6) << "8 pixels are 6 points";
    EXPECT_EQ(document.LayerAt(2).root->lastChild->name, "loose");
    EXPECT_EQ(document.LayerAt(3).title, "Back");
    EXPECT_TRUE(document.LayerAt(3).locked);
    EXPECT_FALSE(document.LayerAt(2).locked);
}

TEST(Pages, HaveASizeInPointsAndYUpward) {
    struct Case {
        const char* attributes;
        double width, height;
        HostPoint point; ///< where (10, 20) comes out
    };
    const Case cases[] = {
        {"width='100' height='200'", 75, 150, {7.5, 135}},
        {"width='1in' height='2in' viewBox='0 0 72 144'", 72, 144, {10, 124}},
        {"width='100pt' height='100pt' viewBox='0 0 100 200'", 100, 100, {30, 90}},
        {"width='100pt' height='100pt' viewBox='0 0 100 200' preserveAspectRatio='none'", 100, 100, {10, 90}},
        {"viewBox='10 20 200 400'", 150, 300, {0, 300}},
        {"width='100%' height='100%' viewBox='0 0 200 400'", 150, 300, {7.5, 285}},
        {"width='75pt' viewBox='0 0 200 400'", 75, 150, {3.75, 142.5}},
        {"width='100' height='100' viewBox='0 0 0 0'", 75, 75, {7.5, 60}},
        {"width='-5' height='0' viewBox='0 0 100 100'", 75, 75, {7.5, 60}},
        {"", 30, 60, {7.5, 45}}, // no size at all: as large as what it draws
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.attributes);
        const ReadFile file = ReadText(std::string("<svg xmlns='http://www.w3.org/2000/svg' ") +
                                       each.attributes + "><path d='M10 20L40 80'/></svg>");
        ASSERT_TRUE(file.document);
        const HostRect& page = file.document->page;
        EXPECT_EQ((std::vector{page.left, page.bottom}), (std::vector{0.0, 0.0}));
        EXPECT_DOUBLE_EQ(page.right, each.width);
        EXPECT_DOUBLE_EQ(page.top, each.height);
        const HostPoint point = OnlyArt(*file.document)->path()->segments[0].anchor;
        EXPECT_NEAR(point.x, each.point.x, 1e-9);
        EXPECT_NEAR(point.y, each.point.y, 1e-9);
    }
}

TEST(Metadata, TitlesSubjectsAndDescriptions) {
    const ReadFile file = ReadBody(
        "<title>Outer</title><metadata><r:RDF xmlns:r='urn:r' xmlns:d='urn:d'><Work><d:title> A &amp; B "
        "</d:title>"
        "<d:creator><Agent><d:title>Somebody</d:title></Agent></d:creator><d:subject><r:Bag><r:li>food</"
        "r:li><r:li/><r:li> fruit </r:li></r:Bag></d:subject>"
        "<d:description>Long text</d:description></Work></r:RDF></metadata><g><title>A group</title><path "
        "d='M0 0h1'/></g>");
    EXPECT_EQ(file.document->title, "A & B");
    EXPECT_EQ(file.document->subject, "food, fruit");
    EXPECT_EQ(file.document->description, "Long text");
    EXPECT_EQ(OnlyArt(*file.document)->name, "A group");
    EXPECT_EQ(ReadBody("<title>Outer</title><desc>Words</desc>").document->title, "Outer");
    EXPECT_EQ(ReadBody("").document->title, "file");
}

} // namespace
} // namespace workbench
