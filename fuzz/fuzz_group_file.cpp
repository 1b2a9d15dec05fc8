// Group files: any bytes are opened, walked, indexed and read at every depth, and changed.  Whatever a change
// says it has done has to be there afterwards, and a refused one must have left every byte.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "plugin/frame/globals.h"
#include "plugin/store/record.h"
#include "plugin/store/record_index.h"
#include "plugin/store/record_layout.h"
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
    LoadRihList(kGroup);
    Require(RihCount(globals->rihList) <= static_cast<int32_t>(CountRecords(kGroup)));
    ReadEverything();
    Change(database);
    return 0;
}
