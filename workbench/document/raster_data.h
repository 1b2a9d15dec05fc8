/// Images in the art tree.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "suites/host_types.h"

namespace workbench {

/// The colour spaces of this host, one byte a channel: its colours, then its alpha, if any.  Gray, red, green
/// and blue are amounts of light, the four inks amounts of ink; colours aren't weighed with their alpha.
/// Images of other numbers have four channels, which are kept and never shown.
enum RasterSpace : int32_t {
    kSpaceGray = 0,
    kSpaceThree = 1, ///< red, green, blue
    kSpaceFour = 2,  ///< cyan, magenta, yellow, black
    kSpaceGrayAlpha = 16,
    kSpaceThreeAlpha = 17,
    kSpaceFourAlpha = 18,
};

constexpr int ChannelsOf(int32_t space) {
    switch (space) {
        case kSpaceGray:
            return 1;
        case kSpaceGrayAlpha:
            return 2;
        case kSpaceThree:
            return 3;
        case kSpaceFourAlpha:
            return 5;
        default:
            return 4;
    }
}

constexpr bool IsShownSpace(int32_t space) {
    return (space >= kSpaceGray && space <= kSpaceFour) ||
           (space >= kSpaceGrayAlpha && space <= kSpaceFourAlpha);
}
constexpr bool HasAlpha(int32_t space) {
    return space >= kSpaceGrayAlpha && space <= kSpaceFourAlpha;
}

/// In a record's flags: the image's gray is the share of the paper in the fill of its art style.
constexpr uint32_t kRasterColorized = 4;

constexpr int32_t kMaxRasterSide = 0xFFFF; ///< pixels

/// An image.  Pixel (x, y) of its bounds has its corner at matrix(x, -y), so that an upright image with the
/// bounds' corner at (0, 0) has its upper left corner at the matrix's translation.
struct RasterData {
    std::string file; ///< linked file, UTF-8; empty: the data lies here
    HostMatrix matrix{1, 0, 0, 1, 0, 0};

    /// Byte width and bits per pixel are kept as they were told and mean nothing to this host.
    HostRasterRecord record{};
    HostRect box{}; ///< kept as it was told, with top as it was told

    /// Rows from the top, without gaps.  Rows at the end may be missing: they are all 0.
    std::vector<uint8_t> pixels;

    int64_t Width() const { return int64_t{record.right} - record.left; }
    int64_t Height() const { return int64_t{record.bottom} - record.top; }
    int Channels() const { return ChannelsOf(record.colorSpace); }
    size_t RowBytes() const { return static_cast<size_t>(Width()) * static_cast<size_t>(Channels()); }
    bool Colorized() const { return (record.flags & kRasterColorized) != 0; }

    /// Whole rows that are there.
    int64_t RowsKept() const { return RowBytes() ? static_cast<int64_t>(pixels.size() / RowBytes()) : 0; }
};

/// The record of an image that starts at pixel (0, 0), in a space of this host.
inline HostRasterRecord NewRasterRecord(int32_t width, int32_t height, int32_t space) {
    const int32_t channels = ChannelsOf(space);
    return {0, 0, 0, width, height, static_cast<uint32_t>(width * channels), space, channels * 8, space};
}

} // namespace workbench
