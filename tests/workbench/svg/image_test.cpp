// Images that lie in the drawing itself.
#include "tests/workbench/svg/svg_helpers.h"
#include "workbench/pictures/pixels.h"
#include "workbench/svg/data_uri.h"
#include "workbench/svg/svg_writer.h"

namespace workbench {
namespace {

std::vector<uint8_t> Bytes(int32_t width, int32_t height, int32_t space) {
    std::vector<uint8_t> bytes(static_cast<size_t>(width * height * ChannelsOf(space)));
    for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<uint8_t>(i * 41 + 3);
    return bytes;
}

std::string Png(int32_t width, int32_t height, int32_t space) {
    return PngDataUri(WritePng(Bytes(width, height, space), width, height, space));
}

std::string Image(const std::string& href, const std::string& more = {}) {
    return "<image x='10' y='20' width='30' height='20' " + more + " xlink:href='" + href + "'/>";
}

const RasterData* OnlyRaster(const ReadFile& file) {
    return std::get_if<RasterData>(&OnlyArt(*file.document)->data);
}

TEST(EmbeddedImage, PngBecomesAnImageOfItsOwnChannels) {
    for (const int32_t space : {kSpaceGray, kSpaceThree, kSpaceGrayAlpha, kSpaceThreeAlpha}) {
        const ReadFile file = ReadBody(Image(Png(3, 2, space)));
        const RasterData* raster = OnlyRaster(file);
        ASSERT_TRUE(raster) << space;
        EXPECT_THAT(file.report.losses, testing::IsEmpty());
        EXPECT_EQ(raster->record.colorSpace, space);
        EXPECT_EQ(raster->Width(), 3);
        EXPECT_EQ(raster->pixels, Bytes(3, 2, space));
        const HostMatrix& m = raster->matrix; // ten points a pixel, from the page's upper left corner
        EXPECT_EQ((std::vector{m.a, m.b, m.c, m.d, m.tx, m.ty}), (std::vector<double>{10, 0, 0, 10, 10, 80}));
    }
}

TEST(EmbeddedImage, AddressesAreReadAsTheyAreWrittenAnywhere) {
    const std::string png = Png(3, 2, kSpaceThree);
    std::string escaped = png, broken = png;
    for (size_t at = 0; (at = escaped.find('+', at)) != std::string::npos;) escaped.replace(at, 1, "%2B");
    for (size_t at = 40; at < broken.size(); at += 20) broken.insert(at, "\n  ");
    for (const std::string& href : {escaped, broken, png.substr(0, png.find_last_not_of('=') + 1)}) {
        const ReadFile file = ReadBody(Image(href));
        ASSERT_TRUE(OnlyRaster(file)) << href;
        EXPECT_EQ(OnlyRaster(file)->pixels, Bytes(3, 2, kSpaceThree));
    }
}

TEST(EmbeddedImage, WhatIsNoPictureIsCountedAndNeverUnpacked) {
    std::vector<uint8_t> huge = WritePng(Bytes(3, 2, kSpaceGray), 3, 2, kSpaceGray);
    std::vector<uint8_t> cut(huge.begin(), huge.end() - 20);
    huge[16] = huge[20] = 0; // the sides of the header, 24576 each
    huge[18] = huge[22] = 0x60;
    const std::pair<std::string, std::string> cases[] = {{"data:image/png;base64,AAAA", "image"},
                                                         {"data:image/png;base64,A*A", "image"},
                                                         {"data:,", "image"},
                                                         {"data:nothing", "image"},
                                                         {"data:image/svg+xml;base64,PHN2Zy8+", "image"},
                                                         {PngDataUri(huge), "image"},
                                                         {PngDataUri(cut), "damaged or oversized image"}};
    for (const auto& [href, loss] : cases) {
        const ReadFile file = ReadBody(Image(href));
        EXPECT_EQ(file.report.losses, (std::map<std::string, int>{{loss, 1}})) << href;
        EXPECT_EQ(Structure(*file.document), "g()");
    }
}

// The numbers beside a picture belong to that picture at that place.
TEST(EmbeddedImage, OwnWordsYieldToWhatOthersChanged) {
    Document document;
    Art* art = document.PrependArt(kArtRaster, document.LayerAt(0).root);
    auto& raster = std::get<RasterData>(art->data);
    raster.record = NewRasterRecord(3, 2, kSpaceFourAlpha);
    raster.pixels = Bytes(3, 2, kSpaceFourAlpha);
    const std::string text = WriteSvg(document);
    const auto changed = [&](const std::string& from, const std::string& to) {
        std::string other = text;
        const size_t at = other.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        const ReadFile file = ReadText(other.replace(at, from.size(), to));
        return OnlyRaster(file) ? OnlyRaster(file)->record.colorSpace : -1;
    };
    EXPECT_EQ(changed("data:image/png", "data:image/png"), kSpaceFourAlpha);
    EXPECT_EQ(changed("data:image/png", "data:IMAGE/png"), kSpaceThreeAlpha);
    EXPECT_EQ(changed(" width=\"3\"", " width=\"6\""), kSpaceThreeAlpha);
}

} // namespace
} // namespace workbench
