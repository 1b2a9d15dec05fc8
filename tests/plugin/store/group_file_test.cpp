// Group files, byte by byte, and what is left of them when they are damaged.
#include "plugin/store/group_file.h"

#include <cstring>

#include "plugin/objects/object_layout.h"
#include "plugin/objects/object_stream.h"
#include "plugin/store/record.h"
#include "tests/support/store_fixture.h"

namespace {

using Names = std::vector<std::string>;

// A preview of zeros.  The first match is the last of the strings before the start, 18 back; every other
// one lies one byte back; 65536 = 3640 x 18 + 16, so the last one has 16.
Bytes PackedBlackPreview() {
    Bytes packed;
    for (uint32_t item = 0; item <= 3640; ++item) {
        if (item % 8 == 0) packed.push_back(0x00);
        const uint32_t place = item == 0 ? 0xFDC : (4078 + 18 * item - 1) & 0xFFF;
        packed.push_back(static_cast<uint8_t>(place));
        packed.push_back(static_cast<uint8_t>((place >> 4 & 0xF0) | (item == 3640 ? 0xD : 0xF)));
    }
    return packed;
}

Bytes GoldenFile() {
    return Join({
        {0x00, 0x00, 0x00, 0x01},   // records
        {0x00, 0x00, 0x00, 0x01},   // objects
        {0x00, 0x00, 0x1F, 0xF3},   // bytes of the record: 428 + 7738 + 13
        {0x00, 0x00, 0x00, 0x00},   // left
        {0x00, 0x32, 0x80, 0x00},   // top, 50.5 points
        {0x00, 0x64, 0x40, 0x00},   // right, 100.25 points
        {0x00, 0x00, 0x00, 0x00},   // bottom
        Field("Star \x95\x5C", 64), // name; its last character ends in the byte of a backslash
        Field("Icon", 64),          // kind
        Field("A comment", 256),    // comment
        {0xDA, 0x5A, 0x7B, 0x00},   // created
        {0xDA, 0x5A, 0x7B, 0x01},   // modified
        {0x00, 0x00, 0x1E, 0x3A},   // packed preview: 3641 pairs and 456 flag bytes
        {0x00, 0x00, 0x00, 0x0D},   // packed objects
        PackedBlackPreview(),
        // The object 00000007 00000020, 16 zeros, "AB", 6 zeros:
        {0x6A,                    // literals are the second, fourth, sixth and seventh item
         0xED, 0xF0,              // 00 00 00, from the string of four zeros, the root of the tree
         0x07,                    //
         0xED, 0xF0,              // 00 00 00, from there again
         0x20,                    //
         0xE1, 0xFD,              // 16 zeros, from the string of 16 zeros and 07
         'A', 'B',                //
         0xDC, 0xF3},             // 6 zeros, from the string of 18, which the length is cut from
        {0x00, 0x00, 0x00, 0x00}, // filler
    });
}

class GroupFileTest : public StoreTest {
protected:
    void MakeGoldenCurRecord() {
        globals->curRecord = NewRecord();
        auto* header = reinterpret_cast<RecordHeader*>(BlockBytes(globals->curRecord));
        header->boundsTop = 0x00328000;
        header->boundsRight = 0x00644000;
        std::strcpy(header->name, "Star \x95\x5C");
        std::strcpy(header->kind, "Icon");
        std::strcpy(header->comment, "A comment");
        header->created = 0xDA5A7B00;
        header->modified = 0xDA5A7B01;
        uint8_t object[32] = {};
        auto* objectHeader = reinterpret_cast<AidbObjectHeader*>(object);
        objectHeader->type = kNoteObject;
        objectHeader->size = sizeof object;
        object[24] = 'A';
        object[25] = 'B';
        ASSERT_EQ(AddAIDBObj(globals->curRecord, object), 0);
    }
};

} // namespace

TEST_F(GroupFileTest, ARecordBecomesTheBytesThatWereWorkedOutByHandAndComesBack) {
    MakeGoldenCurRecord();
    const uint8_t* bytes = BlockBytes(globals->curRecord);
    const Bytes record(bytes, bytes + kEmptyRecordBytes + 32);
    ASSERT_EQ(WriteRecord("G", -1), 0);
    EXPECT_EQ(BytesOfFile(fileOf("G")), GoldenFile());
    EXPECT_EQ(globals->curRecordNo, 0);
    EXPECT_EQ(Expanded("G", 0), record);
}

