/// PNG and JPEG files to pixels, and pixels to PNG files.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "workbench/document/raster_data.h"

namespace workbench {

/// Rows from the top without gaps, in one of the spaces of raster_data.h.
struct Pixels {
    int32_t width = 0, height = 0;
    int32_t space = kSpaceThree;
    std::vector<uint8_t> bytes;
};

/// The pixels of a PNG or JPEG, in the space that is nearest to the file's: palettes become colours, channels
/// of 16 bits lose their lower ones, which sets `*reduced`.  Nothing for other bytes, damage, a file that
/// ends before the picture does, a size that SizeOfPixels refuses or that takes more than `mostBytes`.
/// @param reduced  may be null
std::optional<Pixels> ReadPixels(std::span<const uint8_t> file, uint64_t mostBytes, bool* reduced = nullptr);

/// The same for a JPEG alone, whose size has been checked.  Gray, three colours, or four inks.
std::optional<Pixels> ReadJpeg(std::span<const uint8_t> file);

/// A PNG file; the space must be one without inks.  Nothing if there are fewer bytes than width and height
/// ask for, no extent, or more than a PNG takes.
std::vector<uint8_t> WritePng(std::span<const uint8_t> bytes, int64_t width, int64_t height, int32_t space);

} // namespace workbench
