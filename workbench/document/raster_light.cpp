#include "workbench/document/raster_light.h"

#include <algorithm>
#include <cmath>

namespace workbench {

RasterLight::RasterLight(int32_t space, const Light& dark) : space_(space) {
    for (size_t gray = 0; gray < tones_.size(); ++gray) {
        const double share = static_cast<double>(gray) / 255;
        const auto light = [share](double from) {
            return static_cast<uint8_t>(std::lround((from + (1 - from) * share) * 255));
        };
        tones_[gray] = {light(dark.red), light(dark.green), light(dark.blue), 255};
    }
}

LitPixel RasterLight::Of(const uint8_t* pixel) const {
    LitPixel lit{pixel[0], 0, 0, 255};
    switch (space_) {
        case kSpaceGray:
        case kSpaceGrayAlpha:
            lit = tones_[pixel[0]];
            break;
        case kSpaceFour:
        case kSpaceFourAlpha: {
            const int rest = 255 - pixel[3];
            for (size_t i = 0; i < 3; ++i) lit[i] = static_cast<uint8_t>((255 - pixel[i]) * rest / 255);
            break;
        }
        default:
            lit[1] = pixel[1];
            lit[2] = pixel[2];
            break;
    }
    if (HasAlpha(space_)) lit[3] = pixel[ChannelsOf(space_) - 1];
    return lit;
}

Light DarkOf(const Document& document, const Art& raster) {
    const auto* data = std::get_if<RasterData>(&raster.data);
    if (!data || !data->Colorized()) return {};
    const ArtStyle* style = document.Find(raster.artStyle);
    return style && style->paint.fillPaint ? LightOf(document, style->paint.fill) : Light{};
}

std::vector<uint8_t> LitPixels(const Document& document, const Art& raster) {
    const auto* data = std::get_if<RasterData>(&raster.data);
    if (!data || !IsShownSpace(data->record.colorSpace)) return {};
    const RasterLight lights(data->record.colorSpace, DarkOf(document, raster));
    const auto channels = static_cast<size_t>(data->Channels());
    std::vector<uint8_t> lit(data->pixels.size() / channels * 4);
    for (size_t i = 0; i < lit.size() / 4; ++i) {
        const LitPixel pixel = lights.Of(&data->pixels[i * channels]);
        std::copy(pixel.begin(), pixel.end(), &lit[i * 4]);
    }
    return lit;
}

} // namespace workbench
