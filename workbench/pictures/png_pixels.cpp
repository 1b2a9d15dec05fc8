#include <png.h>

#include "workbench/pictures/picture_file.h"
#include "workbench/pictures/pixels.h"

namespace workbench {
namespace {

constexpr uint32_t kOwnChannels = PNG_FORMAT_FLAG_COLOR | PNG_FORMAT_FLAG_ALPHA;

struct Form {
    uint32_t format;
    int32_t space;
};
constexpr Form kForms[] = {{PNG_FORMAT_GRAY, kSpaceGray},
                           {PNG_FORMAT_GA, kSpaceGrayAlpha},
                           {PNG_FORMAT_RGB, kSpaceThree},
                           {PNG_FORMAT_RGBA, kSpaceThreeAlpha}};

/// The library's picture, its memory freed at the end.
class Picture {
public:
    Picture() { image.version = PNG_IMAGE_VERSION; }
    ~Picture() { png_image_free(&image); }
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;

    png_image image{};
};

std::optional<Pixels> ReadPng(std::span<const uint8_t> file, bool* reduced) {
    Picture picture;
    png_image& image = picture.image;
    if (!png_image_begin_read_from_memory(&image, file.data(), file.size())) return std::nullopt;
    if (reduced) *reduced = (image.format & PNG_FORMAT_FLAG_LINEAR) != 0;
    image.format &= kOwnChannels;
    Pixels pixels;
    pixels.width = static_cast<int32_t>(image.width);
    pixels.height = static_cast<int32_t>(image.height);
    for (const Form& form : kForms) {
        if (form.format == image.format) pixels.space = form.space;
    }
    const auto channels = static_cast<size_t>(ChannelsOf(pixels.space));
    pixels.bytes.resize(size_t{image.width} * image.height * channels);
    const auto row = static_cast<png_int_32>(image.width * channels);
    if (!png_image_finish_read(&image, nullptr, pixels.bytes.data(), row, nullptr)) return std::nullopt;
    return pixels;
}

} // namespace

std::optional<Pixels> ReadPixels(std::span<const uint8_t> file, uint64_t mostBytes, bool* reduced) {
    if (reduced) *reduced = false;
    const auto size = SizeOfPixels(file);
    constexpr double kMostChannels = 4;
    if (!size || size->width * size->height * kMostChannels > static_cast<double>(mostBytes))
        return std::nullopt;
    return KindOfPicture(file) == PictureKind::kPng ? ReadPng(file, reduced) : ReadJpeg(file);
}

std::vector<uint8_t> WritePng(std::span<const uint8_t> bytes, int64_t width, int64_t height, int32_t space) {
    Picture picture;
    png_image& image = picture.image;
    const auto channels = static_cast<uint64_t>(ChannelsOf(space));
    if (width < 1 || height < 1 || width > kMaxRasterSide || height > kMaxRasterSide) return {};
    if (static_cast<uint64_t>(width) * static_cast<uint64_t>(height) * channels > bytes.size()) return {};
    image.width = static_cast<uint32_t>(width);
    image.height = static_cast<uint32_t>(height);
    bool known = false;
    for (const Form& form : kForms) {
        if (form.space != space) continue;
        image.format = form.format;
        known = true;
    }
    if (!known) return {};
    const auto row = static_cast<png_int_32>(image.width * channels);
    png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
    std::vector<uint8_t> file(size);
    if (!png_image_write_to_memory(&image, file.data(), &size, 0, bytes.data(), row, nullptr)) return {};
    file.resize(size);
    return file;
}

} // namespace workbench