// The count stands in the file from the first append on: four bytes of 0, the record, then the count.
TEST_F(GroupFileTest, AFileOfLessThanACountHasNoRecordsAndTakesSome) {
    for (size_t bytes = 0; bytes < 4; ++bytes) {
        WriteFileBytes(fileOf("G"), Bytes(bytes, 0xFF));
        EXPECT_EQ(CountRecords("G"), 0u);
        EXPECT_EQ(GroupFileExists("G"), 1);
        MakeGroup("G", {"a"});
        EXPECT_EQ(NamesIn("G"), Names{"a"}) << bytes;
    }
    EXPECT_EQ(GroupFileExists("Missing"), 0);
    EXPECT_EQ(CountRecords("Missing"), 0u);
}

// A count is believed only as far as the file can hold that many records.
TEST_F(GroupFileTest, CountsAreCappedByTheLengthOfTheFile) {
    WriteFileBytes(fileOf("G"), {0xFF, 0xFF, 0xFF, 0xFF});
    EXPECT_EQ(CountRecords("G"), 0u);
    Bytes file = GoldenFile();
    PutBigEndian(file, 0, 0xFFFFFFFF);
    WriteFileBytes(fileOf("G"), file);
    EXPECT_EQ(CountRecords("G"), (file.size() - 4) / 428);
    EXPECT_FALSE(Stored("G", 0).empty());
    EXPECT_TRUE(Stored("G", 1).empty());
    EXPECT_TRUE(Stored("G", 0x7FFFFFFF).empty());
}

// Records of all sizes, so that a walk finds the next header in what it has read, across its end, and far
// behind it.
TEST_F(GroupFileTest, WalksRecordsOfAnySize) {
    Bytes file(4);
    std::vector<uint32_t> places;
    uint32_t size = 428;
    for (uint32_t number = 0; file.size() < 3000000; ++number) {
        places.push_back(static_cast<uint32_t>(file.size()));
        Bytes record(size);
        PutBigEndian(record, 0, number);
        PutBigEndian(record, 4, size);
        file.insert(file.end(), record.begin(), record.end());
        size = number % 50 == 49 ? 200000 : 428 + (size * 7 + number) % (number < 300 ? 300 : 9000);
    }
    PutBigEndian(file, 0, static_cast<uint32_t>(places.size()));
    WriteFileBytes(fileOf("G"), file);
    GroupFile group;
    ASSERT_TRUE(group.OpenToRead("G"));
    GroupWalk walk(group);
    for (uint32_t number = 0; number < places.size(); ++number) {
        ASSERT_TRUE(walk.Next()) << number;
        ASSERT_EQ(walk.record().number, number);
        ASSERT_EQ(walk.record().place, places[number]);
        ASSERT_EQ(std::memcmp(walk.header(), &file[places[number]], kRecordHeaderBytes), 0) << number;
    }
    EXPECT_FALSE(walk.Next());
    EXPECT_TRUE(walk.reachedCount());
    EXPECT_EQ(walk.end(), file.size());
}

namespace {

// Every byte damaged is for the soak, and any bytes are for the fuzzer.
class DamagedGroupTest : public StoreTest {
protected:
    void SetUp() override {
        MakeGroup("G", {"a", "b", "c"});
        good_ = BytesOfFile(fileOf("G"));
    }

    Bytes good_;
};

} // namespace

// The records in front of the damage are there, and nothing is changed where a walk doesn't reach its count.
TEST_F(DamagedGroupTest, AWalkThatEndsBeforeItsCountRefusesEveryChange) {
    const std::vector<Bytes> records = RecordsInFile(fileOf("G"));
    const size_t second = 4 + records[0].size(), third = second + records[1].size();
    std::vector<std::pair<Bytes, int32_t>> damaged = {{good_, 1}}; // and how many stand in front
    PutBigEndian(damaged[0].first, second + 4, 0);
    for (const size_t length :
         {second, second + 7, second + 427, third - 1, third, third + 500, good_.size() - 1})
        damaged.emplace_back(Bytes(good_.begin(), good_.begin() + static_cast<std::ptrdiff_t>(length)),
                             length < third ? 1 : 2);
    for (const auto& [file, whole] : damaged) {
        WriteFileBytes(fileOf("G"), file);
        for (int32_t number = 0; number < 3; ++number)
            EXPECT_EQ(Stored("G", number), number < whole ? records[static_cast<size_t>(number)] : Bytes())
                << file.size();
        for (const int32_t number : {-1, 2}) {
            MakeCurRecord("new");
            EXPECT_EQ(WriteRecord("G", number), -1) << file.size();
            EXPECT_EQ(DeleteRecord("G", std::max(number, 0)), -1) << file.size();
        }
        EXPECT_EQ(BytesOfFile(fileOf("G")), file);
    }
}

