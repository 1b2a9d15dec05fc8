// Packed bodies: any bytes unpack within any room, and to what a round trip through the packer keeps.
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "plugin/store/lzss.h"

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::vector<uint8_t> input(data,
                                     data + size); // exactly as long as its bytes, so that any overrun shows
    const uint64_t bytes = UnpackedLzssBytes(input);
    std::vector<uint8_t> plain(bytes);
    Require(UnpackLzss(input, plain) == bytes);
    // The first two bytes also choose a room that is too small.
    const size_t room = size < 2 ? 0 : (size_t{data[0]} << 8 | data[1]) % (plain.size() + 1);
    std::vector<uint8_t> part(room);
    Require(UnpackLzss(input, part) == room);
    Require(std::equal(part.begin(), part.end(), plain.begin()));

    for (const std::vector<uint8_t>& text : {input, plain}) {
        std::vector<uint8_t> packed(MostPackedBytes(text.size()));
        const auto packedBytes = PackLzss(text, packed);
        Require(packedBytes.has_value());
        packed.resize(*packedBytes);
        std::vector<uint8_t> again(UnpackedLzssBytes(packed));
        UnpackLzss(packed, again);
        Require(again == text);
        if (packed.empty() || packed.size() > 500) continue;
        std::vector<uint8_t> tooSmall(packed.size() - 1);
        Require(!PackLzss(text, tooSmall).has_value());
    }
    return 0;
}
