// What the store expects of the calls of <windows.h>, held against the real ones too: where the two disagree,
// ours are wrong.

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

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

} // namespace