// A stop between the record and the count leaves bytes that no count covers: no reader sees them, and the
// next append is as if they had never been there.
TEST_F(DamagedGroupTest, ATailWithoutACountIsOverwritten) {
    MakeCurRecord("new");
    ASSERT_EQ(WriteRecord("G", -1), 0);
    const Bytes appended = BytesOfFile(fileOf("G"));
    for (const size_t tail :
         {size_t{1}, size_t{8}, size_t{428}, appended.size() - good_.size(), size_t{50000}}) {
        Bytes file = good_;
        for (size_t i = 0; i < tail; ++i) file.push_back(i < 8 ? 0xFF : 0x5A);
        WriteFileBytes(fileOf("G"), file);
        EXPECT_EQ(NamesIn("G"), (Names{"a", "b", "c"})) << tail;
        MakeCurRecord("new");
        ASSERT_EQ(WriteRecord("G", -1), 0) << tail;
        EXPECT_EQ(BytesOfFile(fileOf("G")), appended) << tail;
    }
}

TEST_F(DamagedGroupTest, ADeleteLeavesATailWithoutACountBehind) {
    ASSERT_EQ(DeleteRecord("G", 1), 0);
    const Bytes deleted = BytesOfFile(fileOf("G"));
    Bytes file = good_;
    file.resize(file.size() + 1000, 0x5A);
    WriteFileBytes(fileOf("G"), file);
    ASSERT_EQ(DeleteRecord("G", 1), 0);
    EXPECT_EQ(BytesOfFile(fileOf("G")), deleted);
}

// Places in a file are signed 32-bit numbers.  The file is sparse: it takes no room on the disk.
TEST_F(GroupFileTest, RefusesToPassTwoGigabytes) {
    MakeGroup("G", {"a"});
    Bytes head = BytesOfFile(fileOf("G"));
    const auto first = static_cast<uint32_t>(head.size());
    PutBigEndian(head, 0, 2);
    Bytes second(428);
    const uint32_t secondBytes = 0x7FFFFFFF - first - 5000;
    PutBigEndian(second, 4, secondBytes);
    WriteFileBytes(fileOf("G"), Join({head, second}));
    std::filesystem::resize_file(fileOf("G"), first + uint64_t{secondBytes});
    const auto length = std::filesystem::file_size(fileOf("G"));
    EXPECT_EQ(CountRecords("G"), 2u);
    MakeCurRecord("new");
    EXPECT_EQ(WriteRecord("G", -1), -1);
    EXPECT_EQ(std::filesystem::file_size(fileOf("G")), length);
    EXPECT_FALSE(Stored("G", 0).empty());
    std::filesystem::resize_file(fileOf("G"), 0x80000000);
    EXPECT_EQ(CountRecords("G"), 0u);
    EXPECT_EQ(WriteRecord("G", -1), -1);
}

// A group that another program is changing waits, then refuses; readers go on.
TEST_F(GroupFileTest, AWriterKeepsOtherWritersOut) {
    MakeGroup("G", {"a", "b"});
    const Bytes before = BytesOfFile(fileOf("G"));
    GroupFile other;
    ASSERT_TRUE(other.OpenToChange("G"));
    MakeCurRecord("new");
    EXPECT_EQ(WriteRecord("G", -1), -1);
    EXPECT_EQ(DeleteRecord("G", 0), -1);
    EXPECT_EQ(NamesIn("G"), (Names{"a", "b"}));
    other.Close();
    EXPECT_EQ(BytesOfFile(fileOf("G")), before);
    MakeCurRecord("new");
    EXPECT_EQ(WriteRecord("G", -1), 0);
}
