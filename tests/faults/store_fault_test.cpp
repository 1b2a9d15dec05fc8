// The store when system calls fail: for each operation every call is refused in turn, once and from there
// on, and the process is stopped before each.  No record that was there may suffer, and no operation may
// report a success that isn't one.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <functional>

#include "plugin/store/record.h"
#include "plugin/store/record_index.h"
#include "tests/support/store_fixture.h"
#include "win32/fault_calls.h"

namespace {

class StoreFaultTest : public StoreTest {
public:
    void SetUp() override {
        MakeGroup("G", {"a", "b", "c"});
        before_ = BytesOfFile(fileOf("G"));
        for (int32_t number = 0; number < 3; ++number) stored_.push_back(Stored("G", number));
        MakeCurRecord("new");
        ASSERT_EQ(WriteRecord("G", -1), 0);
        appended_ = Stored("G", 3);
    }

    // The group as it was, and what the operation begins with.
    void Restore() {
        WriteFileBytes(fileOf("G"), before_);
        std::filesystem::remove(root() / "New.AID");
        FreeHandle(globals->rihList);
        std::strcpy(globals->aidbfname, "G");
        LoadRihList("G");
        MakeCurRecord("new");
    }

    int32_t Append() { return WriteRecord("G", -1); }
    int32_t AppendToNewGroup() { return WriteRecord("New", -1); }
    int32_t Rewrite() { return WriteRecord("G", 1); }
    int32_t Delete() { return DeleteRecord("G", 1); }

    bool Has(size_t number, size_t as) { return Stored("G", static_cast<int32_t>(number)) == stored_[as]; }

    // Bodies and all fields but those that a rewrite gives are what they were; and the header is wholly the
    // old or wholly the new one.
    void ExpectOldOrRewritten(bool mustBeNew, const std::string& what) {
        const Bytes record = Stored("G", 1);
        if (!mustBeNew && record == stored_[1]) return;
        Bytes expected = stored_[1];
        ASSERT_EQ(record.size(), expected.size()) << what;
        std::copy(appended_.begin() + 24, appended_.begin() + 408, expected.begin() + 24);
        std::copy(record.begin() + 412, record.begin() + 416, expected.begin() + 412);
        ASSERT_EQ(record, expected) << what;
    }

    void CheckAppend(int32_t result, const std::string& what) {
        for (size_t number = 0; number < 3; ++number) ASSERT_TRUE(Has(number, number)) << what;
        const uint32_t count = CountRecords("G");
        if (result == 0) {
            ASSERT_EQ(count, 4u) << what;
        }
        if (count == 3) return;
        // Said to have failed, but its count could not be taken back: it has to be whole then.
        ASSERT_EQ(count, 4u) << what;
        ASSERT_EQ(Stored("G", 3), appended_) << what;
    }

    void CheckNewGroup(int32_t result, const std::string& what) {
        CheckUntouched(what);
        const uint32_t count = CountRecords("New");
        if (result == 0) {
            ASSERT_EQ(count, 1u) << what;
        }
        ASSERT_LE(count, 1u) << what;
        if (count == 1) {
            ASSERT_EQ(Stored("New", 0), appended_) << what;
        }
    }

    void CheckRewrite(int32_t result, const std::string& what) {
        ASSERT_EQ(CountRecords("G"), 3u) << what;
        ASSERT_TRUE(Has(0, 0) && Has(2, 2)) << what;
        ExpectOldOrRewritten(result == 0, what);
    }

    void CheckDelete(int32_t result, const std::string& what) {
        // If no call works behind the replacement, nobody can know of it: the file is whole all the same.
        const bool unknown = what.find("from there on") != std::string::npos && CountRecords("G") == 2;
        if (result != 0 && !unknown) return CheckUntouched(what);
        ASSERT_EQ(CountRecords("G"), 2u) << what;
        ASSERT_TRUE(Has(0, 0) && Has(1, 2)) << what;
    }

    void CheckUntouched(const std::string& what) { ASSERT_EQ(BytesOfFile(fileOf("G")), before_) << what; }

    // The list must tell the same as the file.
    void CheckList(const std::string& what) {
        ASSERT_EQ(RihCount(globals->rihList), static_cast<int32_t>(CountRecords("G"))) << what;
        for (int32_t row = 0; row < RihCount(globals->rihList); ++row) {
            const RihItem* item = RihItemOfRow(globals->rihList, row);
            const Bytes record = Stored("G", static_cast<int32_t>(item->recNo));
            ASSERT_FALSE(record.empty()) << what;
            ASSERT_STREQ(item->name, reinterpret_cast<const char*>(&record[24])) << what;
        }
    }

    using Run = int32_t (StoreFaultTest::*)();
    using Check = void (StoreFaultTest::*)(int32_t, const std::string&);

    using Fault = std::function<void(FaultCalls&, unsigned)>;

    // How many calls of a kind the operation makes when all goes well.
    unsigned CallsOf(Run run, FaultCall kind) {
        Restore();
        FaultCalls faults;
        EXPECT_EQ((this->*run)(), 0);
        return faults.count(kind);
    }

