// Linked pictures on a page of 100 x 100 points, one pixel a point.
#include <cairo.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "workbench/render/page_files.h"

namespace workbench {
namespace {

namespace fs = std::filesystem;

class PlacedTest : public ::testing::Test {
protected:
    PlacedTest() {
        std::string pattern = (fs::temp_directory_path() / "placed-XXXXXX").string();
        folder = mkdtemp(pattern.data());
        document.page = {0, 100, 100, 0};
    }
    ~PlacedTest() override { fs::remove_all(folder); }

    /// Red above, blue below, of 2 x 4 pixels.
    std::string Png() {
        cairo_surface_t* image = cairo_image_surface_create(CAIRO_FORMAT_RGB24, 2, 4);
        cairo_t* context = cairo_create(image);
        cairo_set_source_rgb(context, 1, 0, 0);
        cairo_rectangle(context, 0, 0, 2, 2);
        cairo_fill(context);
        cairo_set_source_rgb(context, 0, 0, 1);
        cairo_rectangle(context, 0, 2, 2, 2);
        cairo_fill(context);
        cairo_destroy(context);
        const std::string file = (folder / "a.png").string();
        cairo_surface_write_to_png(image, file.c_str());
        cairo_surface_destroy(image);
        return file;
    }

    std::string Write(const char* name, const std::string& bytes) {
        std::ofstream(folder / name, std::ios::binary) << bytes;
        return (folder / name).string();
    }

    PlacedData& Place(const std::string& file, double width, double height, const HostMatrix& matrix) {
        Art* art = document.PrependArt(kArtPlaced, document.LayerAt(0).root);
        auto& placed = std::get<PlacedData>(art->data);
        placed.file = file;
        placed.width = width;
        placed.height = height;
        placed.matrix = matrix;
        return placed;
    }

    uint32_t At(int x, int y) {
        const PagePicture picture = DrawPage(document, 1);
        const uint8_t* pixel = &picture.pixels[static_cast<size_t>(y * picture.width + x) * 4];
        return static_cast<uint32_t>(pixel[1]) << 16 | static_cast<uint32_t>(pixel[2]) << 8 | pixel[3];
    }

    fs::path folder;
    Document document;
};

constexpr uint32_t kRedDot = 0xFF0000, kBlueDot = 0x0000FF, kWhiteDot = 0xFFFFFF, kGreenDot = 0x008000;

TEST_F(PlacedTest, APictureStandsUprightInItsOwnSpaceAndTurnsWithTheMatrix) {
    const HostMatrix upright{20, 0, 0, 10, 10, 20};
    PlacedData& placed = Place(Png(), 2, 4, upright); // covers (10, 20) to (50, 60), y upward
    EXPECT_EQ(At(11, 41), kRedDot);
    EXPECT_EQ(At(48, 52), kRedDot);
    EXPECT_EQ(At(11, 70), kBlueDot);
    EXPECT_EQ(At(8, 50), kWhiteDot);
    EXPECT_EQ(At(30, 82), kWhiteDot);
    placed.matrix = {0, 20, -10, 0, 50, 20}; // a quarter turn counter-clockwise: the upper half lies left
    EXPECT_EQ(At(15, 60), kRedDot);
    EXPECT_EQ(At(45, 60), kBlueDot);
}

TEST_F(PlacedTest, ADrawingIsAPictureToo) {
    const std::string svg =
        "<svg xmlns='http://www.w3.org/2000/svg' width='10pt' height='10pt'>"
        "<rect width='400' height='5pt' fill='green'/></svg>";
    Place(Write("a.svg", svg), 10, 10, {4, 0, 0, 4, 30, 30});
    EXPECT_EQ(At(50, 35), kGreenDot);
    EXPECT_EQ(At(50, 65), kWhiteDot);
    EXPECT_EQ(At(90, 35), kWhiteDot); // what lies outside of the drawing's page is cut off
}

// A box with its diagonals tells that something is missing; the rest of the page is drawn all the same.
TEST_F(PlacedTest, WhatCantBeShownIsACrossedBox) {
    const std::string png = Png();
    std::ifstream whole(png, std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(whole)), {});
    const std::string cut = Write("cut.png", bytes.substr(0, bytes.size() / 2));
    const std::string jpeg =
        Write("cut.jpg", std::string("\xFF\xD8\xFF\xC0\0\x0B\x08\0\x10\0\x10\x01\1\x11\0", 15));
    for (const std::string& file : {cut, jpeg, (folder / "gone.png").string(), folder.string(),
                                    std::string("/dev/zero"), std::string()}) {
        PlacedData& placed = Place(file, 40, 40, {1, 0, 0, 1, 30, 30});
        EXPECT_NE(At(50, 50), kWhiteDot) << file; // where the diagonals meet
        EXPECT_EQ(At(50, 40), kWhiteDot) << file;
        placed.matrix = {1, 1, 1, 1, 0, 0}; // flat: nothing to see, and nothing ends
        Place(png, 2, 4, {1, 0, 0, 1, 0, 0});
        EXPECT_EQ(At(1, 99), kBlueDot) << file;
        while (Art* art = document.LayerAt(0).root->firstChild) document.DisposeArt(art);
    }
}

} // namespace
} // namespace workbench
