#include <gmock/gmock.h>
#include <sys/stat.h>

#include <cmath>

#include "app/sample_pictures.h"
#include "tests/app/run_command.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;
namespace fs = std::filesystem;

/// A drawing of 200 x 100 points with a PNG turned by 30 degrees and a JPEG in a box of its own.
constexpr char kDrawing[] =
    R"(<svg xmlns="http://www.w3.org/2000/svg" width="200pt" height="100pt" viewBox="0 0 200 100">)"
    R"(<rect x="1" y="1" width="190" height="90" fill="none" stroke="#000"/>)"
    R"svg(<image href="pictures/red%20one.png" x="20" y="10" width="40" height="30" transform="rotate(30)"/>)svg"
    R"(<image xmlns:x="http://www.w3.org/1999/xlink" x:href="../shared/gray.jpg" x="100" y="20" height="32"/>)"
    R"(</svg>)";

class LinkedPicturesTest : public CommandTest {
protected:
    void SetUp() override {
        fs::create_directories(folder.path() / "in/pictures");
        fs::create_directories(folder.path() / "shared");
        std::string error;
        ASSERT_TRUE(WriteSamplePictures({Path("in/pictures/red one.png"), Path("shared/gray.jpg")}, &error));
        WriteText(Path("in/drawing.svg"), kDrawing);
    }

    CommandResult Place(const std::string& out) {
        return Run({"place", "G", "0", "--at", "0,0", "--origin", "2", "--out", Path(out)});
    }

    json PlacedIn(const std::string& file) {
        json placed = json::array();
        const json page = ReadJson(file);
        for (const json& art : page["layers"][0]["art"])
            if (art["kind"] == "placed") placed.push_back(art);
        return placed;
    }
};

TEST_F(LinkedPicturesTest, AreStoredBesideTheRecordThenPooledAndPlacedFromThere) {
    EXPECT_EQ(Done({"register", Path("in/drawing.svg"), "--group", "G"}).err, "");
    EXPECT_TRUE(fs::exists(Path("db/G.DAT/0/red one.png")));
    EXPECT_TRUE(fs::exists(Path("db/G.DAT/0/gray.jpg")));
    // From here on the database must do without the drawing's own pictures.
    fs::remove_all(Path("in/pictures"));
    fs::remove_all(Path("shared"));
    Done({"export", "--out", Path("out"), "--as", "svg"});

    json before;
    for (const char* name : {"first.json", "second.json"}) {
        const CommandResult placed = Place(name);
        ASSERT_EQ(placed.code, 0) << placed.err;
        const json art = PlacedIn(name);
        ASSERT_EQ(art.size(), 2U);
        EXPECT_EQ(art[1]["file"], Path("db/_%%image/red one.png"));
        EXPECT_EQ(art[0]["file"], Path("db/_%%image/gray.jpg"));
        EXPECT_EQ(art[1]["size"], json({96.0, 64.0}));
        if (!before.is_null()) {
            EXPECT_EQ(art, before);
        }
        before = art;
    }
    EXPECT_TRUE(fs::exists(Path("db/G.DAT/0/red one.lnk")));
    EXPECT_FALSE(fs::exists(Path("db/G.DAT/0/red one.png")));
    // What was exported before has pictures of its own.
    ASSERT_EQ(RunCommand({"convert", Path("out/G/drawing.svg"), "--out", Path("out.json")}).code, 0);
    EXPECT_EQ(PlacedIn("out.json")[1]["file"], Path("out/G/drawing - red one.png"));
    // As wide as the box, turned by 30 degrees clockwise: 5 units for 12 pixels.
    const json matrix = before[1]["matrix"];
    EXPECT_NEAR(matrix[0].get<double>(), 5 / 12.0 * std::cos(M_PI / 6), 1e-4);
    EXPECT_NEAR(matrix[1].get<double>(), -5 / 12.0 * std::sin(M_PI / 6), 1e-4);
    EXPECT_NEAR(before[0]["matrix"][0].get<double>(), 0.5, 1e-4);

    // Our own SVG leads back to the same files, and a picture that is gone is said.
    ASSERT_EQ(Place("out.svg").code, 0);
    EXPECT_EQ(RunCommand({"convert", Path("out.svg"), "--out", Path("again.json")}).code, 0);
    EXPECT_EQ(PlacedIn("again.json"), before);
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
    Done({"import", Path("in")});
    EXPECT_TRUE(fs::exists(Path("db/in.DAT/0/red one.png")));
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
    EXPECT_EQ(PlacedIn("out.json").size(), 2U);
}

} // namespace
