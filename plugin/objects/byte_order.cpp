#include "plugin/objects/byte_order.h"

#include <cstring>
#include <span>

#include "plugin/objects/object_layout.h"
#include "plugin/objects/object_stream.h"
#include "plugin/store/record_layout.h"
#include "plugin/store/swap_words.h"

namespace {

enum class Direction { kToStore, kFromStore };

/// Successive numbers of one width within a structure.
struct FieldRun {
    size_t offset;
    int width; // bytes: 2 or 4
    size_t count;
};
constexpr FieldRun Shorts(size_t offset, size_t count = 1) {
    return {offset, 2, count};
}
constexpr FieldRun Longs(size_t offset, size_t count = 1) {
    return {offset, 4, count};
}

using Fields = std::span<const FieldRun>;

/// Runs in the order of their places, none reaching into the next or out of the structure.
template <size_t kRuns>
constexpr bool Tidy(const FieldRun (&runs)[kRuns], size_t structureBytes) {
    size_t end = 0;
    for (const FieldRun& run : runs) {
        if (run.offset < end) return false;
        end = run.offset + static_cast<size_t>(run.width) * run.count;
    }
    return end <= structureBytes;
}

constexpr FieldRun kObjectHeaderFields[] = {Longs(offsetof(AidbObjectHeader, type), 4),
                                            Shorts(offsetof(AidbObjectHeader, isolated), 4)};
static_assert(Tidy(kObjectHeaderFields, sizeof(AidbObjectHeader)));

constexpr FieldRun kColorFields[] = {Shorts(offsetof(AidbColor, kind), 2)};
constexpr FieldRun kGrayFields[] = {Longs(0)};
constexpr FieldRun kFourFields[] = {Longs(0, 4)};
constexpr FieldRun kThreeFields[] = {Longs(0, 3)};
constexpr FieldRun kPatternFields[] = {Longs(offsetof(AidbPatternUse, number), 6),
                                       Shorts(offsetof(AidbPatternUse, reflect)),
                                       Longs(offsetof(AidbPatternUse, reflectAngle), 9)};
static_assert(Tidy(kPatternFields, sizeof(AidbPatternUse)));
constexpr FieldRun kGradientFields[] = {Longs(offsetof(AidbGradientUse, number), 15)};
static_assert(Tidy(kGradientFields, sizeof(AidbGradientUse)));

/// Of a style all but its two colours.
constexpr FieldRun kStyleFields[] = {
    Shorts(offsetof(AidbStyle, fillFlag), 2),     Shorts(offsetof(AidbStyle, fillOverprint)),
    Shorts(offsetof(AidbStyle, strokeOverprint)), Longs(offsetof(AidbStyle, lineWidth)),
    Shorts(offsetof(AidbStyle, dashCount)),       Longs(offsetof(AidbStyle, dashOffset), 1 + kMaxDashes),
    Shorts(offsetof(AidbStyle, lineCap), 2),      Longs(offsetof(AidbStyle, miterLimit)),
    Shorts(offsetof(AidbStyle, clip), 3),         Longs(offsetof(AidbStyle, resolution))};
static_assert(Tidy(kStyleFields, sizeof(AidbStyle)));

constexpr FieldRun kStopFields[] = {Longs(offsetof(AidbGradientStop, midpoint), 2)};
constexpr FieldRun kRampFields[] = {Shorts(offsetof(AidbGradientRamp, type), 2)};

constexpr FieldRun kSegmentFields[] = {Longs(offsetof(AidbSegment, anchor), 6),
                                       Shorts(offsetof(AidbSegment, corner))};
static_assert(Tidy(kSegmentFields, sizeof(AidbSegment)));
constexpr FieldRun kPathFields[] = {Shorts(offsetof(AidbPathObject, closed), 2)};
static_assert(Tidy(kPathFields, sizeof(AidbPathObject)));

constexpr FieldRun kNoteStyleFields[] = {Longs(offsetof(AidbNoteStyle, opacity))};

constexpr FieldRun kRasterFields[] = {
    Shorts(offsetof(AidbRasterObject, info) + offsetof(AidbRasterInfo, flags), 6),
    Longs(offsetof(AidbRasterObject, info) + offsetof(AidbRasterInfo, byteWidth)),
    Shorts(offsetof(AidbRasterObject, info) + offsetof(AidbRasterInfo, colorSpace), 4),
    Longs(offsetof(AidbRasterObject, matrix), 6 + 4 + 1)};
static_assert(Tidy(kRasterFields, sizeof(AidbRasterObject)));

constexpr FieldRun kMeshFields[] = {Longs(offsetof(AidbMeshObject, meshType), 4)};
static_assert(Tidy(kMeshFields, sizeof(AidbMeshObject)));
/// Of a vertex all but its colour.
constexpr FieldRun kVertexFields[] = {Longs(offsetof(AidbMeshVertex, size)),
                                      Longs(offsetof(AidbMeshVertex, position), 3)};
static_assert(Tidy(kVertexFields, sizeof(AidbMeshVertex)));
constexpr FieldRun kEdgeFields[] = {Longs(offsetof(AidbMeshEdge, size), 3),
                                    Shorts(offsetof(AidbMeshEdge, flag), 2),
                                    Longs(offsetof(AidbMeshEdge, firstCount), 2)};
static_assert(Tidy(kEdgeFields, sizeof(AidbMeshEdge)));
constexpr FieldRun kPointFields[] = {Longs(0, 2)};

constexpr FieldRun kTextFields[] = {Shorts(offsetof(AidbTextObject, frameKind), 2),
                                    Longs(offsetof(AidbTextObject, pathsOffset), 2),
                                    Shorts(offsetof(AidbTextObject, pathCount), 2)};
static_assert(Tidy(kTextFields, sizeof(AidbTextObject)));
constexpr FieldRun kParaFields[] = {
    Longs(offsetof(AidbTextPara, reserved1), 10),       Shorts(offsetof(AidbTextPara, justification), 3),
    Shorts(offsetof(AidbTextPara, autoHyphenation), 5), Longs(offsetof(AidbTextPara, constant25)),
    Shorts(offsetof(AidbTextPara, repeatedCharacters)), Shorts(offsetof(AidbTextPara, kinsokuKind), 5)};
static_assert(Tidy(kParaFields, sizeof(AidbTextPara)));
constexpr FieldRun kFontFields[] = {Shorts(offsetof(AidbFontRef, classFirst), 3 + 2 + 9)};
static_assert(Tidy(kFontFields, sizeof(AidbFontRef)));
constexpr FieldRun kCharacterFields[] = {
    Longs(offsetof(AidbCharacter, fontSize), 4),        Shorts(offsetof(AidbCharacter, reserved1)),
    Longs(offsetof(AidbCharacter, horizontalScale), 2), Shorts(offsetof(AidbCharacter, reserved2), 3),
    Longs(offsetof(AidbCharacter, reserved3), 2),       Shorts(offsetof(AidbCharacter, reserved4)),
    Longs(offsetof(AidbCharacter, reserved5)),          Shorts(offsetof(AidbCharacter, hasAlternateForm)),
    Longs(offsetof(AidbCharacter, alternateForm))};
static_assert(Tidy(kCharacterFields, sizeof(AidbCharacter)));
constexpr FieldRun kTabsFields[] = {Longs(offsetof(AidbTabStops, reserved), 2)};
constexpr FieldRun kTabFields[] = {Shorts(offsetof(AidbTabStop, kind)),
                                   Longs(offsetof(AidbTabStop, position))};
static_assert(Tidy(kTabFields, sizeof(AidbTabStop)));
/// Of a run only the number that belongs to none of its structures.
constexpr FieldRun kRunFields[] = {Longs(offsetof(AidbTextRun, kerning))};
constexpr FieldRun kTextPathFields[] = {Longs(offsetof(AidbTextPath, matrix), 6),
                                        Shorts(offsetof(AidbTextPath, closed), 2)};
static_assert(Tidy(kTextPathFields, sizeof(AidbTextPath)));

constexpr FieldRun kRecordHeaderFields[] = {Longs(offsetof(RecordHeader, objectCount), 6),
                                            Longs(offsetof(RecordHeader, created), 2)};
static_assert(Tidy(kRecordHeaderFields, sizeof(RecordHeader)));
static_assert(offsetof(RecordHeader, created) == 102 * 4);

template <typename Word, Word (*kSwap)(Word)>
void SwapWords(uint8_t* at, size_t count) {
    for (; count > 0; --count, at += sizeof(Word)) {
        Word word;
        std::memcpy(&word, at, sizeof word);
        word = kSwap(word);
        std::memcpy(at, &word, sizeof word);
    }
}

void SwapFields(void* structure, Fields fields) {
    for (const FieldRun& run : fields) {
        uint8_t* at = static_cast<uint8_t*>(structure) + run.offset;
        if (run.width == 2)
            SwapWords<uint16_t, SwapShort>(at, run.count);
        else
            SwapWords<uint32_t, SwapLong>(at, run.count);
    }
}

/// Swaps fields that say how to go on: they are in host order while `inner` runs, whichever way the swap
/// goes.  This is what makes both directions decide alike.
template <typename Inner>
void SwapAround(Direction direction, void* structure, Fields fields, Inner inner) {
    if (direction == Direction::kFromStore) SwapFields(structure, fields);
    inner();
    if (direction == Direction::kToStore) SwapFields(structure, fields);
}

Fields ValueFields(uint16_t colorKind) {
    switch (colorKind) {
        case kStoredGray:
            return kGrayFields;
        case kStoredFour:
            return kFourFields;
        case kStoredPattern:
            return kPatternFields;
        case kStoredGradient:
            return kGradientFields;
        case kStoredThree:
            return kThreeFields;
        default:
            return {};
    }
}

void SwapColor(Direction direction, AidbColor& color) {
    SwapAround(direction, &color, kColorFields, [&] { SwapFields(&color.u, ValueFields(color.kind)); });
}

void SwapStyle(Direction direction, AidbStyle& style) {
    SwapFields(&style, kStyleFields);
    SwapColor(direction, style.fill);
    SwapColor(direction, style.stroke);
}

void SwapRamp(Direction direction, AidbGradientRamp& ramp) {
    SwapFields(&ramp, kRampFields);
    for (AidbGradientStop& stop : ramp.stops) {
        SwapFields(&stop, kStopFields);
        SwapColor(direction, stop.color);
    }
}

void SwapBlock(Direction direction, AidbGradientBlock& block) {
    SwapRamp(direction, block.reserved);
    SwapRamp(direction, block.ramp);
}

void SwapPath(Direction direction, std::span<uint8_t> object) {
    auto* path = ViewAt<AidbPathObject>(object);
    if (!path) return;
    SwapAround(direction, path, kPathFields, [&] {
        for (AidbSegment& segment : PathSegments(object)) SwapFields(&segment, kSegmentFields);
    });
    SwapStyle(direction, path->style);
    SwapBlock(direction, path->block);
}

void SwapRun(Direction direction, AidbTextRun& run) {
    SwapStyle(direction, run.style);
    SwapFields(&run.para, kParaFields);
    SwapFields(&run.font, kFontFields);
    SwapFields(&run.character, kCharacterFields);
    SwapFields(&run.tabs, kTabsFields);
    for (AidbTabStop& tab : run.tabs.stops) SwapFields(&tab, kTabFields);
    SwapFields(&run, kRunFields);
    SwapBlock(direction, run.block);
}

void SwapTextPaths(Direction direction, std::span<uint8_t> paths, uint32_t count) {
    for (; count > 0; --count) {
        auto* path = ViewAt<AidbTextPath>(paths);
        if (!path) return;
        size_t bytes = sizeof(AidbTextPath);
        SwapAround(direction, path, kTextPathFields, [&] {
            const auto segments = ViewsAt<AidbSegment>(paths, bytes, path->segmentCount);
            for (AidbSegment& segment : segments) SwapFields(&segment, kSegmentFields);
            bytes += segments.size_bytes();
        });
        paths = paths.subspan(bytes);
    }
}

void SwapText(Direction direction, std::span<uint8_t> object) {
    auto* text = ViewAt<AidbTextObject>(object);
    if (!text) return;
    SwapAround(direction, text, kTextFields, [&] {
        const auto runs = TextRuns(object);
        for (AidbTextRun& run : runs) SwapRun(direction, run);
        // Paths that would reach back into the runs are damage; swapping them would swap bytes twice.
        const uint64_t runsEnd = kTextBaseBytes + runs.size_bytes();
        if (text->pathsOffset < runsEnd || text->pathsOffset > object.size()) return;
        SwapTextPaths(direction, object.subspan(text->pathsOffset), text->pathCount);
    });
}

void SwapNote(Direction direction, std::span<uint8_t> object) {
    AidbNoteStyle* note = FindNoteStyle(object);
    if (!note) return;
    SwapFields(note, kNoteStyleFields);
    SwapStyle(direction, note->style);
}

void SwapRaster(Direction direction, std::span<uint8_t> object) {
    auto* raster = ViewAt<AidbRasterObject>(object);
    if (!raster) return;
    SwapAround(direction, raster, kRasterFields, [&] {
        AidbRasterStyle* paint = FindRasterStyle(object);
        if (!paint) return;
        SwapStyle(direction, paint->style);
        SwapBlock(direction, paint->block);
    });
}

/// What a part of a mesh may reach into: as far as its own size word says, at most to the end of `rest`.
std::span<uint8_t> ClippedTo(uint32_t size, std::span<uint8_t> rest) {
    return size < rest.size() ? rest.first(size) : rest;
}

/// Swaps the first edge of `rest` and returns what lies behind it, nothing if its size is damaged.
std::span<uint8_t> SwapEdge(Direction direction, std::span<uint8_t> rest) {
    auto* edge = ViewAt<AidbMeshEdge>(rest);
    if (!edge) return {};
    uint32_t size = 0;
    SwapAround(direction, edge, kEdgeFields, [&] {
        size = edge->size;
        const uint64_t points = uint64_t{edge->firstCount} + edge->secondCount;
        for (FixedPoint& point : ViewsAt<FixedPoint>(ClippedTo(size, rest), sizeof(AidbMeshEdge), points))
            SwapFields(&point, kPointFields);
    });
    if (size < sizeof(AidbMeshEdge) || size > rest.size()) return {};
    return rest.subspan(size);
}

/// Swaps the first vertex of `rest` and returns what lies behind it, nothing if its size is damaged.
std::span<uint8_t> SwapVertex(Direction direction, std::span<uint8_t> rest) {
    auto* vertex = ViewAt<AidbMeshVertex>(rest);
    if (!vertex) return {};
    uint32_t size = 0;
    SwapAround(direction, vertex, kVertexFields, [&] {
        size = vertex->size;
        if (size < sizeof(AidbMeshVertex)) return;
        auto edges = ClippedTo(size, rest).subspan(sizeof(AidbMeshVertex));
        for (uint32_t left = vertex->edgeCount; left > 0 && !edges.empty(); --left)
            edges = SwapEdge(direction, edges);
    });
    SwapColor(direction, vertex->color);
    if (size < sizeof(AidbMeshVertex) || size > rest.size()) return {};
    return rest.subspan(size);
}

void SwapMesh(Direction direction, std::span<uint8_t> object) {
    auto* mesh = ViewAt<AidbMeshObject>(object);
    if (!mesh) return;
    SwapAround(direction, mesh, kMeshFields, [&] {
        auto vertices = object.subspan(kMeshBaseBytes);
        for (uint32_t left = mesh->vertexCount; left > 0 && !vertices.empty(); --left)
            vertices = SwapVertex(direction, vertices);
    });
}

void SwapContents(Direction direction, uint32_t type, std::span<uint8_t> object) {
    switch (type) {
        case kPathObject:
            return SwapPath(direction, object);
        case kTextObject:
            return SwapText(direction, object);
        case kNoteObject:
            return SwapNote(direction, object);
        case kRasterObject:
            return SwapRaster(direction, object);
        case kMeshObject:
            return SwapMesh(direction, object);
        default:
            return;
    }
}

/// Swaps `count` objects.  ObjectWalk can't serve here: a header is in host order only while its object is
/// being swapped.
void SwapObjects(Direction direction, std::span<uint8_t> rest, uint32_t count) {
    for (; count > 0; --count) {
        auto* header = ViewAt<AidbObjectHeader>(rest);
        if (!header) return;
        uint32_t size = 0;
        SwapAround(direction, header, kObjectHeaderFields, [&] {
            size = header->size;
            if (size >= sizeof(AidbObjectHeader) && size <= rest.size())
                SwapContents(direction, header->type, rest.first(size));
        });
        if (size < sizeof(AidbObjectHeader) || size > rest.size()) return;
        rest = rest.subspan(size);
    }
}

void SwapRecord(Direction direction, MemoryHandle record, bool objects) {
    if (BlockSize(record) < sizeof(RecordHeader)) return;
    auto* header = reinterpret_cast<RecordHeader*>(BlockBytes(record));
    SwapAround(direction, header, kRecordHeaderFields, [&] {
        if (objects) SwapObjects(direction, ObjectStream(record), header->objectCount);
    });
}

} // namespace

void SwapRecordToStore(MemoryHandle record) {
    SwapRecord(Direction::kToStore, record, true);
}

void SwapRecordFromStore(MemoryHandle record, bool objects) {
    SwapRecord(Direction::kFromStore, record, objects);
}
