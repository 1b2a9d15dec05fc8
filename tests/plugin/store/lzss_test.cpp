#include "plugin/store/lzss.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "plugin/store/record_layout.h"
#include "tests/plugin/store/classic_lzss.h"

namespace {

using Bytes = std::vector<uint8_t>;

Bytes Pack(const Bytes& plain) {
    Bytes packed(MostPackedBytes(plain.size()));
    const auto bytes = PackLzss(plain, packed);
    EXPECT_TRUE(bytes.has_value());
    packed.resize(bytes.value_or(0));
    return packed;
}

Bytes Unpack(const Bytes& packed) {
    Bytes plain(UnpackedLzssBytes(packed));
    EXPECT_EQ(UnpackLzss(packed, plain), plain.size());
    return plain;
}

void ExpectAsClassic(const Bytes& plain, const std::string& what) {
    const Bytes packed = Pack(plain);
    ASSERT_EQ(packed, ClassicPack(plain)) << what << ", " << plain.size() << " bytes";
    ASSERT_EQ(Unpack(packed), plain) << what << ", " << plain.size() << " bytes";
}

Bytes Noise(size_t size, uint32_t seed, int values) {
    std::mt19937 random(seed);
    Bytes bytes(size);
    for (uint8_t& byte : bytes) byte = static_cast<uint8_t>(random() % static_cast<uint32_t>(values));
    return bytes;
}

// A preview as the painter gives it: white paper, a shape with soft edges, filled flat or with a ramp.
Bytes Preview(bool ramp, double radius) {
    Bytes bytes;
    for (int y = 0; y < 128; ++y) {
        for (int x = 0; x < 128; ++x) {
            const double inside = std::clamp(radius - std::hypot(x - 64.0, y - 64.0), 0.0, 1.0);
            const auto channel = [&](double ink) {
                bytes.push_back(static_cast<uint8_t>(255 - inside * (255 - ink)));
            };
            bytes.push_back(0);
            channel(ramp ? x * 2 : 200);
            channel(ramp ? y + x : 30);
            channel(ramp ? 255 - y : 90);
        }
    }
    return bytes;
}

} // namespace

// Worked out by hand.  The strings before the start are all zeros, so each takes the place of the one before
// it and the last, at 4078 - 18 = 0xFDC, is the one that is found.  Then three literals and a match of six
// that reads what it writes: place 4078 = 0xFEE, length 6 - 3.
TEST(Lzss, PacksToTheBytesThatWereWorkedOutByHand) {
    const std::pair<Bytes, Bytes> cases[] = {
        {{}, {}},
        {Bytes(18, 0), {0x00, 0xDC, 0xFF}},
        {{'a', 'b', 'c', 'a', 'b', 'c', 'a', 'b', 'c'}, {0x07, 'a', 'b', 'c', 0xEE, 0xF3}}};
    for (const auto& [plain, packed] : cases) {
        EXPECT_EQ(Pack(plain), packed);
        EXPECT_EQ(Unpack(packed), plain);
    }
}

// The start, the end and the turn of the ring are where the trees can differ from the published ones.
TEST(Lzss, PacksAsTheClassicCoderAtEveryLengthNearAnEdge) {
    for (const size_t edge : {0, 17, 18, 36, 4060, 4078, 4096, 4114, 8174, 8192}) {
        for (size_t size = edge < 4 ? 0 : edge - 4; size <= edge + 4; ++size) {
            ExpectAsClassic(Bytes(size, 0), "zeros");
            ExpectAsClassic(Bytes(size, 7), "sevens");
            ExpectAsClassic(Noise(size, static_cast<uint32_t>(size), 256), "noise");
            ExpectAsClassic(Noise(size, static_cast<uint32_t>(size), 2), "two values");
        }
    }
}

// Pixels that go up by one, so that the trees become lists, behind white that has made none.
TEST(Lzss, PacksRisingPixelsAsTheClassicCoder) {
    Bytes bytes(3000, 0xFF);
    for (uint32_t pixel = 0; pixel < 9000; ++pixel) {
        const auto high = static_cast<uint8_t>(pixel >> 8), low = static_cast<uint8_t>(pixel);
        bytes.insert(bytes.end(), {0, high, low, 0});
    }
    ExpectAsClassic(bytes, "rising pixels");
}

