#include "app/sample_pictures.h"

#include <cstdio>
#include <cstdlib>
#include <memory>

#include <jpeglib.h>

#include "app/documents.h"
#include "workbench/render/page_files.h"

using workbench::PagePicture;

namespace {

/// A bright square in a frame that gets darker to one side.
PagePicture Picture(int tint) {
    PagePicture picture{kSamplePictureWidth, kSamplePictureHeight, {}};
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            const bool inside = std::abs(x - 48) < 24 && std::abs(y - 32) < 16;
            const int shade = inside ? 230 : 40 + 2 * x;
            for (const int channel : {0, shade, inside ? 210 - tint : shade / 2 + tint / 2, tint})
                picture.pixels.push_back(static_cast<uint8_t>(channel));
        }
    }
    return picture;
}

std::vector<uint8_t> JpegOfPicture(const PagePicture& picture) {
    jpeg_compress_struct writer{};
    jpeg_error_mgr errors{};
    writer.err = jpeg_std_error(&errors);
    jpeg_create_compress(&writer);
    unsigned char* bytes = nullptr;
    unsigned long count = 0;
    jpeg_mem_dest(&writer, &bytes, &count);
    writer.image_width = static_cast<JDIMENSION>(picture.width);
    writer.image_height = static_cast<JDIMENSION>(picture.height);
    writer.input_components = 3;
    writer.in_color_space = JCS_RGB;
    jpeg_set_defaults(&writer);
    jpeg_set_quality(&writer, 90, TRUE);
    jpeg_start_compress(&writer, TRUE);
    std::vector<uint8_t> row(static_cast<size_t>(picture.width) * 3);
    for (size_t y = 0; y < static_cast<size_t>(picture.height); ++y) {
        for (size_t x = 0; x < static_cast<size_t>(picture.width); ++x)
            for (size_t n = 0; n < 3; ++n)
                row[3 * x + n] = picture.pixels[4 * (y * static_cast<size_t>(picture.width) + x) + 1 + n];
        JSAMPROW rows[] = {row.data()};
        jpeg_write_scanlines(&writer, rows, 1);
    }
    jpeg_finish_compress(&writer);
    const std::vector<uint8_t> file(bytes, bytes + count);
    jpeg_destroy_compress(&writer);
    std::free(bytes);
    return file;
}

} // namespace

bool WriteSamplePictures(const SamplePictures& pictures, std::string* error) {
    const std::vector<uint8_t> png = workbench::PngOfPicture(Picture(200), error);
    if (png.empty()) return false;
    const std::vector<uint8_t> jpeg = JpegOfPicture(Picture(30));
    return SaveBytes(pictures.png, png.data(), png.size(), error) &&
           SaveBytes(pictures.jpeg, jpeg.data(), jpeg.size(), error);
}
