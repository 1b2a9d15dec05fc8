#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <set>

#include "app/store_repair.h"
#include "plugin/store/intent_note.h"
#include "plugin/store/store_lock.h"
#include "tests/app/checked_store.h"
#include "win32/fault_calls.h"

namespace {

namespace fs = std::filesystem;

class StoreRepairTest : public CheckedStore {
protected:
    /// Damage of every kind that is mended.
    void MakeDamagedStore() {
        Store("G", "a", {"PlacedFile = \"a.png\"\rPlacedMatrix = 1, 0, 0, 1, 0, 0\r"});
        for (const char* name : {"b", "c"}) Store("G", name);
        std::string group = BytesOf(root() / "G.AID");
        group[4 + 7] = static_cast<char>(group[4 + 7] ^ 0x40); // the first record's size word
        PutBytes(root() / "G.AID", group + "tail");
        PutBytes(root() / "G.DAT/0/a.lnk", "orgn_fname = \"a.p");
        PutBytes(root() / "_%%image/a_1.png", "a's");
        PutBytes(root() / "G.DAT/7/x.lnk", "orgn_fname = \"x.png\"\r\ncopy_fname = \"x.png\"\r\n");
        PutBytes(root() / "_%%image/x.png", "x's");
        PutBytes(root() / "VLQ.TMP", "half");
    }

    std::multiset<std::string> AllBytes() const {
        std::multiset<std::string> all;
        for (const auto& entry : fs::recursive_directory_iterator(root()))
            if (entry.is_regular_file()) all.insert(BytesOf(entry.path()));
        return all;
    }

    static RepairReport RepairLocked(const fs::path& root,
                                     UnfinishedWork unfinished = UnfinishedWork::kStays) {
        const StoreLock lock(kStoreExclusiveAsIs);
        return lock.held() ? RepairStore(root.string(), unfinished) : RepairReport{};
    }

    void PutBack() {
        for (const auto& entry : fs::directory_iterator(root())) fs::remove_all(entry);
        fs::copy(folder.path() / "damaged", root(), fs::copy_options::recursive);
    }

    static void RepairStoppedAt(unsigned nth, const fs::path& root) {
        const pid_t child = fork();
        if (child == 0) {
            FaultCalls faults;
            faults.At(nth, [] { _exit(0); });
            RepairLocked(root);
            _exit(0);
        }
        waitpid(child, nullptr, 0);
    }
};

TEST_F(StoreRepairTest, WhateverFailsInARepairNothingIsLostAndTheNextOneMendsTheRest) {
    MakeDamagedStore();
    const std::multiset<std::string> before = AllBytes();
    fs::copy(root(), folder.path() / "damaged", fs::copy_options::recursive);
    unsigned calls = 0;
    {
        const FaultCalls counter;
        EXPECT_THAT(Lines(RepairLocked(root()).left), testing::IsEmpty());
        calls = counter.count();
    }
    EXPECT_GT(calls, 100U);
    enum Trouble { kOneCall, kAllCalls, kStop, kTroubles };
    for (int trouble = 0; trouble < kTroubles; ++trouble) {
        // What one failed call does is worth a look at each; the rest is slow, and much the same nearby.
        for (unsigned nth = 1; nth <= calls; nth += trouble == kOneCall ? 1 : 5) {
            SCOPED_TRACE("trouble " + std::to_string(trouble) + " at call " + std::to_string(nth));
            PutBack();
            if (trouble == kStop) {
                RepairStoppedAt(nth, root());
            } else {
                FaultCalls faults;
                trouble == kOneCall ? faults.FailAt(nth, EIO) : faults.FailFrom(nth, ENOSPC);
                RepairLocked(root());
            }
            const auto after = AllBytes();
            for (const std::string& bytes : before) ASSERT_TRUE(after.contains(bytes)) << bytes.substr(0, 60);
            const RepairReport again = RepairLocked(root());
            ASSERT_THAT(again.failed, testing::IsEmpty());
            ASSERT_THAT(Lines(again.left), testing::IsEmpty());
            ASSERT_THAT(Names("G"), testing::ElementsAre("a", "b", "c"));
        }
    }
}

struct Unfinished {
    const char* what;
    std::string note;
    bool finishes;
};

TEST_F(StoreRepairTest, WorkThatCantBeFinishedIsGivenUpWhenAskedAndItsNoteKept) {
    for (const char* name : {"a", "b"}) Store("G", name);
    Intent deletion;
    deletion.group = "G";
    deletion.count = 2;
    Intent stranger = deletion, outside = deletion;
    stranger.count = 9;
    outside.group = "\\..\\G";
    const Unfinished cases[] = {{"hardly begun", FormatIntent(deletion), true},
                                {"of another state", FormatIntent(stranger), false},
                                {"leads out", FormatIntent(outside), false},
                                {"no note", "intent = \"dele", false}};
    const std::string good = BytesOf(root() / "G.AID");
    for (const Unfinished& unfinished : cases) {
        SCOPED_TRACE(unfinished.what);
        PutBytes(root() / "G.AID", good + "tail");
        PutBytes(root() / "VLQ.INT", unfinished.note);
        EXPECT_THAT(Check(), testing::ElementsAre("warning \\G", "warning \\VLQ.INT"));
        if (!unfinished.finishes) {
            EXPECT_FALSE(StoreLock(kStoreExclusive).held());
            const RepairReport refused = RepairLocked(root());
            EXPECT_EQ(refused.failed.size(), 1U);
            EXPECT_EQ(refused.done.size() + refused.copies.size(), 0U);
            EXPECT_EQ(BytesOf(root() / "G.AID"), good + "tail");
        }
        const RepairReport report =
            RepairLocked(root(), unfinished.finishes ? UnfinishedWork::kStays : UnfinishedWork::kIsGivenUp);
        EXPECT_THAT(report.failed, testing::IsEmpty());
        EXPECT_THAT(Lines(report.left), testing::IsEmpty());
        EXPECT_EQ(BytesOf(root() / "G.AID"), good);
        EXPECT_EQ(BytesOf(fs::path(report.copies) / "VLQ.INT"), unfinished.finishes ? "" : unfinished.note);
        EXPECT_TRUE(StoreLock(kStoreExclusive).held());
        fs::remove_all(report.copies);
    }
}

} // namespace
