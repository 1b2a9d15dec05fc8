// Records: reading at each depth, writing, deleting, and the current record through all of it.
#include "plugin/store/record.h"

#include <cstring>

#include "plugin/store/intent_note.h"
#include "plugin/store/lzss.h"
#include "plugin/store/record_index.h"
#include "plugin/store/store_lock.h"
#include "plugin/store/swap_words.h"
#include "tests/support/store_fixture.h"

namespace {

using Names = std::vector<std::string>;

class RecordTest : public StoreTest {
protected:
    const RecordStart& StartOf(MemoryHandle record) {
        return *reinterpret_cast<RecordStart*>(BlockBytes(record));
    }

    Names NamesInList() {
        Names names;
        for (int32_t row = 0; row < RihCount(globals->rihList); ++row) {
            const RihItem* item = RihItemOfRow(globals->rihList, row);
            names.push_back(std::string(item->name) + "/" + std::to_string(item->recNo));
        }
        return names;
    }
};

} // namespace

// The words of a file image are big-endian, also what an in-place rewrite took from the disk.
TEST_F(RecordTest, AWriteLeavesAFileImage) {
    MakeCurRecord("a");
    ASSERT_EQ(WriteRecord("G", -1), 0);
    const Bytes stored = Stored("G", 0);
    EXPECT_EQ(SwapLong(cur().header.size), stored.size());
    EXPECT_EQ(std::memcmp(BlockBytes(globals->curRecord), stored.data(), stored.size()), 0);
    ASSERT_EQ(WriteRecord("G", -1), 0); // and can be stored again
    EXPECT_EQ(Stored("G", 1), stored);
    EXPECT_EQ(globals->curRecordNo, 1);
}

// Whoever comes next finishes a move that was killed between its append and its deletion, with a record in
// hand that has no other place yet.
TEST_F(RecordTest, FinishingAnothersMoveLeavesTheRecordInHand) {
    for (const bool locked : {false, true}) {
        for (const char* group : {"G", "H", "K"}) std::filesystem::remove(fileOf(group));
        MakeGroup("G", {"a", "b"});
        MakeGroup("H", {"x", "a"});
        Intent move;
        move.kind = IntentKind::kMove;
        move.group = "G";
        move.count = 2;
        move.newGroup = "H";
        move.newCount = 1;
        ASSERT_TRUE(WriteIntent(move));
        MakeCurRecord("new");
        if (locked) {
            const StoreLock lock(kStoreExclusive);
            EXPECT_EQ(WriteRecord("K", -1), 0);
        } else {
            EXPECT_EQ(WriteRecord("K", -1), 0);
        }
        EXPECT_EQ(globals->curRecordNo, 0);
        EXPECT_EQ(NamesIn("K"), Names{"new"});
        EXPECT_EQ(NamesIn("G").size() + NamesIn("H").size(), 3u); // it stands in one of them
    }
}

TEST_F(RecordTest, AHeaderReadLeavesThePackedLengthsAsStored) {
    MakeGroup("G", {"a", "b"});
    const Bytes stored = Stored("G", 1);
    ASSERT_EQ(AidbReadRecord("G", 1, nullptr, kReadHeader, true), 0);
    ASSERT_NE(globals->curRecord, nullptr);
    EXPECT_EQ(globals->curRecordNo, 1);
    EXPECT_STREQ(cur().header.name, "b");
    EXPECT_EQ(cur().header.size, stored.size());
    EXPECT_EQ(cur().header.created, 3000000000u + 'b');
    EXPECT_EQ(std::memcmp(&cur().packedPreview, &stored[416], 8), 0);
    const uint8_t* bytes = BlockBytes(globals->curRecord);
    EXPECT_EQ(Bytes(bytes + 424, bytes + 428), Bytes(stored.begin() + 424, stored.begin() + 428));
    EXPECT_EQ(Bytes(bytes + 428, bytes + 1000), Bytes(572, 0)); // nothing more was read
}

