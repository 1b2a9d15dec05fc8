#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

// jpeglib.h needs <cstdio>'s types without including them.
#include <jpeglib.h>
#include <cstdio>

#include <cairo.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "tests/app/run_command.h"
#include "tests/support/temporary_folder.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;
namespace fs = std::filesystem;

void WritePng(const fs::path& path, int width, int height) {
    cairo_surface_t* image = cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height);
    cairo_t* context = cairo_create(image);
    cairo_set_source_rgb(context, 1, 0, 0);
    cairo_paint(context);
    cairo_destroy(context);
    ASSERT_EQ(cairo_surface_write_to_png(image, path.c_str()), CAIRO_STATUS_SUCCESS);
    cairo_surface_destroy(image);
}

void WriteJpeg(const fs::path& path, unsigned width, unsigned height) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    ASSERT_NE(file, nullptr);
    jpeg_compress_struct jpeg{};
    jpeg_error_mgr errors{};
    jpeg.err = jpeg_std_error(&errors);
    jpeg_create_compress(&jpeg);
    jpeg_stdio_dest(&jpeg, file);
    jpeg.image_width = width;
    jpeg.image_height = height;
    jpeg.input_components = 1;
    jpeg.in_color_space = JCS_GRAYSCALE;
    jpeg_set_defaults(&jpeg);
    jpeg_start_compress(&jpeg, TRUE);
    std::vector<JSAMPLE> row(width, 40);
    JSAMPROW rows[] = {row.data()};
    while (jpeg.next_scanline < jpeg.image_height) jpeg_write_scanlines(&jpeg, rows, 1);
    jpeg_finish_compress(&jpeg);
    jpeg_destroy_compress(&jpeg);
    std::fclose(file);
}

/// A drawing of 200 x 100 points with a PNG turned by 30 degrees and a JPEG in a box of its own.
constexpr char kDrawing[] =
    R"(<svg xmlns="http://www.w3.org/2000/svg" width="200pt" height="100pt" viewBox="0 0 200 100">)"
    R"(<rect x="1" y="1" width="190" height="90" fill="none" stroke="#000"/>)"
    R"svg(<image href="pictures/red%20one.png" x="20" y="10" width="40" height="30" transform="rotate(30)"/>)svg"
    R"(<image xmlns:x="http://www.w3.org/1999/xlink" x:href="../shared/gray.jpg" x="100" y="20" height="32"/>)"
    R"(</svg>)";

class LinkedPicturesTest : public testing::Test {
protected:
    void SetUp() override {
        setenv("XDG_DATA_HOME", (folder.path() / "data").c_str(), 1);
        fs::create_directories(folder.path() / "in/pictures");
        fs::create_directories(folder.path() / "shared");
        WritePng(folder.path() / "in/pictures/red one.png", 8, 4);
        WriteJpeg(folder.path() / "shared/gray.jpg", 16, 8);
        WriteText(Path("in/drawing.svg"), kDrawing);
    }

    std::string Path(const std::string& name) const { return (folder.path() / name).string(); }

    CommandResult Place(const std::string& out) {
        return RunCommand(
            {"place", "--db", Path("db"), "G", "0", "--at", "0,0", "--origin", "2", "--out", Path(out)});
    }

    static json PlacedIn(const json& page) {
        json placed = json::array();
        for (const json& art : page["layers"][0]["art"])
            if (art["kind"] == "placed") placed.push_back(art);
        return placed;
    }
    json Read(const std::string& name) const { return json::parse(std::ifstream(Path(name))); }

    TemporaryFolder folder;
};

