#include "workbench/render/picture_images.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <vector>

#include "workbench/pictures/picture_file.h"
#include "workbench/pictures/pixels.h"
#include "workbench/render/raster_drawing.h"
#include "workbench/svg/svg_reader.h"

namespace workbench {
namespace {

constexpr uint64_t kMostKept = uint64_t{512} << 20;
constexpr uint64_t kDrawingGrowth = 16; ///< memory of a drawing for each byte of its file, about

cairo_status_t TakeBytes(void* closure, unsigned char* out, unsigned int count) {
    auto& rest = *static_cast<std::span<const uint8_t>*>(closure);
    if (count > rest.size()) return CAIRO_STATUS_READ_ERROR;
    std::memcpy(out, rest.data(), count);
    rest = rest.subspan(count);
    return CAIRO_STATUS_SUCCESS;
}

CairoSurface ImageOfPng(std::span<const uint8_t> bytes) {
    CairoSurface image(cairo_image_surface_create_from_png_stream(TakeBytes, &bytes));
    if (cairo_surface_status(image.get()) != CAIRO_STATUS_SUCCESS) image.reset();
    return image;
}

CairoSurface ImageOfJpeg(std::span<const uint8_t> bytes) {
    const auto pixels = ReadJpeg(bytes);
    return pixels ? ImageOfPixels(pixels->bytes, pixels->width, pixels->height, pixels->space) : nullptr;
}

uint64_t ImageBytesOf(const Document& drawing) {
    uint64_t bytes = 0;
    for (size_t i = 0; i < drawing.LayerCount(); ++i) {
        ForEachArt(*drawing.LayerAt(i).root, [&bytes](const Art& art) {
            if (const auto* raster = std::get_if<RasterData>(&art.data)) bytes += raster->pixels.size();
        });
    }
    return bytes;
}

PictureImage LoadFile(const std::string& file, uint64_t* memory) {
    PictureImage image;
    std::vector<uint8_t> bytes;
    *memory = 0;
    if (ReadPictureFile(file, &bytes) != PictureFileState::kRead) return image;
    const PictureKind kind = KindOfPicture(bytes);
    if (kind == PictureKind::kDrawing) {
        if (bytes.size() <= kMaxDrawingBytes) image.drawing = ReadSvg(bytes, file, nullptr, nullptr);
        *memory = bytes.size() * kDrawingGrowth + (image.drawing ? ImageBytesOf(*image.drawing) : 0);
    } else if (const auto size = SizeOfPixels(bytes)) {
        image.pixels = kind == PictureKind::kPng ? ImageOfPng(bytes) : ImageOfJpeg(bytes);
        *memory = static_cast<uint64_t>(size->width * size->height) * 4;
    }
    return image;
}

} // namespace

const PictureImage& PictureImages::Load(const std::string& file) {
    const auto found = kept_.find(file);
    if (found != kept_.end()) return found->second;
    uint64_t memory = 0;
    passing_ = {};
    passing_ = LoadFile(file, &memory);
    if (keptBytes_ + memory > kMostKept) return passing_;
    keptBytes_ += memory;
    return kept_[file] = std::move(passing_);
}

} // namespace workbench