    // Runs the operation with a fault at its Nth call of a kind, for every N.
    void FailEveryCall(Run run, Check check, const char* name, FaultCall kind, const Fault& fault) {
        const unsigned calls = CallsOf(run, kind);
        unsigned failures = 0;
        for (unsigned nth = 1; nth <= calls + 1; ++nth) {
            Restore();
            int32_t result;
            {
                FaultCalls faults;
                fault(faults, nth);
                result = (this->*run)();
            }
            if (result != 0) ++failures;
            const std::string what = std::string(name) + " at call " + std::to_string(nth);
            (this->*check)(result, what);
            if (HasFatalFailure()) return;
            if (result == 0 && run != &StoreFaultTest::AppendToNewGroup) CheckList(what);
            if (HasFatalFailure()) return;
        }
        // A read that is cut short goes on; everything else must have been noticed at least once.
        EXPECT_EQ(failures > 0, kind != kFaultRead) << name << " of " << calls;
    }

    void FailInEveryWay(Run run, Check check) {
        FailEveryCall(run, check, "I/O error, once", kFaultAnyCall,
                      [](FaultCalls& faults, unsigned nth) { faults.FailAt(nth, EIO); });
        FailEveryCall(run, check, "I/O error, from there on", kFaultAnyCall,
                      [](FaultCalls& faults, unsigned nth) { faults.FailFrom(nth, EIO); });
        FailEveryCall(run, check, "access denied, once", kFaultAnyCall,
                      [](FaultCalls& faults, unsigned nth) { faults.FailAt(nth, EACCES); });
        FailEveryCall(run, check, "a write cut short", kFaultWrite,
                      [](FaultCalls& faults, unsigned nth) { faults.CutWriteAt(nth); });
        FailEveryCall(run, check, "full disk, once", kFaultWrite,
                      [](FaultCalls& faults, unsigned nth) { faults.FailAt(nth, ENOSPC, kFaultWrite); });
        FailEveryCall(run, check, "full disk, from there on", kFaultWrite,
                      [](FaultCalls& faults, unsigned nth) { faults.FailFrom(nth, ENOSPC, kFaultWrite); });
        FailEveryCall(run, check, "a flush that fails", kFaultFlush,
                      [](FaultCalls& faults, unsigned nth) { faults.FailFrom(nth, EIO, kFaultFlush); });
        FailEveryCall(run, check, "a read cut short", kFaultRead,
                      [](FaultCalls& faults, unsigned nth) { faults.CutReadAt(nth); });
    }

    // The process ends before its Nth call, for every N; whoever comes next finds a state that was whole.
    void StopBeforeEveryCall(Run run, Check check) {
        for (unsigned nth = 1;; ++nth) {
            Restore();
            const pid_t child = fork();
            ASSERT_GE(child, 0);
            if (child == 0) {
                FaultCalls faults;
                faults.At(nth, [] { _exit(1); });
                (this->*run)();
                _exit(0);
            }
            int status = 0;
            ASSERT_EQ(waitpid(child, &status, 0), child);
            ASSERT_TRUE(WIFEXITED(status));
            const bool finished = WEXITSTATUS(status) == 0;
            const std::string what = "stopped before call " + std::to_string(nth);
            CheckStopped(run, check, finished, what);
            if (HasFatalFailure() || finished) return;
        }
    }

    // Nobody has been told anything: the old state and the new one are both right.
    void CheckStopped(Run run, Check check, bool finished, const std::string& what) {
        const bool deleted = run == &StoreFaultTest::Delete && CountRecords("G") == 2;
        (this->*check)(finished || deleted ? 0 : -1, what);
        if (HasFatalFailure()) return;
        // And the store goes on from there.
        const uint32_t count = CountRecords("G");
        MakeCurRecord("new");
        ASSERT_EQ(Append(), 0) << what;
        ASSERT_EQ(Stored("G", static_cast<int32_t>(count)), appended_) << what;
        ASSERT_EQ(DeleteRecord("G", static_cast<int32_t>(count)), 0) << what;
        ASSERT_EQ(CountRecords("G"), count) << what;
        ASSERT_TRUE(Has(0, 0)) << what;
    }

    Bytes before_;
    std::vector<Bytes> stored_;
    Bytes appended_; ///< the new record as it is stored
};

} // namespace

TEST_F(StoreFaultTest, AppendFails) {
    FailInEveryWay(&StoreFaultTest::Append, &StoreFaultTest::CheckAppend);
}

TEST_F(StoreFaultTest, AppendToANewGroupFails) {
    FailInEveryWay(&StoreFaultTest::AppendToNewGroup, &StoreFaultTest::CheckNewGroup);
}

TEST_F(StoreFaultTest, RewriteFails) {
    FailInEveryWay(&StoreFaultTest::Rewrite, &StoreFaultTest::CheckRewrite);
}

