#include <gtest/gtest.h>

#include "workbench/document/document.h"

namespace workbench {
namespace {

HostPathSegment Corner(double x, double y) {
    return {{x, y}, {x, y}, {x, y}, 1};
}

class BoundsTest : public ::testing::Test {
protected:
    Art* NewPath(std::vector<HostPathSegment> segments, bool closed, Art* parent = nullptr) {
        Art* art = document_.AppendArt(kArtPath, parent ? parent : document_.CurrentLayer().root);
        art->path()->segments = std::move(segments);
        art->path()->closed = closed;
        return art;
    }
    void ExpectBounds(const Art& art, double left, double top, double right, double bottom) {
        HostRect rect{};
        ASSERT_TRUE(document_.Bounds(art, &rect));
        EXPECT_DOUBLE_EQ(rect.left, left);
        EXPECT_DOUBLE_EQ(rect.top, top);
        EXPECT_DOUBLE_EQ(rect.right, right);
        EXPECT_DOUBLE_EQ(rect.bottom, bottom);
    }

    Document document_;
};

// The first in handle and the last out handle belong to the closing curve, which an open path hasn't got.
TEST_F(BoundsTest, HandlesCountOnlyWhereACurveIs) {
    const std::vector<HostPathSegment> segments{{{0, 0}, {-50, 0}, {0, 20}, 0},
                                                {{10, 0}, {10, -5}, {70, 0}, 0}};
    ExpectBounds(*NewPath(segments, false), 0, 20, 10, -5);
    ExpectBounds(*NewPath(segments, true), -50, 20, 70, -5);
    ExpectBounds(*NewPath({{{3, 4}, {-9, 0}, {9, 9}, 0}}, false), 3, 4, 3, 4);
    ExpectBounds(*NewPath({{{3, 4}, {-9, 0}, {9, 9}, 0}}, true), -9, 9, 9, 0);
}

TEST_F(BoundsTest, ArtWithoutExtentHasNone) {
    HostRect rect{1, 2, 3, 4};
    EXPECT_FALSE(document_.Bounds(*document_.CurrentLayer().root, &rect));
    EXPECT_FALSE(document_.Bounds(*NewPath({}, true), &rect));
    EXPECT_FALSE(document_.Bounds(*document_.AppendArt(kArtRaster, nullptr), &rect));
    EXPECT_EQ(rect.left, 1);
}

TEST_F(BoundsTest, AClippedGroupIsAsLargeAsItsClippingPath) {
    Art* group = document_.AppendArt(kArtGroup, document_.CurrentLayer().root);
    NewPath({Corner(-100, -100), Corner(100, 100)}, false, group);
    ExpectBounds(*document_.CurrentLayer().root, -100, 100, 100, -100);
    Art* compound = document_.PrependArt(kArtCompoundPath, group);
    NewPath({Corner(1, 1), Corner(2, 2)}, true, compound);
    NewPath({Corner(5, 0), Corner(6, 3)}, true, compound);
    group->group()->clipped = true;
    ExpectBounds(*group, 1, 3, 6, 0);
    ExpectBounds(*document_.CurrentLayer().root, 1, 3, 6, 0);
}

TEST_F(BoundsTest, PicturesAreMeasuredThroughTheirMatrix) {
    Art* placed = document_.AppendArt(kArtPlaced, nullptr);
    auto& link = std::get<PlacedData>(placed->data);
    link.matrix = {0, 2, -2, 0, 100, 50}; // turned left, twice as large
    link.width = 10, link.height = 30;
    ExpectBounds(*placed, 40, 70, 100, 50);

    Art* raster = document_.AppendArt(kArtRaster, nullptr);
    auto& image = std::get<RasterData>(raster->data);
    image.matrix = {0.5, 0, 0, 0.5, 10, 20}; // upright: the translation is the upper left corner
    image.record = NewRasterRecord(8, 4, kSpaceThree);
    ExpectBounds(*raster, 10, 20, 14, 18);
    image.record.left = -2, image.record.bottom = 6; // pixels count from the matrix's own (0, 0)
    ExpectBounds(*raster, 9, 20, 14, 17);
}

} // namespace
} // namespace workbench