TEST_F(RecordTest, APreviewReadFillsTheCallersHandleAndLeavesTheCurrentRecord) {
    MakeGroup("G", {"a", "b"});
    ASSERT_EQ(AidbReadRecord("G", 0, nullptr, kReadHeader, true), 0);
    const MemoryHandle current = globals->curRecord;
    HandleOwner record(NewRecord());
    const MemoryHandle given = record.get();
    ASSERT_EQ(AidbReadRecord("G", 1, &record.get(), kReadPreview, true), 0);
    EXPECT_EQ(record.get(), given); // it may not move
    EXPECT_EQ(globals->curRecord, current);
    EXPECT_EQ(globals->curRecordNo, 0);
    EXPECT_EQ(StartOf(given).header.objectCount, 1u);
    EXPECT_EQ(StartOf(given).header.size, kEmptyRecordBytes);
    EXPECT_EQ(StartOf(given).packedPreview, 0u);
    const Bytes whole = Expanded("G", 1);
    EXPECT_EQ(std::memcmp(BlockBytes(given) + kPreviewOffset, &whole[kPreviewOffset], kPreviewBytes), 0);
}

// However its bodies are packed, the same art is stored as the same bytes.
TEST_F(RecordTest, ALongRecordEndsWithItsBodiesAndFourZeros) {
    constexpr uint32_t kObjectBytes = 200000;
    HandleOwner record(ResizeHandle(NewRecord(), kEmptyRecordBytes + kObjectBytes, kRecordGrain));
    uint8_t* bytes = BlockBytes(record.get());
    const uint32_t size = kEmptyRecordBytes + kObjectBytes;
    for (uint32_t i = kPreviewOffset + kPreviewBytes / 2; i < size - kFillerBytes; ++i)
        bytes[i] = static_cast<uint8_t>(i * i >> 7 ^ i * 2654435761u >> 24);
    reinterpret_cast<RecordStart*>(bytes)->header.size = size;
    const std::span plain(bytes + kPreviewOffset, size - kSmallestRecordBytes);
    Bytes expected(MostPackedBytes(plain.size()) + 16);
    const auto preview = PackLzss(plain.first(kPreviewBytes), expected);
    const auto objects = PackLzss(plain.subspan(kPreviewBytes), std::span(expected).subspan(*preview));
    expected.resize(*preview + *objects);
    expected.insert(expected.end(), kFillerBytes, 0);
    ASSERT_TRUE(PackRecord(record.get()));
    const uint8_t* packed = BlockBytes(record.get()) + kPreviewOffset;
    EXPECT_EQ(Bytes(packed, packed + expected.size()), expected);
}

// A smooth ramp packs to more bytes than it has.
TEST_F(RecordTest, APreviewThatPacksToMoreThanItselfSurvives) {
    MakeCurRecord("a");
    uint8_t* preview = BlockBytes(globals->curRecord) + kPreviewOffset;
    for (uint32_t i = 0; i < kPreviewBytes; ++i)
        preview[i] = static_cast<uint8_t>(i * i >> 7 ^ i * 2654435761u >> 24);
    const Bytes before(preview, preview + kPreviewBytes);
    ASSERT_EQ(WriteRecord("G", -1), 0);
    ASSERT_GT(SwapLong(cur().packedPreview), kPreviewBytes);
    HandleOwner record(NewRecord());
    ASSERT_EQ(AidbReadRecord("G", 0, &record.get(), kReadPreview, true), 0);
    EXPECT_EQ(Bytes(record.bytes() + kPreviewOffset, record.bytes() + kObjectsOffset), before);
}

TEST_F(RecordTest, AnyOtherDepthReadsThatManyBytes) {
    MakeGroup("G", {"a"});
    const Bytes stored = Stored("G", 0);
    ASSERT_GT(stored.size(), 1000u);
    for (const uint32_t depth : {9u, 24u, 416u, 1000u}) {
        AidbReadRecord("G", 0, nullptr, depth, false);
        const uint8_t* bytes = BlockBytes(globals->curRecord);
        EXPECT_EQ(std::memcmp(bytes, stored.data(), depth), 0);
        EXPECT_EQ(bytes[depth], 0) << depth;
    }
    for (const uint32_t depth : {1u, 8u, 1000000u}) {
        AidbReadRecord("G", 0, nullptr, depth, false);
        EXPECT_EQ(std::memcmp(BlockBytes(globals->curRecord), stored.data(), stored.size()), 0) << depth;
    }
}

