#include "plugin/objects/object_stream.h"

#include <algorithm>
#include <cstring>

#include "plugin/frame/globals.h"
#include "plugin/store/record_layout.h"
#include "plugin/store/trace.h"

namespace {

constexpr uint64_t kLargestRecord = INT32_MAX;

/// The start of a record in its expanded shape; null for any other block.
RecordStart* ExpandedStart(MemoryHandle record) {
    if (BlockSize(record) < kEmptyRecordBytes) return nullptr;
    auto* start = reinterpret_cast<RecordStart*>(BlockBytes(record));
    return start->packedPreview == 0 && start->header.size >= kEmptyRecordBytes ? start : nullptr;
}

/// The place behind a note's ending 0 byte, from the object's start; past the end if there is none.
uint64_t BehindNoteText(std::span<uint8_t> note) {
    return sizeof(AidbObjectHeader) + NoteText(note).size() + 1;
}

template <typename Style>
Style* MarkedStyleAt(std::span<uint8_t> object, uint64_t offset) {
    Style* style = ViewAt<Style>(object, offset);
    if (!style || std::memcmp(style->marker, kStyleMarker, sizeof style->marker) != 0) return nullptr;
    return style;
}

} // namespace

std::span<AidbSegment> PathSegments(std::span<uint8_t> pathObject) {
    const auto* path = ViewAt<AidbPathObject>(pathObject);
    if (!path || path->segmentCount <= 0) return {};
    return ViewsAt<AidbSegment>(pathObject, kPathBaseBytes, static_cast<uint64_t>(path->segmentCount));
}

std::span<AidbTextRun> TextRuns(std::span<uint8_t> textObject) {
    const auto* text = ViewAt<AidbTextObject>(textObject);
    if (!text) return {};
    return ViewsAt<AidbTextRun>(textObject, kTextBaseBytes, text->runCount);
}

std::string_view NoteText(std::span<uint8_t> noteObject) {
    if (noteObject.size() <= sizeof(AidbObjectHeader)) return {};
    const auto content = noteObject.subspan(sizeof(AidbObjectHeader));
    const char* text = reinterpret_cast<const char*>(content.data());
    const void* end = std::memchr(text, 0, content.size());
    return {text, end ? static_cast<size_t>(static_cast<const char*>(end) - text) : content.size()};
}

AidbNoteStyle* FindNoteStyle(std::span<uint8_t> noteObject) {
    return MarkedStyleAt<AidbNoteStyle>(noteObject, BehindNoteText(noteObject));
}

AidbPluginNote* FindPluginNote(std::span<uint8_t> noteObject) {
    auto* note = ViewAt<AidbPluginNote>(noteObject, sizeof(AidbObjectHeader));
    return note && NoteText(noteObject) == kPluginNoteText ? note : nullptr;
}

std::span<uint8_t> RasterTiles(std::span<uint8_t> rasterObject) {
    const auto* raster = ViewAt<AidbRasterObject>(rasterObject);
    if (!raster) return {};
    const auto rest = rasterObject.subspan(kRasterBaseBytes);
    const uint64_t tile = TileBytes(raster->info.colorSpace);
    const uint64_t whole = rest.size() / tile;
    return rest.first(static_cast<size_t>(std::min<uint64_t>(raster->tileCount, whole) * tile));
}

AidbRasterStyle* FindRasterStyle(std::span<uint8_t> rasterObject) {
    const auto* raster = ViewAt<AidbRasterObject>(rasterObject);
    if (!raster) return nullptr;
    const uint64_t tiles = uint64_t{raster->tileCount} * TileBytes(raster->info.colorSpace);
    return MarkedStyleAt<AidbRasterStyle>(rasterObject, kRasterBaseBytes + tiles);
}

ObjectWalk::ObjectWalk(MemoryHandle record) : ObjectWalk(ObjectStream(record), 0) {
    if (const RecordStart* start = ExpandedStart(record)) left_ = start->header.objectCount;
}

std::span<uint8_t> ObjectWalk::Next() {
    if (left_ == 0) return {};
    const auto* header = HeaderOf(rest_);
    if (!header || header->size < sizeof(AidbObjectHeader) || header->size > rest_.size()) {
        damaged_ = true;
        left_ = 0;
        return {};
    }
    const auto object = rest_.first(header->size);
    rest_ = rest_.subspan(object.size());
    --left_;
    return object;
}

