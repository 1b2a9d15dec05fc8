#include <array>
#include <cstdlib>

#include "win32/resources/byte_reader.h"
#include "win32/resources/module_images.h"

namespace {

constexpr uint16_t kGroupOfCursors = 2;
constexpr int kMostPixels = 256; // on a side

struct BitmapHeader {
    int width, height; // of the picture alone
    int bits;
    uint32_t colors;
};

std::optional<BitmapHeader> ReadHeader(ByteReader& reader) {
    const uint32_t headerBytes = reader.Long();
    const auto width = static_cast<int32_t>(reader.Long()),
               doubleHeight = static_cast<int32_t>(reader.Long());
    reader.Word(); // planes
    const int bits = reader.Word();
    const uint32_t compression = reader.Long();
    reader.Take(12); // size and resolution
    uint32_t colors = reader.Long();
    reader.Long(); // important colours
    constexpr uint32_t kHeaderBytes = 40;
    if (headerBytes < kHeaderBytes) return {};
    reader.Take(headerBytes - kHeaderBytes);
    const bool known = bits == 1 || bits == 4 || bits == 8 || bits == 24 || bits == 32;
    if (reader.Failed() || !known || compression != BI_RGB) return {};
    if (width < 1 || width > kMostPixels || doubleHeight < 2 || doubleHeight > 2 * kMostPixels) return {};
    if (bits > 8) {
        colors = 0;
    } else if (colors == 0) {
        colors = 1u << bits;
    }
    if (colors > 256) return {};
    return BitmapHeader{width, doubleHeight / 2, bits, colors};
}

uint32_t Bits(std::span<const uint8_t> row, int x, int bits) {
    const auto first = static_cast<size_t>(x) * static_cast<size_t>(bits);
    const uint32_t byte = row[first / 8];
    return byte >> (8 - static_cast<size_t>(bits) - first % 8) & ((1u << bits) - 1);
}

uint32_t PixelOfRow(std::span<const uint8_t> row, int x, int bits, const std::array<uint32_t, 256>& palette) {
    if (bits <= 8) return palette[Bits(row, x, bits)];
    const size_t bytes = static_cast<size_t>(bits) / 8;
    const auto pixel = row.subspan(static_cast<size_t>(x) * bytes, bytes);
    const uint32_t alpha = bytes == 4 ? pixel[3] : 0u;
    return alpha << 24 | uint32_t{pixel[2]} << 16 | uint32_t{pixel[1]} << 8 | pixel[0];
}

size_t RowBytes(int width, int bits) {
    return (static_cast<size_t>(width) * static_cast<size_t>(bits) + 31) / 32 * 4;
}

} // namespace

std::optional<IconPicture> ReadIconPicture(std::span<const uint8_t> bytes, bool cursor) {
    ByteReader reader(bytes);
    IconPicture picture;
    if (cursor) {
        picture.hotSpot.x = reader.Word();
        picture.hotSpot.y = reader.Word();
    }
    const std::optional<BitmapHeader> header = ReadHeader(reader);
    if (!header) return {};
    std::array<uint32_t, 256> palette{};
    for (uint32_t i = 0; i < header->colors; ++i) palette[i] = reader.Long() & 0xFFFFFF;
    const auto height = static_cast<size_t>(header->height);
    const size_t rowBytes = RowBytes(header->width, header->bits), maskBytes = RowBytes(header->width, 1);
    const auto rows = reader.Take(rowBytes * height), mask = reader.Take(maskBytes * height);
    if (reader.Failed()) return {};
    picture.width = header->width;
    picture.height = header->height;
    for (size_t line = height; line-- > 0;) { // the lowest row comes first
        for (int x = 0; x < picture.width; ++x) {
            const uint32_t pixel =
                PixelOfRow(rows.subspan(line * rowBytes, rowBytes), x, header->bits, palette);
            picture.pixels.push_back(pixel);
            picture.hasAlpha = picture.hasAlpha || pixel >> 24 != 0;
            picture.keepsBelow.push_back(
                static_cast<uint8_t>(Bits(mask.subspan(line * maskBytes, maskBytes), x, 1)));
        }
    }
    return picture;
}

std::optional<uint16_t> ChooseFromGroup(std::span<const uint8_t> group) {
    ByteReader reader(group);
    reader.Word(); // reserved
    const bool cursors = reader.Word() == kGroupOfCursors;
    const int count = reader.Word();
    std::optional<uint16_t> best;
    int bestDistance = 0, bestBits = 0;
    for (int i = 0; i < count && !reader.Failed(); ++i) {
        int width = cursors ? reader.Word() : reader.Byte();
        reader.Take(cursors ? 2 : 3); // height, colours
        reader.Word();                // planes
        const int bits = reader.Word();
        reader.Long(); // bytes
        const uint16_t number = reader.Word();
        if (reader.Failed()) break;
        if (width == 0) width = kMostPixels;
        const int distance = std::abs(width - 32);
        if (best && (distance > bestDistance || (distance == bestDistance && bits <= bestBits))) continue;
        best = number;
        bestDistance = distance;
        bestBits = bits;
    }
    return best;
}
