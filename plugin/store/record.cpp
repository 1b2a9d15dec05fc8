#include "plugin/store/record.h"

#include <algorithm>
#include <cstring>
#include <span>

#include "plugin/frame/globals.h"
#include "plugin/objects/byte_order.h"
#include "plugin/store/clock_1904.h"
#include "plugin/store/group_file.h"
#include "plugin/store/lzss.h"
#include "plugin/store/record_index.h"
#include "plugin/store/record_layout.h"
#include "plugin/store/store_lock.h"
#include "plugin/store/store_names.h"
#include "plugin/store/swap_words.h"
#include "plugin/store/trace.h"

namespace {

/// More packed bytes than these cannot add to a preview.
constexpr uint32_t kMostPackedPreview = MostPackedBytes(kPreviewBytes);

RecordStart* StartOf(MemoryHandle record) {
    return reinterpret_cast<RecordStart*>(BlockBytes(record));
}

// The three words that tell a record's extent, between the file's order and the host's.
void SwapExtent(RecordStart* start) {
    start->header.size = SwapLong(start->header.size);
    start->packedPreview = SwapLong(start->packedPreview);
    start->packedObjects = SwapLong(start->packedObjects);
}

std::span<uint8_t> BytesOf(MemoryHandle record) {
    return {BlockBytes(record), BlockSize(record)};
}

/// The packed bodies of a record whose extent is in host order, cut to what its block holds.
struct PackedBodies {
    std::span<const uint8_t> preview;
    std::span<const uint8_t> objects;
};

PackedBodies PackedBodiesOf(MemoryHandle record) {
    const RecordStart* start = StartOf(record);
    const uint64_t bytes = std::min<uint64_t>(start->header.size, BlockSize(record));
    if (bytes < kSmallestRecordBytes) return {};
    const auto bodies = BytesOf(record).subspan(kPreviewOffset, bytes - kSmallestRecordBytes);
    const size_t preview = std::min<size_t>(start->packedPreview, bodies.size());
    const size_t objects = std::min<size_t>(start->packedObjects, bodies.size() - preview);
    return {bodies.first(preview), bodies.subspan(preview, objects)};
}

void MarkExpanded(MemoryHandle record, uint64_t objectBytes) {
    RecordStart* start = StartOf(record);
    start->header.size = static_cast<uint32_t>(kEmptyRecordBytes + objectBytes);
    start->packedPreview = 0;
    start->packedObjects = 0;
}

// Unpacks a preview with zeros where its packed form is too short.
void UnpackPreview(std::span<const uint8_t> packed, std::span<uint8_t> preview) {
    const uint64_t bytes = UnpackLzss(packed, preview);
    std::ranges::fill(preview.subspan(bytes), uint8_t{0});
}

// The packed preview lies where the preview goes, so it is unpacked beside it.
bool UnpackPreviewInPlace(MemoryHandle& record) {
    const MemoryHandle large = ResizeHandle(record, kEmptyRecordBytes, kRecordGrain);
    if (large == nullptr) return false;
    record = large;
    HandleOwner preview(NewHandle(kPreviewBytes, kSmallGrain));
    if (preview.bytes() == nullptr) return false;
    UnpackPreview(PackedBodiesOf(record).preview, {preview.bytes(), kPreviewBytes});
    std::memcpy(BlockBytes(record) + kPreviewOffset, preview.bytes(), kPreviewBytes);
    MarkExpanded(record, 0);
    return true;
}

} // namespace

MemoryHandle NewRecord() {
    const MemoryHandle record = NewHandle(kEmptyRecordBytes, kRecordGrain);
    if (record != nullptr) StartOf(record)->header.size = kEmptyRecordBytes;
    return record;
}

bool PackRecord(MemoryHandle& record) {
    const uint64_t size = StartOf(record)->header.size;
    if (size < kEmptyRecordBytes || size > BlockSize(record)) return false;
    const auto preview = BytesOf(record).subspan(kPreviewOffset, kPreviewBytes);
    const auto objects = BytesOf(record).subspan(kObjectsOffset, size - kEmptyRecordBytes);
    const uint64_t most =
        kSmallestRecordBytes + MostPackedBytes(preview.size()) + MostPackedBytes(objects.size());
    HandleOwner packed(NewHandle(most, kRecordGrain));
    if (packed.bytes() == nullptr) return false;
    const auto room = BytesOf(packed.get()).subspan(kPreviewOffset);
    const auto bodies = PackPairLzss(preview, objects, room);
    if (!bodies) return false;
    const uint64_t total = kSmallestRecordBytes + bodies->first + bodies->second;
    if (total > UINT32_MAX) return false;
    // Packing may have left something behind the bodies.
    std::memset(packed.bytes() + total - kFillerBytes, 0, kFillerBytes);
    std::memcpy(packed.bytes(), BlockBytes(record), kRecordHeaderBytes);
    RecordStart* start = StartOf(packed.get());
    start->header.size = static_cast<uint32_t>(total);
    start->packedPreview = static_cast<uint32_t>(bodies->first);
    start->packedObjects = static_cast<uint32_t>(bodies->second);
    FreeHandle(record);
    record = packed.Release();
    return true;
}

