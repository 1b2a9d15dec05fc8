// What the store expects of the calls of <windows.h>, held against the real ones too: where the two disagree,
// ours are wrong.

#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "tests/support/temporary_folder.h"

namespace {

class WindowsCallsTest : public ::testing::Test {
protected:
    std::string Path(const std::string& name) const { return folder_.storePath() + "\\" + name; }
    void Write(const std::string& name, const std::string& bytes) const {
        const HFILE file = _lcreat(Path(name).c_str(), 0);
        ASSERT_NE(file, HFILE_ERROR) << name;
        ASSERT_EQ(_lwrite(file, bytes.data(), static_cast<UINT>(bytes.size())), bytes.size());
        ASSERT_EQ(_lclose(file), 0);
    }
    std::string Read(const std::string& name) const {
        const HFILE file = _lopen(Path(name).c_str(), OF_READ);
        if (file == HFILE_ERROR) return "none";
        char bytes[100];
        const UINT count = _lread(file, bytes, sizeof bytes);
        _lclose(file);
        return {bytes, count};
    }
    // 0 if the file can be opened, else the error.
    DWORD OpenError(const std::string& name, int mode) const {
        const HFILE file = _lopen(Path(name).c_str(), mode);
        if (file == HFILE_ERROR) return GetLastError();
        _lclose(file);
        return ERROR_SUCCESS;
    }

private:
    const TemporaryFolder folder_;
};

TEST_F(WindowsCallsTest, AFileIsFlushedAndCutThroughItsHandle) {
    Write("表", "0123456789");
    const HFILE file = _lopen(Path("表").c_str(), OF_READWRITE);
    ASSERT_NE(file, HFILE_ERROR);
    const auto handle = reinterpret_cast<HANDLE>(static_cast<intptr_t>(file));
    EXPECT_EQ(_llseek(file, 4, FILE_BEGIN), 4);
    EXPECT_TRUE(SetEndOfFile(handle));
    EXPECT_TRUE(FlushFileBuffers(handle));
    EXPECT_EQ(_llseek(file, 0, FILE_END), 4);
    _lclose(file);
    EXPECT_EQ(Read("表"), "0123");
}

TEST_F(WindowsCallsTest, AMoveSparesItsTargetAndAReplacementDoesNot) {
    Write("a", "a");
    Write("b", "b");
    EXPECT_FALSE(MoveFileA(Path("a").c_str(), Path("b").c_str()));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_ALREADY_EXISTS});
    EXPECT_EQ(Read("b"), "b");
    constexpr DWORD kFlags = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
    EXPECT_TRUE(MoveFileExA(Path("a").c_str(), Path("b").c_str(), kFlags));
    EXPECT_EQ(Read("a"), "none");
    EXPECT_EQ(Read("b"), "a");
    ASSERT_TRUE(CreateDirectoryA(Path("folder").c_str(), nullptr));
    EXPECT_FALSE(MoveFileExA(Path("b").c_str(), Path("folder").c_str(), kFlags));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_ACCESS_DENIED});
    EXPECT_TRUE(MoveFileA(Path("folder").c_str(), Path("moved").c_str()));
}

TEST_F(WindowsCallsTest, AnOpenFileIsNeitherDeletedNorMovedNorReplaced) {
    Write("open", "open");
    Write("other", "other");
    const HFILE file = _lopen(Path("open").c_str(), OF_READ);
    ASSERT_NE(file, HFILE_ERROR);
    EXPECT_FALSE(DeleteFileA(Path("open").c_str()));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_SHARING_VIOLATION});
    EXPECT_FALSE(MoveFileA(Path("open").c_str(), Path("new").c_str()));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_SHARING_VIOLATION});
    EXPECT_FALSE(MoveFileExA(Path("other").c_str(), Path("open").c_str(), MOVEFILE_REPLACE_EXISTING));
    _lclose(file);
    EXPECT_EQ(Read("open"), "open");
    EXPECT_TRUE(DeleteFileA(Path("open").c_str()));
}

