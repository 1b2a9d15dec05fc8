#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>
#include <windows.h>

#include "tests/win32/store_folder.h"
#include "win32/fault_calls.h"

namespace {

class FoldersTest : public StoreFolderTest {};

TEST_F(FoldersTest, ListingGivesStoreNamesAndLeavesOutWhatHasNone) {
    WriteOnDisk(Utf8(u8"表.AID"), "12345");
    std::filesystem::create_directory(OnDisk("folder"));
    WriteOnDisk(Utf8(u8"caf\u00E9.AID"), "");
    WriteOnDisk("back\\slash", "");
    WriteOnDisk("bad\xFF", "");
    WriteOnDisk("   ", "");
    WriteOnDisk(".hidden", "");
    EXPECT_EQ(Listed(Path("*")), (NameSet{".hidden", "folder", "表.AID"}));
    EXPECT_EQ(Listed(Path("*.*")), Listed(Path("*")));

    WIN32_FIND_DATAA entry;
    const HANDLE search = FindFirstFileA(Path("表.AID").c_str(), &entry);
    ASSERT_NE(search, INVALID_HANDLE_VALUE);
    EXPECT_EQ(entry.dwFileAttributes, DWORD{FILE_ATTRIBUTE_ARCHIVE});
    EXPECT_EQ(entry.nFileSizeLow, 5u);
    EXPECT_FALSE(FindNextFileA(search, &entry));
    FindClose(search);
    EXPECT_EQ(GetFileAttributesA(Path("folder").c_str()), DWORD{FILE_ATTRIBUTE_DIRECTORY});
}

// What no list shows nobody else can remove.
TEST_F(FoldersTest, AFolderIsNotKeptByWhatAKilledCopyLeftInIt) {
    WriteOnDisk("from", "12345");
    const std::string from = Path("from"), folder = Path("folder"), to = Path("folder\\to");
    std::filesystem::create_directory(OnDisk("folder"));
    const pid_t child = fork();
    if (child == 0) {
        FaultCalls faults;
        faults.At(
            1, [] { _exit(0); }, kFaultRename);
        CopyFileA(from.c_str(), to.c_str(), TRUE);
        _exit(1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    ASSERT_EQ(status, 0);
    ASSERT_FALSE(std::filesystem::is_empty(OnDisk("folder")));
    EXPECT_TRUE(RemoveDirectoryA(folder.c_str()));

    std::filesystem::create_directory(OnDisk("folder"));
    FaultCalls faults;
    faults.At(
        1, [&] { EXPECT_FALSE(RemoveDirectoryA(folder.c_str())); }, kFaultFlush); // it is being made
    EXPECT_TRUE(CopyFileA(from.c_str(), to.c_str(), TRUE));
    EXPECT_EQ(Listed(Path("folder\\*")), NameSet{"to"});
}

TEST_F(FoldersTest, AListingThatFailsIsNoEmptyOne) {
    WIN32_FIND_DATAA entry;
    EXPECT_EQ(FindFirstFileA(Path("none\\*").c_str(), &entry), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_PATH_NOT_FOUND);
    testing::internal::CaptureStderr();
    EXPECT_EQ(FindFirstFileA(Path("*.AID").c_str(), &entry), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_NOT_SUPPORTED);
    EXPECT_NE(testing::internal::GetCapturedStderr(), "");

    FaultCalls faults;
    faults.FailAt(3, EIO, kFaultNextEntry);
    const HANDLE search = FindFirstFileA(Path("*").c_str(), &entry);
    ASSERT_NE(search, INVALID_HANDLE_VALUE);
    EXPECT_TRUE(FindNextFileA(search, &entry));
    EXPECT_FALSE(FindNextFileA(search, &entry));
    EXPECT_EQ(GetLastError(), ERROR_IO_DEVICE);
    FindClose(search);
}

TEST_F(FoldersTest, DeletesTakeLinksAndLeaveWhatTheyLeadTo) {
    std::filesystem::create_directory(OnDisk("kept"));
    WriteOnDisk("kept/file", "x");
    std::filesystem::create_directory_symlink(OnDisk("kept"), OnDisk("folderlink"));
    std::filesystem::create_symlink(OnDisk("kept/file"), OnDisk("filelink"));
    std::filesystem::create_symlink(OnDisk("nowhere"), OnDisk("dangling"));
    EXPECT_EQ(GetFileAttributesA(Path("folderlink").c_str()),
              DWORD{FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT});
    EXPECT_FALSE(DeleteFileA(Path("folderlink").c_str()));
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
    EXPECT_TRUE(RemoveDirectoryA(Path("folderlink").c_str()));
    EXPECT_FALSE(RemoveDirectoryA(Path("filelink").c_str()));
    EXPECT_TRUE(DeleteFileA(Path("filelink").c_str()));
    EXPECT_TRUE(DeleteFileA(Path("dangling").c_str()));
    EXPECT_EQ(Listed(Path("*")), (NameSet{"kept"}));
    EXPECT_EQ(ReadOnDisk("kept/file"), "x");
}

TEST_F(FoldersTest, NoNameLeadsOutOfAFolder) {
    WriteOnDisk("outside", "x");
    ASSERT_TRUE(CreateDirectoryA(Path("root").c_str(), nullptr));
    for (const char* name : {"root\\..\\outside", "root\\../outside", "root\\.. \\outside"}) {
        EXPECT_FALSE(DeleteFileA(Path(name).c_str())) << name;
        EXPECT_EQ(GetLastError(), ERROR_INVALID_NAME) << name;
        EXPECT_EQ(_lopen(Path(name).c_str(), OF_READ), HFILE_ERROR) << name;
        EXPECT_EQ(_lcreat(Path(name).c_str(), 0), HFILE_ERROR) << name;
        EXPECT_FALSE(MoveFileA(Path("outside").c_str(), Path(name).c_str())) << name;
    }
    EXPECT_FALSE(RemoveDirectoryA(Path("root\\.").c_str()));
    EXPECT_EQ(ReadOnDisk("outside"), "x");
}

TEST_F(FoldersTest, ToAnotherFileSystemAFileIsCopiedAndDeleted) {
    WriteOnDisk("a", "a");
    WriteOnDisk("b", "b");
    FaultCalls faults;
    faults.FailAt(1, EXDEV, kFaultRename);
    EXPECT_FALSE(MoveFileA(Path("a").c_str(), Path("b").c_str()));
    faults.Reset();
    faults.FailAt(1, EXDEV, kFaultRename);
    EXPECT_TRUE(MoveFileA(Path("a").c_str(), Path("c").c_str()));
    faults.Reset();
    faults.FailAt(1, EXDEV, kFaultReplace);
    EXPECT_FALSE(MoveFileExA(Path("c").c_str(), Path("b").c_str(), MOVEFILE_REPLACE_EXISTING));
    EXPECT_EQ(GetLastError(), ERROR_NOT_SAME_DEVICE);
    EXPECT_EQ(Listed(Path("*")), (NameSet{"b", "c"}));
    EXPECT_EQ(ReadOnDisk("c"), "a");
    EXPECT_EQ(ReadOnDisk("b"), "b");
}

// A replacement that returns before the directory is on the disk would be undone by a power failure.
TEST_F(FoldersTest, WriteThroughReportsAFolderThatIsNotOnTheDisk) {
    WriteOnDisk("a", "a");
    WriteOnDisk("b", "b");
    FaultCalls faults;
    faults.FailAt(1, EIO, kFaultFlushDirectory);
    constexpr DWORD kFlags = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
    EXPECT_FALSE(MoveFileExA(Path("a").c_str(), Path("b").c_str(), kFlags));
    EXPECT_EQ(GetLastError(), ERROR_IO_DEVICE);
}

} // namespace
