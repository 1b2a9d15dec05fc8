// Records, their directories and their linked files when system calls fail or the process ends: whatever
// happened, the next who takes the lock finds every record with the directory that is its own.
#include <algorithm>
#include <cstring>
#include <fstream>
#include <map>

#include "plugin/store/data_directories.h"
#include "plugin/store/interrupted_work.h"
#include "plugin/store/linked_files.h"
#include "plugin/store/place_moves.h"
#include "plugin/store/record_moves.h"
#include "plugin/store/store_names.h"
#include "tests/faults/fault_harness.h"
#include "tests/support/store_fixture.h"

namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

void Put(const fs::path& path, const std::string& text) {
    fs::create_directories(path.parent_path());
    WriteFileBytes(path, Bytes(text.begin(), text.end()));
}

class RecordDataFaultTest : public StoreTest {
public:
    void SetUp() override {
        MakeGroup("G", {"a", "b", "c", "d", "e"});
        MakeGroup("H", {"x", "y"});
        GiveDirectories("G");
        GiveDirectories("H");
        Put(root() / "H.DAT" / "2" / "who", "nobody"); // what an old program has left behind
        Put(root() / "G.DAT" / "2" / "pic.tif", "picture of c");
        Pooled("2", "old", "of c");
        Pooled("3", "old", "of d");
        Put(root() / "_%%image" / "pic.tif", "another's");
        Put(outside_.path() / "link.png", "linked");
        fs::copy(root(), model_.path(), fs::copy_options::recursive | fs::copy_options::overwrite_existing);
    }

    void GiveDirectories(const std::string& group) {
        size_t number = 0;
        for (const std::string& name : NamesIn(group))
            Put(root() / (group + ".DAT") / std::to_string(number++) / "who", name);
    }

    void Pooled(const std::string& number, const std::string& base, const std::string& whose) {
        Put(root() / "G.DAT" / number / (base + ".lnk"),
            "orgn_fname = \"" + base + ".png\"\r\ncopy_fname = \"" + base + " " + whose + ".png\"\r\n");
        Put(root() / "_%%image" / (base + " " + whose + ".png"), whose);
    }

    void Restore() {
        for (const auto& entry : fs::directory_iterator(root())) fs::remove_all(entry.path());
        fs::copy(model_.path(), root(), fs::copy_options::recursive);
        FreeHandle(globals->rihList);
        FreeHandle(globals->curRecord);
        globals->storeTrouble = StoreTrouble::kNone;
    }

    // Takes the lock as the next operation does, and looks at what it finds.
    void Recover(const std::string& what) {
        const StoreLock lock(kStoreExclusive);
        ASSERT_TRUE(lock.held()) << what << ", trouble " << static_cast<int>(globals->storeTrouble) << "\n"
                                 << DescribeInterruptedWork();
        ASSERT_FALSE(fs::exists(root() / "VLQ.INT")) << what;
    }

    void CheckGroup(const std::string& group, const std::string& what) {
        const Names names = NamesIn(group);
        for (size_t number = 0; number < names.size(); ++number) {
            const fs::path directory = root() / (group + ".DAT") / std::to_string(number);
            const std::string who = names[number] == "C" ? "c" : names[number]; // renamed on the way
            ASSERT_EQ(TextOfFile(directory / "who"), who) << what << ": " << directory;
            if (who == "d") {
                ASSERT_TRUE(fs::exists(directory / "old.lnk")) << what;
            }
            if (who == "c") {
                ASSERT_EQ(TextOfFile(directory / "pic.tif"), "picture of c") << what;
                ASSERT_TRUE(fs::exists(directory / "old.lnk")) << what;
                ASSERT_EQ(TextOfFile(root() / "_%%image" / "old of c.png"), "of c") << what;
            }
        }
        ASSERT_FALSE(fs::exists(root() / (group + ".DAT") / std::to_string(names.size()) / "who") &&
                     group == "G")
            << what;
        ASSERT_EQ(TextOfFile(root() / "_%%image" / "old of d.png"), "of d") << what;
        ASSERT_EQ(TextOfFile(root() / "_%%image" / "pic.tif"), "another's") << what;
    }

    // As the files say, without reading whole records.
    Names NamesIn(const std::string& group) {
        Names names;
        for (const Bytes& record : RecordsInFile(fileOf(group)))
            names.emplace_back(reinterpret_cast<const char*>(&record[24]));
        return names;
    }

