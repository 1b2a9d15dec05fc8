// Group files, byte by byte, and what is left of them when they are damaged.
#include "plugin/store/group_file.h"

#include <cstring>
#include <set>

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
    void SetUp() override { ASSERT_EQ(GoldenFile().size(), 4 + 8179u); }

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

TEST_F(GroupFileTest, WritesTheBytesThatWereWorkedOutByHand) {
    MakeGoldenCurRecord();
    ASSERT_EQ(WriteRecord("G", -1), 0);
    EXPECT_EQ(BytesOfFile(fileOf("G")), GoldenFile());
}

TEST_F(GroupFileTest, ReadsTheBytesThatWereWorkedOutByHand) {
    WriteFileBytes(fileOf("G"), GoldenFile());
    ASSERT_EQ(AidbReadRecord("G", 0, nullptr, kReadWhole, true), 0);
    ASSERT_NE(globals->curRecord, nullptr);
    EXPECT_EQ(globals->curRecordNo, 0);
    const RecordHeader& header = cur().header;
    EXPECT_EQ(header.objectCount, 1u);
    EXPECT_EQ(header.size, kEmptyRecordBytes + 32);
    EXPECT_EQ(header.boundsTop, 0x00328000);
    EXPECT_EQ(header.boundsRight, 0x00644000);
    EXPECT_STREQ(header.name, "Star \x95\x5C");
    EXPECT_STREQ(header.kind, "Icon");
    EXPECT_STREQ(header.comment, "A comment");
    EXPECT_EQ(header.created, 0xDA5A7B00);
    EXPECT_EQ(header.modified, 0xDA5A7B01);
    EXPECT_EQ(cur().packedPreview, 0u);
    EXPECT_EQ(cur().packedObjects, 0u);
    const uint8_t* bytes = BlockBytes(globals->curRecord);
    EXPECT_EQ(Bytes(bytes + kPreviewOffset, bytes + kObjectsOffset), Bytes(kPreviewBytes, 0));
    Bytes object = Join({{7, 0, 0, 0}, {32, 0, 0, 0}, Bytes(16, 0), Field("AB", 8)});
    EXPECT_EQ(Bytes(bytes + kObjectsOffset, bytes + kObjectsOffset + 32), object);
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

// What a damaged group must still do: give the records in front of the damage, refuse the rest, and refuse
// to be changed where the walk doesn't reach its count.
class DamagedGroupTest : public StoreTest {
protected:
    void SetUp() override {
        MakeGroup("G", {"a", "b", "c"});
        good_ = BytesOfFile(fileOf("G"));
        for (int32_t number = 0; number < 3; ++number) stored_.push_back(Stored("G", number));
        for (int32_t number = 0; number < 3; ++number) expanded_.push_back(Expanded("G", number));
    }

    uint32_t PlaceOf(int32_t number) const {
        uint32_t place = 4;
        for (int32_t i = 0; i < number; ++i)
            place += static_cast<uint32_t>(stored_[static_cast<size_t>(i)].size());
        return place;
    }

    void ReadAtEveryDepth(int32_t number) {
        for (const uint32_t depth : {kReadWhole, kReadHeader, kReadPreview, 9u, 416u, 500u, 100000000u}) {
            AidbReadRecord("G", number, nullptr, depth, true);
            AidbReadRecord("G", number, nullptr, depth, false);
        }
    }

    void ExpectIntactBefore(int32_t damaged, const std::string& what) {
        for (int32_t number = 0; number < damaged; ++number) {
            ASSERT_EQ(Stored("G", number), stored_[static_cast<size_t>(number)]) << what;
            ASSERT_EQ(Expanded("G", number), expanded_[static_cast<size_t>(number)]) << what;
        }
    }

    // Appends and deletes, and puts the file back; whatever they do, no record in front may suffer.
    void ChangeAndRestore(const Bytes& file, int32_t damaged, const std::string& what) {
        MakeCurRecord("new");
        const int32_t appended = WriteRecord("G", -1);
        ASSERT_TRUE(appended == 0 || BytesOfFile(fileOf("G")) == file) << what;
        ExpectIntactBefore(damaged, what + ", appended");
        WriteFileBytes(fileOf("G"), file);
        const int32_t deleted = DeleteRecord("G", 2);
        ASSERT_TRUE(deleted == 0 || BytesOfFile(fileOf("G")) == file) << what;
        ExpectIntactBefore(std::min(damaged, 2), what + ", deleted");
        FreeHandle(globals->rihList);
    }

    Bytes good_;
    std::vector<Bytes> stored_;
    std::vector<Bytes> expanded_;
};

} // namespace