bool UnpackRecord(MemoryHandle& record, bool objects) {
    if (!objects) return UnpackPreviewInPlace(record);
    const PackedBodies packed = PackedBodiesOf(record);
    const uint64_t objectBytes = UnpackedLzssBytes(packed.objects);
    if (kEmptyRecordBytes + objectBytes > UINT32_MAX) return false;
    HandleOwner expanded(NewHandle(kEmptyRecordBytes + objectBytes, kRecordGrain));
    if (expanded.bytes() == nullptr) return false;
    std::memcpy(expanded.bytes(), BlockBytes(record), kRecordHeaderBytes);
    UnpackPreview(packed.preview, BytesOf(expanded.get()).subspan(kPreviewOffset, kPreviewBytes));
    UnpackLzss(packed.objects, BytesOf(expanded.get()).subspan(kObjectsOffset, objectBytes));
    MarkExpanded(expanded.get(), objectBytes);
    FreeHandle(record);
    record = expanded.Release();
    return true;
}

namespace {

// Reads the header and the packed preview, with the four bytes behind it.  The block must not move.
bool ReadPreviewOf(GroupFile& file, const RecordPlace& place, MemoryHandle record) {
    if (BlockSize(record) < kSmallestRecordBytes + kMostPackedPreview) return false;
    uint8_t* bytes = BlockBytes(record);
    if (!file.Read(place.place, bytes, kSmallestRecordBytes)) return false;
    const uint32_t stored = SwapLong(StartOf(record)->packedPreview);
    const uint32_t rest = std::min({stored, place.bytes - kSmallestRecordBytes, kMostPackedPreview});
    return file.Read(place.place + kSmallestRecordBytes, bytes + kSmallestRecordBytes, rest);
}

bool ReadStored(const char* groupName, int32_t number, MemoryHandle& record, uint32_t depth) {
    GroupFile file;
    RecordPlace place;
    if (number < 0 || !file.OpenToRead(groupName) ||
        !FindRecord(file, static_cast<uint32_t>(number), place)) {
        return false;
    }
    if (record == nullptr) record = NewRecord();
    if (record == nullptr) return false;
    if (depth == kReadPreview) return ReadPreviewOf(file, place, record);
    const uint32_t bytes = depth > 8 ? std::min(depth, place.bytes) : place.bytes;
    const MemoryHandle large = ResizeHandle(record, bytes, kRecordGrain);
    if (large == nullptr) return false;
    record = large;
    return file.Read(place.place, BlockBytes(record), bytes);
}

bool ConvertFromStore(MemoryHandle& record, uint32_t depth) {
    if (depth == kReadWhole || depth == kReadPreview) {
        SwapExtent(StartOf(record));
        if (!UnpackRecord(record, depth == kReadWhole)) return false;
        SwapExtent(StartOf(record));
    }
    SwapRecordFromStore(record, depth == kReadWhole);
    return true;
}

void DropCurRecord() {
    FreeHandle(globals->curRecord);
    globals->curRecordNo = -1;
}

} // namespace

int32_t AidbReadRecord(const char* groupName, int32_t number, MemoryHandle* handle, uint32_t depth,
                       bool convert) {
    const TraceScope trace("AidbReadRecord");
    if (handle == nullptr) DropCurRecord();
    MemoryHandle record = handle != nullptr ? *handle : nullptr;
    const bool delivered =
        ReadStored(groupName, number, record, depth) && (!convert || ConvertFromStore(record, depth));
    if (handle != nullptr) {
        *handle = record; // it may have moved, also when nothing is delivered
        if (!delivered && BlockSize(record) >= sizeof(RecordStart)) StartOf(record)->header.size = 0;
    } else if (delivered) {
        globals->curRecord = record;
        globals->curRecordNo = number;
    } else {
        FreeHandle(record);
    }
    return 0;
}

