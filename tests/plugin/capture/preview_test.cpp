#include "plugin/capture/preview.h"

#include "tests/plugin/capture/capture_fixture.h"

using ::testing::ElementsAre;
using workbench::Art;

namespace {

/// What was asked of the painter, and the pixels that it is to show for it.
struct Drawn {
    const Art* art;
    HostMatrix artToPixels;
};

constexpr int32_t kRowPixels = 260; // rows may be longer than the port is wide

class TestSurface : public workbench::PaintSurface {
public:
    TestSurface(std::vector<Drawn>& drawn, std::vector<uint8_t>& pixels) : drawn_(drawn), pixels_(pixels) {}
    void Fill(const workbench::Document&, const HostColor& color) override {
        EXPECT_EQ(color.kind, kColorGray);
        EXPECT_EQ(color.u.gray.gray, 0);
    }
    void Draw(const workbench::Document&, const Art& art, const HostMatrix& artToPixels) override {
        drawn_.push_back({&art, artToPixels});
    }
    const uint8_t* Pixels(int32_t* rowPixels) override {
        *rowPixels = kRowPixels;
        return pixels_.data();
    }

private:
    std::vector<Drawn>& drawn_;
    std::vector<uint8_t>& pixels_;
};

class TestPainter : public workbench::Painter {
public:
    std::unique_ptr<workbench::PaintSurface> NewSurface(int32_t width, int32_t height) override {
        EXPECT_EQ(width, 256);
        EXPECT_EQ(height, 256);
        return std::make_unique<TestSurface>(drawn, pixels);
    }
    void Set(int x, int y, std::vector<uint8_t> bytes) {
        std::copy(bytes.begin(), bytes.end(), pixels.begin() + (y * kRowPixels + x) * 4);
    }
    std::vector<Drawn> drawn; // in the order of drawing
    std::vector<uint8_t> pixels = std::vector<uint8_t>(kRowPixels * 256 * 4, 0xFF);
};

class PreviewTest : public CaptureTest {
protected:
    void SetUp() override {
        CaptureTest::SetUp();
        host().SetPainter(&painter_);
    }
    void TearDown() override {
        CaptureTest::TearDown();
        host().SetPainter(nullptr);
    }
    std::vector<const Art*> ArtDrawn() {
        std::vector<const Art*> art;
        for (const Drawn& drawn : painter_.drawn) art.push_back(drawn.art);
        return art;
    }
    std::vector<const Art*> DrawAll() {
        painter_.drawn.clear();
        CaptureAll();
        return ArtDrawn();
    }
    /// Where an art point falls in the port.
    HostPoint PixelOf(HostPoint point) {
        const HostMatrix& m = painter_.drawn.at(0).artToPixels;
        return {m.a * point.x + m.c * point.y + m.tx, m.b * point.x + m.d * point.y + m.ty};
    }
    void ExpectPixel(HostPoint point, double x, double y) {
        const HostPoint pixel = PixelOf(point);
        EXPECT_NEAR(pixel.x, x, 1e-9);
        EXPECT_NEAR(pixel.y, y, 1e-9);
    }
    static std::vector<int> PixelAt(int x, int y) {
        const uint8_t* bytes = BlockBytes(globals->curRecord) + kPreviewOffset + (y * 128 + x) * 4;
        return {bytes[0], bytes[1], bytes[2], bytes[3]};
    }

    TestPainter painter_;
};

TEST_F(PreviewTest, ContainersAreDrawnWholeOnlyWhereTheirMembersCantStandAlone) {
    Art& plain = AddGroup(root());
    const Art& member = AddLine(plain);
    Art& clipped = AddGroup(root());
    clipped.group()->clipped = true;
    AddLine(clipped);
    const Art& compound = AddCompoundPath(root());
    AddLine(*document().Find(compound.handle));
    AddLine(root()).path()->guide = true;
    const Art& mesh = *document().AppendArt(kArtMesh, &root());
    EXPECT_THAT(DrawAll(), ElementsAre(&mesh, &compound, &clipped, &member));

    root().group()->clipped = true;
    EXPECT_THAT(DrawAll(), ElementsAre(&mesh, &compound, &clipped, &member));

    document().SelectNone();
    document().Select(*clipped.firstChild, true);
    AddLine(clipped);
    document().Select(*compound.firstChild, true);
    AddLine(*document().Find(compound.handle));
    painter_.drawn.clear();
    Capture();
    EXPECT_THAT(ArtDrawn(), ElementsAre(compound.firstChild, clipped.firstChild));
}

// The picture is framed by the handles, the record by the curve itself.
TEST_F(PreviewTest, ArtIsCentredInTheSquareByTheHostsBounds) {
    const HostPathSegment from{{0, 0}, {0, 0}, {0, 100}, 0}, to{{80, 0}, {80, 100}, {80, 0}, 0};
    const struct {
        std::vector<HostPathSegment> segments;
        HostPoint corner, another, pixel; ///< the port's upper left one; a point and where it falls
    } cases[] = {{{Corner(10, 20), Corner(110, 70)}, {10, 95}, {110, -5}, {256, 256}},
                 {{Corner(10, 20), Corner(60, 120)}, {-15, 120}, {85, 20}, {256, 256}},
                 {{Corner(0, 5), Corner(64, 5)}, {0, 37}, {64, 5}, {256, 128}},
                 {{Corner(7, 5)}, {7, 5}, {8, 4}, {2, 2}}, // also a point has a scale
                 {{from, to}, {-10, 100}, {90, 0}, {256, 256}}};
    for (const auto& each : cases) {
        OpenEmptyDocument();
        Art& path = AddPath(root(), {});
        path.path()->segments = each.segments;
        path.path()->closed = true;
        DrawAll();
        ExpectPixel(each.corner, 0, 0);
        ExpectPixel(each.another, each.pixel.x, each.pixel.y);
    }
    EXPECT_EQ(Header().header.boundsTop, Fix(75));
}

TEST_F(PreviewTest, PixelsAreTruncatedMeansOfFour) {
    painter_.Set(2, 4, {9, 255, 1, 0});
    painter_.Set(3, 4, {9, 255, 1, 0});
    painter_.Set(2, 5, {9, 0, 1, 0});
    painter_.Set(3, 5, {9, 0, 0, 3});
    painter_.Set(254, 254, {9, 0, 0, 0});
    AddLine(root());
    CaptureAll();
    EXPECT_THAT(PixelAt(1, 2), ElementsAre(0, 127, 0, 0));
    EXPECT_THAT(PixelAt(0, 0), ElementsAre(0, 255, 255, 255));
    EXPECT_THAT(PixelAt(127, 127), ElementsAre(0, 191, 191, 191));
    EXPECT_THAT(PixelAt(2, 2), ElementsAre(0, 255, 255, 255));
}

} // namespace
