// The store and the preferences when memory runs out: for each operation every allocation fails in turn, once
// and from there on, those of texts and those of blocks.  Nothing is thrown or kept open, what is on the disk
// is the old state or the new one, and no success is told that isn't one.
#include <cstring>
#include <functional>
#include <map>
#include <new>

#include "plugin/frame/preferences.h"
#include "plugin/store/data_directories.h"
#include "plugin/store/linked_files.h"
#include "plugin/store/record.h"
#include "plugin/store/record_index.h"
#include "plugin/store/record_moves.h"
#include "plugin/store/search.h"
#include "plugin/store/store_names.h"
#include "tests/faults/failing_allocations.h"
#include "tests/support/store_fixture.h"
#include "win32/system_calls.h"

namespace {

namespace fs = std::filesystem;

constexpr int32_t kIncomplete = -1, kFalse = -2;
constexpr int32_t kManyRecords = 700; ///< more than fit into a list's first block

class MemoryFaultTest : public StoreTest {
protected:
    struct Operation {
        const char* name;
        std::function<int32_t()> run; ///< 0, kFalse if it claims what isn't so, else it says that it failed
        std::function<void()> prepare = [] {};
        bool mayStand = false; ///< also when it failed: whole, and only its name not certainly on the disk
    };

    MemoryFaultTest() {
        calls_.flush = [](int) { return 0; }; // nobody pulls the plug here
        calls_.flushDirectory = [](const char*) { return 0; };
        systemCalls = &calls_;
        RedirectDocuments(root());
    }
    ~MemoryFaultTest() override {
        RedirectDocuments({});
        systemCalls = &kSystemCalls;
        FreeHandle(globals->linkPaths);
        FreeHandle(globals->linkNames);
    }

    void SetUp() override {
        MakeGroup("G", {"a", "b", "c", "d"});
        MakeGroup("H", {"x"});
        WriteFileBytes(fileOf("Many"), ManyHeaders());
        for (const char* number : {"0", "1", "2", "3"}) Put(root() / "G.DAT" / number / "who", number);
        Put(root() / "G.DAT" / "2" / "pic.tif", "picture");
        Put(outside_.path() / "link.png", "linked");
        HandleOwner whole(NewRecord());
        AidbReadRecord("G", 2, &whole.get(), kReadWhole, true);
        good_.assign(whole.bytes(), whole.bytes() + kEmptyRecordBytes);
        FreeOffsets();
        SetDefaults(nullptr);
        globals->swapBytes = 1;
        globals->nameLimit = 63;
        std::strcpy(globals->aidbfpath, StorePathOf(root()).c_str());
        WritePreferences();
        oldPreferences_ = PreferencesText();
        before_ = Snapshot();
        fs::copy(root(), model_.path(), fs::copy_options::recursive);
        globals->linkPaths = NewHandle(kLinkPathBytes, kSmallGrain);
        globals->linkNames = NewHandle(kLinkNameBytes, kSmallGrain);
        globals->linkCount = 1;
        std::strcpy(reinterpret_cast<char*>(BlockBytes(globals->linkPaths)),
                    StorePathOf(outside_.path() / "link.png").c_str());
        std::strcpy(reinterpret_cast<char*>(BlockBytes(globals->linkNames)), "link.png");
    }

    static Bytes ManyHeaders() {
        Bytes file(4 + size_t{kManyRecords} * kSmallestRecordBytes);
        PutBigEndian(file, 0, kManyRecords);
        for (uint32_t number = 0; number < kManyRecords; ++number) {
            const size_t place = 4 + size_t{number} * kSmallestRecordBytes;
            PutBigEndian(file, place + 4, kSmallestRecordBytes);
            file[place + 24] = static_cast<uint8_t>('a' + number % 26);
        }
        return file;
    }

    static void Put(const fs::path& path, const std::string& text) {
        fs::create_directories(path.parent_path());
        WriteFileBytes(path, Bytes(text.begin(), text.end()));
    }

    void Restore() {
        for (const auto& entry : fs::directory_iterator(root())) {
            if (entry.path().filename() != "Many.AID") fs::remove_all(entry.path());
        }
        fs::copy(model_.path(), root(), fs::copy_options::recursive | fs::copy_options::skip_existing);
        FreeHandle(globals->rihList);
        FreeOffsets();
        globals->findMode = kFindGroup;
        globals->storeTrouble = StoreTrouble::kNone;
        std::strcpy(globals->aidbfname, "G");
        std::strcpy(globals->flCnvFnStr, "");
        MakeCurRecord("new");
    }