namespace {

// Brings `curRecord` from the expanded shape to a file image; false leaves it expanded.
bool MakeFileImage() {
    MemoryHandle& record = globals->curRecord;
    SwapRecordToStore(record);
    SwapExtent(StartOf(record));
    const bool packed = PackRecord(record);
    SwapExtent(StartOf(record));
    if (!packed) SwapRecordFromStore(record, true);
    return packed;
}

// A header-only record is no image: its size word is in host order, or tells of more than the block holds.
bool IsFileImage(MemoryHandle record) {
    const RecordStart* start = StartOf(record);
    const uint64_t bodies = uint64_t{SwapLong(start->packedPreview)} + SwapLong(start->packedObjects);
    const uint64_t size = SwapLong(start->header.size);
    return size == kSmallestRecordBytes + bodies && size <= BlockSize(record);
}

enum class Stored { kDone, kUnchanged, kFailed };

Stored AppendCurRecord(const char* groupName, uint32_t* number) {
    const MemoryHandle record = globals->curRecord;
    if (!IsFileImage(record)) {
        StoreFails(StoreTrouble::kRefused);
        return Stored::kFailed;
    }
    const uint32_t size = SwapLong(StartOf(record)->header.size);
    return AppendToGroup(groupName, BlockBytes(record), size, number) ? Stored::kDone : Stored::kFailed;
}

// What the designer edits is new; all else stays what it is on disk.
void TakeStoredFields(RecordHeader& header, const RecordHeader& stored) {
    header.objectCount = stored.objectCount;
    header.size = stored.size;
    header.boundsLeft = stored.boundsLeft;
    header.boundsTop = stored.boundsTop;
    header.boundsRight = stored.boundsRight;
    header.boundsBottom = stored.boundsBottom;
    header.created = stored.created;
    uint32_t now;
    NowIn1904Seconds(&now);
    header.modified = SwapLong(now);
}

Stored RewriteFromCurRecord(const char* groupName, uint32_t number) {
    const StoreLock lock(kStoreShared);
    GroupFile file;
    if (!lock.held() || !file.OpenToChange(groupName)) return Stored::kFailed;
    if (number >= file.storedCount()) return Stored::kUnchanged;
    RecordPlace place;
    RecordHeader stored;
    if (!FindRecord(file, number, place) || !file.Read(place.place, &stored, sizeof stored)) {
        StoreFails(StoreTrouble::kDamaged);
        return Stored::kFailed;
    }
    RecordHeader header = StartOf(globals->curRecord)->header;
    TakeStoredFields(header, stored);
    if (!ReplaceHeader(file, place, stored, header)) return Stored::kFailed;
    StartOf(globals->curRecord)->header = header;
    return Stored::kDone;
}

// A list that is loaded only now has already found the record in its file.
void AddCurRecordToList(const char* groupName, uint32_t number) {
    const bool loaded = globals->rihList == nullptr;
    if (loaded && FindRihItem(groupName, number) >= 0) return;
    const RecordHeader& header = StartOf(globals->curRecord)->header;
    AidbAddItemRIHList(&globals->rihList, groupName, number, header.name, header.kind,
                       SwapLong(header.created));
}

} // namespace

int32_t WriteRecord(const char* groupName, int32_t number) {
    const TraceScope trace("WriteRecord");
    if (globals->curRecord == nullptr) return 0;
    if (number < -1) return 0;
    if (StartOf(globals->curRecord)->packedPreview == 0 && !MakeFileImage()) {
        StoreFails(StoreTrouble::kMemory);
        return -1;
    }
    auto place = static_cast<uint32_t>(number);
    const Stored stored =
        number == -1 ? AppendCurRecord(groupName, &place) : RewriteFromCurRecord(groupName, place);
    if (stored == Stored::kUnchanged) return 0;
    if (stored == Stored::kFailed) return -1;
    globals->curRecordNo = static_cast<int32_t>(place);
    if (number != -1) AidbRmvItemRIHList(&globals->rihList, groupName, place);
    AddCurRecordToList(groupName, place);
    return 0;
}

int32_t DeleteRecord(const char* groupName, int32_t number) {
    const TraceScope trace("DeleteRecord");
    if (number < 0) {
        StoreFails(StoreTrouble::kRefused);
        return -1;
    }
    // The list is loaded, if at all, while the file still has the record.
    const auto deleted = static_cast<uint32_t>(number);
    const bool listed = FindRihItem(groupName, deleted) >= 0;
    if (!RemoveFromGroup(groupName, deleted)) return -1;
    DropCurRecord();
    if (listed) AidbRmvItemRIHList(&globals->rihList, groupName, deleted);
    for (int32_t row = 0; row < RihCount(globals->rihList); ++row) {
        RihItem* item = RihItemOfRow(globals->rihList, row);
        if (item->recNo > deleted && std::strcmp(item->groupPath, groupName) == 0) --item->recNo;
    }
    return 0;
}

uint32_t CountRecords(const char* groupName) {
    char folder[kPartBytes];
    char subFolder[kPartBytes];
    char group[kPartBytes];
    SplitGroupName(groupName, folder, subFolder, group);
    if (std::strcmp(group, kSearchResult) == 0 || std::strcmp(group, kFolderSelected) == 0) {
        return static_cast<uint32_t>(RihCount(globals->rihList));
    }
    GroupFile file;
    return file.OpenToRead(groupName) ? file.count() : 0;
}

int32_t GroupFileExists(const char* groupName) {
    GroupFile file;
    return file.OpenToRead(groupName) ? 1 : 0;
}
