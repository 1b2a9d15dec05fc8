// What SVG has no words for: tags, and art that is written as groups of our own.
#include "tests/workbench/svg/svg_helpers.h"
#include "workbench/svg/svg_writer.h"

namespace workbench {
namespace {

std::string Tags(const Art* art) {
    std::string text;
    for (const Tag& tag : art->tags) text += tag.name + "(" + tag.type + ")=" + tag.value + ";";
    return text;
}

void Replace(std::string* text, const std::string& from, const std::string& to) {
    const size_t at = text->find(from);
    ASSERT_NE(at, std::string::npos) << from << " in\n" << *text;
    text->replace(at, from.size(), to);
}

Document& NewMesh(Document& document) {
    Art* art = document.PrependArt(kArtMesh, document.LayerAt(0).root);
    art->name = "mesh";
    auto& mesh = std::get<MeshData>(art->data);
    InitMesh(mesh, kMeshGrid, 1, 1);
    mesh.vertices[3].position = {50, 50};
    return document;
}

constexpr char kRect[] = "width='9' height='9'";

TEST(Tags, DataAttributesOfAnyFileAreTags) {
    const std::string data = " data-a='1' data-B.c='x &amp; y' data-='no name' dataset='none' data-a2=''";
    const ReadFile file = ReadBody("<g id='g'" + data + "><rect id='r' " + kRect + data + "/></g>" +
                                   "<use id='u' href='#r' x='20' data-own='u'/>");
    const std::string tags = "a(string)=1;B.c(string)=x & y;a2(string)=;";
    EXPECT_EQ(Tags(Named(*file.document, "g")), tags);
    EXPECT_EQ(Tags(Named(*file.document, "r")), tags);
    EXPECT_EQ(Tags(Named(*file.document, "u")), "own(string)=u;");
}

// Our list fixes order and odd names; what another program did to the data attributes counts.
TEST(Tags, TheListYieldsToWhatOthersChanged) {
    Document document;
    Art* art = document.PrependArt(kArtPath, document.LayerAt(0).root);
    art->path()->segments.resize(2);
    art->tags = {{"odd name", "real", "2.5"}, {"b", "string", "B"}, {"c", "string", "C"}};
    std::string text = WriteSvg(document);
    EXPECT_EQ(Tags(OnlyArt(*ReadText(text).document)), "odd name(real)=2.5;b(string)=B;c(string)=C;");
    Replace(&text, " data-b=\"B\"", "");
    Replace(&text, "data-c=\"C\"", "data-c=\"changed\" data-d=\"D\"");
    EXPECT_EQ(Tags(OnlyArt(*ReadText(text).document)), "odd name(real)=2.5;c(string)=changed;d(string)=D;");
}

// So do a path's segments and inks, which SVG has other words for.
TEST(Paths, AreWhatOthersChangedThemTo) {
    Document document;
    Art* art = document.PrependArt(kArtPath, document.LayerAt(0).root);
    for (const HostPoint p : {HostPoint{0, 0}, HostPoint{9, 0}, HostPoint{9, 9}})
        art->path()->segments.push_back({p, {p.x - 1, 1}, p, 0});
    art->path()->style.fillPaint = 1;
    art->path()->style.fill = FourColor(1, 0, 0, 0);
    std::string text = WriteSvg(document);
    ASSERT_NE(text.find("vlq:segments"), std::string::npos);
    Replace(&text, "d=\"M", "d=\"M5 5L");
    Replace(&text, "fill=\"#00ffff\"", "fill=\"#ff0000\"");
    const ReadFile file = ReadText(text);
    EXPECT_EQ(OnlyArt(*file.document)->path()->segments[0].anchor.x, 5);
    EXPECT_EQ(ColorOf(*file.document, OnlyArt(*file.document)->path()->style.fill), "three 1 0 0");
}

TEST(Meshes, AreThePictureOnceAnotherProgramChangedIt) {
    Document document;
    std::string text = WriteSvg(NewMesh(document));
    EXPECT_EQ(OnlyArt(*ReadText(text).document)->kind, kArtMesh);
    // Another form of the same text, and another place of the whole.
    Replace(&text, "id=\"mesh\"", "id=\"mesh\"\n  transform=\"translate(5 7)\"");
    const ReadFile moved = ReadText(text);
    const auto& mesh = std::get<MeshData>(OnlyArt(*moved.document)->data);
    EXPECT_EQ(mesh.vertices[3].position.x, 55);
    EXPECT_EQ(mesh.vertices[3].position.y, 57);
    Replace(&text, "fill=\"#ffffff\"", "fill=\"#ff0000\"");
    const ReadFile changed = ReadText(text);
    EXPECT_EQ(OnlyArt(*changed.document)->kind, kArtGroup);
    EXPECT_EQ(OnlyArt(*changed.document)->lastChild->kind, kArtPath);
}

TEST(Meshes, DamagedOnesAreCountedAndTheirPictureStays) {
    const std::pair<const char*, const char*> damages[] = {{"grid 1 1", "grid 1 2"},
                                                           {"grid 1 1", "grid 900000 1"},
                                                           {"grid 1 1", "ring 1 1"},
                                                           {"at=\"50 50\"", "at=\"50\""},
                                                           {"points=\"0 0 0 0\"", "points=\"0 0 0\""},
                                                           {"<vlq:edge points=\"0 0 0 0\"/>", ""}};
    for (const auto& [from, to] : damages) {
        Document document;
        std::string text = WriteSvg(NewMesh(document));
        Replace(&text, from, to);
        const ReadFile file = ReadText(text);
        ASSERT_TRUE(file.document) << file.error;
        EXPECT_EQ(file.report.losses, (std::map<std::string, int>{{"damaged mesh", 1}})) << to;
        EXPECT_EQ(OnlyArt(*file.document)->lastChild->kind, kArtPath);
    }
}

// A part that another program put more into, and parts that are gone.
TEST(ProducedArt, PartsAreWhatIsInThemNow) {
    const std::string start =
        "<svg xmlns:o='urn:velquorne:document' xmlns='http://www.w3.org/2000/svg' width='9' height='9'>";
    const auto structure = [&](const std::string& body, const Art** art, ReadFile* file) {
        *file = ReadText(start + body + "</svg>");
        *art = file->document ? file->document->LayerAt(0).root->firstChild : nullptr;
        return *art ? Structure(**art) : "none";
    };
    const std::string rect = "<rect width='9' height='9'/>";
    ReadFile file;
    const Art* art = nullptr;
    EXPECT_EQ(structure("<g o:styled='true'><g o:part='art' display='none'>" + rect +
                            "</g><g o:part='drawn' transform='scale(2)'>" + rect + rect + "</g></g>",
                        &art, &file),
              "p");
    ASSERT_TRUE(file.document->Find(art->styledArt));
    EXPECT_FALSE(art->hidden);
    EXPECT_EQ(Structure(*file.document->Find(art->styledArt)), "g(p,p)");
    EXPECT_EQ(
        structure("<g o:styled='true'><g o:part='art' display='none'>" + rect + "</g></g>", &art, &file),
        "g(g(p))");
    EXPECT_EQ(structure("<g o:plugin='x' o:version='1e99 -3' o:data='%00%zz'><g o:part='edit'/>" + rect +
                            "<g o:part='result'>" + rect + rect + "</g></g>",
                        &art, &file),
              "g(g(p,p),p)");
    const auto& plugin = std::get<PluginArtData>(art->data);
    EXPECT_EQ(plugin.result, art->firstChild->handle);
    EXPECT_EQ(plugin.edit, nullptr);
    EXPECT_EQ(plugin.major, INT32_MAX);
    EXPECT_EQ(plugin.minor, -3);
    EXPECT_EQ(plugin.data, (std::vector<uint8_t>{0, '%', 'z', 'z'}));
}

} // namespace
} // namespace workbench
