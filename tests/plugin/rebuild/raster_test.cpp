// Images of the document from stored raster objects, sound and damaged.
#include <gmock/gmock.h>

#include <cstring>

#include "tests/plugin/rebuild/load_fixture.h"

using workbench::RasterData;

namespace {

uint8_t TileByte(size_t tile, size_t at) {
    return static_cast<uint8_t>(tile * 37 + at * 5 + 1);
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

    /// Whether the pixel came out of its place in the tiles, by the channels that the image has.
    static bool IsFromTile(const RasterData& raster, int x, int y) {
        const auto channels = static_cast<size_t>(raster.Channels());
        const size_t pixelBytes = TilePixelBytes(static_cast<uint16_t>(raster.record.colorSpace));
        const size_t across = static_cast<size_t>(raster.Width() + 31) / 32;
        const size_t tile = static_cast<size_t>(y / 32) * across + static_cast<size_t>(x / 32);
        const size_t at = static_cast<size_t>(y % 32 * 32 + x % 32) * pixelBytes;
        const size_t place = static_cast<size_t>(y) * raster.RowBytes() + static_cast<size_t>(x) * channels;
        if (place + channels > raster.pixels.size()) return false;
        for (size_t n = 0; n < channels; ++n) {
            if (raster.pixels[place + n] != TileByte(tile, at + n)) return false;
        }
        return true;
    }
    static int PixelsFromTiles(const RasterData& raster) {
        int count = 0;
        for (int y = 0; y < raster.Height(); ++y) {
            for (int x = 0; x < raster.Width(); ++x) count += IsFromTile(raster, x, y);
        }
        return count;
    }
};

TEST_F(RasterLoadTest, EachImageTakesTilesOfItsOwnColourSpace) {
    AidbRasterObject* upper = Raster(40, 33, 17, 4);
    upper->header.blendMode = 3;
    upper->header.knockout = 2;
    upper->info = {0x0102, 0, 0, 0, 40, 33, 160, 17, 32, 0x0105, 0};
    upper->bounds = {Stored(1), Stored(2), Stored(3), Stored(4)};
    Raster(33, 64, 18, 4); // the walk goes backwards and meets this one first
    globals->placePoint = {100, 200};
    EXPECT_EQ(Load(), kHostNoError);
    const auto images = Images();
    ASSERT_EQ(images.size(), 2u);
    EXPECT_EQ(PixelsFromTiles(DataOf(*images[0])), 40 * 33);
    EXPECT_EQ(PixelsFromTiles(DataOf(*images[1])), 33 * 64);
    const RasterData& raster = DataOf(*images[0]);
    EXPECT_EQ(raster.record.flags, 0x0102u);
    EXPECT_EQ(raster.record.byteWidth, 160u);
    EXPECT_EQ(raster.record.bitsPerPixel, 32);
    EXPECT_EQ(raster.record.originalColorSpace, 0x0105);
    EXPECT_EQ(raster.matrix.tx, 105);
    EXPECT_EQ(raster.matrix.ty, 207);
    EXPECT_EQ(raster.box.right, 3);
    EXPECT_EQ(images[0]->blend.mode, 3);
    EXPECT_EQ(images[0]->blend.knockout, 2);
}

TEST_F(RasterLoadTest, AStyleBehindTheTilesComesWithoutItsGradient) {
    Raster(10, 10, 1, 1, true);
    EXPECT_EQ(Load(), kHostNoError);
    const workbench::ArtStyle* style = document().Find(First().artStyle);
    ASSERT_NE(style, nullptr);
    EXPECT_EQ(style->paint.fill.kind, kColorGray);
    EXPECT_EQ(style->paint.stroke.kind, kColorThree);
    EXPECT_EQ(style->paint.lineWidth, 4);
}

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
                 {"huge bounds", 32767, 32767, 17, 1, 1, 1024}};
    for (const auto& each : cases) {
        SCOPED_TRACE(each.what);
        OpenEmptyDocument();
        NewRecordOf(100, 50);
        Raster(each.right, each.bottom, each.space, each.tiles)->tileCount = each.count;
        Path(3);
        EXPECT_EQ(Load(), kHostNoError);
        ASSERT_EQ(Images().size(), 2u); // the walk goes on
        const RasterData& raster = DataOf(*Images()[0]);
        if (raster.Height() < 100) {
            EXPECT_EQ(PixelsFromTiles(raster), each.pixels);
        }
        EXPECT_LE(raster.pixels.size(), size_t{32767} * 32 * 4);
        EXPECT_TRUE(host().faults().empty());
    }
}

// Bounds that are upside down are the one form that this host refuses.
TEST_F(RasterLoadTest, ARefusedFormLeavesAnEmptyImageAndTheWalkGoesOn) {
    Path(3);
    Raster(-5, 20, 17, 1);
    EXPECT_EQ(Load(), kHostNoError);
    ASSERT_EQ(Images().size(), 2u);
    EXPECT_EQ(DataOf(*Images()[1]).Width(), 0);
}

// Each call refused in turn: the image stays as far as it got.
TEST_F(RasterLoadTest, ARefusedCallCostsWhatItWasForAndNoMore) {
    Raster(64, 64, 17, 4, true)->header.blendMode = 2;
    Store();
    const uint64_t before = host().callCount();
    Load();
    const uint64_t calls = host().callCount() - before;
    std::vector<int> pixels(5); // how often that many tiles came out
    int gone = 0, unstyled = 0;
    for (uint64_t n = 1; n <= calls; ++n) {
        SCOPED_TRACE(n);
        OpenEmptyDocument();
        host().RefuseCall(n);
        const HostError error = Load();
        host().RefuseNone();
        EXPECT_TRUE(host().faults().empty());
        if (Images().empty()) {
            ++gone;
            continue;
        }
        const int tiles = PixelsFromTiles(DataOf(First())) / 1024;
        ++pixels[static_cast<size_t>(tiles)];
        EXPECT_EQ(error != kHostNoError, tiles < 4);
        unstyled += !First().artStyle;
    }
    // Layer, flags and creation; form, matrix and box; then one tile after the other.
    EXPECT_EQ(gone, 4);
    EXPECT_EQ(pixels[0], 3 + 1);
    for (const int tiles : {1, 2, 3}) EXPECT_EQ(pixels[static_cast<size_t>(tiles)], 1) << tiles;
    // A refused tile still leaves the image its style; a refused form doesn't.
    EXPECT_EQ(unstyled, 3 + 2);
}

} // namespace
