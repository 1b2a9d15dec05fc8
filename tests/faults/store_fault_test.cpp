// The store when system calls fail: for each operation every call is refused in turn, once and from there
// on, and the process is stopped before each.  No record that was there may suffer, and no operation may
// report a success that isn't one.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "plugin/store/record.h"
#include "plugin/store/record_index.h"
#include "tests/faults/fault_harness.h"
#include "tests/support/store_fixture.h"

namespace {

class StoreFaultTest : public StoreTest {
public:
    void SetUp() override {
        MakeGroup("G", {"a", "b", "c"});
        before_ = BytesOfFile(fileOf("G"));
        stored_ = RecordsInFile(fileOf("G"));
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

    // The file is read by itself here, since reading whole records takes its time.
    std::vector<Bytes> Records() { return RecordsInFile(fileOf("G")); }

    // Bodies and all fields but those that a rewrite gives are what they were; and the header is wholly the
    // old or wholly the new one.
    void ExpectOldOrRewritten(const Bytes& record, bool mustBeNew, const std::string& what) {
        if (!mustBeNew && record == stored_[1]) return;
        Bytes expected = stored_[1];
        ASSERT_EQ(record.size(), expected.size()) << what;
        std::copy(appended_.begin() + 24, appended_.begin() + 408, expected.begin() + 24);
        std::copy(record.begin() + 412, record.begin() + 416, expected.begin() + 412);
        ASSERT_EQ(record, expected) << what;
    }

    void CheckAppend(int32_t result, const std::string& what) {
        // Said to have failed, but its count could not be taken back: it has to be whole then.
        std::vector<Bytes> records = Records();
        if (result == 0 || records.size() == 4) {
            ASSERT_EQ(records.size(), 4u) << what;
            ASSERT_EQ(records.back(), appended_) << what;
            records.pop_back();
        }
        ASSERT_EQ(records, stored_) << what;
    }

    void CheckNewGroup(int32_t result, const std::string& what) {
        CheckUntouched(what);
        const std::vector<Bytes> records = RecordsInFile(root() / "New.AID");
        ASSERT_TRUE((records.empty() && result != 0) || records == std::vector<Bytes>{appended_}) << what;
    }

    void CheckRewrite(int32_t result, const std::string& what) {
        const std::vector<Bytes> records = Records();
        ASSERT_EQ(records.size(), 3u) << what;
        ASSERT_TRUE(records[0] == stored_[0] && records[2] == stored_[2]) << what;
        ExpectOldOrRewritten(records[1], result == 0, what);
    }

    void CheckDelete(int32_t result, const std::string& what) {
        // If no call works behind the replacement, nobody can know of it: the file is whole all the same.
        const bool unknown = what.find("from there on") != std::string::npos && Records().size() == 2;
        if (result != 0 && !unknown) return CheckUntouched(what);
        ASSERT_EQ(Records(), (std::vector<Bytes>{stored_[0], stored_[2]})) << what;
    }

    void CheckUntouched(const std::string& what) { ASSERT_EQ(BytesOfFile(fileOf("G")), before_) << what; }

    // The list must tell the same as the file.
    void CheckList(const std::string& what) {
        const std::vector<Bytes> records = Records();
        ASSERT_EQ(RihCount(globals->rihList), static_cast<int32_t>(records.size())) << what;
        for (int32_t row = 0; row < RihCount(globals->rihList); ++row) {
            const RihItem* item = RihItemOfRow(globals->rihList, row);
            ASSERT_STREQ(item->name, reinterpret_cast<const char*>(&records.at(item->recNo)[24])) << what;
        }
    }

    using Check = void (StoreFaultTest::*)(int32_t, const std::string&);

    FaultedOperation Operation(int32_t (*run)(), Check check) {
        const bool listed = check != &StoreFaultTest::CheckNewGroup;
        return {.restore = [this] { Restore(); },
                .run = run,
                .check =
                    [=, this](int32_t result, const std::string& what) {
                        (this->*check)(result, what);
                        if (!HasFatalFailure() && result == 0 && listed) CheckList(what);
                    },
                .checkStopped = [=, this](bool finished,
                                          const std::string& what) { CheckStopped(check, finished, what); }};
    }

    // Nobody has been told anything: the old state and the new one are both right.
    void CheckStopped(Check check, bool finished, const std::string& what) {
        const bool deleted = check == &StoreFaultTest::CheckDelete && Records().size() == 2;
        (this->*check)(finished || deleted ? 0 : -1, what);
        if (HasFatalFailure()) return;
        // And the store goes on from there.
        const std::vector<Bytes> before = Records();
        MakeCurRecord("new");
        ASSERT_EQ(WriteRecord("G", -1), 0) << what;
        ASSERT_EQ(Records().back(), appended_) << what;
        ASSERT_EQ(DeleteRecord("G", static_cast<int32_t>(before.size())), 0) << what;
        ASSERT_EQ(Records(), before) << what;
    }

    void FailAndStop(const FaultedOperation& operation) {
        FailInEveryWay(operation);
        if (!HasFatalFailure()) StopBeforeEveryCall(operation);
    }

    Bytes before_;
    std::vector<Bytes> stored_;
    Bytes appended_; ///< the new record as it is stored
};

} // namespace

TEST_F(StoreFaultTest, Append) {
    FailAndStop(Operation([] { return WriteRecord("G", -1); }, &StoreFaultTest::CheckAppend));
}

TEST_F(StoreFaultTest, AppendToANewGroup) {
    FailAndStop(Operation([] { return WriteRecord("New", -1); }, &StoreFaultTest::CheckNewGroup));
}

TEST_F(StoreFaultTest, Rewrite) {
    FailAndStop(Operation([] { return WriteRecord("G", 1); }, &StoreFaultTest::CheckRewrite));
}

TEST_F(StoreFaultTest, Delete) {
    FailAndStop(Operation([] { return DeleteRecord("G", 1); }, &StoreFaultTest::CheckDelete));
}

// A failed append leaves the file byte for byte as it was, when the disk is only full.
TEST_F(StoreFaultTest, AFullDiskLeavesTheFileAsItWas) {
    for (unsigned nth = 1; nth <= 2; ++nth) { // the record, the count
        Restore();
        FaultCalls faults;
        faults.FailAt(nth, ENOSPC, kFaultWrite);
        EXPECT_EQ(WriteRecord("G", -1), -1);
        EXPECT_EQ(globals->curRecordNo, -1);
        EXPECT_EQ(RihCount(globals->rihList), 3);
        CheckUntouched("write " + std::to_string(nth));
        faults.Reset();
        EXPECT_EQ(WriteRecord("G", -1), 0); // the record is still there to be stored elsewhere
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
    ASSERT_EQ(DeleteRecord("G", 1), 0);
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
        EXPECT_EQ(WriteRecord("G", -1), -1);
        EXPECT_EQ(DeleteRecord("G", 1), -1);
    } else {
        Restore();
        std::filesystem::permissions(root(),
                                     std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
        std::filesystem::permissions(fileOf("G"), std::filesystem::perms::owner_read);
        EXPECT_EQ(WriteRecord("G", -1), -1);
        EXPECT_EQ(DeleteRecord("G", 1), -1);
        std::filesystem::permissions(root(), std::filesystem::perms::owner_all);
        std::filesystem::permissions(fileOf("G"), std::filesystem::perms::owner_all);
    }
    CheckUntouched("read only");
}