TEST_F(LinkedPicturesTest, AreStoredBesideTheRecordThenPooledAndPlacedFromThere) {
    const CommandResult stored =
        RunCommand({"register", Path("in/drawing.svg"), "--db", Path("db"), "--group", "G"});
    ASSERT_EQ(stored.code, 0) << stored.err;
    EXPECT_EQ(stored.err, "");
    EXPECT_TRUE(fs::exists(Path("db/G.DAT/0/red one.png")));
    EXPECT_TRUE(fs::exists(Path("db/G.DAT/0/gray.jpg")));
    // From here on the database must do without the drawing's own pictures.
    fs::remove_all(Path("in/pictures"));
    fs::remove_all(Path("shared"));
    ASSERT_EQ(RunCommand({"export", "--db", Path("db"), "--out", Path("out"), "--as", "svg"}).code, 0);

    json before;
    for (const char* name : {"first.json", "second.json"}) {
        const CommandResult placed = Place(name);
        ASSERT_EQ(placed.code, 0) << placed.err;
        const json art = PlacedIn(Read(name));
        ASSERT_EQ(art.size(), 2U);
        EXPECT_EQ(art[1]["file"], Path("db/_%%image/red one.png"));
        EXPECT_EQ(art[0]["file"], Path("db/_%%image/gray.jpg"));
        EXPECT_EQ(art[1]["size"], json({8.0, 4.0}));
        if (!before.is_null()) {
            EXPECT_EQ(art, before);
        }
        before = art;
    }
    EXPECT_TRUE(fs::exists(Path("db/G.DAT/0/red one.lnk")));
    EXPECT_FALSE(fs::exists(Path("db/G.DAT/0/red one.png")));
    // What was exported before has pictures of its own.
    ASSERT_EQ(RunCommand({"convert", Path("out/G/drawing.svg"), "--out", Path("out.json")}).code, 0);
    EXPECT_EQ(PlacedIn(Read("out.json"))[1]["file"], Path("out/G/drawing - red one.png"));
    // 40 by 20 units in the box's middle, turned by 30 degrees clockwise: 5 units for each pixel.
    const json matrix = before[1]["matrix"];
    EXPECT_NEAR(matrix[0].get<double>(), 5 * std::cos(M_PI / 6), 1e-4);
    EXPECT_NEAR(matrix[1].get<double>(), -5 * std::sin(M_PI / 6), 1e-4);
    EXPECT_NEAR(before[0]["matrix"][0].get<double>(), 4, 1e-4);

    // Our own SVG leads back to the same files, and a picture that is gone is said.
    ASSERT_EQ(Place("out.svg").code, 0);
    EXPECT_EQ(RunCommand({"convert", Path("out.svg"), "--out", Path("again.json")}).code, 0);
    EXPECT_EQ(PlacedIn(Read("again.json")), before);
    fs::remove(Path("db/_%%image/gray.jpg"));
    const CommandResult gone = Place("gone.json");
    EXPECT_EQ(gone.code, 1);
    EXPECT_THAT(gone.err, HasSubstr("gray.jpg"));
}

TEST_F(LinkedPicturesTest, GoThroughTheRecordAndBack) {
    const CommandResult result = RunCommand({"roundtrip", Path("in/drawing.svg")});
    EXPECT_EQ(result.code, 0) << result.out << result.err;
    EXPECT_THAT(result.out, HasSubstr("same"));
}

TEST_F(LinkedPicturesTest, AnImportFollowsNoLinkOutOfItsFolder) {
    const CommandResult result = RunCommand({"import", Path("in"), "--db", Path("db")});
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_TRUE(fs::exists(Path("db/in.DAT/0/red one.png"))) << result.out << result.err;
    EXPECT_FALSE(fs::exists(Path("db/in.DAT/0/gray.jpg")));
}

TEST_F(LinkedPicturesTest, WhatIsNoPictureIsRefusedWithoutWaiting) {
    ASSERT_EQ(mkfifo(Path("in/pipe.png").c_str(), 0600), 0);
    WriteText(Path("in/secret.png"), "root:x:0:0\n");
    WriteText(Path("in/self.svg"), R"(<svg xmlns="http://www.w3.org/2000/svg" width="9" height="9">)"
                                   R"(<image href="self.svg" width="5" height="5"/></svg>)");
    // 30000 x 30000 pixels in a file of a few bytes.
    WriteText(Path("in/bomb.png"),
              std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\x75\x30\0\0\x75\x30\x08\2", 26));
    std::string links;
    for (const char* href : {"pipe.png", "/dev/zero", "secret.png", "bomb.png", ".", "http://host/a.png",
                             "data:image/png;base64,AAAA", "gone.png", "self.svg"})
        links += std::string("<image width='5' height='5' href='") + href + "'/>";
    WriteText(Path("in/hostile.svg"),
              "<svg xmlns='http://www.w3.org/2000/svg' width='9pt' height='9pt'>" + links + "</svg>");
    const CommandResult result =
        RunCommand({"convert", Path("in/hostile.svg"), "--out", Path("out.json"), Path("out.png")});
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_THAT(result.err, HasSubstr("image 1, image file that is no picture 5, image that is no file 1, "
                                      "missing image file 1"));
    EXPECT_EQ(PlacedIn(Read("out.json")).size(), 2U);
}

} // namespace
