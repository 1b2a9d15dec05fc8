#include <csetjmp>
#include <cstdio>

// jpeglib.h needs <cstdio>'s types without including them.
#include <jerror.h>
#include <jpeglib.h>

#include "workbench/pictures/pixels.h"

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

/// Everything between the two jumps, so that no owner of memory lies in a frame that is jumped over.
bool ReadRows(Reading& reading, Pixels* pixels) {
    jpeg_decompress_struct& jpeg = reading.jpeg;
    const size_t rowBytes = size_t{jpeg.output_width} * static_cast<size_t>(jpeg.output_components);
    while (jpeg.output_scanline < jpeg.output_height) {
        JSAMPROW row = pixels->bytes.data() + rowBytes * jpeg.output_scanline;
        if (jpeg_read_scanlines(&jpeg, &row, 1) != 1) return false;
    }
    return true;
}

/// @return the space of raster_data.h
int32_t ChooseOutput(jpeg_decompress_struct& jpeg) {
    switch (jpeg.jpeg_color_space) {
        case JCS_GRAYSCALE:
            jpeg.out_color_space = JCS_GRAYSCALE;
            return kSpaceGray;
        case JCS_CMYK:
        case JCS_YCCK:
            jpeg.out_color_space = JCS_CMYK;
            return kSpaceFour;
        default:
            jpeg.out_color_space = JCS_RGB;
            return kSpaceThree;
    }
}

bool Decode(Reading& reading, std::span<const uint8_t> file, Pixels* pixels) {
    jpeg_decompress_struct& jpeg = reading.jpeg;
    if (setjmp(reading.giveUp)) return false;
    jpeg_create_decompress(&jpeg);
    jpeg.client_data = &reading;
    jpeg.progress = &reading.progress;
    jpeg_mem_src(&jpeg, file.data(), static_cast<unsigned long>(file.size()));
    if (jpeg_read_header(&jpeg, TRUE) != JPEG_HEADER_OK) return false;
    pixels->space = ChooseOutput(jpeg);
    if (!jpeg_start_decompress(&jpeg) || jpeg.output_components != ChannelsOf(pixels->space)) return false;
    pixels->width = static_cast<int32_t>(jpeg.output_width);
    pixels->height = static_cast<int32_t>(jpeg.output_height);
    pixels->bytes.resize(size_t{jpeg.output_width} * jpeg.output_height *
                         static_cast<size_t>(jpeg.output_components));
    return ReadRows(reading, pixels) && jpeg_finish_decompress(&jpeg) != FALSE;
}

} // namespace

std::optional<Pixels> ReadJpeg(std::span<const uint8_t> file) {
    Reading reading{};
    SetHandlers(reading);
    reading.jpeg.client_data = &reading;
    Pixels pixels;
    const bool good = Decode(reading, file, &pixels);
    jpeg_destroy_decompress(&reading.jpeg);
    if (!good) return std::nullopt;
    // All writers store inks as their complements.
    if (pixels.space == kSpaceFour) {
        for (uint8_t& ink : pixels.bytes) ink = static_cast<uint8_t>(255 - ink);
    }
    return pixels;
}

} // namespace workbench