// Records of 17 bytes with a number that is new to the window: all strings with their first three bytes are
// alike, and the oldest of them leaves as the next one comes, where a record lacks a byte, or just before.
TEST(Lzss, PacksStringsThatAreAlikeAsTheClassicCoder) {
    for (const bool lacking : {false, true}) {
        Bytes bytes;
        for (uint32_t i = 0; i < 1500; ++i) {
            const auto number = static_cast<uint8_t>(i);
            bytes.insert(bytes.end(), {220, 221, 222, number});
            for (uint8_t field = 201; field < 207; ++field) bytes.insert(bytes.end(), {field, number});
            if (!lacking || i % 240 != 100) bytes.push_back(207);
        }
        ExpectAsClassic(bytes, "alike");
    }
}

TEST(Lzss, PacksStreamsAsTheClassicCoder) {
    ExpectAsClassic(Preview(false, 40), "flat preview");
    ExpectAsClassic(Preview(true, 60), "preview with a ramp");
    for (uint32_t seed = 0; seed < 30; ++seed) {
        // Pieces of runs, of noise and of what went before, in lengths around those of a match, of the ring
        // and of a block; every third seed has long runs of zeros only.
        std::mt19937 random(seed);
        const size_t most = seed % 10 == 0 ? 100000 : 20000;
        const size_t lengths[] = {1, 2, 3, 17, 18, 19, 40, 400, 4096, 5000};
        Bytes bytes;
        while (bytes.size() < most) {
            const size_t length = lengths[random() % std::size(lengths)];
            const uint32_t kind = random() % 4;
            const size_t period = 1 + random() % 6;
            const size_t from = bytes.empty() ? 0 : random() % bytes.size();
            for (size_t i = 0; i < length; ++i) {
                if (kind == 0 && bytes.size() >= period) {
                    bytes.push_back(bytes[bytes.size() - period]);
                } else if (kind == 1 && from < bytes.size()) {
                    bytes.push_back(bytes[from + i < bytes.size() ? from + i : from]);
                } else if (kind == 2 || (seed % 3 == 1 && length > 400)) {
                    bytes.push_back(0);
                } else {
                    bytes.push_back(static_cast<uint8_t>(random() % (seed % 2 == 0 ? 256 : 3)));
                }
            }
        }
        ExpectAsClassic(bytes, "mixture of seed " + std::to_string(seed));
    }
}

// Zeros that just drive everything else out of the ring, or just don't, at every phase of an item and a
// group.
TEST(Lzss, PacksBetweenLongRunsOfZerosAsTheClassicCoder) {
    for (const size_t zeros : {4077, 4079, 4096, 4097, 4114, 4159, 4160, 4161, 4178, 4872}) {
        for (size_t phase = 0; phase < 18; phase += zeros == 4160 ? 4 : 9) {
            Bytes bytes = Noise(phase, 3, 256);
            for (uint32_t unit = 0; unit < 6; ++unit) {
                bytes.insert(bytes.end(), zeros, 0);
                // Sparse enough for starts of zeros of every length, and for equal strings far apart.
                const Bytes noise =
                    Noise(unit == 4 ? 3990 + phase : 30 + 61 * phase, unit, unit % 2 ? 9 : 256);
                for (const uint8_t byte : noise) bytes.insert(bytes.end(), {byte, 0, 0, byte});
                if (unit == 4) bytes.resize(bytes.size() - 3 * noise.size());
            }
            bytes.insert(bytes.end(), zeros * (phase % 2) + phase, 0);
            ExpectAsClassic(bytes, std::to_string(zeros) + " zeros, phase " + std::to_string(phase));
        }
    }
}

