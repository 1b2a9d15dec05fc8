#include "tests/plugin/capture/capture_fixture.h"

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
        document().SelectAll();
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
};

// Whatever the host refuses, the capture goes on with the next object, keeps its brackets in pairs, asks
// nothing improper of the host and gives everything back.
TEST_F(CaptureRefusalTest, AnyRefusedCallCostsOnlyWhatItWasFor) {
    BuildDocument();
    const uint64_t before = host().callCount();
    Capture();
    const uint64_t calls = host().callCount() - before;
    ExpectSoundStream();
    const size_t objects = Stream().size();
    ASSERT_GT(objects, 20u);

    uint64_t refused = 0;
    for (uint64_t n = 1; n <= calls; ++n) {
        SCOPED_TRACE("call " + std::to_string(n));
        host().RefuseCall(n);
        AidbPostArt();
        refused += host().refused() ? 1 : 0;
        host().RefuseNone();
        ASSERT_NE(globals->curRecord, nullptr);
        EXPECT_EQ(globals->captureAll, 0);
        EXPECT_EQ(globals->sideObjects, nullptr);
        EXPECT_LE(Stream().size(), objects);
        ExpectSoundStream();
        ASSERT_TRUE(host().faults().empty()) << host().faults().front();
    }
    // Only mathematics has no result to refuse with.
    EXPECT_GT(refused, calls - calls / 20);
}

TEST_F(CaptureRefusalTest, AHostThatRefusesEverythingGivesAnEmptyRecord) {
    BuildDocument();
    for (uint64_t n : {1, 2, 5, 30, 100}) {
        host().RefuseFrom(n);
        AidbPostArt();
        host().RefuseNone();
        ASSERT_NE(globals->curRecord, nullptr);
        EXPECT_TRUE(host().faults().empty());
        ExpectSoundStream();
    }
}

TEST_F(CaptureRefusalTest, WithoutADocumentTheRecordIsEmpty) {
    host().Close();
    EXPECT_NE(AidbPostArt(), kHostNoError);
    EXPECT_TRUE(Stream().empty());
    OpenEmptyDocument();
}

} // namespace
