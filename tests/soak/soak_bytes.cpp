#include "tests/soak/soak_bytes.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "plugin/objects/object_layout.h"
#include "plugin/store/group_file.h"
#include "plugin/store/lzss.h"
#include "plugin/store/record.h"
#include "plugin/store/record_index.h"
#include "plugin/store/swap_words.h"
#include "tests/soak/store_model.h"
#include "tests/support/temporary_folder.h"

namespace fs = std::filesystem;

namespace {

constexpr int32_t kRecords = 6;
constexpr size_t kPackedBytes = 400;

// A stored record of some hundred bytes: its preview is cut short, which is filled with zeros on reading.
std::vector<uint8_t> SmallRecord(int32_t number) {
    std::vector<uint8_t> preview(240), record(kPreviewOffset), packed(kPackedBytes);
    for (size_t i = 0; i < preview.size(); ++i)
        preview[i] = static_cast<uint8_t>(i * i + 7u * static_cast<unsigned>(number));
    const size_t previewBytes = static_cast<size_t>(PackLzss(preview, packed).value());
    record.insert(record.end(), packed.begin(), packed.begin() + static_cast<long>(previewBytes));
    uint8_t object[48] = {};
    auto* header = reinterpret_cast<AidbObjectHeader*>(object);
    header->type = static_cast<decltype(header->type)>(SwapLong(kNoteObject));
    header->size = static_cast<decltype(header->size)>(SwapLong(sizeof object));
    const size_t objectBytes = static_cast<size_t>(PackLzss(object, packed).value());
    record.insert(record.end(), packed.begin(), packed.begin() + static_cast<long>(objectBytes));
    record.resize(record.size() + kSmallestRecordBytes - kPreviewOffset);
    auto* start = reinterpret_cast<RecordStart*>(record.data());
    start->header.objectCount = SwapLong(1);
    start->header.size = SwapLong(static_cast<uint32_t>(record.size()));
    std::snprintf(start->header.name, sizeof start->header.name, "record %d", number);
    start->packedPreview = SwapLong(static_cast<uint32_t>(previewBytes));
    start->packedObjects = SwapLong(static_cast<uint32_t>(objectBytes));
    return record;
}

std::string ReadWhole(int32_t number) {
    HandleOwner record;
    AidbReadRecord("Golden", number, &record.get(), kReadWhole, true);
    if (record.get() == nullptr) return "";
    const auto* header = reinterpret_cast<const RecordHeader*>(record.bytes());
    const uint64_t bytes = std::min<uint64_t>(header->size, BlockSize(record.get()));
    return {reinterpret_cast<const char*>(record.bytes()), static_cast<size_t>(bytes)};
}

struct Golden {
    std::string bytes;
    std::vector<std::string> records;
    std::vector<size_t> ends; ///< of the records, in the file
};

Golden MakeGolden(const fs::path& path) {
    Golden golden;
    size_t end = kCountBytes;
    for (int32_t number = 0; number < kRecords; ++number) {
        const std::vector<uint8_t> record = SmallRecord(number);
        uint32_t stored;
        AppendToGroup("Golden", record.data(), static_cast<uint32_t>(record.size()), &stored);
        golden.records.push_back(ReadWhole(number));
        golden.ends.push_back(end += record.size());
    }
    std::ifstream file(path, std::ios::binary);
    golden.bytes = {std::istreambuf_iterator<char>(file), {}};
    return golden;
}

// Reads everything in every way; false if a record in front of the damage has changed.
bool ReadsWell(const Golden& golden, size_t damage) {
    LoadRihList("Golden");
    FreeHandle(globals->rihList);
    HandleOwner preview(NewRecord());
    for (int32_t number = 0; number < kRecords; ++number) {
        const auto index = static_cast<size_t>(number);
        AidbReadRecord("Golden", number, &preview.get(), kReadPreview, true);
        const std::string record = ReadWhole(number);
        if (golden.ends[index] <= damage && record != golden.records[index]) return false;
    }
    return true;
}

void Put(const fs::path& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

} // namespace

int RunBytes(unsigned stride, unsigned step) {
    const TemporaryFolder folder;
    ModelStore store(folder.path());
    const fs::path path = folder.path() / "Golden.AID";
    const Golden golden = MakeGolden(path);
    uint64_t files = 0;
    for (size_t place = 0; place < golden.bytes.size(); place += step) {
        for (unsigned change = 1 + static_cast<unsigned>(place) % stride; change < 256; change += stride) {
            std::string damaged = golden.bytes;
            damaged[place] = static_cast<char>(static_cast<uint8_t>(damaged[place]) ^ change);
            Put(path, damaged);
            ++files;
            // Damage in the count word can hide records, never change them.
            if (ReadsWell(golden, place < kCountBytes ? 0 : place)) continue;
            std::printf("LOST: byte %zu changed by %02x\n", place, change);
            return 1;
        }
        Put(path, golden.bytes.substr(0, place));
        ++files;
        if (ReadsWell(golden, place)) continue;
        std::printf("LOST: cut at %zu\n", place);
        return 1;
    }
    std::printf("a group of %zu bytes damaged in %llu ways, all records in front of the damage intact\n",
                golden.bytes.size(), static_cast<unsigned long long>(files));
    return 0;
}