// Long enough for two threads, with every length of a run's rest at the place where their halves meet, in
// units as short as an object and as long as a picture.
TEST(Lzss, PacksLongBodiesAsTheClassicCoder) {
    for (uint32_t seed = 0; seed < 24; ++seed) {
        std::mt19937 random(seed);
        const size_t most = seed % 4 == 3 ? 30000 : 3000;
        Bytes bytes = Noise(seed, seed, 256);
        for (int unit = 0; unit < (most == 3000 ? 60 : 8); ++unit) {
            bytes.insert(bytes.end(), seed == 5 && unit > 20 ? 100000 : 4160 + random() % 40, 0);
            const Bytes noise = Noise(1 + random() % most, random(), unit % 3 ? 256 : 4);
            bytes.insert(bytes.end(), noise.begin(), noise.end());
            if (seed == 5 && unit == 23) break;
        }
        bytes.insert(bytes.end(), seed % 3 * 2500, 0);
        ExpectAsClassic(bytes, "long body of seed " + std::to_string(seed));
    }
}

TEST(Lzss, PacksAPairAsEachByItself) {
    for (const size_t size : {0u, 1000u, 100000u}) {
        const Bytes first = Preview(true, 50), second = Noise(size, 1, 30);
        const Bytes firstPacked = Pack(first), secondPacked = Pack(second);
        Bytes expected = firstPacked;
        expected.insert(expected.end(), secondPacked.begin(), secondPacked.end());
        Bytes packed(MostPackedBytes(first.size()) + MostPackedBytes(size));
        const auto pair = PackPairLzss(first, second, packed);
        ASSERT_TRUE(pair.has_value()) << size;
        EXPECT_EQ(pair->first, firstPacked.size());
        EXPECT_EQ(pair->second, secondPacked.size());
        packed.resize(expected.size());
        EXPECT_EQ(packed, expected) << size;
        EXPECT_TRUE(PackPairLzss(first, second, packed) || size == 100000)
            << "room for no more than it takes";
        EXPECT_FALSE(PackPairLzss(first, second, std::span(packed).first(expected.size() - 1)));
    }
}

// Rows that repeat but for a byte here and there: matches that end anywhere, far back.
TEST(Lzss, PacksNearPeriodicBytesAsTheClassicCoder) {
    for (const size_t period : {5u, 17u, 18u, 19u, 64u, 512u, 4078u, 4095u, 4096u, 4097u}) {
        std::mt19937 random(static_cast<uint32_t>(period));
        Bytes bytes = Noise(period, 1, 256);
        while (bytes.size() < 40000)
            bytes.push_back(static_cast<uint8_t>(bytes[bytes.size() - period] + (random() % 100 == 0)));
        ExpectAsClassic(bytes, "period " + std::to_string(period));
    }
}

TEST(Lzss, BothWaysStayInTheirRoom) {
    const Bytes plain = Noise(300, 5, 256);
    const size_t needed = Pack(plain).size();
    EXPECT_EQ(needed, MostPackedBytes(plain.size()));
    for (size_t room = 0; room <= needed; ++room) {
        Bytes packed(room + 1, 0xA5);
        const auto bytes = PackLzss(plain, std::span(packed).first(room));
        ASSERT_EQ(bytes.has_value(), room == needed) << room;
        ASSERT_EQ(packed[room], 0xA5) << room;
        Bytes unpacked(room + 1, 0xA5);
        const size_t expected = std::min(room, plain.size());
        ASSERT_EQ(UnpackLzss(Pack(plain), std::span(unpacked).first(room)), expected);
        ASSERT_EQ(unpacked[expected], 0xA5) << room;
    }
}

// What a damaged file holds is any bytes at all, and the classic decoder says what they mean.
TEST(Lzss, UnpacksAnyBytesAsTheClassicDecoder) {
    for (uint32_t seed = 0; seed < 400; ++seed) {
        Bytes packed = Noise(seed * 7 % 3000, seed, seed % 2 ? 256 : 5);
        ASSERT_EQ(Unpack(packed), ClassicUnpack(packed)) << seed;
    }
    const Bytes whole = Pack(Noise(6000, 1, 3));
    for (size_t end = 0; end < whole.size(); ++end) {
        const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(end));
        ASSERT_EQ(Unpack(cut), ClassicUnpack(cut)) << end;
    }
}
