#include "workbench/render/jpeg_image.h"

#include <csetjmp>
#include <cstdio>

// jpeglib.h needs <cstdio>'s types without including them.
#include <jerror.h>
#include <jpeglib.h>

namespace workbench {
namespace {

/// Passes of a progressive picture.  Each costs the time of the whole picture and a few bytes of the file.
constexpr int kMostScans = 100;

struct Reading {
    jpeg_decompress_struct jpeg;
    jpeg_error_mgr errors;
    jpeg_progress_mgr progress;
    std::jmp_buf giveUp;
};

Reading& ReadingOf(j_common_ptr jpeg) {
    return *static_cast<Reading*>(jpeg->client_data);
}

[[noreturn]] void GiveUp(j_common_ptr jpeg) {
    std::longjmp(ReadingOf(jpeg).giveUp, 1);
}

/// The library goes on with gray where the file ends; a picture that is cut off is damaged all the same.
void TakeMessage(j_common_ptr jpeg, int level) {
    const int code = jpeg->err->msg_code;
    if (level < 0 && (code == JWRN_JPEG_EOF || code == JWRN_HIT_MARKER)) GiveUp(jpeg);
}

void PassOver(j_common_ptr) {}

void CountScans(j_common_ptr jpeg) {
    const auto* decompress = reinterpret_cast<jpeg_decompress_struct*>(jpeg);
    if (decompress->input_scan_number > kMostScans) GiveUp(jpeg);
}

void SetHandlers(Reading& reading) {
    reading.jpeg.err = jpeg_std_error(&reading.errors);
    reading.errors.error_exit = GiveUp;
    reading.errors.emit_message = TakeMessage;
    reading.errors.output_message = PassOver;
    reading.progress.progress_monitor = CountScans;
}

/// Four inks, stored as their complements as all writers do, to Cairo's pixels in place.
void InksToPixels(uint8_t* row, uint32_t width) {
    for (uint32_t x = 0; x < width; ++x) {
        uint8_t* pixel = row + size_t{x} * 4;
        const uint32_t black = pixel[3];
        const auto light = [&](uint32_t ink) { return static_cast<uint32_t>(ink * black / 255); };
        const uint32_t rgb = light(pixel[0]) << 16 | light(pixel[1]) << 8 | light(pixel[2]);
        *reinterpret_cast<uint32_t*>(pixel) = rgb;
    }
}

/// Everything between the two jumps, so that no owner of memory lies in a frame that is jumped over.
bool ReadRows(Reading& reading, cairo_surface_t* image) {
    jpeg_decompress_struct& jpeg = reading.jpeg;
    const bool inks = jpeg.out_color_space == JCS_CMYK;
    uint8_t* pixels = cairo_image_surface_get_data(image);
    const auto stride = static_cast<size_t>(cairo_image_surface_get_stride(image));
    while (jpeg.output_scanline < jpeg.output_height) {
        JSAMPROW row = pixels + stride * jpeg.output_scanline;
        if (jpeg_read_scanlines(&jpeg, &row, 1) != 1) return false;
        if (inks) InksToPixels(row, jpeg.output_width);
    }
    return true;
}

void ChooseOutput(jpeg_decompress_struct& jpeg) {
    const bool inks = jpeg.jpeg_color_space == JCS_CMYK || jpeg.jpeg_color_space == JCS_YCCK;
    jpeg.out_color_space = inks ? JCS_CMYK : JCS_EXT_BGRX;
}

/// Decodes into a surface that this makes in `*image`.
bool Decode(Reading& reading, std::span<const uint8_t> bytes, cairo_surface_t* volatile* image) {
    jpeg_decompress_struct& jpeg = reading.jpeg;
    if (setjmp(reading.giveUp)) return false;
    jpeg_create_decompress(&jpeg);
    jpeg.client_data = &reading;
    jpeg.progress = &reading.progress;
    jpeg_mem_src(&jpeg, bytes.data(), static_cast<unsigned long>(bytes.size()));
    if (jpeg_read_header(&jpeg, TRUE) != JPEG_HEADER_OK) return false;
    ChooseOutput(jpeg);
    if (!jpeg_start_decompress(&jpeg)) return false;
    *image = cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(jpeg.output_width),
                                        static_cast<int>(jpeg.output_height));
    if (cairo_surface_status(*image) != CAIRO_STATUS_SUCCESS) return false;
    cairo_surface_flush(*image);
    if (!ReadRows(reading, *image)) return false;
    cairo_surface_mark_dirty(*image);
    return jpeg_finish_decompress(&jpeg) != FALSE;
}

} // namespace

CairoSurface ImageOfJpeg(std::span<const uint8_t> bytes) {
    Reading reading{};
    SetHandlers(reading);
    reading.jpeg.client_data = &reading;
    cairo_surface_t* volatile image = nullptr;
    const bool good = Decode(reading, bytes, &image);
    jpeg_destroy_decompress(&reading.jpeg);
    CairoSurface owner(image);
    if (!good) owner.reset();
    return owner;
}

} // namespace workbench