std::span<uint8_t> ObjectStream(MemoryHandle record) {
    const RecordStart* start = ExpandedStart(record);
    if (!start) return {};
    const uint64_t size = std::min<uint64_t>(start->header.size, BlockSize(record));
    return {BlockBytes(record) + kObjectsOffset, static_cast<size_t>(size - kEmptyRecordBytes)};
}

ObjectOffsets::ObjectOffsets(MemoryHandle record) {
    ObjectWalk walk(record);
    uint64_t offset = kObjectsOffset;
    for (auto object = walk.Next(); !object.empty(); object = walk.Next()) {
        offsets_.push_back(offset);
        offset += object.size();
    }
}

std::span<uint8_t> ObjectOffsets::Object(MemoryHandle record, uint32_t index) const {
    const auto stream = ObjectStream(record);
    if (index >= offsets_.size() || offsets_[index] - kObjectsOffset > stream.size()) return {};
    return ObjectWalk(stream.subspan(static_cast<size_t>(offsets_[index] - kObjectsOffset)), 1).Next();
}

int32_t GetAIDBObj(MemoryHandle record, int32_t index, MemoryHandle& object) {
    const TraceScope trace("GetAIDBObj");
    if (index < 0) return -1;
    ObjectWalk walk(record);
    std::span<uint8_t> found = walk.Next();
    for (int32_t i = 0; i < index && !found.empty(); ++i) found = walk.Next();
    if (found.empty()) return -1;
    const MemoryHandle grown = ResizeHandle(object, found.size(), kSmallGrain);
    if (!grown) return -1;
    object = grown;
    std::memcpy(BlockBytes(object), found.data(), found.size());
    return 0;
}

int32_t AddAIDBObj(MemoryHandle& record, const uint8_t* object) {
    const TraceScope trace("AddAIDBObj");
    AidbObjectHeader header;
    std::memcpy(&header, object, sizeof header);
    uint8_t* place = AppendObject(record, header.type, header.size);
    if (!place) return -1;
    std::memcpy(place, object, header.size);
    return 0;
}

uint8_t* AppendObject(MemoryHandle& record, uint32_t type, uint32_t size) {
    RecordStart* start = ExpandedStart(record);
    if (!start || size < sizeof(AidbObjectHeader)) return nullptr;
    // A size word beyond the block is damage: where the stream really ends is not known.
    const uint64_t oldSize = start->header.size;
    if (oldSize > BlockSize(record) || oldSize + size > kLargestRecord) return nullptr;
    const MemoryHandle grown = ResizeHandle(record, oldSize + size, kRecordGrain);
    if (!grown) return nullptr;
    record = grown;
    start = ExpandedStart(record);
    start->header.objectCount += 1;
    start->header.size = static_cast<uint32_t>(oldSize + size);

    uint8_t* place = BlockBytes(record) + oldSize - kFillerBytes;
    // The filler of a record that was read is whatever its writer left there.
    std::memset(place, 0, size_t{size} + kFillerBytes);
    auto* header = reinterpret_cast<AidbObjectHeader*>(place);
    header->type = type;
    header->size = size;
    return place;
}

int32_t AddNote(const char* text) {
    const size_t length = std::strlen(text) + 1;
    if (length > kLargestRecord) return -1;
    return AddNoteBytes(text, static_cast<uint32_t>(length));
}

int32_t AddNoteBytes(const void* content, uint32_t length) {
    if (length > kLargestRecord) return -1;
    uint8_t* note = AppendObject(globals->curRecord, kNoteObject, length + kNoteFrameBytes);
    if (!note) return -1;
    std::memcpy(note + sizeof(AidbObjectHeader), content, length);
    return 0;
}

uint8_t* GrowObject(MemoryHandle& object, uint64_t& used, uint64_t bytes, uint64_t grain) {
    if (used > kLargestRecord || bytes > kLargestRecord - used) return nullptr;
    const MemoryHandle grown = ResizeHandle(object, used + bytes, grain);
    if (!grown) return nullptr;
    object = grown;
    uint8_t* place = BlockBytes(object) + used;
    std::memset(place, 0, static_cast<size_t>(bytes));
    used += bytes;
    return place;
}
