#include "plugin/panel/thumbnail_memo.h"

#include <algorithm>
#include <cstring>

#include "plugin/frame/globals.h"
#include "plugin/panel/thumbnail.h"
#include "plugin/store/lzss.h"
#include "plugin/store/memory_handle.h"
#include "plugin/store/record_layout.h"

namespace {

/// 128 bits of the packed bytes: no two pictures of a database have the same.
struct Key {
    uint64_t first, second;
    bool operator==(const Key&) const = default;
};

/// The block `globals->thumbnails`; behind it kMostThumbnails pictures.
struct Memo {
    int32_t side;
    int32_t used; ///< keys that stand for a picture
    int32_t next; ///< the place that is filled next
    Key keys[kMostThumbnails];
    uint8_t preview[kPreviewBytes]; ///< room for unpacking
};

uint64_t Mix(uint64_t hash, uint64_t word, uint64_t factor) {
    hash = (hash ^ word) * factor;
    return hash ^ hash >> 29;
}

Key KeyOf(std::span<const uint8_t> packed) {
    Key key = {packed.size(), ~packed.size()};
    while (!packed.empty()) {
        uint64_t word = 0;
        const size_t bytes = std::min(packed.size(), sizeof word);
        std::memcpy(&word, packed.data(), bytes);
        key.first = Mix(key.first, word, 0x9E3779B97F4A7C15u);
        key.second = Mix(key.second, word, 0xC2B2AE3D27D4EB4Fu);
        packed = packed.subspan(bytes);
    }
    return key;
}

Memo* MemoOfSide(int side) {
    auto* memo = reinterpret_cast<Memo*>(BlockBytes(globals->thumbnails));
    if (memo && memo->side == side) return memo;
    FreeHandle(globals->thumbnails);
    const uint64_t pixels = uint64_t{kMostThumbnails} * static_cast<uint64_t>(side * side);
    globals->thumbnails = NewHandle(sizeof(Memo) + pixels * sizeof(uint32_t), kSmallGrain);
    memo = reinterpret_cast<Memo*>(BlockBytes(globals->thumbnails));
    if (memo) memo->side = side;
    return memo;
}

uint32_t* PictureAt(Memo* memo, int32_t place) {
    return reinterpret_cast<uint32_t*>(memo + 1) + place * memo->side * memo->side;
}

void UnpackAndScale(Memo* memo, std::span<const uint8_t> packed, uint32_t* picture) {
    const std::span preview(memo->preview);
    const uint64_t bytes = UnpackLzss(packed, preview);
    std::ranges::fill(preview.subspan(bytes), uint8_t{0});
    ScalePreview(preview.data(), memo->side, memo->side, picture);
}

} // namespace

const uint32_t* ThumbnailOf(std::span<const uint8_t> packed, int side) {
    Memo* memo = MemoOfSide(side);
    if (!memo) return nullptr;
    const Key key = KeyOf(packed);
    const Key* end = memo->keys + memo->used;
    const Key* found = std::find(static_cast<const Key*>(memo->keys), end, key);
    if (found != end) return PictureAt(memo, static_cast<int32_t>(found - memo->keys));
    const int32_t place = memo->next;
    memo->next = (place + 1) % kMostThumbnails;
    memo->used = std::max(memo->used, place + 1);
    memo->keys[place] = key;
    UnpackAndScale(memo, packed, PictureAt(memo, place));
    return PictureAt(memo, place);
}
