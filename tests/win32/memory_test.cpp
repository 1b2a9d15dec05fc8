#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <cstring>

namespace {

// A block crosses from the C library to the system's pages, shrinks and grows again; what it held stays, what
// it gains is zero, also where it had held something before.
TEST(GlobalMemory, GrowsZeroedAndKeepsItsBytes) {
    auto* block = static_cast<unsigned char*>(GlobalAlloc(GPTR, 10));
    SIZE_T held = 10;
    for (const SIZE_T bytes : {SIZE_T{5000}, SIZE_T{0x100000 - 1}, SIZE_T{0x100000 + 1}, SIZE_T{200},
                               SIZE_T{0x300001}, SIZE_T{0x300FE0}, SIZE_T{0x300FF1}, SIZE_T{0x1000000}}) {
        std::memset(block, 0xAB, held);
        block = static_cast<unsigned char*>(GlobalReAlloc(block, bytes, GMEM_MOVEABLE | GMEM_ZEROINIT));
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(reinterpret_cast<uintptr_t>(block) % 16, 0u);
        EXPECT_EQ(GlobalSize(block), bytes);
        const SIZE_T kept = std::min(held, bytes);
        EXPECT_TRUE(std::all_of(block, block + kept, [](unsigned char byte) { return byte == 0xAB; }))
            << bytes;
        EXPECT_TRUE(std::all_of(block + kept, block + bytes, [](unsigned char byte) { return byte == 0; }))
            << bytes;
        held = bytes;
    }
    GlobalFree(block);
}

TEST(GlobalMemory, ABlockOutlivesAGrowthThatFails) {
    auto* block = static_cast<char*>(GlobalAlloc(GPTR, 100));
    block[99] = 'x';
    EXPECT_EQ(GlobalReAlloc(block, SIZE_MAX / 2, GMEM_MOVEABLE), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_EQ(block[99], 'x');
    GlobalFree(block);
    EXPECT_EQ(GlobalAlloc(GPTR, SIZE_MAX), nullptr);
}

} // namespace