TEST_F(RecordTest, WhatCannotBeReadLeavesNoRecord) {
    MakeGroup("G", {"a"});
    for (const auto& [group, number] : {std::pair("G", 1), {"G", -1}, {"G", -7}, {"Missing", 0}, {"", 0}}) {
        AidbReadRecord("G", 0, nullptr, kReadWhole, true);
        ASSERT_NE(globals->curRecord, nullptr);
        EXPECT_EQ(AidbReadRecord(group, number, nullptr, kReadWhole, true), 0);
        EXPECT_EQ(globals->curRecord, nullptr) << group << number;
        EXPECT_EQ(globals->curRecordNo, -1);
        HandleOwner record(NewRecord());
        EXPECT_EQ(AidbReadRecord(group, number, &record.get(), kReadPreview, true), 0);
        EXPECT_EQ(StartOf(record.get()).header.size, 0u) << group << number;
    }
}

// Only name, kind and comment are the designer's, and the modified time the clock's.
TEST_F(RecordTest, AnInPlaceRewriteChangesNothingElse) {
    MakeGroup("G", {"a", "b", "c"});
    const Bytes before = BytesOfFile(fileOf("G"));
    const size_t place = 4 + Stored("G", 0).size();
    ASSERT_EQ(AidbReadRecord("G", 1, nullptr, kReadHeader, true), 0);
    auto* header = reinterpret_cast<RecordHeader*>(BlockBytes(globals->curRecord));
    std::memcpy(header->name, Field("renamed", 64).data(), 64);
    header->boundsTop = 12345; // not the designer's to change
    header->created = 1;
    header->objectCount = 99;
    ASSERT_EQ(WriteRecord("G", 1), 0);
    Bytes after = BytesOfFile(fileOf("G"));
    EXPECT_NE(BigEndianAt(after, place + 412), BigEndianAt(before, place + 412));
    Bytes expected = before;
    std::memcpy(&expected[place + 24], Field("renamed", 64).data(), 64);
    std::memcpy(&expected[place + 412], &after[place + 412], 4);
    EXPECT_EQ(after, expected);
    EXPECT_EQ(globals->curRecordNo, 1);
    EXPECT_EQ(SwapLong(cur().header.created), 3000000000u + 'b');
}

// Nor does a delete of what isn't there.
TEST_F(RecordTest, WhatCannotBeStoredChangesNothing) {
    MakeGroup("G", {"a"});
    const Bytes before = BytesOfFile(fileOf("G"));
    MakeCurRecord("b");
    EXPECT_EQ(WriteRecord("G", 1), 0);
    EXPECT_EQ(WriteRecord("G", -2), 0);
    EXPECT_EQ(globals->curRecordNo, -1);
    EXPECT_EQ(WriteRecord("Missing", 0), -1);
    EXPECT_EQ(WriteRecord("\\No such folder\\G", -1), -1);
    MakeCurRecord("b"); // the last one has been packed
    auto* header = reinterpret_cast<RecordHeader*>(BlockBytes(globals->curRecord));
    header->size = 0x7FFFFFFF; // more than its block
    EXPECT_EQ(WriteRecord("G", -1), -1);
    EXPECT_EQ(header->size, 0x7FFFFFFFu); // as it was, in host order
    EXPECT_EQ(header->created, 3000000000u + 'b');
    AidbReadRecord("G", 0, nullptr, kReadHeader, true); // in host order it has no bodies to store
    EXPECT_EQ(WriteRecord("G", -1), -1);
    for (const int32_t number : {1, -1, 0x7FFFFFFF}) EXPECT_EQ(DeleteRecord("G", number), -1) << number;
    EXPECT_EQ(DeleteRecord("Missing", 0), -1);
    EXPECT_NE(globals->curRecord, nullptr);
    FreeHandle(globals->curRecord);
    EXPECT_EQ(WriteRecord("G", -1), 0); // nothing to store is no failure
    EXPECT_EQ(BytesOfFile(fileOf("G")), before);
    for (const char* file : {"Missing.AID", "VLQ.TMP"}) EXPECT_FALSE(std::filesystem::exists(root() / file));
}

