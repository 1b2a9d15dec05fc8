#include <algorithm>
#include <cstddef>

#include "plugin/objects/object_stream.h"
#include "tests/plugin/capture/capture_fixture.h"
#include "tests/support/text_art.h"

using workbench::Art;

namespace {

class CaptureRefusalTest : public CaptureTest {
protected:
    /// A document in which every operation of a capture has something to do.
    void BuildDocument() {
        globals->layerOption = 1;
        auto& gradient = document().NewGradient("");
        const auto& ink = document().NewCustomColor("Ink", {kCustomFour, {1, 0, 0, 0}, 0});
        gradient.stops[0].color = PaintOf(ink);
        HostColor gradientPaint{};
        gradientPaint.kind = kColorGradient;
        gradientPaint.u.gradient = {};
        gradientPaint.u.gradient.gradient = gradient.handle;
        gradientPaint.u.gradient.matrix = {1, 0, 0, 1, 0, 0};
        auto& inner = AddPattern();
        auto& outer = AddPattern();
        Fill(*outer.art->firstChild, PaintOf(inner));

        Art& group = AddGroup(root());
        group.group()->clipped = true;
        group.tags.push_back({"a", "string", "1"});
        Fill(AddLine(group), gradientPaint);
        Fill(AddLine(AddCompoundPath(group)), PaintOf(outer));
        Art& styled = AddLine(group);
        styled.styledArt = FreeGroup().handle;
        Stroke(styled, PaintOf(ink));
        Art& plugin = *document().AppendArt(kArtPlugin, &root());
        Art& result = *document().AppendArt(kArtGroup, &plugin);
        AddLine(result);
        std::get<workbench::PluginArtData>(plugin.data).result = result.handle;
        auto& mesh = std::get<workbench::MeshData>(document().AppendArt(kArtMesh, &root())->data);
        InitMesh(mesh, workbench::kMeshRing, 1, 1);
        mesh.vertices[0].color = PaintOf(ink);
        Art& placed = *document().AppendArt(kArtPlaced, &root());
        std::get<workbench::PlacedData>(placed.data).file = "/a.tif";
        HostPathStyle paint{};
        paint.fillPaint = 1;
        paint.fill = PaintOf(ink);
        placed.artStyle = document().NewArtStyle(paint).handle;
        Art& raster = *document().AppendArt(kArtRaster, &root());
        std::get<workbench::RasterData>(raster.data).file = "/b.tif";
        auto& image = std::get<workbench::RasterData>(document().AppendArt(kArtRaster, &root())->data);
        image.record = workbench::NewRasterRecord(70, 40, workbench::kSpaceGray);
        image.record.flags = workbench::kRasterColorized;
        for (int i = 0; i < 70 * 40; ++i) image.pixels.push_back(static_cast<uint8_t>(i * 7));
        root().lastChild->artStyle = placed.artStyle;
        Art& text = AddPointText(document(), root(), u"a\u4E9C");
        SetCharacter(text, 0, 1, OddCharacter());
        SetParagraph(text, 0, 2, OddParagraph());
        SetKerning(*TextOf(text).story, 2, 5);
        host().SetFontList(&fonts_);
        document().SelectAll();
    }

