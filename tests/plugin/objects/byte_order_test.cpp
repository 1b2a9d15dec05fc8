#include "plugin/objects/byte_order.h"

#include <random>

#include "tests/plugin/objects/golden_objects.h"

namespace {

using ByteOrderTest = ObjectsTest;

struct Golden {
    const char* name;
    std::vector<Bytes> host;
    std::vector<Bytes> stored;
};

std::vector<Golden> Goldens() {
    return {{"path", {HostPath()}, {StoredPath()}},
            {"text", {HostText()}, {StoredText()}},
            {"note with a style", {HostNote()}, {StoredNote()}},
            {"raster", {HostRaster(17)}, {StoredRaster(17)}},
            // Each raster finds the paint behind its tiles by its own tile size.
            {"five-channel raster before another",
             {HostRaster(18), HostRaster(17)},
             {StoredRaster(18), StoredRaster(17)}},
            {"mesh", {HostMesh()}, {StoredMesh()}},
            {"all",
             {HostMesh(), HostNote(), HostPath(), HostText(), HostRaster(18)},
             {StoredMesh(), StoredNote(), StoredPath(), StoredText(), StoredRaster(18)}}};
}

Bytes Joined(const std::vector<Bytes>& objects) {
    StoredBytes joined;
    for (const Bytes& object : objects) joined.Add(object);
    return joined.bytes();
}

/// Where two runs of bytes first differ; their length if they don't.
size_t FirstDifference(const Bytes& a, const Bytes& b) {
    size_t i = 0;
    while (i < a.size() && i < b.size() && a[i] == b[i]) ++i;
    return i;
}

TEST_F(ByteOrderTest, EveryKindBecomesItsBytesOnDiskAndComesBack) {
    for (const Golden& golden : Goldens()) {
        SCOPED_TRACE(golden.name);
        HandleOwner record(RecordOf(golden.host));
        const Bytes before = AllBytes(record.get());
        SwapRecordToStore(record.get());
        const Bytes expected = Joined(golden.stored);
        const Bytes swapped = AllBytes(record.get());
        const Bytes stream(swapped.begin() + kObjectsOffset, swapped.end() - 4);
        ASSERT_EQ(stream.size(), expected.size());
        EXPECT_EQ(FirstDifference(stream, expected), expected.size());
        SwapRecordFromStore(record.get(), true);
        EXPECT_EQ(AllBytes(record.get()), before);
    }
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
    HandleOwner record(RecordOf({HostPath(), HostMesh()}));
    const Bytes before = AllBytes(record.get());
    SwapRecordToStore(record.get());
    EXPECT_EQ(AllBytes(record.get()), before);
}

// The marker counts only where the tiles end, and only if the whole block is inside the object.
TEST_F(ByteOrderTest, RasterThatEndsBehindItsTilesHasNoPaint) {
    Bytes raster = HostRaster(17);
    raster.resize(92 + 4096);
    reinterpret_cast<AidbObjectHeader*>(raster.data())->size = static_cast<uint32_t>(raster.size());
    Bytes block = StoredBytes().Text("rsop", 5080).bytes();
    block[4] = 1; // the style's fill flag, if it were one
    HandleOwner record(RecordOf({raster, block}));
    StartOf(record.get())->header.objectCount = 1;
    SwapRecordToStore(record.get());
    EXPECT_EQ(record.bytes()[kObjectsOffset + raster.size() + 4], 1);
}

// ---- Damage ----

/// A path whose segment count promises more than the object holds.
TEST_F(ByteOrderTest, CountBeyondTheObjectIsClippedToWhatFits) {
    Bytes path = HostPath();
    reinterpret_cast<AidbPathObject*>(path.data())->segmentCount = 0x7001;
    HandleOwner record(RecordOf({path, HostMesh()}));
    SwapRecordToStore(record.get());
    Bytes expected = StoredPath();
    expected[5102] = 0x70; // the count itself stays as it was read
    expected[5103] = 0x01;
    const Bytes swapped = AllBytes(record.get());
    EXPECT_EQ(Bytes(swapped.begin() + kObjectsOffset, swapped.end() - 4), Joined({expected, StoredMesh()}));
}

TEST_F(ByteOrderTest, ObjectThatLeadsOutsideEndsTheSwapBehindItsHeader) {
    for (const uint32_t size : {23u, 0u, 281u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        SCOPED_TRACE(size);
        Bytes mesh = HostMesh();
        reinterpret_cast<AidbObjectHeader*>(mesh.data())->size = size;
        HandleOwner record(RecordOf({HostNote(), mesh}));
        SwapRecordToStore(record.get());
        const Bytes swapped = AllBytes(record.get());
        const auto at = swapped.begin() + kObjectsOffset + static_cast<ptrdiff_t>(HostNote().size());
        EXPECT_EQ(Bytes(at, at + 4), StoredBytes().Hex("0000000B").bytes());
        EXPECT_EQ(Bytes(at + 24, at + 280), Bytes(mesh.begin() + 24, mesh.end()));
    }
}

// Text paths inside the runs would be swapped twice, and not come back.
TEST_F(ByteOrderTest, TextPathsThatReachIntoTheRunsAreLeftAlone) {
    Bytes text = HostText();
    reinterpret_cast<AidbTextObject*>(text.data())->pathsOffset = 40 + 5888;
    HandleOwner record(RecordOf({text}));
    SwapRecordToStore(record.get());
    const Bytes swapped = AllBytes(record.get());
    const auto object = swapped.begin() + kObjectsOffset;
    const Bytes stored = StoredText();
    EXPECT_EQ(Bytes(object + 40, object + 11816), Bytes(stored.begin() + 40, stored.begin() + 11816));
    EXPECT_EQ(Bytes(object + 11816, object + 11928), Bytes(text.begin() + 11816, text.end()));
}

/// Both ways over the same bytes: as if they were a record in memory, and as if they were one on disk.
void ExpectSurvival(MemoryHandle record) {
    const Bytes before(BlockBytes(record), BlockBytes(record) + BlockSize(record));
    SwapRecordFromStore(record, true);
    SwapRecordToStore(record);
    ASSERT_EQ(std::memcmp(BlockBytes(record), before.data(), before.size()), 0) << "read, then written";
    SwapRecordToStore(record);
    SwapRecordFromStore(record, true);
    ASSERT_EQ(std::memcmp(BlockBytes(record), before.data(), before.size()), 0) << "written, then read";
}

/// Hits a record where it hurts: header words of objects, counts and sizes more often than other bytes.
void Damage(std::mt19937& random, MemoryHandle record, const std::vector<Bytes>& objects) {
    std::uniform_int_distribution<size_t> hits(1, 8), any(0, BlockSize(record) - kObjectsOffset - 1),
        die(0, 9);
    constexpr size_t kTender[] = {0, 4, 6, 7, 24, 28, 29, 30, 36, 38, 40, 64, 88, 90, 120, 124, 140, 5102};
    std::uniform_int_distribution<size_t> tender(0, std::size(kTender) - 1), which(0, objects.size() - 1);
    std::uniform_int_distribution<int> byte(0, 255);
    for (size_t i = hits(random); i > 0; --i) {
        size_t at = kObjectsOffset;
        if (die(random) < 7) {
            const size_t target = which(random);
            for (size_t k = 0; k < target; ++k) at += objects[k].size();
            at += kTender[tender(random)];
        } else {
            at += any(random);
        }
        if (die(random) == 0) at = any(random) % 24; // counts and size of the record itself
        if (at < BlockSize(record)) BlockBytes(record)[at] = static_cast<uint8_t>(byte(random));
    }
}

TEST_F(ByteOrderTest, DamagedRecordsSurviveAReadAndAWrite) {
    std::mt19937 random(19040101);
    const std::vector<Bytes> host = {HostMesh(), HostNote(),     HostPath(),
                                     HostText(), HostRaster(18), HostMesh()};
    HandleOwner record(RecordOf(host));
    const Bytes inMemory = AllBytes(record.get());
    SwapRecordToStore(record.get());
    const Bytes onDisk = AllBytes(record.get());
    for (int i = 0; i < 1500; ++i) {
        SCOPED_TRACE(i);
        const Bytes& start = i % 2 == 0 ? onDisk : inMemory;
        std::memcpy(record.bytes(), start.data(), start.size());
        Damage(random, record.get(), host);
        ExpectSurvival(record.get());
        if (HasFatalFailure()) return;
    }
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
