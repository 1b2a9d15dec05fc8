#include "tests/support/random_raster.h"

void MakeRandomRaster(workbench::RasterData& raster, bool recordable, std::mt19937& random) {
    const auto below = [&random](int bound) { return std::uniform_int_distribution<>(0, bound - 1)(random); };
    constexpr int32_t kSpaces[] = {workbench::kSpaceGray,
                                   workbench::kSpaceThree,
                                   workbench::kSpaceFour,
                                   workbench::kSpaceGrayAlpha,
                                   workbench::kSpaceThreeAlpha,
                                   workbench::kSpaceFourAlpha,
                                   5 /* none of this host's */};
    const auto side = [&] { return below(20) == 0 ? 0 : 1 + below(70); };
    raster.record = workbench::NewRasterRecord(side(), side(), kSpaces[below(recordable ? 7 : 6)]);
    HostRasterRecord& record = raster.record;
    if (below(3) == 0) {
        const int32_t x = below(100) - 50, y = below(100) - 50;
        record.left += x, record.right += x;
        record.top += y, record.bottom += y;
    }
    record.flags = static_cast<uint32_t>(below(0x10000));
    record.originalColorSpace = below(20);
    raster.pixels.resize(raster.RowBytes() * static_cast<size_t>(raster.Height()));
    for (uint8_t& byte : raster.pixels) byte = static_cast<uint8_t>(below(256));
    if (below(4) == 0) raster.pixels.resize(raster.RowBytes() * static_cast<size_t>(raster.Height() / 2));
    raster.matrix = {0.25 * (1 + below(9)),  0.25 * (below(5) - 2), 0.25 * (below(5) - 2),
                     -0.25 * (1 + below(9)), below(2000) / 7.0,     below(2000) / 7.0};
    raster.box = {double(record.left), double(record.top), double(record.right), record.bottom + 0.5};
}