    /// An image and a text are there as a whole or not at all; of a mesh at most vertices or edges are
    /// missing.
    static void ExpectSoundObject(std::vector<uint8_t> object,
                                  const std::vector<std::vector<uint8_t>>& whole) {
        const uint32_t type = HeaderOf(object)->type;
        const auto& same = *std::ranges::find_if(
            whole, [type](std::vector<uint8_t> each) { return HeaderOf(each)->type == type; });
        if (type == kTextObject) {
            EXPECT_EQ(object.size(), same.size());
        }
        if (type == kRasterObject) { // how it blends and where it lies may have been refused
            constexpr size_t kInfo = 24, kMatrix = offsetof(AidbRasterObject, matrix);
            constexpr size_t kTilesEnd = kRasterBaseBytes + 6 * 4096;
            ASSERT_GE(object.size(), kTilesEnd);
            EXPECT_TRUE(std::equal(&object[kInfo], &object[kMatrix], &same[kInfo]));
            EXPECT_TRUE(std::equal(&object[kRasterBaseBytes], &object[kTilesEnd], &same[kRasterBaseBytes]));
        }
        if (type == kMeshObject) {
            size_t at = kMeshBaseBytes;
            for (uint32_t i = 0; i < ViewAt<AidbMeshObject>(object)->vertexCount; ++i) {
                const auto* vertex = ViewAt<AidbMeshVertex>(object, at);
                ASSERT_TRUE(vertex && vertex->size <= object.size() - at) << "vertex " << i << " isn't whole";
                const size_t end = at + vertex->size;
                at += sizeof *vertex;
                for (uint32_t k = 0; k < vertex->edgeCount; ++k) {
                    const auto* edge = ViewAt<AidbMeshEdge>(object, at);
                    EXPECT_EQ(edge->size, 24 + 8 * (edge->firstCount + edge->secondCount));
                    at += edge->size;
                }
                EXPECT_EQ(at, end);
            }
            EXPECT_EQ(at, object.size());
        }
    }

    static void ExpectSoundStream() {
        std::vector<std::string> open;
        for (const std::string& text : Stream()) {
            const bool opens = text.find("Art") != std::string::npos && text.find(" /") != std::string::npos;
            if (opens) open.push_back(text.substr(0, text.find(' ')));
            if (text.rfind("/ ", 0) == 0) {
                ASSERT_FALSE(open.empty());
                EXPECT_EQ(text.substr(2), open.back());
                open.pop_back();
            }
        }
        EXPECT_TRUE(open.empty());
    }

    void ExpectSoundCapture(const std::vector<std::vector<uint8_t>>& whole) {
        ASSERT_NE(globals->curRecord, nullptr);
        EXPECT_EQ(globals->captureAll, 0);
        EXPECT_EQ(globals->sideObjects, nullptr);
        const auto objects = ObjectsOf(globals->curRecord);
        EXPECT_LE(objects.size(), whole.size());
        for (const auto& object : objects) ExpectSoundObject(object, whole);
        ExpectSoundStream();
        ReleaseSuites(); // the host reports what was never released
        ASSERT_EQ(host().faults(), Strings());
        HoldSuites();
    }

private:
    TestFonts fonts_ = FewFonts();
};

// Whatever the host refuses, the capture goes on with the next object, keeps its brackets in pairs, asks
// nothing improper of the host and gives everything back.
TEST_F(CaptureRefusalTest, AnyRefusedCallCostsOnlyWhatItWasFor) {
    BuildDocument();
    const uint64_t before = host().callCount();
    Capture();
    const uint64_t calls = host().callCount() - before;
    const auto whole = ObjectsOf(globals->curRecord);
    ASSERT_GT(whole.size(), 20u);
    uint64_t refused = 0;
    for (uint64_t n = 1; n <= calls; ++n) {
        SCOPED_TRACE("call " + std::to_string(n));
        host().RefuseCall(n);
        AidbPostArt();
        refused += host().refused() ? 1 : 0;
        host().RefuseNone();
        ASSERT_NO_FATAL_FAILURE(ExpectSoundCapture(whole));
    }
    // Only mathematics has no result to refuse with.
    EXPECT_GT(refused, calls - calls / 20);
    for (const uint64_t n : {1, 2, 5, 30, 100}) {
        host().RefuseFrom(n);
        AidbPostArt();
        host().RefuseNone();
        ASSERT_NO_FATAL_FAILURE(ExpectSoundCapture(whole));
    }
    host().Close();
    EXPECT_NE(AidbPostArt(), kHostNoError);
    EXPECT_TRUE(Stream().empty());
    OpenEmptyDocument();
}

} // namespace
