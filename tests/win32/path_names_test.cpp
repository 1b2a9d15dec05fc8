#include "win32/path_names.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <random>
#include <set>

#include "tests/win32/store_folder.h"
#include "win32/utf8.h"

namespace {

std::string Bytes(std::initializer_list<int> values) {
    std::string bytes;
    for (const int value : values) bytes.push_back(static_cast<char>(value));
    return bytes;
}

// A name that comes back with other bytes is another group: every pair of bytes has to survive, defined or
// not.
TEST(DiskNames, EveryPairOfBytesComesBackFromANameOfItsOwn) {
    std::set<std::string> seen;
    for (int first = 1; first < 256; ++first) {
        for (int second = 0; second < 256; ++second) {
            if (first == '\\' ||
                (second == '\\' && !(first >= 0x81 && first <= 0x9F) && !(first >= 0xE0 && first <= 0xFC))) {
                continue;
            }
            const std::string name = second == 0 ? Bytes({first}) : Bytes({first, second});
            const std::string diskName = DiskNameOfStoreName(name);
            ASSERT_TRUE(seen.insert(diskName).second) << first << " " << second;
            ASSERT_EQ(StoreNameOfDiskName(diskName), name) << first << " " << second;
        }
    }
}

TEST(DiskNames, PeopleSeeTheCharactersTheyTyped) {
    EXPECT_EQ(DiskNameOfStoreName("図形A"), Utf8(u8"図形A"));
    EXPECT_EQ(DiskNameOfStoreName("表示"), Utf8(u8"表示")); // the first one's second byte is 0x5C
    EXPECT_EQ(DiskNameOfStoreName(Bytes({0xB1, 0xDE})), Utf8(u8"ｱﾞ"));
    EXPECT_EQ(DiskNameOfStoreName(Bytes({0x87, 0x40})), Utf8(u8"①"));
    EXPECT_EQ(DiskNameOfStoreName(Bytes({0x81, 0x60})), Utf8(u8"～"));
    EXPECT_EQ(DiskNameOfStoreName(Bytes({0xF0, 0x40})), Utf8(u8"\uE000"));
}

TEST(DiskNames, DuplicatesAndUndefinedCodesStandInThePrivatePlane) {
    EXPECT_EQ(DiskNameOfStoreName(Bytes({0x81, 0xE6})), Utf8(u8"∵"));
    EXPECT_EQ(DiskNameOfStoreName(Bytes({0x87, 0x9A})), Utf8(u8"\U000F879A")); // ∵ again, in NEC's row 13
    EXPECT_EQ(DiskNameOfStoreName(Bytes({0xFA, 0x54})), Utf8(u8"\U000FFA54")); // ¬ again, from IBM
    EXPECT_EQ(DiskNameOfStoreName(Bytes({0xED, 0x40})), Utf8(u8"\U000FED40")); // 纊 again, in NEC's selection
    EXPECT_EQ(DiskNameOfStoreName(Bytes({0x81, 0x2F})), Utf8(u8"\U000F812F"));
    EXPECT_EQ(DiskNameOfStoreName(Bytes({'a', 0x95})), Utf8(u8"a\U000F0095"));
}

TEST(DiskNames, NamesThatNoBytesGiveHaveNoForm) {
    for (const char8_t* name : {u8"é", u8"😀", u8"한글", u8"〜" /* wave dash: Windows has the tilde */,
                                u8"a\\b", u8"\U000F8140" /* a defined code */, u8"\U000F0041" /* A */,
                                u8"\U000F0095b" /* would join with the b */, u8"\U000FFD41"}) {
        EXPECT_EQ(StoreNameOfDiskName(Utf8(name)), std::nullopt) << Utf8(name);
    }
    EXPECT_EQ(StoreNameOfDiskName("\xC3"), std::nullopt);
    EXPECT_EQ(StoreNameOfDiskName("\xC0\xAF"), std::nullopt); // an overlong slash
    EXPECT_EQ(StoreNameOfDiskName("\xED\xA0\x80"), std::nullopt);
}

struct PathCase {
    const char* path;
    const char8_t* diskPath; // null: refused
    DWORD error = ERROR_SUCCESS;
};

class DiskPaths : public ::testing::TestWithParam<PathCase> {};

TEST_P(DiskPaths, FollowTheRules) {
    const auto diskPath = DiskPathOfStorePath(GetParam().path);
    if (GetParam().diskPath == nullptr) {
        EXPECT_EQ(diskPath, std::nullopt);
        EXPECT_EQ(GetLastError(), GetParam().error);
    } else {
        EXPECT_EQ(diskPath, Utf8(GetParam().diskPath));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Rules, DiskPaths,
    ::testing::Values(
        PathCase{"\\a\\b", u8"/a/b"}, PathCase{"a\\b", u8"a/b"}, PathCase{"\\", u8"/"},
        PathCase{"\\\\a\\\\b\\", u8"/a/b"}, PathCase{"\\表\\b", u8"/表/b"}, PathCase{"\\a\\..b", u8"/a/..b"},
        PathCase{"\\a\\b. ", u8"/a/b. "}, PathCase{"\\a b\\c:d", u8"/a b/c:d"},
        PathCase{"\\a\\..\\b", nullptr, ERROR_INVALID_NAME}, PathCase{"\\a\\.", nullptr, ERROR_INVALID_NAME},
        PathCase{"..", nullptr, ERROR_INVALID_NAME}, PathCase{"\\a\\. .\\b", nullptr, ERROR_INVALID_NAME},
        PathCase{"\\a\\  \\b", nullptr, ERROR_INVALID_NAME},
        PathCase{"\\a\\...", nullptr, ERROR_INVALID_NAME}, PathCase{"\\a/../b", nullptr, ERROR_INVALID_NAME},
        PathCase{"/etc", nullptr, ERROR_INVALID_NAME}, PathCase{"C:\\a", nullptr, ERROR_INVALID_DRIVE},
        PathCase{"z:", nullptr, ERROR_INVALID_DRIVE}, PathCase{"", nullptr, ERROR_PATH_NOT_FOUND}));

// A double-byte character whose second byte is a slash is one undefined character, and no way out.
TEST(DiskPaths, ASlashBehindALeadByteSeparatesNothing) {
    const std::string path = "\\a\\" + Bytes({0x95, '/', 'b'});
    EXPECT_EQ(DiskPathOfStorePath(path.c_str()), "/a/" + Utf8(u8"\U000F952Fb"));
}

TEST(StorePaths, AreWrittenWithBackslashes) {
    EXPECT_EQ(StorePathOfUtf8("/tmp/vlq/db").path, "\\tmp\\vlq\\db");
    EXPECT_EQ(StorePathOfUtf8("//tmp//./db/").path, "\\tmp\\db");
    EXPECT_EQ(StorePathOfUtf8(Utf8(u8"/見本/表")).path, "\\見本\\表");
    EXPECT_EQ(StorePathOfUtf8("/").path, "\\");
    EXPECT_EQ(StorePathOfUtf8("/no-such-folder/x/../db").path, "\\no-such-folder\\db");
    const std::string here = StorePathOfUtf8(".").path;
    EXPECT_EQ(StorePathOfUtf8("db").path, here + "\\db");
}

TEST(StorePaths, NameTheCharacterThatHasNoForm) {
    EXPECT_EQ(StorePathOfUtf8(Utf8(u8"/見本/caf\u00E9")).offender, Utf8(u8"\u00E9"));
    EXPECT_EQ(StorePathOfUtf8("/a/b\\c").offender, "\\");
    EXPECT_EQ(StorePathOfUtf8("/a/ /c").offender, " ");
    EXPECT_EQ(StorePathOfUtf8(Utf8(u8"/a/\U0001F600")).path, "");
}

} // namespace