    // All files with their bytes, without the times of rewriting, locks, and what is only left to be removed.
    std::map<std::string, Bytes> Snapshot() {
        std::map<std::string, Bytes> files;
        for (const auto& entry : fs::recursive_directory_iterator(root())) {
            const std::string path = fs::relative(entry.path(), root()).string();
            if (!entry.is_regular_file() || path.find("removed-") != std::string::npos) continue;
            if (path.ends_with(".LCK") || path.ends_with(".lck") || path == "Many.AID") continue;
            if (path.ends_with(".new") || path == "VLQ.INW" || path == "VLQ.TMP" || path == "VLQ.LNK")
                continue; // made anew at each use
            Bytes bytes = BytesOfFile(entry.path());
            size_t place = 4;
            for (const Bytes& record :
                 path.ends_with(".AID") ? RecordsInFile(entry.path()) : std::vector<Bytes>()) {
                PutBigEndian(bytes, place + 412, 0);
                place += record.size();
            }
            files[path] = bytes;
        }
        return files;
    }

    static std::string DifferenceOf(const std::map<std::string, Bytes>& found,
                                    const std::map<std::string, Bytes>& expected) {
        std::string text;
        for (const auto& [path, bytes] : found) {
            const auto place = expected.find(path);
            if (place == expected.end() || place->second != bytes)
                text += path + ", " + std::to_string(bytes.size()) + " bytes; ";
        }
        return text + std::to_string(found.size()) + " files for " + std::to_string(expected.size()) + "\n";
    }

    static std::ptrdiff_t OpenFiles() {
        return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
    }

    // Runs an operation; `failing` tells whether it came to the first allocation that was to fail.
    int32_t Run(const Operation& operation, unsigned first, unsigned last, bool& failing) {
        Restore();
        operation.prepare();
        const std::ptrdiff_t open = OpenFiles();
        int32_t result = kFalse;
        bool thrown = false;
        FailAllocations(first, last);
        try {
            result = operation.run();
        } catch (const std::bad_alloc&) {
            thrown = true;
        }
        failing = StopFailingAllocations() >= first;
        EXPECT_FALSE(thrown) << "allocation " << first;
        EXPECT_EQ(OpenFiles(), open) << "allocation " << first;
        return result;
    }

    void CheckState(const Operation& operation, int32_t result, const std::map<std::string, Bytes>& after) {
        const bool unfinished = globals->storeTrouble == StoreTrouble::kUnfinished;
        {
            const StoreLock lock(kStoreExclusive);
            ASSERT_TRUE(lock.held());
        }
        const std::map<std::string, Bytes> found = Snapshot();
        ASSERT_TRUE(found == before_ || found == after)
            << DifferenceOf(found, before_) << DifferenceOf(found, after);
        ASSERT_NE(result, kFalse);
        if (result == 0) {
            ASSERT_TRUE(found == after) << DifferenceOf(found, after);
        } else if (!unfinished && !operation.mayStand) {
            ASSERT_TRUE(found == before_) << DifferenceOf(found, before_) << "though it failed";
        }
    }

    void FailEveryAllocation(const Operation& operation) {
        bool failing = false;
        ASSERT_EQ(Run(operation, ~0u, ~0u, failing), 0);
        const std::map<std::string, Bytes> after = Snapshot();
        for (const bool once : {true, false}) {
            failing = true;
            for (unsigned nth = 1; failing; nth += once ? 1 : 5) {
                SCOPED_TRACE(std::string(operation.name) + (once ? ", only" : ", from") + " allocation " +
                             std::to_string(nth));
                const int32_t result = Run(operation, nth, once ? nth : ~0u, failing);
                CheckState(operation, result, after);
                if (HasFailure()) return;
                if (!failing) {
                    ASSERT_EQ(result, 0);
                }
            }
        }
    }

