// Images whose data lies in the document, as raster objects.
#include "plugin/objects/object_stream.h"
#include "plugin/store/record.h"
#include "tests/plugin/capture/capture_fixture.h"
#include "tests/plugin/objects/object_bytes.h"

using workbench::RasterData;

namespace {

uint8_t ByteAt(int x, int y, int channel) {
    return static_cast<uint8_t>(x * 7 + y * 31 + channel * 101 + 1);
}

class RasterCaptureTest : public CaptureTest {
protected:
    RasterData& AddRaster(int32_t width, int32_t height, int32_t space, workbench::Art** art = nullptr) {
        workbench::Art& made = *document().AppendArt(kArtRaster, &root());
        auto& raster = std::get<RasterData>(made.data);
        raster.record = workbench::NewRasterRecord(width, height, space);
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                for (int n = 0; n < raster.Channels(); ++n) raster.pixels.push_back(ByteAt(x, y, n));
            }
        }
        if (art) *art = &made;
        return raster;
    }

    Bytes OnlyObject() {
        CaptureAll();
        const auto objects = ObjectsOf(globals->curRecord);
        EXPECT_EQ(objects.size(), 1u);
        return objects.empty() ? Bytes(sizeof(AidbRasterObject)) : objects[0];
    }
};

// 33 pixels make two tiles a row, the second of which reaches 31 pixels beyond the edge.
TEST_F(RasterCaptureTest, AnImageIsStoredTileByTile) {
    workbench::Art* art = nullptr;
    RasterData& raster = AddRaster(33, 33, workbench::kSpaceThreeAlpha, &art);
    raster.record.flags = 0x0102;
    raster.record.originalColorSpace = 0x0105;
    raster.matrix = {2, 0, 0, 2, 10, 86}; // from (10, 20) to (76, 86)
    raster.box = {0, 0, 33, -33};
    art->blend = {3, 0.5, 1, 2, 1};
    const Bytes object = OnlyObject();
    ASSERT_EQ(object.size(), 16476u);
    const Bytes head = StoredBytes()
                           .Hex("09000000 5C400000 03000000 00800000 0100 0200 0100 0000")    // header
                           .Hex("0201 0000 0000 0000 2100 2100 84000000 1100 2000 0501 0000") // record
                           .Hex("00000200 00000000 00000000 00000200 00000000 00004200")      // at (0, 66)
                           .Hex("00000000 00000000 00002100 0000DFFF 04000000") // box, four tiles
                           .bytes();
    EXPECT_EQ(Bytes(object.begin(), object.begin() + kRasterBaseBytes), head);
    for (size_t i = kRasterBaseBytes; i < object.size(); ++i) {
        const size_t at = i - kRasterBaseBytes, tile = at / 4096, pixel = at % 4096 / 4;
        const auto x = static_cast<int>(tile % 2 * 32 + pixel % 32),
                   y = static_cast<int>(tile / 2 * 32 + pixel / 32);
        const uint8_t expected = x < 33 && y < 33 ? ByteAt(x, y, static_cast<int>(at % 4)) : 0;
        ASSERT_EQ(object[i], expected) << "tile " << tile << ", pixel " << x << ", " << y;
    }
}

// A style counts for colourized images alone, and then whether it paints or not.
TEST_F(RasterCaptureTest, AColourizedImageHasThePaintOfItsStyle) {
    const auto& ink = document().NewCustomColor("Ink", {kCustomFour, {1, 0, 0, 0}, 0});
    HostPathStyle paint = workbench::DefaultPathStyle();
    paint.fillPaint = paint.strokePaint = 1;
    paint.fill = PaintOf(ink, 0.5);
    paint.stroke = PaintOf(AddPattern());
    workbench::Art* art = nullptr;
    RasterData& raster = AddRaster(3, 3, workbench::kSpaceGray, &art);
    art->artStyle = document().NewArtStyle(paint).handle;
    EXPECT_EQ(OnlyObject().size(), 4188u);
    raster.record.flags = workbench::kRasterColorized;
    CaptureAll();
    auto objects = ObjectsOf(globals->curRecord);
    ASSERT_EQ(Stream(), (Strings{"object 9", Stream().back()})); // and the ink's note
    ASSERT_EQ(objects[0].size(), 4188u + 5080u);
    const AidbRasterStyle* stored = FindRasterStyle(objects[0]);
    ASSERT_NE(stored, nullptr);
    EXPECT_EQ(stored->style.fill.kind, kStoredFour);
    EXPECT_EQ(stored->style.fill.reference, 0x0164);
    EXPECT_EQ(stored->style.stroke.kind, kStoredGray);
    art->artStyle = document().NewArtStyle({}).handle;
    EXPECT_EQ(OnlyObject().size(), 4188u + 5080u);
    art->artStyle = nullptr;
    EXPECT_EQ(OnlyObject().size(), 4188u);
}

TEST_F(RasterCaptureTest, BoundsThatARecordCantHoldAreRefused) {
    RasterData& raster = AddRaster(0, 0, workbench::kSpaceThree);
    raster.record.right = 40000;
    raster.record.bottom = 1;
    CaptureAll();
    EXPECT_TRUE(Stream().empty());
    raster.record = {0, -32768, -32768, 32767, 32767, 0, 1, 24, 1}; // sixteen gigabytes of tiles
    document().SelectAll();
    EXPECT_EQ(AidbPostArt(), kHostOutOfMemory);
}

} // namespace