TEST_F(DamagedGroupTest, EveryByteOfTheFrameSetToManyValues) {
    std::vector<std::pair<size_t, int32_t>> places; // and the first record that may suffer
    for (size_t byte = 0; byte < 4; ++byte) places.emplace_back(byte, 0);
    for (int32_t number = 0; number < 3; ++number) {
        for (size_t byte = 0; byte < 8; ++byte) places.emplace_back(PlaceOf(number) + byte, number);
        for (size_t byte = 416; byte < 424; ++byte) places.emplace_back(PlaceOf(number) + byte, number);
    }
    for (const auto& [place, damaged] : places) {
        for (const int value : {0x00, 0x01, 0x7F, 0xFF}) {
            Bytes file = good_;
            file[place] = static_cast<uint8_t>(value);
            WriteFileBytes(fileOf("G"), file);
            const std::string what = "byte " + std::to_string(place) + " = " + std::to_string(value);
            for (int32_t number = damaged; number < 4; number += 2) ReadAtEveryDepth(number);
            // A count that lies keeps what it still counts.
            ExpectIntactBefore(place < 4 ? static_cast<int32_t>(std::min(CountRecords("G"), 3u)) : damaged,
                               what);
            if (value == 0xFF) ChangeAndRestore(file, damaged, what);
        }
    }
}

// Every length near the frame's words, and some within the bodies.
TEST_F(DamagedGroupTest, Truncations) {
    std::set<size_t> lengths;
    for (size_t bytes = 0; bytes < good_.size(); bytes += 1009) lengths.insert(bytes);
    for (int32_t number = 0; number <= 3; ++number) {
        const size_t place = PlaceOf(number);
        for (size_t bytes = place - 2; bytes < place + 10; ++bytes) lengths.insert(bytes);
        for (size_t bytes = place + 414; bytes < place + 430; ++bytes) lengths.insert(bytes);
    }
    MakeCurRecord("new");
    for (const size_t bytes : lengths) {
        if (bytes < 4 || bytes >= good_.size()) continue;
        const Bytes file(good_.begin(), good_.begin() + static_cast<std::ptrdiff_t>(bytes));
        WriteFileBytes(fileOf("G"), file);
        int32_t whole = 0;
        while (whole < 3 && PlaceOf(whole + 1) <= bytes) ++whole;
        const std::string what = "cut at " + std::to_string(bytes);
        ExpectIntactBefore(whole, what);
        for (int32_t number = whole; number < 4; ++number) ASSERT_TRUE(Stored("G", number).empty()) << what;
        ASSERT_EQ(WriteRecord("G", -1), -1) << what;
        ASSERT_EQ(DeleteRecord("G", 0), -1) << what;
        ASSERT_EQ(BytesOfFile(fileOf("G")), file) << what;
    }
}

TEST_F(DamagedGroupTest, AWalkThatEndsBeforeItsCountRefusesEveryChangeBehindIt) {
    Bytes file = good_;
    PutBigEndian(file, PlaceOf(1) + 4, 0);
    WriteFileBytes(fileOf("G"), file);
    MakeCurRecord("new");
    EXPECT_EQ(WriteRecord("G", -1), -1);
    MakeCurRecord("new");
    EXPECT_EQ(WriteRecord("G", 2), -1);
    EXPECT_EQ(DeleteRecord("G", 0), -1);
    EXPECT_EQ(DeleteRecord("G", 2), -1);
    EXPECT_EQ(BytesOfFile(fileOf("G")), file);
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
