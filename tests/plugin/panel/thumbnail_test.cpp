#include "plugin/panel/thumbnail.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace {

using Preview = std::vector<uint8_t>;

// Pixel by pixel, as the definition says it, with counters for every target pixel.
std::vector<uint32_t> ScaleSlowly(const Preview& preview, int w, int h) {
    struct Sum {
        uint32_t count, red, green, blue;
    };
    std::vector<Sum> table(static_cast<size_t>(w * h));
    for (int y = 0; y < 128; ++y) {
        for (int x = 0; x < 128; ++x) {
            const int dx = static_cast<int>(x / 127.0 * (w - 1) + 0.5);
            const int dy = static_cast<int>(y / 127.0 * (h - 1) + 0.5);
            Sum& sum = table.at(static_cast<size_t>(dy * w + dx));
            const uint8_t* pixel = preview.data() + (y * 128 + x) * 4;
            sum = {sum.count + 1, sum.red + pixel[1], sum.green + pixel[2], sum.blue + pixel[3]};
        }
    }
    std::vector<uint32_t> pixels;
    for (const Sum& sum : table) {
        pixels.push_back(sum.red / sum.count << 16 | sum.green / sum.count << 8 | sum.blue / sum.count);
    }
    return pixels;
}

void ExpectSame(const Preview& preview, int w, int h) {
    std::vector<uint32_t> pixels(static_cast<size_t>(w * h));
    ScalePreview(preview.data(), w, h, pixels.data());
    EXPECT_EQ(pixels, ScaleSlowly(preview, w, h)) << w << " by " << h;
}

TEST(Thumbnail, IsTheMeanOfEachBox) {
    std::mt19937 random(62);
    Preview noise(0x10000), bright(0x10000);
    for (uint8_t& byte : noise) byte = static_cast<uint8_t>(random());
    for (uint8_t& byte : bright) byte = random() % 8 ? 255 : 254; // sums at the top of their range
    for (const int size : {1, 2, 18, 19, 20, 30, 33, 61, 62, 63, 64}) {
        ExpectSame(noise, size, size);
        ExpectSame(bright, size, size);
    }
    ExpectSame(noise, 62, 19);
    ExpectSame(noise, 1, 64);
    ExpectSame(Preview(0x10000, 255), 30, 30);
    ExpectSame(Preview(0x10000, 0), 30, 30);
}

} // namespace