    // The records of both groups, in the old state or in the new one.  A change that said it failed has none
    // of it done, unless it said that it isn't finished.
    void CheckGroups(int32_t result, bool unknown, const Names& g, const Names& h, const std::string& what) {
        Recover(what);
        if (HasFatalFailure()) return;
        const bool changed = NamesIn("G") == g;
        if (!unknown) {
            ASSERT_EQ(changed, result == 0) << what;
        }
        ASSERT_EQ(NamesIn("G"), changed ? g : Names({"a", "b", "c", "d", "e"})) << what;
        ASSERT_EQ(NamesIn("H"), changed ? h : Names({"x", "y"})) << what;
        CheckGroup("G", what);
        if (!HasFatalFailure()) CheckGroup("H", what);
    }

    FaultedOperation Change(std::function<int32_t()> run, const Names& g, const Names& h) {
        FaultedOperation operation;
        operation.restore = [this] { Restore(); };
        operation.run = std::move(run);
        operation.check = [=, this](int32_t result, const std::string& what) {
            CheckGroups(result, globals->storeTrouble == StoreTrouble::kUnfinished, g, h, what);
        };
        operation.checkStopped = [=, this](bool finished, const std::string& what) {
            // Now and then the next one is stopped as well while it makes good what it finds.
            const size_t nth = std::hash<std::string>{}(what) % 180;
            if (nth < 60)
                RunStoppedAt(static_cast<unsigned>(nth + 1), [] { const StoreLock lock(kStoreExclusive); });
            CheckGroups(0, !finished, g, h, what);
        };
        return operation;
    }

    std::string ReadPooled() {
        const uint8_t name[] = "\7pic.tif";
        char path[kFullPathBytes];
        if (ResolveLinkedFile("G", 2, name, path) != 0) return "?";
        std::string disk = path;
        std::ranges::replace(disk, '\\', '/');
        return TextOfFile(disk);
    }

    int32_t Pool() { return ReadPooled() == "picture of c" ? 0 : -1; }

    TemporaryFolder model_, outside_;
};

const Names kWithoutC = {"a", "b", "d", "e"};

} // namespace

TEST_F(RecordDataFaultTest, Delete) {
    const FaultedOperation operation =
        Change([] { return DeleteRecordAndData("G", 2); }, kWithoutC, {"x", "y"});
    FailInEveryWay(operation);
    if (!HasFatalFailure()) StopBeforeEveryCall(operation);
}

TEST_F(RecordDataFaultTest, Move) {
    const FaultedOperation operation = Change(
        [] {
            int32_t number = -1;
            RecordHeader texts{};
            std::strcpy(texts.name, "C");
            const int32_t result = MoveRecordToGroup("G", 2, "H", &number, &texts);
            return result == 0 && number != 2 ? -2 : result;
        },
        kWithoutC, {"x", "y", "C"});
    FailInEveryWay(operation);
    if (!HasFatalFailure()) StopBeforeEveryCall(operation);
}

// The group's file and its directory go together, into a folder and under a name of another case.
TEST_F(RecordDataFaultTest, MoveOfAGroup) {
    for (const std::string target : {"\\F\\Moved", "g"}) {
        FaultedOperation operation;
        operation.restore = [this] {
            Restore();
            fs::create_directory(root() / "F");
        };
        operation.run = [&target] { return MoveGroup("G", target.c_str()); };
        const auto check = [&target, this](bool mustBeNew, bool mustBeOld, const std::string& what) {
            Recover(what);
            const bool moved = !fs::exists(fileOf("G"));
            ASSERT_TRUE(moved ? !mustBeOld : !mustBeNew) << what << ", to " << target;
            std::string there = target;
            std::ranges::replace(there, '\\', '/');
            if (there.starts_with('/')) there.erase(0, 1);
            ASSERT_EQ(fs::exists(fileOf(there)), moved) << what;
            ASSERT_EQ(fs::exists(root() / (there + ".DAT")), moved) << what;
            ASSERT_EQ(fs::exists(root() / "G.DAT"), !moved) << what;
            ASSERT_EQ(NamesIn(moved ? there : "G"), Names({"a", "b", "c", "d", "e"})) << what;
            CheckGroup(moved ? there : "G", what);
        };
        operation.check = [check](int32_t result, const std::string& what) {
            const bool unknown = globals->storeTrouble == StoreTrouble::kUnfinished;
            check(result == 0, result != 0 && !unknown, what);
        };
        operation.checkStopped = [check](bool finished, const std::string& what) {
            check(finished, false, what);
        };
        if (target != "g") FailInEveryWay(operation);
        if (!HasFatalFailure()) StopBeforeEveryCall(operation);
        if (HasFatalFailure()) return;
    }
}

