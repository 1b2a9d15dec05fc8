#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <functional>

#include "app/store_repair.h"
#include "plugin/store/record_moves.h"
#include "plugin/store/store_lock.h"
#include "tests/app/checked_store.h"

namespace {

namespace fs = std::filesystem;

class StoreCheckTest : public CheckedStore {};

struct Damaged {
    std::string what, bytes;
};

/// Every byte that a walk over the group goes by set to other values, and the file cut at many places.
std::vector<Damaged> DamagesOf(const std::string& good) {
    std::vector<size_t> places = {0, 1, 2, 3};
    const auto wordAt = [&](size_t at) {
        uint32_t word = 0;
        for (size_t i = 0; i < 4; ++i) word = word << 8 | static_cast<uint8_t>(good[at + i]);
        return word;
    };
    for (size_t at = 4; at < good.size(); at += wordAt(at + 4)) {
        for (size_t i = 4; i < 8; ++i) places.push_back(at + i);
        for (size_t i = 416; i < 424; ++i) places.push_back(at + i);
    }
    std::vector<Damaged> damages;
    for (const size_t place : places) {
        for (const int flip : {0x01, 0x04, 0x80, 0xFF}) {
            std::string bytes = good;
            bytes[place] = static_cast<char>(bytes[place] ^ flip);
            damages.push_back({"byte " + std::to_string(place) + " ^ " + std::to_string(flip), bytes});
        }
    }
    for (size_t length = 0; length < good.size(); length += 331)
        damages.push_back({"cut at " + std::to_string(length), good.substr(0, length)});
    damages.push_back({"half a record behind", good + good.substr(4, 1000)});
    return damages;
}

TEST_F(StoreCheckTest, RepairKeepsEveryReadableRecordOfADamagedGroup) {
    for (const char* name : {"a", "b", "c"}) Store("G", name, {"GroupArt /", "/ GroupArt"});
    const fs::path file = root() / "G.AID";
    const std::string good = BytesOf(file);
    ASSERT_THAT(Check(), testing::IsEmpty());
    int all = 0, mended = 0;
    for (const Damaged& damage : DamagesOf(good)) {
        SCOPED_TRACE(damage.what);
        PutBytes(file, damage.bytes);
        const std::vector<std::string> before = Names("G");
        ASSERT_THAT(Check(), testing::Not(testing::IsEmpty()));
        const RepairReport report = RepairStore(root().string());
        ASSERT_THAT(report.failed, testing::IsEmpty());
        const std::vector<std::string> after = Names("G");
        ASSERT_TRUE(std::includes(after.begin(), after.end(), before.begin(), before.end()));
        ASSERT_EQ(Check(), Lines(report.left));
        if (report.done.empty()) {
            ASSERT_EQ(BytesOf(file), damage.bytes);
        } else {
            ASSERT_EQ(BytesOf(fs::path(report.copies) / "G.AID"), damage.bytes);
            fs::remove_all(report.copies);
            mended += report.left.empty();
        }
        all += BytesOf(file) == good;
    }
    EXPECT_GT(mended, 100); // all but damaged lengths of bodies, which have no second witness
    EXPECT_GT(all, 50);     // counts and size words come back as they were
}

struct Planted {
    const char* what;
    std::function<void(const fs::path& root)> plant;
    std::vector<std::string> found; ///< by the check
    std::vector<std::string> left;  ///< by the repair
    std::vector<std::string> kept;  ///< in the folder of copies
};

/// Group G: record 0 links to a.png, which is pooled as a_1.png, record 1 to b.png, which is beside it.
const Planted kPlants[] = {
    {"nothing", [](const fs::path&) {}, {}, {}, {}},
    {"a directory beyond the count, with a pooled picture",
     [](const fs::path& root) {
         PutBytes(root / "G.DAT/7/x.lnk", "orgn_fname = \"x.png\"\r\ncopy_fname = \"x.png\"\r\n");
         PutBytes(root / "_%%image/x.png", "x");
     },
     {"warning \\G.DAT\\7"},
     {},
     {"G.DAT/7/x.lnk", "_%%image/x.png"}},
    {"leftovers",
     [](const fs::path& root) {
         PutBytes(root / "VLQ.TMP", "half");
         PutBytes(root / "F/VLQ.NEW", "");
         PutBytes(root / "G.DAT/removed-3-1/c.png", "c");
         PutBytes(root / "G.DAT/0/.⏳77-1", "ha");
     },
     {"info \\F\\VLQ.NEW", "info \\G.DAT\\0\\.⏳77-1", "info \\G.DAT\\removed-3-1", "info \\VLQ.TMP"},
     {},
     {"VLQ.TMP", "F/VLQ.NEW", "G.DAT/removed-3-1/c.png", "G.DAT/0/.⏳77-1"}},
    {"a damaged note with one picture that it can have meant",
     [](const fs::path& root) { PutBytes(root / "G.DAT/0/a.lnk", "orgn_fname = \"a.p"); },
     {"error \\G.DAT\\0\\a.lnk", "warning \\_%%image\\a_1.png"},
     {},
     {"G.DAT/0/a.lnk"}},
    {"the same with two",
     [](const fs::path& root) {
         PutBytes(root / "G.DAT/0/a.lnk", "copy_fname = \"..\\a_1.png\"\r\n");
         PutBytes(root / "_%%image/a.png", "?");
     },
     {"error \\G.DAT\\0\\a.lnk", "warning \\_%%image\\a.png", "warning \\_%%image\\a_1.png"},
     {"error \\G.DAT\\0\\a.lnk", "warning \\_%%image\\a.png", "warning \\_%%image\\a_1.png"},
     {}},
    {"a picture that two notes own, one of them beyond the count",
     [](const fs::path& root) { fs::copy(root / "G.DAT/0", root / "G.DAT/9"); },
     {"error \\_%%image\\a_1.png", "warning \\G.DAT\\9"},
     {},
     {"G.DAT/9/a.lnk"}},
    {"pictures that are gone",
     [](const fs::path& root) {
         fs::remove(root / "_%%image/a_1.png");
         fs::remove(root / "G.DAT/1/b.png");
     },
     {"error \\G.DAT\\0\\a.lnk", "error \\G.DAT\\1\\b.png"},
     {"error \\G.DAT\\0\\a.lnk", "error \\G.DAT\\1\\b.png"},
     {}},
    {"strangers",
     [](const fs::path& root) {
         PutBytes(root / "G.DAT/1/other.txt", "?");
         PutBytes(root / "\xC3\xA9.AID", "?");
         PutBytes(root / "read me.txt", "?");
         PutBytes(root / "Lost.DAT/0/x.png", "?");
     },
     {"info \\G.DAT\\1\\other.txt", "info \\read me.txt", "warning \\Lost.DAT", "warning \\\xC3\xA9.AID"},
     {"info \\G.DAT\\1\\other.txt", "info \\read me.txt", "warning \\Lost.DAT", "warning \\\xC3\xA9.AID"},
     {}},
    {"brackets that don't match, and bytes behind the last record",
     [](const fs::path& root) {
         const std::string good = BytesOf(root / "B.AID");
         PutBytes(root / "H.AID", good + "tail");
     },
     {"error \\H, record 0, object 1", "warning \\H"},
     {"error \\H, record 0, object 1"},
     {"H.AID"}},
};

TEST_F(StoreCheckTest, WhatIsPlantedIsFoundAndMendedWhereOnlyOneAnswerIsRight) {
    Store("G", "a", {"PlacedFile = \"a.png\"\rPlacedMatrix = 1, 0, 0, 1, 0, 0\r"});
    Store("G", "b", {"PlacedFile = \"b.png\"\r"});
    Store("B", "brackets", {"GroupArt /", "/ CompoundPathArt", "/ GroupArt"});
    PutBytes(root() / "G.DAT/0/a.lnk", "orgn_fname = \"a.png\"\r\ncopy_fname = \"a_1.png\"\r\n");
    PutBytes(root() / "_%%image/a_1.png", "a");
    PutBytes(root() / "G.DAT/1/b.png", "b");
    fs::copy(root(), folder.path() / "good", fs::copy_options::recursive);
    for (const Planted& planted : kPlants) {
        SCOPED_TRACE(planted.what);
        for (const auto& entry : fs::directory_iterator(root())) fs::remove_all(entry);
        fs::copy(folder.path() / "good", root(), fs::copy_options::recursive);
        planted.plant(root());
        fs::remove(root() / "B.AID");
        EXPECT_EQ(Check(), planted.found);
        const RepairReport report = RepairStore(root().string());
        EXPECT_THAT(report.failed, testing::IsEmpty());
        EXPECT_EQ(Lines(report.left), planted.left);
        EXPECT_EQ(report.copies.empty(), planted.kept.empty());
        for (const std::string& kept : planted.kept)
            EXPECT_TRUE(fs::exists(fs::path(report.copies) / kept)) << kept;
    }
}

TEST_F(StoreCheckTest, ADatabaseAtWorkGivesNoFindings) {
    Store("G", "first");
    const pid_t writer = fork();
    if (writer == 0) {
        for (;;) {
            FreeHandle(globals->curRecord);
            globals->curRecord = NewRecord();
            const bool added = WriteRecord("G", -1) == 0;
            fs::create_directories(root() / "G.DAT" / std::to_string(globals->curRecordNo));
            if (added && CountRecords("G") > 3) DeleteRecordAndData("G", 1);
        }
    }
    for (int i = 0; i < 3; ++i)
        EXPECT_THAT(Lines(CheckStore(root().string(), Looks::kUntilSure)), testing::IsEmpty());
    kill(writer, SIGKILL);
    waitpid(writer, nullptr, 0);
    // What the kill has left is finished as soon as somebody takes the lock, or mended.
    const StoreLock lock(kStoreExclusiveAsIs);
    ASSERT_TRUE(lock.held());
    EXPECT_THAT(Lines(RepairStore(root().string()).left), testing::IsEmpty());
}

} // namespace
