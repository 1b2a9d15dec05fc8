// Notes that name files, and the art that the host makes of them.
#include <cstring>
#include <fstream>

#include "plugin/rebuild/placed_rebuild.h"
#include "tests/plugin/rebuild/load_fixture.h"
#include "workbench/document/pictures.h"

using workbench::Art;
using workbench::PlacedData;

namespace {

/// Every file whose name ends in .tif is a picture of 20 by 10.
class TifFiles : public workbench::PictureFiles {
public:
    std::optional<workbench::PictureSize> SizeOf(const std::string& file) override {
        if (!file.ends_with(".tif")) return std::nullopt;
        return workbench::PictureSize{20, 10};
    }
};

} // namespace

class PlacedRebuildTest : public LoadFixture {
protected:
    void SetUp() override {
        LoadFixture::SetUp();
        host().SetPictureFiles(&pictures_);
    }

    void StoreFile(const char* name) {
        std::filesystem::create_directories(rootOnDisk() / "Folder/Group.DAT/0");
        std::ofstream(rootOnDisk() / "Folder/Group.DAT/0" / name) << "pixels";
    }

    const PlacedData& Placed() { return std::get<PlacedData>(First().data); }

private:
    TifFiles pictures_;
};

TEST_F(PlacedRebuildTest, ANoteIsTakenApartByKeywordsAndMissingNumbersAreZero) {
    const PlacedNote note = ParsePlacedNote(
        "PlacedFile = \"a = b, c.tif\"\r'PlacedFile = \"no.tif\"\r\r"
        "PlacedMatrix = 2, 0.5,-0.5\rPlaceOptions = 3, 7, -2\rplacedfile = \"no.tif\"\r");
    EXPECT_EQ(note.storedName, "a = b, c.tif");
    EXPECT_EQ(note.matrix.a, 2);
    EXPECT_EQ(note.matrix.c, -0.5);
    EXPECT_EQ(note.matrix.d, 0); // the identity's 1 doesn't stay
    EXPECT_EQ(note.method, 3);
    EXPECT_EQ(note.alignment, 7);
    EXPECT_EQ(note.clip, 1);
    EXPECT_EQ(ParsePlacedNote("PlaceOptions = 1\r").matrix.d, 1);
}

TEST_F(PlacedRebuildTest, TheCentreLandsOnTheStoredPlaceWithinTheOpenGroupAndTheFileIsPooled) {
    StoreFile("a.tif");
    Note("GroupArt /");
    Note("PlacedFile = \"a.tif\"\rPlacedMatrix = 0, 2, -1, 0, 30, 40\rPlaceOptions = 1, 2, 1\r");
    Path(7);
    Note("/ GroupArt");
    globals->placePoint = {1000, 500};
    ASSERT_EQ(Load(), kHostNoError);
    ASSERT_EQ(Page(), "g(x() p7)");
    const Art& art = *First().firstChild;
    const auto& placed = std::get<PlacedData>(art.data);
    // A quarter turn of 20 by 10 at the scales 2 and 1: 10 wide, 40 high.
    HostRect bounds{};
    document().Bounds(art, &bounds);
    EXPECT_DOUBLE_EQ(bounds.left, 1025);
    EXPECT_DOUBLE_EQ(bounds.right, 1035);
    EXPECT_DOUBLE_EQ(bounds.bottom, 520);
    EXPECT_DOUBLE_EQ(bounds.top, 560);
    EXPECT_EQ(placed.method, 1);
    EXPECT_EQ(placed.alignment, 2);
    EXPECT_EQ(placed.clip, 1);
    EXPECT_TRUE(std::filesystem::exists(rootOnDisk() / "_%%image/a.tif"));
    EXPECT_TRUE(placed.file.ends_with("_%%image/a.tif")) << placed.file;
}

TEST_F(PlacedRebuildTest, ALookMovesNothingAndFindsThePooledFileAfterAPlacement) {
    StoreFile("a.tif");
    Note("PlacedFile = \"a.tif\"\r");
    Store();
    const auto look = [&] { return AidbLoadArt("\\Folder\\Group", 0, LinkedFileUse::kLook); };
    ASSERT_EQ(look(), kHostNoError);
    EXPECT_TRUE(Placed().file.ends_with("Group.DAT/0/a.tif")) << Placed().file;
    EXPECT_FALSE(std::filesystem::exists(rootOnDisk() / "_%%image"));
    ASSERT_EQ(Load(), kHostNoError);
    ASSERT_EQ(look(), kHostNoError);
    EXPECT_EQ(Page(), "x() x() x()");
    EXPECT_TRUE(Placed().file.ends_with("_%%image/a.tif")) << Placed().file;
}

TEST_F(PlacedRebuildTest, WhatCantBePlacedLeavesTheRestOfTheRecord) {
    StoreFile("a.doc");
    Note("PlacedFile = \"gone.tif\"\r");
    Path(7);
    Note("PlacedFile = \"a.doc\"\r");
    Path(8);
    Note("PlacedFile = \"..\\a.doc\"\r");
    Load();
    EXPECT_EQ(Page(), "p7 p8");
}

TEST_F(PlacedRebuildTest, ThePaintBehindTheTextBecomesAStyle) {
    StoreFile("a.tif");
    AidbNoteStyle style{};
    std::memcpy(style.marker, kStyleMarker, sizeof style.marker);
    style.opacity = Stored(0.5);
    HostPathStyle paint = workbench::DefaultPathStyle();
    paint.fillPaint = 1;
    paint.fill = workbench::ThreeColor(1, 0, 0);
    PathStyleToRecord(paint, &style.style);
    std::string content("PlacedFile = \"a.tif\"\r\0", 22);
    content.append(reinterpret_cast<const char*>(&style), sizeof style);
    ASSERT_EQ(AddNoteBytes(content.data(), static_cast<uint32_t>(content.size())), 0);
    ASSERT_EQ(Load(), kHostNoError);
    EXPECT_EQ(First().blend.opacity, 0.5);
    ASSERT_NE(document().Find(First().artStyle), nullptr);
    EXPECT_EQ(document().Find(First().artStyle)->paint.fill.u.three.red, 1);

    // Each call of the host refused in turn: no fault, and nothing half-made on top of the layer.
    RefuseEachCall([&](HostError) { EXPECT_TRUE(Page() == "" || Page() == "x()") << Page(); });
}