// The file is beside its record or in the pool with a note that says so: it can be had again in any case, and
// nobody else's file was touched.
TEST_F(RecordDataFaultTest, Pool) {
    FaultedOperation operation;
    operation.restore = [this] { Restore(); };
    operation.run = [this] { return Pool(); };
    operation.check = [this](int32_t, const std::string& what) {
        Recover(what);
        ASSERT_EQ(ReadPooled(), "picture of c") << what;
        ASSERT_EQ(ReadPooled(), "picture of c") << what << ", by its note";
        ASSERT_EQ(TextOfFile(root() / "_%%image" / "pic.tif"), "another's") << what;
        ASSERT_FALSE(fs::exists(root() / "G.DAT" / "2" / "pic.tif")) << what;
    };
    operation.checkStopped = [&operation](bool, const std::string& what) { operation.check(0, what); };
    FailInEveryWay(operation);
    if (!HasFatalFailure()) StopBeforeEveryCall(operation);
}

// Every directory keeps what is in it, and success means that each has its new number.
TEST_F(RecordDataFaultTest, Renumber) {
    FaultedOperation operation;
    operation.restore = [this] {
        Restore();
        for (const int number : {0, 1, 2, 9, 10, 11, 20}) {
            Put(root() / "R.DAT" / std::to_string(number) / "who", std::to_string(number));
        }
    };
    operation.run = [] { return RemoveRecordData("R", 1); };
    const auto check = [this](bool mustBeNew, bool mustBeOld, const std::string& what) {
        Recover(what);
        std::map<std::string, std::string> found;
        for (const auto& entry : fs::directory_iterator(root() / "R.DAT")) {
            if (!entry.path().filename().string().starts_with(kRemovedPrefix))
                found[entry.path().filename().string()] = TextOfFile(entry.path() / "who");
        }
        const std::map<std::string, std::string> before = {
            {"0", "0"}, {"1", "1"}, {"2", "2"}, {"9", "9"}, {"10", "10"}, {"11", "11"}, {"20", "20"}};
        const std::map<std::string, std::string> after = {{"0", "0"},  {"1", "2"},   {"8", "9"},
                                                          {"9", "10"}, {"10", "11"}, {"19", "20"}};
        ASSERT_TRUE((found == before && !mustBeNew) || (found == after && !mustBeOld))
            << what << ", must be new " << mustBeNew << ::testing::PrintToString(found);
    };
    operation.check = [check](int32_t result, const std::string& what) {
        const bool unknown = globals->storeTrouble == StoreTrouble::kUnfinished;
        check(result == 0, result != 0 && !unknown, what);
    };
    operation.checkStopped = [check](bool finished, const std::string& what) {
        check(finished, false, what);
    };
    FailInEveryWay(operation);
    if (!HasFatalFailure()) StopBeforeEveryCall(operation);
}

// A move of the directory alone, and the copies beside a new record: what was there stays, and a success is
// one.
TEST_F(RecordDataFaultTest, MoveOfADirectoryAndCopies) {
    FaultedOperation move;
    move.restore = [this] { Restore(); };
    move.run = [] { return MoveRecordData("G", 2, "H", 2); };
    move.check = [this](int32_t result, const std::string& what) {
        Recover(what);
        const std::string there = TextOfFile(root() / "H.DAT" / "2" / "who");
        const std::string here = TextOfFile(root() / "G.DAT" / "2" / "who");
        ASSERT_TRUE((there == "c") != (here == "c")) << what;
        if (result == 0) {
            ASSERT_EQ(there, "c") << what;
        }
    };
    FailInEveryWay(move);

    FaultedOperation copy;
    copy.restore = [this] {
        Restore();
        FreeHandle(globals->linkPaths);
        FreeHandle(globals->linkNames);
        globals->linkPaths = NewHandle(kLinkPathBytes, kSmallGrain);
        globals->linkNames = NewHandle(kLinkNameBytes, kSmallGrain);
        globals->linkCount = 1;
        std::strcpy(reinterpret_cast<char*>(BlockBytes(globals->linkPaths)),
                    StorePathOf(outside_.path() / "link.png").c_str());
        std::strcpy(reinterpret_cast<char*>(BlockBytes(globals->linkNames)), "old.png");
    };
    copy.run = [] { return CopyLinkedFiles("G", 3); };
    copy.check = [this](int32_t result, const std::string& what) {
        const fs::path directory = root() / "G.DAT" / "3";
        const bool copied = fs::exists(directory / "old.png");
        ASSERT_TRUE(!copied || TextOfFile(directory / "old.png") == "linked") << what;
        ASSERT_EQ(TextOfFile(root() / "_%%image" / "old of d.png"), "of d") << what;
        if (result == 0) {
            ASSERT_TRUE(copied && !fs::exists(directory / "old.lnk")) << what;
        }
    };
    FailInEveryWay(copy);
    FreeHandle(globals->linkPaths);
    FreeHandle(globals->linkNames);
}