// A record's number is its place in the file, so everything behind a deleted one moves down: the file and
// the items of the list have to agree afterwards.
TEST_F(RecordTest, DeleteMovesEverythingBehindItDown) {
    MakeGroup("G", {"a", "b", "c"});
    const Bytes first = Stored("G", 0);
    const Bytes last = Stored("G", 2);
    std::strcpy(globals->aidbfname, "G");
    LoadRihList("G");
    AidbReadRecord("G", 1, nullptr, kReadHeader, true);
    ASSERT_EQ(DeleteRecord("G", 1), 0);
    EXPECT_EQ(globals->curRecord, nullptr);
    EXPECT_EQ(globals->curRecordNo, -1);
    EXPECT_EQ(Stored("G", 0), first);
    EXPECT_EQ(Stored("G", 1), last);
    EXPECT_EQ(NamesInList(), (Names{"a/0", "c/1"}));
    EXPECT_FALSE(std::filesystem::exists(root() / "VLQ.TMP"));
    ASSERT_EQ(DeleteRecord("G", 0), 0);
    ASSERT_EQ(DeleteRecord("G", 0), 0);
    EXPECT_EQ(BytesOfFile(fileOf("G")), Bytes(4, 0)); // the group stays
    EXPECT_EQ(NamesInList(), Names{});
}

// The list is loaded on the way: from the file as it was, or the wrong item would go.
TEST_F(RecordTest, DeleteWithoutAListLeavesATrueOne) {
    MakeGroup("G", {"a", "b", "c"});
    std::strcpy(globals->aidbfname, "G");
    ASSERT_EQ(DeleteRecord("G", 0), 0);
    EXPECT_EQ(NamesInList(), (Names{"b/0", "c/1"}));
}

TEST_F(RecordTest, AppendKeepsTheListAndTellsEachRecordOnce) {
    std::strcpy(globals->aidbfname, "G");
    for (const char* name : {"b", "a"}) {
        MakeCurRecord(name);
        ASSERT_EQ(WriteRecord("G", -1), 0); // the first loads the list, which has found the record already
    }
    EXPECT_EQ(NamesInList(), (Names{"a/1", "b/0"}));
    EXPECT_EQ(RihItemOfRow(globals->rihList, 0)->created, 3000000000u + 'a');
    AidbReadRecord("G", 1, nullptr, kReadHeader, true);
    std::memcpy(BlockBytes(globals->curRecord) + 24, Field("z", 64).data(), 64);
    ASSERT_EQ(WriteRecord("G", 1), 0);
    EXPECT_EQ(NamesInList(), (Names{"b/0", "z/1"}));
}

// A new group in a search result or a folder: that list isn't made from one file.
TEST_F(RecordTest, AppendAddsToAListThatIsNotOfOneGroup) {
    globals->findMode = kFindFolder;
    std::strcpy(globals->aidbfname, "A Folder is Selected");
    MakeCurRecord("a");
    ASSERT_EQ(WriteRecord("G", -1), 0);
    MakeCurRecord("b");
    ASSERT_EQ(WriteRecord("H", -1), 0);
    EXPECT_EQ(NamesInList(), (Names{"a/0", "b/0"}));
    EXPECT_EQ(CountRecords("A Folder is Selected"), 2u);
    EXPECT_EQ(CountRecords("Search Result"), 2u);
    EXPECT_EQ(CountRecords("\\F\\A Folder is Selected"), 2u);
}
