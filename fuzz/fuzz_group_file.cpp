// Group files: any bytes are opened, walked, indexed and read at every depth, and changed.  Whatever a change
// says it has done has to be there afterwards, and a refused one must have left every byte.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "plugin/frame/globals.h"
#include "plugin/store/record.h"
#include "plugin/store/record_index.h"
#include "plugin/store/record_layout.h"
#include "plugin/store/search.h"
#include "win32/path_names.h"
#include "win32/system_calls.h"

namespace {

using Bytes = std::vector<uint8_t>;

constexpr char kGroup[] = "G";
constexpr int32_t kMostNumbers = 4;

void Require(bool holds) {
    if (!holds) std::abort();
}

struct Database {
    Database() {
        // What the disk does is not the matter here, and waiting for it takes most of the time.
        static SystemCalls calls = kSystemCalls;
        calls.flush = [](int) { return 0; };
        calls.flushDirectory = [](const char*) { return 0; };
        systemCalls = &calls;
        globals = new Globals();
        globals->swapBytes = 1;
        globals->curRecordNo = -1;
        char folder[] = "/tmp/velquorne-fuzz-XXXXXX";
        Require(mkdtemp(folder) != nullptr);
        file = std::filesystem::path(folder) / "G.AID";
        std::strcpy(globals->aidbfpath, StorePathOfUtf8(folder).path.c_str());
        std::strcpy(globals->aidbfname, kGroup);
    }
    ~Database() { std::filesystem::remove_all(file.parent_path()); }

    void Write(const uint8_t* data, size_t size) const {
        std::ofstream stream(file, std::ios::binary | std::ios::trunc);
        stream.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }
    Bytes Read() const {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    std::filesystem::path file;
};

// The size that tells delivery; a record's bytes lie within its block.
uint32_t SizeOf(MemoryHandle record) {
    uint32_t size;
    std::memcpy(&size, BlockBytes(record) + 4, sizeof size);
    return size;
}

void ReadEverything() {
    for (int32_t number = -1; number < kMostNumbers; ++number) {
        for (const uint32_t depth : {kReadWhole, kReadHeader, kReadPreview, 417u}) {
            for (const bool convert : {true, false}) {
                AidbReadRecord(kGroup, number, nullptr, depth, convert);
                if (globals->curRecord == nullptr || depth != kReadWhole || !convert) continue;
                Require(SizeOf(globals->curRecord) <= BlockSize(globals->curRecord));
            }
        }
        HandleOwner preview(NewRecord());
        const MemoryHandle given = preview.get();
        AidbReadRecord(kGroup, number, &preview.get(), kReadPreview, true);
        Require(preview.get() == given && SizeOf(given) <= kEmptyRecordBytes);
    }
}

// Numbers in the order of the rows.
std::vector<uint32_t> ListedNumbers() {
    std::vector<uint32_t> numbers;
    for (int32_t row = 0; row < RihCount(globals->rihList); ++row)
        numbers.push_back(RihItemOfRow(globals->rihList, row)->recNo);
    return numbers;
}

// The list holds the records up to the damage, in order, whether it was read so or sorted anew.
void Index() {
    globals->findMode = kFindGroup;
    for (const int16_t mode : {kByName, kByKind, kByDate}) {
        globals->sortMode = mode;
        LoadRihList(kGroup);
        const std::vector<uint32_t> numbers = ListedNumbers();
        Require(numbers.size() <= CountRecords(kGroup));
        Require(std::set<uint32_t>(numbers.begin(), numbers.end()).size() == numbers.size());
        for (int32_t row = 1; row < RihCount(globals->rihList); ++row) {
            const RihItem &before = *RihItemOfRow(globals->rihList, row - 1),
                          &item = *RihItemOfRow(globals->rihList, row);
            const int kinds = mode == kByKind ? std::memcmp(before.kind, item.kind, sizeof item.kind) : 0;
            const bool sameTime = mode != kByDate || before.created == item.created;
            Require(kinds <= 0 && (mode != kByDate || before.created >= item.created));
            Require(kinds != 0 || !sameTime || std::memcmp(before.name, item.name, sizeof item.name) <= 0);
        }
        ResortRihList(kByKind);
        ResortRihList(kByDate);
        Require(std::ranges::is_permutation(ListedNumbers(), numbers));
    }
}

// An empty text finds what the list holds; a part of it finds no more, and narrowing comes to the same.
void Search() {
    const size_t listed = ListedNumbers().size();
    globals->sortMode = kByName;
    std::strcpy(globals->flCnvFnStr, "");
    RunSearch();
    Require(ListedNumbers().size() == listed);
    for (const int16_t field : {0, 1, 2}) {
        globals->flCnvFnMode = field;
        std::strcpy(globals->flCnvFnStr, "a");
        RunSearch();
        const std::vector<uint32_t> found = ListedNumbers();
        Require(found.size() <= listed);
        std::strcpy(globals->flCnvFnStr, "");
        RunSearch();
        std::strcpy(globals->flCnvFnStr, "a");
        Require(RunLimit() == 0 && ListedNumbers() == found);
    }
    std::strcpy(globals->aidbfname, kGroup);
    globals->findMode = kFindGroup;
    FreeHandle(globals->rihList);
}

void Change(const Database& database) {
    const Bytes before = database.Read();
    const uint32_t count = CountRecords(kGroup);
    FreeHandle(globals->curRecord);
    globals->curRecord = NewRecord();
    if (WriteRecord(kGroup, -1) == 0) {
        Require(CountRecords(kGroup) == count + 1);
        Require(DeleteRecord(kGroup, static_cast<int32_t>(count)) == 0);
        Bytes after = database.Read();
        Require(after.size() <= before.size() || before.size() < 4);
        Require(before.size() < 4 || std::equal(after.begin(), after.end(), before.begin()));
    } else {
        Require(database.Read() == before);
    }
    if (DeleteRecord(kGroup, 0) == 0) Require(CountRecords(kGroup) + 1 == count);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const Database database;
    database.Write(data, size);
    FreeHandle(globals->rihList);
    Index();
    Search();
    ReadEverything();
    Change(database);
    return 0;
}
