#include "plugin/objects/byte_order.h"

#include "tests/plugin/objects/golden_objects.h"

namespace {

using ByteOrderTest = ObjectsTest;

/// Where two runs of bytes first differ; their length if they don't.
size_t FirstDifference(const Bytes& a, const Bytes& b) {
    size_t i = 0;
    while (i < a.size() && i < b.size() && a[i] == b[i]) ++i;
    return i;
}

// Each raster finds the paint behind its tiles by its own tile size.
TEST_F(ByteOrderTest, EveryKindBecomesItsBytesOnDiskAndComesBack) {
    const Golden goldens[] = {GoldenMesh(), GoldenNote(),     GoldenPath(),
                              GoldenText(), GoldenRaster(18), GoldenRaster(17)};
    Golden all;
    std::vector<Bytes> objects;
    for (const Golden& golden : goldens) {
        all.Add(golden);
        objects.push_back(golden.host);
    }
    HandleOwner record(RecordOf(objects));
    const Bytes before = AllBytes(record.get());
    SwapRecordToStore(record.get());
    const Bytes swapped = AllBytes(record.get());
    const Bytes stream(swapped.begin() + kObjectsOffset, swapped.end() - 4);
    ASSERT_EQ(stream.size(), all.stored.size());
    EXPECT_EQ(FirstDifference(stream, all.stored), stream.size());
    SwapRecordFromStore(record.get(), true);
    EXPECT_EQ(AllBytes(record.get()), before);
}

// Object count, size, bounds and both times are numbers; texts, preview and packed lengths are not touched.
TEST_F(ByteOrderTest, HeaderSwapsItsEightWordsAndNothingElse) {
    HandleOwner record(EmptyRecord());
    std::memset(record.bytes() + 24, 0x5A, 408 - 24);
    RecordHeader& header = StartOf(record.get())->header;
    header.boundsTop = 0x00010203;
    header.boundsRight = 0x00040506;
    header.created = 0x7C25B080;
    header.modified = 0x7C25B081;
    StartOf(record.get())->packedObjects = 0x01020304;
    Bytes expected = AllBytes(record.get());
    const Bytes words = StoredBytes().Hex("00000000 000101AC 00000000 00010203 00040506 00000000").bytes();
    std::copy(words.begin(), words.end(), expected.begin());
    const Bytes times = StoredBytes().Hex("7C25B080 7C25B081").bytes();
    std::copy(times.begin(), times.end(), expected.begin() + 408);

    SwapRecordToStore(record.get());
    EXPECT_EQ(AllBytes(record.get()), expected);
}

TEST_F(ByteOrderTest, MachineOfTheStoredOrderSwapsNothing) {
    globals->swapBytes = 0;
    HandleOwner record(RecordOf({GoldenPath().host, GoldenMesh().host}));
    const Bytes before = AllBytes(record.get());
    SwapRecordToStore(record.get());
    EXPECT_EQ(AllBytes(record.get()), before);
}

TEST_F(ByteOrderTest, BlocksTooSmallForARecordAreLeftAlone) {
    SwapRecordToStore(nullptr);
    HandleOwner tiny(NewHandle(415, 1));
    std::memset(tiny.bytes(), 0x12, 415);
    tiny.bytes()[3] = 0x34;
    const Bytes before = AllBytes(tiny.get());
    SwapRecordFromStore(tiny.get(), true);
    EXPECT_EQ(AllBytes(tiny.get()), before);
}

} // namespace
