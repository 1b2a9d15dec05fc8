#include "tests/support/store_fixture.h"

#include <cstring>
#include <fstream>
#include <iterator>

#include "plugin/objects/object_stream.h"
#include "plugin/store/record.h"

Bytes BytesOfFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string TextOfFile(const std::filesystem::path& path) {
    const Bytes bytes = BytesOfFile(path);
    return {bytes.begin(), bytes.end()};
}

void WriteFileBytes(const std::filesystem::path& path, const Bytes& bytes) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    ASSERT_TRUE(file.flush().good()) << path;
}

std::vector<Bytes> RecordsInFile(const std::filesystem::path& path) {
    const Bytes file = BytesOfFile(path);
    std::vector<Bytes> records(file.size() < 4 ? 0 : BigEndianAt(file, 0));
    size_t place = 4;
    for (Bytes& record : records) {
        const size_t size = place + 8 <= file.size() ? BigEndianAt(file, place + 4) : file.size();
        if (size < kSmallestRecordBytes || size > file.size() - place) return {};
        const auto begin = file.begin() + static_cast<std::ptrdiff_t>(place);
        record.assign(begin, begin + static_cast<std::ptrdiff_t>(size));
        place += size;
    }
    return records;
}

Bytes Join(std::initializer_list<Bytes> parts) {
    Bytes all;
    for (const Bytes& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
}

Bytes Field(const std::string& text, size_t fieldBytes) {
    Bytes field(text.begin(), text.end());
    field.resize(fieldBytes);
    return field;
}

uint32_t BigEndianAt(const Bytes& bytes, size_t place) {
    uint32_t value = 0;
    for (size_t i = 0; i < 4; ++i) value = value << 8 | bytes.at(place + i);
    return value;
}

void PutBigEndian(Bytes& bytes, size_t place, uint32_t value) {
    for (size_t i = 0; i < 4; ++i) bytes.at(place + i) = static_cast<uint8_t>(value >> (24 - 8 * i));
}

StoreTest::StoreTest() {
    globals = globals_.get();
    globals->swapBytes = 1;
    globals->curRecordNo = -1;
    globals->nameLimit = 63;
    std::strcpy(globals->aidbfpath, folder_.storePath().c_str());
}

StoreTest::~StoreTest() {
    FreeHandle(globals->curRecord);
    FreeHandle(globals->rihList);
    FreeOffsets();
    globals = nullptr;
}

void StoreTest::MakeCurRecord(const std::string& name) {
    FreeHandle(globals->curRecord);
    globals->curRecord = NewRecord();
    globals->curRecordNo = -1;
    uint8_t* bytes = BlockBytes(globals->curRecord);
    auto* header = reinterpret_cast<RecordHeader*>(bytes);
    std::strcpy(header->name, name.c_str());
    std::strcpy(header->kind, ("kind of " + name).c_str());
    std::strcpy(header->comment, ("about " + name).c_str());
    header->boundsTop = 0x00100000;
    header->boundsRight = 0x00200000;
    header->created = 3000000000u + static_cast<uint8_t>(name[0]);
    header->modified = header->created;
    for (size_t i = 0; i < 600; ++i) bytes[kPreviewOffset + i * 97] = static_cast<uint8_t>(name[0] + i);
    ASSERT_EQ(AddNote(name.c_str()), 0);
}

void StoreTest::MakeGroup(const std::string& group, const std::vector<std::string>& names) {
    for (const std::string& name : names) {
        MakeCurRecord(name);
        ASSERT_EQ(WriteRecord(group.c_str(), -1), 0) << name;
    }
    FreeHandle(globals->curRecord);
    FreeHandle(globals->rihList);
    globals->curRecordNo = -1;
}

namespace {

Bytes ReadInto(const std::string& group, int32_t number, bool convert) {
    HandleOwner record(NewRecord());
    EXPECT_EQ(AidbReadRecord(group.c_str(), number, &record.get(), kReadWhole, convert), 0);
    Bytes words(record.bytes(), record.bytes() + kRecordHeaderBytes);
    uint32_t size;
    std::memcpy(&size, words.data() + 4, sizeof size);
    if (!convert) size = BigEndianAt(words, 4);
    if (size == 0) return {};
    EXPECT_LE(size, BlockSize(record.get()));
    return {record.bytes(), record.bytes() + size};
}

} // namespace

Bytes StoreTest::Stored(const std::string& group, int32_t number) {
    return ReadInto(group, number, false);
}

Bytes StoreTest::Expanded(const std::string& group, int32_t number) {
    return ReadInto(group, number, true);
}

std::vector<std::string> StoreTest::NamesIn(const std::string& group) {
    std::vector<std::string> names;
    const auto count = static_cast<int32_t>(CountRecords(group.c_str()));
    for (int32_t number = 0; number < count; ++number) {
        const Bytes record = Stored(group, number);
        names.push_back(record.empty() ? "?" : reinterpret_cast<const char*>(record.data() + 24));
    }
    return names;
}
