#include <cstring>

#include "plugin/store/lzss.h"
#include "plugin/store/lzss_form.h"
#include "plugin/store/lzss_unit.h"
#include "plugin/store/lzss_walk.h"
#include "plugin/store/second_thread.h"

// Behind a long run of zeros a body goes on as if nothing had come before: no match reaches over the run's
// end, where an item always starts, and nothing but zeros is in the window.  So two threads can pack a half
// each, with such an end between them.

namespace {

constexpr uint64_t kMostBytes = 0xFFFF'0000; ///< so that ages fit
constexpr size_t kWorthTwoThreads = 0x8000; ///< bytes that aren't zeros; they take a quarter of a millisecond
constexpr size_t kWorthBeside = 0x8000;     ///< bytes of a body beside another

bool PackUpTo(PackWalk& walk, size_t limit) {
    while (walk.start < limit)
        if (!PackNext(walk, limit)) return false;
    return true;
}

// The end of a run of zeros with about as much work before it as behind it; 0 if there is none, or not enough
// work.  Zeros are none, and one byte in some tells of the others.
size_t FindHalf(std::span<const uint8_t> plain) {
    constexpr size_t kStep = 61; // in tune with no structure
    if (plain.size() < kWorthTwoThreads) return 0;
    size_t work = 0;
    for (size_t i = 0; i < plain.size(); i += kStep) work += plain[i] != 0;
    if (work * kStep < kWorthTwoThreads) return 0;
    size_t half = 0;
    for (size_t done = 0; done < work / 2; half += kStep) done += plain[half] != 0;
    const ZeroRun run = FindZeroRun(plain, half, plain.size());
    return run.end < plain.size() ? run.end : 0;
}

bool PackInHalves(PackWalk& walk, size_t half) {
    const uint64_t roomBytes = MostPackedBytes(walk.plain.size() - half);
    HandleOwner room(NewHandle(roomBytes, kSmallGrain));
    if (room.bytes() == nullptr) return PackUpTo(walk, walk.plain.size());
    PackWalk second(walk.plain, {room.bytes(), roomBytes});
    if (second.memory.bytes() == nullptr) return PackUpTo(walk, walk.plain.size());
    BeginBehindZeros(second, half);
    bool firstPacked = false, secondPacked = false;
    {
        const SecondThread beside([&] { secondPacked = PackUpTo(second, second.plain.size()); });
        firstPacked = PackUpTo(walk, PlaceBehindZeros(half)) && PackLastZeros(walk);
    }
    return firstPacked && secondPacked && walk.writer.Append(second.writer);
}

bool PackWhole(PackWalk& walk) {
    const size_t half = FindHalf(walk.plain);
    return half != 0 ? PackInHalves(walk, half) : PackUpTo(walk, walk.plain.size());
}

} // namespace

std::optional<uint64_t> PackLzss(std::span<const uint8_t> plain, std::span<uint8_t> packed) {
    if (plain.empty()) return 0;
    if (plain.size() > kMostBytes) return std::nullopt;
    PackWalk walk(plain, packed);
    if (walk.memory.bytes() == nullptr || !PackWhole(walk)) return std::nullopt;
    return walk.writer.used();
}

std::optional<PackedPair> PackPairLzss(std::span<const uint8_t> first, std::span<const uint8_t> second,
                                       std::span<uint8_t> packed) {
    const uint64_t most = MostPackedBytes(first.size());
    const bool areLong = second.size() >= kWorthBeside && first.size() <= kMostBytes;
    if (areLong && packed.size() >= most + MostPackedBytes(second.size())) {
        PackWalk walk(first, packed.first(most));
        if (walk.memory.bytes() != nullptr) {
            SecondThread beside([&] { PackUpTo(walk, first.size()); });
            const auto bytes = PackLzss(second, packed.subspan(most));
            beside.Wait();
            if (!bytes) return std::nullopt;
            std::memmove(&packed[walk.writer.used()], &packed[most], *bytes);
            return PackedPair{walk.writer.used(), *bytes};
        }
    }
    const auto firstBytes = PackLzss(first, packed);
    if (!firstBytes) return std::nullopt;
    const auto secondBytes = PackLzss(second, packed.subspan(*firstBytes));
    if (!secondBytes) return std::nullopt;
    return PackedPair{*firstBytes, *secondBytes};
}
