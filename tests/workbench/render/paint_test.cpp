// Pixels of small documents, worked out by hand.  The page is 100 x 100 points drawn at one pixel a point, so
// pixel (x, y) shows the art around (x + 0.5, 99.5 - y).
#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "workbench/document/document.h"
#include "workbench/render/page_files.h"

namespace workbench {
namespace {

using Color = std::array<int, 3>;

class PaintTest : public ::testing::Test {
protected:
    PaintTest() { document.page = {0, 100, 100, 0}; }

    Art& root() { return *document.LayerAt(0).root; }

    Art& Rectangle(Art& parent, double left, double bottom, double right, double top, const HostColor& fill) {
        Art& art = *document.PrependArt(kArtPath, &parent);
        PathData& path = *art.path();
        for (const HostPoint p : {HostPoint{left, bottom}, {right, bottom}, {right, top}, {left, top}}) {
            path.segments.push_back({p, p, p, 1});
        }
        path.closed = true;
        path.style = DefaultPathStyle();
        path.style.strokePaint = 0;
        path.style.fillPaint = 1;
        path.style.fill = fill;
        return art;
    }

    HostColor GradientPaint(Gradient& gradient, HostPoint origin, double angle, double length,
                            HostMatrix matrix) {
        HostColor color{};
        color.kind = kColorGradient;
        color.u.gradient.gradient = gradient.handle;
        color.u.gradient.origin = origin;
        color.u.gradient.angle = angle;
        color.u.gradient.length = length;
        color.u.gradient.matrix = matrix;
        return color;
    }

    Color At(int x, int y) {
        const PagePicture picture = DrawPage(document, 1);
        const uint8_t* pixel = &picture.pixels[static_cast<size_t>(y * picture.width + x) * 4];
        return {pixel[1], pixel[2], pixel[3]};
    }

    void ExpectNear(Color expected, Color actual, int room = 3) {
        for (size_t i = 0; i < 3; ++i) EXPECT_NEAR(expected[i], actual[i], room) << "channel " << i;
    }

    Document document;
};

constexpr HostMatrix kIdentity{1, 0, 0, 1, 0, 0};
constexpr Color kWhite{255, 255, 255}, kBlack{0, 0, 0}, kRed{255, 0, 0}, kBlue{0, 0, 255};

TEST_F(PaintTest, LayerZeroLiesOnTopAndHiddenLayersShowNothing) {
    Layer& upper = document.InsertLayer(0, "upper");
    Rectangle(*upper.root, 0, 0, 100, 100, ThreeColor(1, 0, 0));
    Rectangle(*document.LayerAt(1).root, 0, 0, 100, 100, ThreeColor(0, 0, 1));
    EXPECT_EQ(At(50, 50), kRed);
    upper.visible = false;
    EXPECT_EQ(At(50, 50), kBlue);
}

TEST_F(PaintTest, AMidpointMovesTheColourHalfWay) {
    Gradient& gradient = document.NewGradient("");
    gradient.stops[0].midpoint = 25;
    Rectangle(root(), 0, 0, 100, 100, GradientPaint(gradient, {0, 0}, 0, 100, kIdentity));
    ExpectNear({128, 128, 128}, At(25, 50), 4);
    ExpectNear({85, 85, 85}, At(50, 50), 4);
}

class PatternPaintTest : public PaintTest {
protected:
    /// A tile of 10 x 10 at (200, 300) in its own coordinates, its left half red, its lower right quarter
    /// blue, the rest bare.
    HostColor PatternOfTiles(const HostMatrix& matrix) {
        Pattern& pattern = document.NewPattern("");
        pattern.art = document.AppendArt(kArtGroup, nullptr);
        Art& tile = Rectangle(*pattern.art, 200, 300, 210, 310, GrayColor(0));
        tile.path()->style.fillPaint = 0;
        Rectangle(*pattern.art, 200, 300, 205, 310, ThreeColor(1, 0, 0));
        Rectangle(*pattern.art, 205, 300, 210, 305, ThreeColor(0, 0, 1));
        HostColor color{};
        color.kind = kColorPattern;
        color.u.pattern.pattern = pattern.handle;
        color.u.pattern.scale = {1, 1};
        color.u.pattern.matrix = matrix;
        return color;
    }
};

// Few tiles are drawn one by one, many from a picture of one: both must look the same.
TEST_F(PatternPaintTest, ManyTilesLookLikeFew) {
    Rectangle(root(), 0, 0, 100, 100, PatternOfTiles({0.4, 0, 0, 0.4, 0, 0}));
    int red = 0, blue = 0, white = 0;
    const PagePicture picture = DrawPage(document, 10);
    for (size_t i = 0; i < picture.pixels.size(); i += 4) {
        const Color color{picture.pixels[i + 1], picture.pixels[i + 2], picture.pixels[i + 3]};
        red += color == kRed;
        blue += color == kBlue;
        white += color == kWhite;
    }
    const double all = static_cast<double>(picture.pixels.size()) / 4;
    EXPECT_NEAR(red / all, 0.5, 0.06);
    EXPECT_NEAR(blue / all, 0.25, 0.06);
    EXPECT_NEAR(white / all, 0.25, 0.06);
}

TEST_F(PaintTest, DeepNestingEndsAndStillShowsItsPath) {
    Art* group = &root();
    for (int i = 0; i < 20000; ++i) group = document.PrependArt(kArtGroup, group);
    Rectangle(*group, 0, 0, 100, 100, ThreeColor(1, 0, 0));
    EXPECT_EQ(At(50, 50), kRed);
}

TEST_F(PaintTest, APageWithoutExtentIsRefused) {
    document.page = {0, 0, 0, 0};
    std::string error;
    EXPECT_TRUE(PngOfPage(document, 1, &error).empty());
    EXPECT_FALSE(error.empty());
    EXPECT_TRUE(PdfOfPage(document, &error).empty());
}

} // namespace
} // namespace workbench
