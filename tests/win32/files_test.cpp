#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>
#include <windows.h>

#include "tests/win32/store_folder.h"
#include "win32/fault_calls.h"

namespace {

HANDLE HandleOf(HFILE file) {
    return reinterpret_cast<HANDLE>(static_cast<intptr_t>(file));
}

class FilesTest : public StoreFolderTest {
protected:
    bool Write(HFILE file, const std::string& bytes) {
        return _lwrite(file, bytes.data(), static_cast<UINT>(bytes.size())) == bytes.size();
    }
};

// A position beyond a LONG would come back negative, and a caller would write somewhere else.
TEST_F(FilesTest, PositionsBeyondALongAreRefusedAndLeftUntouched) {
    const HFILE file = _lcreat(Path("big").c_str(), 0);
    ASSERT_EQ(_llseek(file, INT32_MAX, FILE_BEGIN), INT32_MAX);
    EXPECT_EQ(_llseek(file, 1, FILE_CURRENT), HFILE_ERROR);
    EXPECT_EQ(_llseek(file, 0, FILE_CURRENT), INT32_MAX);
    _lclose(file);
}

TEST_F(FilesTest, AFullDiskShowsInTheBytesWritten) {
    const HFILE file = _lcreat(Path("f").c_str(), 0);
    FaultCalls faults;
    faults.CutWriteAt(1);
    EXPECT_EQ(_lwrite(file, "12345678", 8), 4u);
    EXPECT_EQ(GetLastError(), ERROR_DISK_FULL);
    EXPECT_EQ(_lwrite(file, "12345678", 8), static_cast<UINT>(HFILE_ERROR));
    faults.Reset();
    faults.FailAt(1, EINTR, kFaultWrite);
    EXPECT_EQ(_lwrite(file, "5678", 4), 4u);
    faults.FailAt(1, EIO, kFaultFlush);
    EXPECT_FALSE(FlushFileBuffers(HandleOf(file)));
    EXPECT_EQ(GetLastError(), ERROR_IO_DEVICE);
    _lclose(file);
    EXPECT_EQ(ReadOnDisk("f"), "12345678");
}

TEST_F(FilesTest, ReadsCutShortByTheSystemAreCompleted) {
    WriteOnDisk("f", "12345678");
    const HFILE file = _lopen(Path("f").c_str(), OF_READ);
    FaultCalls faults;
    faults.CutReadAt(1);
    faults.FailAt(2, EINTR, kFaultRead);
    char buffer[8];
    EXPECT_EQ(_lread(file, buffer, 8), 8u);
    EXPECT_EQ(std::string(buffer, 8), "12345678");
    _lclose(file);
}

// Locks belong to openings, but a test within one process could agree with itself by chance.
TEST_F(FilesTest, SharingHoldsAmongProcesses) {
    WriteOnDisk("f", "old");
    const HFILE writer = _lopen(Path("f").c_str(), OF_READWRITE | OF_SHARE_DENY_WRITE);
    ASSERT_NE(writer, HFILE_ERROR);
    const pid_t child = fork();
    if (child == 0) {
        const bool refused = _lopen(Path("f").c_str(), OF_READWRITE) == HFILE_ERROR &&
                             GetLastError() == ERROR_SHARING_VIOLATION && !DeleteFileA(Path("f").c_str());
        const bool readable = _lopen(Path("f").c_str(), OF_READ) != HFILE_ERROR;
        _exit(refused && readable ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    _lclose(writer);
    EXPECT_TRUE(DeleteFileA(Path("f").c_str()));
}

// Between opening a file and locking it another program may put a new file under the name.  What is written
// must not go to the one without a name.
TEST_F(FilesTest, AFileReplacedWhileItIsOpenedIsOpenedAgain) {
    WriteOnDisk("f", "old");
    WriteOnDisk("new", "new");
    FaultCalls faults;
    faults.At(
        1, [this] { std::filesystem::rename(OnDisk("new"), OnDisk("f")); }, kFaultLock);
    const HFILE file = _lopen(Path("f").c_str(), OF_READWRITE);
    char buffer[4] = {};
    EXPECT_EQ(_lread(file, buffer, 3), 3u);
    EXPECT_STREQ(buffer, "new");
    _lclose(file);
}

TEST_F(FilesTest, WithoutLocksOnlyADenialIsRefused) {
    WriteOnDisk("f", "old");
    FaultCalls faults;
    faults.FailFrom(1, ENOLCK, kFaultLock);
    EXPECT_EQ(_lopen(Path("f").c_str(), OF_READWRITE | OF_SHARE_EXCLUSIVE), HFILE_ERROR);
    EXPECT_EQ(GetLastError(), ERROR_NOT_SUPPORTED);
    const HFILE file = _lopen(Path("f").c_str(), OF_READWRITE);
    EXPECT_NE(file, HFILE_ERROR);
    _lclose(file);
    EXPECT_TRUE(DeleteFileA(Path("f").c_str()));
}

// Whichever call fails, the copy is whole or not there, what stood there before is whole, and no work file
// stays.
TEST_F(FilesTest, ACopyAppearsWholeOrNotAtAll) {
    const std::string bytes(200000, 'x');
    WriteOnDisk("from", bytes);
    unsigned calls = 0;
    {
        const FaultCalls counting;
        ASSERT_TRUE(CopyFileA(Path("from").c_str(), Path("to").c_str(), TRUE));
        calls = counting.count();
    }
    for (unsigned nth = 1; nth <= calls; ++nth) {
        WriteOnDisk("to", "before");
        FaultCalls faults;
        faults.FailAt(nth, EIO);
        const bool copied = CopyFileA(Path("from").c_str(), Path("to").c_str(), FALSE);
        faults.Reset();
        // Behind the replacement only the name may be uncertain; then the whole copy is there.
        const std::string found = ReadOnDisk("to");
        EXPECT_TRUE(found == bytes || (!copied && found == "before")) << "call " << nth;
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.path()), {}), 2)
            << "call " << nth;
    }
}

TEST_F(FilesTest, ACopyKeepsTheTimeOfTheLastWrite) {
    WriteOnDisk("from", "x");
    const auto time = std::filesystem::last_write_time(OnDisk("from")) - std::chrono::hours(1000);
    std::filesystem::last_write_time(OnDisk("from"), time);
    ASSERT_TRUE(CopyFileA(Path("from").c_str(), Path("to").c_str(), TRUE));
    EXPECT_EQ(std::filesystem::last_write_time(OnDisk("to")), time);
    EXPECT_FALSE(CopyFileA(Path("from").c_str(), Path("to").c_str(), TRUE));
    EXPECT_EQ(GetLastError(), ERROR_FILE_EXISTS);
}

} // namespace
