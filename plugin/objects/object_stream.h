/// The object stream of a record: walking, fetching, appending, and building objects.
///
/// Everything here works on a record in its expanded shape and in host order (store/record_layout.h).
/// Reading trusts nothing: the stream ends where the record's size word or its block ends, and an object
/// that does not fit ends it too.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "plugin/objects/object_layout.h"
#include "plugin/store/memory_handle.h"

// ---- Views: the bounds-checked look at one object ----

/// The structure at `offset`, or null if it doesn't lie wholly within `bytes`.  Stored structures may
/// stand at any address (their alignment is 1).
template <typename Structure>
Structure* ViewAt(std::span<uint8_t> bytes, uint64_t offset = 0) {
    static_assert(alignof(Structure) == 1);
    if (offset > bytes.size() || bytes.size() - offset < sizeof(Structure)) return nullptr;
    return reinterpret_cast<Structure*>(bytes.data() + offset);
}

/// `count` structures from `offset` on, fewer if only fewer fit wholly; empty if `offset` is outside.
template <typename Structure>
std::span<Structure> ViewsAt(std::span<uint8_t> bytes, uint64_t offset, uint64_t count) {
    static_assert(alignof(Structure) == 1);
    if (offset > bytes.size()) return {};
    const uint64_t room = (bytes.size() - offset) / sizeof(Structure);
    return {reinterpret_cast<Structure*>(bytes.data() + offset),
            static_cast<size_t>(count < room ? count : room)};
}

/// The header of an object from a walk; never null there, since a walk gives no shorter object.
inline AidbObjectHeader* HeaderOf(std::span<uint8_t> object) {
    return ViewAt<AidbObjectHeader>(object);
}

/// The segments of a path object, as many of them as its count says and the object holds.
std::span<AidbSegment> PathSegments(std::span<uint8_t> pathObject);

/// The runs of a text object, as many of them as its count says and the object holds.
std::span<AidbTextRun> TextRuns(std::span<uint8_t> textObject);

/// The text of a note up to its ending 0 byte, or to the object's end if there is none.
std::string_view NoteText(std::span<uint8_t> noteObject);

/// The art style's paint behind a note's text; null if there is none or not the whole of it.
AidbNoteStyle* FindNoteStyle(std::span<uint8_t> noteObject);

/// The plug-in art that a note stands for; null if it is another note or too short.
AidbPluginNote* FindPluginNote(std::span<uint8_t> noteObject);

constexpr uint32_t TilePixelBytes(uint16_t colorSpace) {
    return colorSpace == kFiveChannelSpace ? 5 : 4;
}

/// Bytes of one raster tile.
constexpr uint32_t TileBytes(uint16_t colorSpace) {
    return kTileEdge * kTileEdge * TilePixelBytes(colorSpace);
}

/// The tiles of a raster object, as many whole ones as its count says and the object holds.
std::span<uint8_t> RasterTiles(std::span<uint8_t> rasterObject);

/// The art style's paint behind a raster's tiles; null if there is none or not the whole of it.
AidbRasterStyle* FindRasterStyle(std::span<uint8_t> rasterObject);

// ---- Walking and fetching ----

/// Walks the objects of a stream.  The first object that does not fit ends the walk for good, so a caller
/// that loops on Next() can neither run out of the record nor loop for ever.
class ObjectWalk {
public:
    /// At most `count` objects of `stream`.
    ObjectWalk(std::span<uint8_t> stream, uint32_t count) : rest_(stream), left_(count) {}

    /// The objects of a record, as many as its count word says.  The record must not move meanwhile.
    explicit ObjectWalk(MemoryHandle record);

    /// The next object, its header included; empty at the end or at the first damage.
    std::span<uint8_t> Next();

    /// The stream ended before its count was reached.
    bool damaged() const { return damaged_; }

private:
    std::span<uint8_t> rest_;
    uint32_t left_;
    bool damaged_ = false;
};

/// The bytes that hold a record's objects: from kObjectsOffset to four bytes before the end that the size
/// word names, or to the end of the block if that comes first.  Empty for a null or undersized record.
std::span<uint8_t> ObjectStream(MemoryHandle record);

/// Where each object of a record lies, from one pass over the stream.  Offsets stay good when the record's
/// block moves, and until its stream is changed other than by appending.
class ObjectOffsets {
public:
    explicit ObjectOffsets(MemoryHandle record);

    /// Objects that are really there: fewer than the count word says if the stream is damaged.
    uint32_t count() const { return static_cast<uint32_t>(offsets_.size()); }

    /// Object `index` in place; empty if there is none.
    std::span<uint8_t> Object(MemoryHandle record, uint32_t index) const;

private:
    std::vector<uint64_t> offsets_; // from the start of the record
};

/// Copies object `index` (from 0) to the start of `object`, which grows in steps of kSmallGrain as needed
/// and may be null at first.  Bytes behind the object's size are not cleared.  0, or -1 if the index is
/// not below the count, if the stream ends before it, or if memory ran out.  Walks the stream: a caller
/// that wants many objects takes ObjectOffsets.
int32_t GetAIDBObj(MemoryHandle record, int32_t index, MemoryHandle& object);

// ---- Appending and building ----

/// Appends a copy of `object` (its size is in its header) behind the last object, and brings count and
/// size word up to date.  The end is known from the size word; nothing is walked.  The record's block may
/// move; `object` must not lie in it.  0, or -1 with the record unchanged if the object is shorter than a
/// header, the record is not in its expanded shape, it would pass 2^31 - 1 bytes, or memory ran out.
int32_t AddAIDBObj(MemoryHandle& record, const uint8_t* object);

/// Appends an object of `size` bytes that is all 0 but for its type and size, for the caller to fill in
/// place.  The pointer stands until the record changes next.  Null where AddAIDBObj gives -1.
uint8_t* AppendObject(MemoryHandle& record, uint32_t type, uint32_t size);

/// Appends a note with `text` and its ending 0 byte to globals->curRecord: an object of length + 29 bytes.
int32_t AddNote(const char* text);

/// Appends a note with `length` bytes of content, the text's ending 0 byte among them, to
/// globals->curRecord: an object of length + 28 bytes.
int32_t AddNoteBytes(const void* content, uint32_t length);

/// Enlarges a free-standing object by `bytes` zero bytes and returns their address; `used` is the object's
/// length before and after.  The object's header is the caller's matter.  Null, with nothing changed, if
/// it would pass 2^31 - 1 bytes or memory ran out.
uint8_t* GrowObject(MemoryHandle& object, uint64_t& used, uint64_t bytes, uint64_t grain);
