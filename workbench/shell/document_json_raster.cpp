#include "workbench/shell/document_json_raster.h"

#include <algorithm>
#include <cstdio>

namespace workbench {

using Json = nlohmann::ordered_json;

static std::string HashOf(const std::vector<uint8_t>& pixels) {
    const auto end =
        std::find_if(pixels.rbegin(), pixels.rend(), [](uint8_t byte) { return byte != 0; }).base();
    uint64_t hash = 0xCBF29CE484222325u;
    std::for_each(pixels.begin(), end, [&hash](uint8_t byte) { hash = (hash ^ byte) * 0x100000001B3u; });
    char digits[17];
    std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(hash));
    return digits;
}

void AddRasterJson(const RasterData& raster, Json* json) {
    const HostRasterRecord& record = raster.record;
    const HostMatrix& m = raster.matrix;
    const HostRect& box = raster.box;
    (*json)["file"] = raster.file;
    (*json)["matrix"] = Json::array({m.a, m.b, m.c, m.d, m.tx, m.ty});
    (*json)["pixelBounds"] = Json::array({record.left, record.top, record.right, record.bottom});
    (*json)["box"] = Json::array({box.left, box.top, box.right, box.bottom});
    (*json)["flags"] = record.flags;
    (*json)["colorized"] = raster.Colorized();
    (*json)["byteWidth"] = record.byteWidth;
    (*json)["colorSpace"] = record.colorSpace;
    (*json)["bitsPerPixel"] = record.bitsPerPixel;
    (*json)["originalColorSpace"] = record.originalColorSpace;
    (*json)["pixelHash"] = HashOf(raster.pixels);
}

} // namespace workbench