    int32_t Read(uint32_t depth, bool convert) {
        HandleOwner record(depth == kReadPreview ? NewRecord() : nullptr);
        if (depth == kReadPreview && record.get() == nullptr) return kIncomplete;
        AidbReadRecord("G", 2, &record.get(), depth, convert);
        uint32_t size = 0;
        if (record.get() != nullptr) std::memcpy(&size, record.bytes() + 4, sizeof size);
        if (size == 0) return kIncomplete;
        const bool bodies = convert && depth != kReadHeader;
        return std::memcmp(record.bytes() + 24, &good_[24], bodies ? kObjectsOffset - 24 : 384) == 0 ? 0
                                                                                                     : kFalse;
    }

    // Whether the list is whole; what is in it must be in order in any case.
    static int32_t List(int32_t whole, bool claimsWhole) {
        const int32_t count = RihCount(globals->rihList);
        for (int32_t row = 1; row < count; ++row) {
            if (std::strcmp(RihItemOfRow(globals->rihList, row - 1)->name,
                            RihItemOfRow(globals->rihList, row)->name) > 0)
                return kFalse;
        }
        if (!claimsWhole) return kIncomplete;
        return count == whole ? 0 : kFalse;
    }

    static int32_t SearchAll() {
        const bool whole = RunSearch() == 0;
        return List(kManyRecords + 5, whole);
    }

    int32_t SavePreferences() {
        WritePreferences();
        // Looking at it takes memory as well.
        StopFailingAllocations();
        return TextOfFile(Preferences()) == PreferencesText() ? 0 : kIncomplete;
    }

    int32_t LoadPreferences() {
        ReadPreferences();
        StopFailingAllocations();
        const std::string text = PreferencesText();
        if (text == oldPreferences_) return 0;
        return globals->toolMode == 3 && std::strcmp(globals->product, "not read") == 0 ? kIncomplete
                                                                                        : kFalse;
    }

    fs::path Preferences() const {
        for (const auto& entry : fs::recursive_directory_iterator(root())) {
            if (entry.path().extension() == ".ini") return entry.path();
        }
        return {};
    }

    SystemCalls calls_ = kSystemCalls;
    TemporaryFolder model_, outside_;
    std::map<std::string, Bytes> before_;
    Bytes good_;
    std::string oldPreferences_;
};

} // namespace

TEST_F(MemoryFaultTest, EveryAllocation) {
    int32_t newNumber = -1;
    const auto changePreferences = [] {
        globals->toolMode = 3;
        std::strcpy(globals->product, "not read");
    };
    const Operation operations[] = {
        {"append", [] { return WriteRecord("G", -1); }},
        {"rewrite", [] { return WriteRecord("G", 1); }},
        {"delete", [] { return DeleteRecordAndData("G", 1); }},
        {"move", [&] { return MoveRecordToGroup("G", 1, "H", &newNumber); }},
        {"renumber", [] { return RemoveRecordData("G", 3); }},
        {"pool",
         [] {
             const uint8_t name[] = "\7pic.tif";
             char path[kFullPathBytes];
             return ResolveLinkedFile("G", 2, name, path);
         }},
        {"copy", [] { return CopyLinkedFiles("G", 1); }, [] {}, true},
        {"read whole", [this] { return Read(kReadWhole, true); }},
        {"read stored", [this] { return Read(kReadWhole, false); }},
        {"read header", [this] { return Read(kReadHeader, true); }},
        {"read preview", [this] { return Read(kReadPreview, true); }},
        {"list a group",
         [] {
             LoadRihList("Many");
             return List(kManyRecords, globals->rihList != nullptr);
         }},
        {"list a folder",
         [this] {
             globals->findMode = kFindFolder;
             BuildFolderIndex(globals->aidbfpath, "", "");
             return List(kManyRecords + 5,
                         globals->rihList != nullptr && globals->storeTrouble == StoreTrouble::kNone);
         }},
        {"search", [] { return SearchAll(); }},
        {"limit",
         [] {
             const int32_t before = RihCount(globals->rihList);
             const int32_t unread = RunLimit();
             const int32_t expected = unread == 0 ? kManyRecords / 26 + 2 : before;
             return List(expected, true) == kFalse && unread == 0 ? kFalse : unread;
         },
         [] {
             SearchAll();
             std::strcpy(globals->flCnvFnStr, "a");
         }},
        {"write preferences", [this] { return SavePreferences(); }, changePreferences},
        {"read preferences", [this] { return LoadPreferences(); }, changePreferences},
    };
    for (const Operation& operation : operations) {
        FailEveryAllocation(operation);
        if (HasFailure()) return;
    }
}