TEST_F(StoreFaultTest, DeleteFails) {
    FailInEveryWay(&StoreFaultTest::Delete, &StoreFaultTest::CheckDelete);
}

TEST_F(StoreFaultTest, AppendIsStopped) {
    StopBeforeEveryCall(&StoreFaultTest::Append, &StoreFaultTest::CheckAppend);
}

TEST_F(StoreFaultTest, AppendToANewGroupIsStopped) {
    StopBeforeEveryCall(&StoreFaultTest::AppendToNewGroup, &StoreFaultTest::CheckNewGroup);
}

TEST_F(StoreFaultTest, RewriteIsStopped) {
    StopBeforeEveryCall(&StoreFaultTest::Rewrite, &StoreFaultTest::CheckRewrite);
}

TEST_F(StoreFaultTest, DeleteIsStopped) {
    StopBeforeEveryCall(&StoreFaultTest::Delete, &StoreFaultTest::CheckDelete);
}

// A failed append leaves the file byte for byte as it was, when the disk is only full.
TEST_F(StoreFaultTest, AFullDiskLeavesTheFileAsItWas) {
    for (unsigned nth = 1; nth <= 2; ++nth) { // the record, the count
        Restore();
        FaultCalls faults;
        faults.FailAt(nth, ENOSPC, kFaultWrite);
        EXPECT_EQ(Append(), -1);
        EXPECT_EQ(globals->curRecordNo, -1);
        EXPECT_EQ(RihCount(globals->rihList), 3);
        CheckUntouched("write " + std::to_string(nth));
        faults.Reset();
        EXPECT_EQ(Append(), 0); // the record is still there to be stored elsewhere
        EXPECT_EQ(Stored("G", 3), appended_);
    }
}

// A failed read says nothing about the record, so it gives none.
TEST_F(StoreFaultTest, AReadThatFailsGivesNoRecord) {
    unsigned calls = 1;
    for (unsigned nth = 1; nth <= calls; ++nth) {
        for (const bool cut : {false, true}) {
            for (const uint32_t depth : {kReadWhole, kReadHeader, kReadPreview}) {
                HandleOwner good(NewRecord());
                AidbReadRecord("G", 2, &good.get(), depth, true);
                HandleOwner record(NewRecord());
                {
                    FaultCalls faults;
                    if (cut)
                        faults.CutReadAt(nth);
                    else
                        faults.FailAt(nth, EIO);
                    AidbReadRecord("G", 2, &record.get(), depth, true);
                    calls = std::max(calls, faults.count());
                }
                uint32_t size;
                std::memcpy(&size, record.bytes() + 4, sizeof size);
                if (size == 0) continue;
                const size_t bytes = depth == kReadHeader ? 428 : kObjectsOffset;
                ASSERT_EQ(std::memcmp(record.bytes(), good.bytes(), bytes), 0) << nth;
            }
        }
    }
}

// The folder lies on another file system, where no rename reaches: the complete copy is made beside the
// group first.
TEST_F(StoreFaultTest, DeleteReachesAnotherFileSystem) {
    std::filesystem::create_directory(root() / "F");
    const auto file = root() / "F" / "G.AID";
    WriteFileBytes(fileOf("G"), before_);
    ASSERT_EQ(Delete(), 0);
    const Bytes deleted = BytesOfFile(fileOf("G"));
    unsigned calls = 1;
    for (unsigned nth = 1; nth <= calls + 1; ++nth) {
        WriteFileBytes(file, before_);
        int32_t result;
        {
            FaultCalls faults;
            faults.FailAt(1, EXDEV, kFaultReplace);
            faults.FailAt(nth, ENOSPC);
            result = DeleteRecord("\\F\\G", 1);
            calls = std::max(calls, faults.count());
        }
        ASSERT_EQ(BytesOfFile(file), result == 0 ? deleted : before_) << "full at call " << nth;
    }
    ASSERT_EQ(BytesOfFile(file), deleted); // the last round had no other fault
    EXPECT_FALSE(std::filesystem::exists(root() / "VLQ.TMP"));
    EXPECT_FALSE(std::filesystem::exists(root() / "F" / "VLQ.TMP"));
}

// A shared root that only lets itself be read.
TEST_F(StoreFaultTest, AFolderThatCannotBeWritten) {
    if (geteuid() == 0) {
        FaultCalls faults; // nothing is denied to root, so the calls are made to say it
        Restore();
        faults.FailFrom(1, EACCES, kFaultWrite);
        EXPECT_EQ(Append(), -1);
        EXPECT_EQ(Delete(), -1);
    } else {
        Restore();
        std::filesystem::permissions(root(),
                                     std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
        std::filesystem::permissions(fileOf("G"), std::filesystem::perms::owner_read);
        EXPECT_EQ(Append(), -1);
        EXPECT_EQ(Delete(), -1);
        std::filesystem::permissions(root(), std::filesystem::perms::owner_all);
        std::filesystem::permissions(fileOf("G"), std::filesystem::perms::owner_all);
    }
    CheckUntouched("read only");
}
