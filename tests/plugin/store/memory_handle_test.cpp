#include "plugin/store/memory_handle.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

TEST(MemoryHandles, SizesAreWholeGrainsAndNewBytesAreZero) {
    HandleOwner block(NewHandle(1, kSmallGrain));
    ASSERT_NE(block.get(), nullptr);
    EXPECT_EQ(BlockSize(block.get()), kSmallGrain);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(block.bytes()) % 16, 0u);
    std::fill_n(block.bytes(), kSmallGrain, uint8_t{0xAB});

    block.get() = ResizeHandle(block.get(), kSmallGrain + 1, kSmallGrain);
    EXPECT_EQ(BlockSize(block.get()), 2 * kSmallGrain);
    EXPECT_EQ(block.bytes()[kSmallGrain - 1], 0xAB);
    EXPECT_TRUE(std::all_of(block.bytes() + kSmallGrain, block.bytes() + 2 * kSmallGrain,
                            [](uint8_t byte) { return byte == 0; }));
}

TEST(MemoryHandles, AGrowthThatFailsLeavesTheBlock) {
    HandleOwner block(NewHandle(1, kSmallGrain));
    block.bytes()[5] = 7;
    for (const uint64_t bytes : {uint64_t{1} << 39, uint64_t{1} << 62, UINT64_MAX}) {
        EXPECT_EQ(ResizeHandle(block.get(), bytes, kRecordGrain), nullptr) << bytes;
        EXPECT_EQ(NewHandle(bytes, kRecordGrain), nullptr) << bytes;
    }
    EXPECT_EQ(block.bytes()[5], 7);
    EXPECT_EQ(BlockSize(block.get()), kSmallGrain);
}

// Appending grows a block grain by grain.  If each growth moved it, appending would cost the square of its
// size.
TEST(MemoryHandles, GrowingInGrainsSeldomMovesTheBlock) {
    HandleOwner block(NewHandle(1, kSmallGrain));
    int moves = 0;
    for (uint64_t grains = 2; grains <= 512; ++grains) {
        const MemoryHandle before = block.get();
        block.bytes()[BlockSize(before) - 1] = static_cast<uint8_t>(grains);
        block.get() = ResizeHandle(before, grains * kSmallGrain, kSmallGrain);
        ASSERT_NE(block.get(), nullptr);
        moves += block.get() != before ? 1 : 0;
    }
    EXPECT_LE(moves, 20);
    for (uint64_t grains = 2; grains <= 512; ++grains) {
        ASSERT_EQ(block.bytes()[(grains - 1) * kSmallGrain - 1], static_cast<uint8_t>(grains));
    }
}

} // namespace
