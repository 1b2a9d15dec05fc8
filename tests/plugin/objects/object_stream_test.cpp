#include "plugin/objects/object_stream.h"

#include <string>

#include "tests/plugin/objects/golden_objects.h"

namespace {

class ObjectStreamTest : public ObjectsTest {
protected:
    void SetUp() override {
        ObjectsTest::SetUp();
        globals->curRecord = EmptyRecord(kEmptyRecordBytes, kRecordGrain);
    }
    static MemoryHandle& record() { return globals->curRecord; }
    static RecordHeader& header() { return StartOf(record())->header; }

    static std::vector<Bytes> Objects() {
        std::vector<Bytes> objects;
        ObjectWalk walk(record());
        for (auto object = walk.Next(); !object.empty(); object = walk.Next())
            objects.emplace_back(object.begin(), object.end());
        return objects;
    }
};

TEST_F(ObjectStreamTest, RecordGrowsBeyondItsBlockAndKeepsWhatItHolds) {
    std::memset(BlockBytes(record()) + kPreviewOffset, 0x77, kPreviewBytes);
    const Bytes raster = GoldenRaster(18).host;
    while (BlockSize(record()) == kRecordGrain) ASSERT_EQ(AddAIDBObj(record(), raster.data()), 0);
    EXPECT_EQ(BlockBytes(record())[kPreviewOffset + kPreviewBytes - 1], 0x77);
    const auto objects = Objects();
    EXPECT_EQ(objects.size(), header().objectCount);
    for (const Bytes& object : objects) EXPECT_EQ(object, raster);
}

// As long as their text asks for.  The four bytes behind the stream of a stored record hold whatever its
// writer left there; the new ones are zero.
TEST_F(ObjectStreamTest, NotesAreAppendedOverTheFiller) {
    std::memset(BlockBytes(record()) + kObjectsOffset, 0xEE, 60);
    ASSERT_EQ(AddNote("GroupArt /"), 0);
    const uint8_t content[] = {'A', 0, 'r', 's', 'o', 'p'};
    ASSERT_EQ(AddNoteBytes(content, sizeof content), 0);
    EXPECT_EQ(Stream(record()), StoredBytes()
                                    .Hex("07000000 27000000")
                                    .Fill(16)
                                    .Text("GroupArt /", 15)
                                    .Hex("07000000 22000000")
                                    .Fill(16)
                                    .Hex("41 00 72 73 6F 70")
                                    .Fill(4)
                                    .bytes());
    EXPECT_EQ(0, std::memcmp(BlockBytes(record()) + kObjectsOffset + 0x27 + 0x22, "\0\0\0", 4));
}

TEST_F(ObjectStreamTest, RefusesToAppendWhereTheEndIsNotKnown) {
    const Bytes object = GoldenMesh().host;
    const auto refused = [&](MemoryHandle& handle) {
        const Bytes before = handle ? AllBytes(handle) : Bytes();
        const bool same = AddAIDBObj(handle, object.data()) == -1 && (!handle || AllBytes(handle) == before);
        return same;
    };
    MemoryHandle none = nullptr;
    EXPECT_TRUE(refused(none));
    header().size = kEmptyRecordBytes - 1;
    EXPECT_TRUE(refused(record()));
    for (const uint32_t beyondTheBlock : {0x00400000u, 0x7FFFFF00u, 0xFFFFFFFFu}) {
        header().size = beyondTheBlock;
        EXPECT_TRUE(refused(record()));
    }
    header().size = kEmptyRecordBytes;
    StartOf(record())->packedPreview = 100; // a file image
    EXPECT_TRUE(refused(record()));
    StartOf(record())->packedPreview = 0;
    const AidbObjectHeader tooShort = {kNoteObject, 23, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(AddAIDBObj(record(), reinterpret_cast<const uint8_t*>(&tooShort)), -1);
    EXPECT_EQ(header().objectCount, 0u);
    EXPECT_EQ(AddAIDBObj(record(), object.data()), 0);
}

// ---- Damage ----

TEST_F(ObjectStreamTest, DamagedSizeEndsTheStreamForGood) {
    for (const uint32_t size : {0u, 23u, 33u, 0x80000000u, 0xFFFFFFFFu}) {
        SCOPED_TRACE(size);
        HandleOwner damaged(RecordOf({GoldenMesh().host, Bytes(32), GoldenMesh().host}));
        std::memcpy(damaged.bytes() + kObjectsOffset + 280 + 4, &size, 4);
        StartOf(damaged.get())->header.size -= size == 33 ? 280 : 0; // 33 bytes in a rest of 32
        ObjectWalk walk(damaged.get());
        EXPECT_EQ(walk.Next().size(), 280u);
        EXPECT_FALSE(walk.damaged());
        EXPECT_TRUE(walk.Next().empty());
        EXPECT_TRUE(walk.damaged());
        EXPECT_TRUE(walk.Next().empty());
        EXPECT_EQ(ObjectOffsets(damaged.get()).count(), 1u);
        HandleOwner object;
        EXPECT_EQ(GetAIDBObj(damaged.get(), 0, object.get()), 0);
        EXPECT_EQ(GetAIDBObj(damaged.get(), 1, object.get()), -1);
        EXPECT_EQ(GetAIDBObj(damaged.get(), 2, object.get()), -1);
    }
}

TEST_F(ObjectStreamTest, StreamEndsWhereRecordOrBlockEnds) {
    HandleOwner damaged(RecordOf({GoldenMesh().host}));
    RecordHeader& start = StartOf(damaged.get())->header;
    const uint32_t size = start.size;
    start.size = 0xFFFFFFFF;
    EXPECT_EQ(ObjectStream(damaged.get()).size(), 280u);
    start.size = kEmptyRecordBytes - 1;
    EXPECT_TRUE(ObjectStream(damaged.get()).empty());
    start.size = size;
    start.objectCount = 0xFFFFFFFF;
    EXPECT_EQ(ObjectOffsets(damaged.get()).count(), 1u);
}

// ---- Looking into one object ----

TEST_F(ObjectStreamTest, NoteGivesItsTextAndThePaintBehindIt) {
    Bytes note = GoldenNote().host;
    EXPECT_EQ(NoteText(note), "PlacedFile = \"a.tif\"\r");
    ASSERT_NE(FindNoteStyle(note), nullptr);
    EXPECT_EQ(FindNoteStyle(note)->opacity + 0, 0x0000C000);
    note.resize(24 + 22 + 5083); // the last byte of the paint is missing
    EXPECT_EQ(FindNoteStyle(note), nullptr);
    Bytes endless(30, 'x');
    EXPECT_EQ(NoteText(endless), "xxxxxx");
    EXPECT_EQ(FindNoteStyle(endless), nullptr);
    EXPECT_EQ(NoteText(std::span(endless).first(24)), "");
}

TEST_F(ObjectStreamTest, PluginNoteIsFoundWholeOrNotAtAll) {
    AidbPluginNote note = {};
    std::memcpy(note.text, kPluginNoteText, sizeof kPluginNoteText);
    note.major = 3;
    ASSERT_EQ(AddNoteBytes(&note, sizeof note), 0);
    ASSERT_EQ(AddNote(kPluginNoteText), 0);
    auto objects = Objects();
    ASSERT_NE(FindPluginNote(objects[0]), nullptr);
    EXPECT_EQ(FindPluginNote(objects[0])->major + 0, 3u);
    EXPECT_EQ(FindPluginNote(objects[1]), nullptr);
    std::memcpy(note.text, "Tag", 4);
    ASSERT_EQ(AddNoteBytes(&note, sizeof note), 0);
    EXPECT_EQ(FindPluginNote(Objects()[2]), nullptr);
}

TEST_F(ObjectStreamTest, CountsAreClippedToWhatTheObjectHolds) {
    Bytes path = GoldenPath().host;
    auto* fixed = reinterpret_cast<AidbPathObject*>(path.data());
    EXPECT_EQ(PathSegments(path).size(), 2u);
    fixed->segmentCount = 1;
    EXPECT_EQ(PathSegments(path).size(), 1u);
    fixed->segmentCount = 0x7FFF;
    EXPECT_EQ(PathSegments(path).size(), 2u);
    fixed->segmentCount = -1;
    EXPECT_TRUE(PathSegments(path).empty());
    EXPECT_TRUE(PathSegments(std::span(path).first(5103)).empty());

    Bytes raster = GoldenRaster(18).host;
    auto* image = reinterpret_cast<AidbRasterObject*>(raster.data());
    EXPECT_EQ(RasterTiles(raster).size(), 5120u);
    EXPECT_NE(FindRasterStyle(raster), nullptr);
    image->info.colorSpace = 17; // now the marker isn't where the tiles end
    EXPECT_EQ(FindRasterStyle(raster), nullptr);
    image->tileCount = 0xFFFFFFFF;
    EXPECT_EQ(RasterTiles(raster).size(), 2 * 4096u);
    EXPECT_EQ(FindRasterStyle(raster), nullptr);
}

} // namespace
