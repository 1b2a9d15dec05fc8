#include <gtest/gtest.h>
#include <windows.h>

#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;

// A host reads the list before it runs any of the plug-in's code: the entry point's name is found by it
// alone.
TEST(PropertyListTest, NamesKindVersionAndEntryPoint) {
    const HMODULE module = LoadLibraryA(VELQUORNE_MODULE_FILE);
    ASSERT_NE(module, nullptr);
    const HRSRC place = FindResourceA(module, MAKEINTRESOURCEA(16000), "PIPL");
    ASSERT_NE(place, nullptr);
    const auto* bytes = static_cast<const uint8_t*>(LockResource(LoadResource(module, place)));
    const Bytes list(bytes, bytes + SizeofResource(module, place));
    const Bytes expected = {
        1,   0,                                                              // the word
        0,   0,   0,   0,   3,   0,   0,   0,                                // version, count
        'E', 'B', 'D', 'A', 'd', 'n', 'i', 'k', 0,   0,   0, 0, 4,  0, 0, 0, // kind
        'A', 'E', 'P', 'S',                                                  //
        'E', 'B', 'D', 'A', 's', 'r', 'v', 'i', 0,   0,   0, 0, 4,  0, 0, 0, // interface version
        2,   0,   0,   0,                                                    //
        'E', 'B', 'D', 'A', '6', '8', 'x', 'w', 0,   0,   0, 0, 12, 0, 0, 0, // entry point
        'P', 'l', 'u', 'g', 'i', 'n', 'M', 'a', 'i', 'n', 0, 0,
    };
    EXPECT_EQ(list, expected);
    FreeLibrary(module);
}

} // namespace
