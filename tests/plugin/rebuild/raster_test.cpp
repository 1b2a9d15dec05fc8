// Images of the document from stored raster objects, sound and damaged.
#include <gmock/gmock.h>

#include <cstring>

#include "tests/plugin/rebuild/load_fixture.h"

using workbench::RasterData;

namespace {

/// Never 0, which pixels without a tile are.
uint8_t TileByte(size_t tile, size_t at) {
    return static_cast<uint8_t>(1 + (tile * 37 + at * 5) % 255);
}

class RasterLoadTest : public LoadFixture {
protected:
    /// Appends a raster of that form with `tiles` tiles in its bytes.  The pointer stands until the next
    /// append.
    AidbRasterObject* Raster(int16_t width, int16_t height, uint16_t space, uint32_t tiles,
                             bool styled = false) {
        const uint32_t tileBytes = TileBytes(space);
        const uint32_t size =
            kRasterBaseBytes + tiles * tileBytes + (styled ? uint32_t{sizeof(AidbRasterStyle)} : 0);
        auto* raster =
            reinterpret_cast<AidbRasterObject*>(AppendObject(globals->curRecord, kRasterObject, size));
        raster->header.opacity = Stored(1.0);
        raster->info.right = width;
        raster->info.bottom = height;
        raster->info.colorSpace = space;
        raster->matrix = {Stored(1), 0, 0, Stored(1), Stored(5), Stored(7)};
        raster->tileCount = tiles;
        auto* bytes = reinterpret_cast<uint8_t*>(raster + 1);
        for (uint32_t i = 0; i < tiles * tileBytes; ++i) bytes[i] = TileByte(i / tileBytes, i % tileBytes);
        if (styled) {
            auto* style = reinterpret_cast<AidbRasterStyle*>(bytes + tiles * tileBytes);
            std::memcpy(style->marker, kStyleMarker, 4);
            style->style.fillFlag = 1;
            style->style.fill.kind = kStoredGradient;
            style->style.stroke.kind = kStoredThree;
            style->style.lineWidth = Stored(4);
        }
        return raster;
    }

    /// The images on the page, topmost first.
    std::vector<const workbench::Art*> Images() {
        std::vector<const workbench::Art*> images;
        for (const workbench::Art* art = Root().firstChild; art; art = art->below) images.push_back(art);
        return images;
    }
    static const RasterData& DataOf(const workbench::Art& art) { return std::get<RasterData>(art.data); }

    /// How many pixels, by their first channel, came out of their places in the tiles.
    static int PixelsFromTiles(const RasterData& raster) {
        const auto channels = static_cast<size_t>(raster.Channels());
        const size_t pixelBytes = TilePixelBytes(static_cast<uint16_t>(raster.record.colorSpace));
        const size_t width = static_cast<size_t>(raster.Width()), across = (width + 31) / 32;
        int count = 0;
        for (size_t y = 0; y < static_cast<size_t>(raster.Height()); ++y) {
            for (size_t x = 0; x < width; ++x) {
                const size_t place = y * raster.RowBytes() + x * channels;
                const uint8_t byte = TileByte(y / 32 * across + x / 32, (y % 32 * 32 + x % 32) * pixelBytes);
                count += place < raster.pixels.size() && raster.pixels[place] == byte;
            }
        }
        return count;
    }
};

// Art of a pattern lies where the pattern was drawn; the matrix stays.
TEST_F(RasterLoadTest, InAPatternTheImageIsNotMoved) {
    PatternPath(2, 1);
    Note("PatternArt00001 /");
    Raster(10, 10, 1, 1);
    Note("/ PatternArt00001");
    globals->placePoint = {100, 200};
    EXPECT_EQ(Load(), kHostNoError);
    const workbench::Pattern* pattern = document().Find(First().path()->style.fill.u.pattern.pattern);
    ASSERT_TRUE(pattern && pattern->art && pattern->art->firstChild);
    EXPECT_EQ(DataOf(*pattern->art->firstChild).matrix.tx, 5);
}

// Whatever bounds, counts and bytes say against each other, what is there is taken and nothing else.
TEST_F(RasterLoadTest, DamagedObjectsGiveTheTilesThatTheyHold) {
    const struct {
        const char* what;
        int16_t right, bottom;
        uint16_t space;
        uint32_t tiles, count;
        int pixels;
    } cases[] = {{"fewer tiles than the bounds ask for", 64, 64, 17, 3, 3, 3 * 1024},
                 {"a count beyond the bytes", 64, 32, 17, 1, 0xFFFFFFFF, 1024},
                 {"a count below the bytes", 64, 32, 17, 2, 1, 1024},
                 {"more tiles than the bounds ask for", 5, 5, 17, 4, 4, 25},
                 {"bounds of no width", 0, 32, 17, 1, 1, 0},
                 {"tiles of four bytes in a space of five", 64, 32, 18, 0, 2, 0},
                 {"bounds that are upside down, which this host refuses", -5, 20, 17, 1, 1, 0},
                 {"huge bounds", 32767, 32767, 17, 1, 1, 1024}};
    for (const auto& each : cases) {
        SCOPED_TRACE(each.what);
        OpenEmptyDocument();
        NewRecordOf(100, 50);
        Raster(each.right, each.bottom, each.space, each.tiles)->tileCount = each.count;
        Path(3);
        EXPECT_EQ(Load() == kHostNoError, each.right >= 0);
        ASSERT_EQ(Images().size(), 2u); // the walk goes on
        const RasterData& raster = DataOf(*Images()[0]);
        if (raster.Height() < 100) {
            EXPECT_EQ(PixelsFromTiles(raster), each.pixels);
        }
        EXPECT_LE(raster.pixels.size(), size_t{32767} * 32 * 4);
        EXPECT_TRUE(host().faults().empty());
    }
}

// The style behind the tiles comes without its gradient.  Each call refused in turn: the image stays as far
// as it got.
TEST_F(RasterLoadTest, ARefusedCallCostsWhatItWasForAndNoMore) {
    Raster(64, 64, 17, 4, true)->header.blendMode = 2;
    EXPECT_EQ(Load(), kHostNoError);
    const workbench::ArtStyle* style = document().Find(First().artStyle);
    ASSERT_NE(style, nullptr);
    EXPECT_EQ(style->paint.fill.kind, kColorGray);
    EXPECT_EQ(style->paint.stroke.kind, kColorThree);
    EXPECT_EQ(style->paint.lineWidth, 4);

    std::vector<int> pixels(5); // how often that many tiles came out
    int gone = 0, unstyled = 0;
    RefuseEachCall([&](HostError error) {
        if (Images().empty()) {
            ++gone;
            return;
        }
        const int tiles = PixelsFromTiles(DataOf(First())) / 1024;
        ++pixels[static_cast<size_t>(tiles)];
        EXPECT_EQ(error != kHostNoError, tiles < 4);
        unstyled += !First().artStyle;
    });
    // Layer, flags and creation; form, matrix and box; then one tile after the other.
    EXPECT_EQ(gone, 4);
    EXPECT_EQ(pixels[0], 3 + 1);
    for (const int tiles : {1, 2, 3}) EXPECT_EQ(pixels[static_cast<size_t>(tiles)], 1) << tiles;
    // A refused tile still leaves the image its style; a refused form doesn't.
    EXPECT_EQ(unstyled, 3 + 2);
}

} // namespace