TEST_F(WindowsCallsTest, OpeningsDenyWhatTheySay) {
    Write("f", "x");
    const struct {
        int first, second;
        DWORD error;
    } cases[] = {
        {OF_READ, OF_READWRITE, ERROR_SUCCESS},
        {OF_READWRITE, OF_READWRITE, ERROR_SUCCESS},
        {OF_READWRITE | OF_SHARE_DENY_WRITE, OF_READ, ERROR_SUCCESS},
        {OF_READWRITE | OF_SHARE_DENY_WRITE, OF_READWRITE, ERROR_SHARING_VIOLATION},
        {OF_READ | OF_SHARE_DENY_WRITE, OF_READ | OF_SHARE_DENY_WRITE, ERROR_SUCCESS},
        {OF_READ | OF_SHARE_DENY_WRITE, OF_READWRITE, ERROR_SHARING_VIOLATION},
        {OF_READWRITE, OF_READ | OF_SHARE_DENY_WRITE, ERROR_SHARING_VIOLATION},
        {OF_READ, OF_READWRITE | OF_SHARE_DENY_READ, ERROR_SHARING_VIOLATION},
        {OF_READWRITE | OF_SHARE_EXCLUSIVE, OF_READ, ERROR_SHARING_VIOLATION},
        {OF_READ, OF_READWRITE | OF_SHARE_EXCLUSIVE, ERROR_SHARING_VIOLATION},
        {OF_READ | OF_SHARE_DENY_NONE, OF_READ | OF_SHARE_DENY_NONE, ERROR_SUCCESS},
    };
    for (const auto& test : cases) {
        const HFILE file = _lopen(Path("f").c_str(), test.first);
        ASSERT_NE(file, HFILE_ERROR);
        EXPECT_EQ(OpenError("f", test.second), test.error) << std::hex << test.first << " " << test.second;
        _lclose(file);
        EXPECT_EQ(OpenError("f", test.second), DWORD{ERROR_SUCCESS});
    }
}

TEST_F(WindowsCallsTest, FailuresSayWhy) {
    EXPECT_EQ(OpenError("none", OF_READ), DWORD{ERROR_FILE_NOT_FOUND});
    EXPECT_EQ(OpenError("none\\f", OF_READ), DWORD{ERROR_PATH_NOT_FOUND});
    ASSERT_TRUE(CreateDirectoryA(Path("folder").c_str(), nullptr));
    EXPECT_EQ(OpenError("folder", OF_READ), DWORD{ERROR_ACCESS_DENIED});
    EXPECT_FALSE(CreateDirectoryA(Path("folder").c_str(), nullptr));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_ALREADY_EXISTS});
    EXPECT_FALSE(CreateDirectoryA(Path("none\\folder").c_str(), nullptr));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_PATH_NOT_FOUND});
    EXPECT_FALSE(DeleteFileA(Path("folder").c_str()));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_ACCESS_DENIED});
    Write("folder\\f", "");
    EXPECT_FALSE(RemoveDirectoryA(Path("folder").c_str()));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_DIR_NOT_EMPTY});
    EXPECT_FALSE(RemoveDirectoryA(Path("folder\\f").c_str()));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_DIRECTORY});
    EXPECT_FALSE(CopyFileA(Path("folder\\f").c_str(), Path("folder\\f").c_str(), TRUE));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_FILE_EXISTS});
    WIN32_FIND_DATAA entry;
    EXPECT_EQ(FindFirstFileA(Path("none\\*").c_str(), &entry), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_PATH_NOT_FOUND});
    EXPECT_EQ(FindFirstFileA(Path("none").c_str(), &entry), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_FILE_NOT_FOUND});
}

TEST(WindowsClock, DatesAndFileTimesAgree) {
    const struct {
        SYSTEMTIME time;
        uint64_t steps; // counted by hand in days from 1601
    } cases[] = {
        {{1601, 1, 1, 1, 0, 0, 0, 0}, 0},
        {{1904, 1, 5, 1, 0, 0, 0, 0}, 110667ull * 86400 * 10000000},
        {{1970, 1, 4, 1, 0, 0, 0, 0}, 134774ull * 86400 * 10000000},
        {{2000, 2, 2, 29, 23, 59, 59, 999}, (145790ull * 86400 + 86399) * 10000000 + 9990000},
        {{2100, 3, 1, 1, 12, 0, 0, 0}, (182315ull * 86400 + 43200) * 10000000},
    };
    for (const auto& test : cases) {
        FILETIME fileTime;
        ASSERT_TRUE(SystemTimeToFileTime(&test.time, &fileTime)) << test.time.wYear;
        EXPECT_EQ(uint64_t{fileTime.dwHighDateTime} << 32 | fileTime.dwLowDateTime, test.steps)
            << test.time.wYear;
        SYSTEMTIME back;
        ASSERT_TRUE(FileTimeToSystemTime(&fileTime, &back));
        EXPECT_EQ(back.wYear, test.time.wYear);
        EXPECT_EQ(back.wMonth, test.time.wMonth);
        EXPECT_EQ(back.wDay, test.time.wDay);
        EXPECT_EQ(back.wDayOfWeek, test.time.wDayOfWeek) << test.time.wYear;
        EXPECT_EQ(back.wSecond, test.time.wSecond);
        EXPECT_EQ(back.wMilliseconds, test.time.wMilliseconds);
    }
    FILETIME fileTime;
    for (const SYSTEMTIME& wrong :
         {SYSTEMTIME{2100, 2, 0, 30, 0, 0, 0, 0}, SYSTEMTIME{2001, 13, 0, 1, 0, 0, 0, 0},
          SYSTEMTIME{1600, 1, 0, 1, 0, 0, 0, 0}, SYSTEMTIME{2001, 1, 0, 1, 24, 0, 0, 0}}) {
        EXPECT_FALSE(SystemTimeToFileTime(&wrong, &fileTime)) << wrong.wYear;
    }
}

