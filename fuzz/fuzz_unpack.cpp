// Packed bodies: any bytes unpack within any room, and packing and unpacking give what the classic coder
// gives.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "plugin/store/lzss.h"
#include "tests/plugin/store/classic_lzss.h"

namespace {

using Bytes = std::vector<uint8_t>;

void Require(bool holds) {
    if (!holds) std::abort();
}

// Vectors are exactly as long as their bytes, so that any overrun shows.
void RequireAsClassic(const Bytes& text) {
    Bytes packed(MostPackedBytes(text.size()));
    const auto packedBytes = PackLzss(text, packed);
    Require(packedBytes.has_value());
    packed.resize(*packedBytes);
    packed.shrink_to_fit();
    Require(packed == ClassicPack(text));
    Bytes again(UnpackedLzssBytes(packed));
    UnpackLzss(packed, again);
    Require(again == text);
    if (packed.empty() || packed.size() > 500) return;
    Bytes tooSmall(packed.size() - 1);
    Require(!PackLzss(text, tooSmall).has_value());
}

// Opens each pair of bytes into a run, so that few bytes make streams with runs of every length.
Bytes Runs(const uint8_t* data, size_t size) {
    Bytes bytes;
    for (size_t i = 0; i + 1 < size && bytes.size() < 30'000; i += 2) {
        const size_t length = data[i] < 0xE0 ? 1 + data[i] / 8 : 4050 + 8 * (data[i] & 0x1F);
        bytes.insert(bytes.end(), length, data[i] < 0xE0 ? data[i + 1] : 0);
        if (data[i] >= 0xE0) bytes.push_back(data[i + 1]);
    }
    return bytes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const Bytes input(data, data + size);
    const uint64_t bytes = UnpackedLzssBytes(input);
    Bytes plain(bytes);
    Require(UnpackLzss(input, plain) == bytes);
    Require(plain == ClassicUnpack(input));
    // The first two bytes also choose a room that is too small.
    const size_t room = size < 2 ? 0 : (size_t{data[0]} << 8 | data[1]) % (plain.size() + 1);
    Bytes part(room);
    Require(UnpackLzss(input, part) == room);
    Require(std::equal(part.begin(), part.end(), plain.begin()));

    RequireAsClassic(input);
    RequireAsClassic(plain);
    RequireAsClassic(Runs(data, size));
    return 0;
}