TEST(WindowsMemory, AGrownBlockIsZeroBehindItsOldBytes) {
    auto* block = static_cast<unsigned char*>(GlobalAlloc(GPTR, 1000));
    for (int i = 0; i < 1000; ++i) block[i] = 0xAB;
    block = static_cast<unsigned char*>(GlobalReAlloc(block, 3000000, GMEM_MOVEABLE | GMEM_ZEROINIT));
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(block[999], 0xAB);
    for (int i = 1000; i < 3000000; ++i) ASSERT_EQ(block[i], 0) << i;
    EXPECT_EQ(GlobalFree(block), nullptr);
}

// A digest of code page 932 in both directions, taken from the real calls: each pair and single byte with and
// without strictness, each character with and without best fit.
class Digest {
public:
    void Add(uint32_t value) { sum_ = (sum_ ^ value) * 0x100000001B3; }
    uint64_t sum() const { return sum_; }

private:
    uint64_t sum_ = 0xCBF29CE484222325;
};

TEST(WindowsCodePages, BytesToCharactersAsOnWindows) {
    for (const auto& [flags, expected] : {std::pair{DWORD{0}, 18175537728378361704ull},
                                          std::pair{DWORD{MB_ERR_INVALID_CHARS}, 3364455498489022176ull}}) {
        Digest digest;
        for (unsigned code = 1; code < 0x10000; ++code) {
            char bytes[2] = {static_cast<char>(code >> 8), static_cast<char>(code)};
            const int skip = code < 0x100 ? 1 : 0;
            WCHAR wide[4] = {};
            const int count = MultiByteToWideChar(932, flags, bytes + skip, 2 - skip, wide, 4);
            digest.Add(static_cast<uint32_t>(count));
            for (int i = 0; i < count; ++i) digest.Add(wide[i]);
        }
        EXPECT_EQ(digest.sum(), expected) << flags;
    }
}

TEST(WindowsCodePages, CharactersToBytesAsOnWindows) {
    for (const auto& [flags, expected] : {std::pair{DWORD{0}, 7236304400816361292ull},
                                          std::pair{DWORD{WC_NO_BEST_FIT_CHARS}, 6138618480466728835ull}}) {
        Digest digest;
        for (unsigned code = 1; code < 0x10000; ++code) {
            const auto wide = static_cast<WCHAR>(code);
            char bytes[4] = {};
            BOOL used = FALSE;
            digest.Add(
                static_cast<uint32_t>(WideCharToMultiByte(932, flags, &wide, 1, bytes, 4, nullptr, &used)));
            digest.Add(used != FALSE ? 1 : 0);
            for (const char byte : bytes) digest.Add(static_cast<uint8_t>(byte));
        }
        EXPECT_EQ(digest.sum(), expected) << flags;
    }
}

std::vector<unsigned> WideOfUtf8(const std::string& text, DWORD flags) {
    WCHAR wide[16];
    const int count =
        MultiByteToWideChar(CP_UTF8, flags, text.data(), static_cast<int>(text.size()), wide, 16);
    return {wide, wide + count};
}

TEST(WindowsCodePages, DamagedUtf8BecomesReplacementsOrIsRefused) {
    using Units = std::vector<unsigned>;
    EXPECT_EQ(WideOfUtf8("\xF0\x9F\x98\x80", 0), (Units{0xD83D, 0xDE00}));
    EXPECT_EQ(WideOfUtf8("\xE3\x81x", 0), (Units{0xFFFD, 'x'}));
    EXPECT_EQ(WideOfUtf8("\xE3\xE3\x81\x82", 0), (Units{0xFFFD, 0x3042}));
    EXPECT_EQ(WideOfUtf8("\xC0\xAF", 0), (Units{0xFFFD, 0xFFFD}));
    EXPECT_EQ(WideOfUtf8("\xED\xA0\x80", MB_ERR_INVALID_CHARS), Units{});
    EXPECT_EQ(GetLastError(), DWORD{ERROR_NO_UNICODE_TRANSLATION});
    const WCHAR lone[] = {'a', 0xD800, 'b'};
    char text[8] = {};
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, lone, 3, text, 8, nullptr, nullptr), 5);
    EXPECT_STREQ(text,
                 "a\xEF\xBF\xBD"
                 "b");
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, lone, 3, text, 8, nullptr, nullptr), 0);
}

TEST(WindowsCodePages, ARoomTooSmallIsRefused) {
    WCHAR wide[2];
    EXPECT_EQ(MultiByteToWideChar(932, 0, "abc", 3, wide, 2), 0);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_EQ(MultiByteToWideChar(932, 0, "abc", -1, nullptr, 0), 4);
    EXPECT_EQ(MultiByteToWideChar(932, 0, "表示", -1, nullptr, 0), 3);
    EXPECT_EQ(MultiByteToWideChar(932, 0, "abc", 0, wide, 2), 0);
}

} // namespace
