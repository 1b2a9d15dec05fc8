#include "app/store_check_objects.h"

#include <algorithm>
#include <cstring>
#include <set>
#include <string_view>

#include "plugin/frame/line_grammar.h"
#include "plugin/objects/byte_order.h"
#include "plugin/objects/object_stream.h"
#include "plugin/store/group_file.h"
#include "plugin/store/lzss.h"
#include "plugin/store/record.h"
#include "plugin/store/record_layout.h"
#include "plugin/store/swap_words.h"

namespace {

/// The objects of one record, checked one by one in their order.
class ObjectChecks {
public:
    ObjectChecks(MemoryHandle record, RecordReport& report) : record_(record), report_(report) {}

    void Run();

private:
    using Bytes = std::span<uint8_t>;

    void Say(Severity severity, std::string what) {
        report_.faults.push_back({severity, index_, std::move(what)});
    }
    void Error(std::string what) { Say(Severity::kError, std::move(what)); }
    void Warn(std::string what) { Say(Severity::kWarning, std::move(what)); }

    void CheckObject(Bytes object);
    void CheckColor(const AidbColor& color);
    void CheckStyle(const AidbStyle& style, const AidbGradientBlock& block);
    void CheckPath(Bytes object);
    void CheckText(Bytes object);
    void CheckNote(Bytes object);
    void CheckRaster(Bytes object);
    void CheckMesh(Bytes object);
    void CheckBracket(std::string_view text);
    void TakeLinkedFile(std::string_view text);
    void CheckEnd();

    MemoryHandle record_;
    RecordReport& report_;
    int64_t index_ = 0;
    std::vector<std::string> open_; ///< words of the brackets that stand open
    std::set<int32_t> patterns_, usedPatterns_, colors_, usedColors_;
};

void ObjectChecks::Run() {
    RecordHeader header;
    std::memcpy(&header, BlockBytes(record_), sizeof header);
    ObjectWalk walk(record_);
    size_t bytes = 0;
    for (Bytes object = walk.Next(); !object.empty(); object = walk.Next(), ++index_) {
        bytes += object.size();
        CheckObject(object);
    }
    const auto objects = std::to_string(index_);
    const size_t behind = ObjectStream(record_).size() - bytes;
    if (walk.damaged())
        Error("the list of objects is damaged: " + objects + " of " + std::to_string(header.objectCount) +
              " can be read");
    else if (behind != 0)
        report_.faults.push_back({Severity::kError, -1,
                                  std::to_string(behind) + " bytes lie behind the last of the " + objects +
                                      " counted objects; art may be missing"});
    index_ = -1;
    CheckEnd();
}

void ObjectChecks::CheckObject(Bytes object) {
    switch (HeaderOf(object)->type) {
        case kPathObject:
            return CheckPath(object);
        case kTextObject:
            return CheckText(object);
        case kNoteObject:
            return CheckNote(object);
        case kRasterObject:
            return CheckRaster(object);
        case kMeshObject:
            return CheckMesh(object);
        default:
            Warn("an object of the unknown kind " + std::to_string(HeaderOf(object)->type) +
                 " is left out when the record is placed");
    }
}

void ObjectChecks::CheckColor(const AidbColor& color) {
    if (color.kind > kStoredThree) Warn("a paint of the unknown kind " + std::to_string(color.kind));
    if (color.kind == kStoredPattern) usedPatterns_.insert(static_cast<int32_t>(color.u.pattern.number));
    if (color.reference >> 8) usedColors_.insert(color.reference >> 8);
}

void ObjectChecks::CheckStyle(const AidbStyle& style, const AidbGradientBlock& block) {
    if (style.fillFlag) CheckColor(style.fill);
    if (style.strokeFlag) CheckColor(style.stroke);
    if (style.dashCount > kMaxDashes) Warn("more dashes than a line can have");
    if (block.ramp.stopCount > kMaxStops) Warn("more stops than a gradient can have");
    const int stops = std::min<int>(block.ramp.stopCount, kMaxStops);
    for (int stop = 0; stop < stops; ++stop) CheckColor(block.ramp.stops[stop].color);
}

void ObjectChecks::CheckPath(Bytes object) {
    const auto* path = ViewAt<AidbPathObject>(object);
    if (!path) return Error("a path is cut short");
    const int64_t bytes =
        int64_t{kPathBaseBytes} + int64_t{path->segmentCount} * int64_t{sizeof(AidbSegment)};
    if (path->segmentCount < 1 || bytes != static_cast<int64_t>(object.size()))
        Error("a path counts " + std::to_string(path->segmentCount) +
              " points, which doesn't agree with its size");
    CheckStyle(path->style, path->block);
}

void ObjectChecks::CheckText(Bytes object) {
    const auto* text = ViewAt<AidbTextObject>(object);
    if (!text) return Error("a text is cut short");
    const uint64_t runsEnd = kTextBaseBytes + uint64_t{text->runCount} * sizeof(AidbTextRun);
    if (text->pathsOffset != runsEnd || runsEnd + text->pathsSize != object.size())
        return Error("the parts of a text don't agree with its size");
    for (const AidbTextRun& run : TextRuns(object)) CheckStyle(run.style, run.block);
    uint64_t at = runsEnd;
    for (uint32_t i = 0; i < text->pathCount; ++i) {
        const auto* path = ViewAt<AidbTextPath>(object, at);
        if (!path) return Error("a text's path is cut short");
        at += sizeof *path + uint64_t{path->segmentCount} * sizeof(AidbSegment);
    }
    if (at != object.size()) Error("the paths of a text don't agree with its size");
}

void ObjectChecks::CheckNote(Bytes object) {
    const std::string_view text = NoteText(object);
    const uint64_t plain = uint64_t{kNoteFrameBytes} + text.size() + 1;
    if (object.size() < kNoteFrameBytes || plain > object.size()) return Error("a note is cut short");
    const auto* style = FindNoteStyle(object);
    if (style) CheckStyle(style->style, style->block);
    if (!style && !FindPluginNote(object) && plain != object.size())
        Error("a note has bytes behind its text that mean nothing");
    CheckBracket(text);
    if (text.starts_with("PlacedFile")) TakeLinkedFile(text);
    constexpr std::string_view kColor = "CustomColor";
    if (text.starts_with(kColor)) colors_.insert(DecimalInteger(text.substr(kColor.size(), 3)));
}

void ObjectChecks::CheckRaster(Bytes object) {
    const auto* raster = ViewAt<AidbRasterObject>(object);
    if (!raster) return Error("an image is cut short");
    const uint64_t tiles = uint64_t{raster->tileCount} * TileBytes(raster->info.colorSpace);
    const uint64_t bytes = kRasterBaseBytes + tiles;
    const auto* style = FindRasterStyle(object);
    if (style) CheckStyle(style->style, style->block);
    if (bytes + (style ? sizeof *style : 0) != object.size())
        Error("the pixels of an image don't agree with its size");
}

void ObjectChecks::CheckMesh(Bytes object) {
    const auto* mesh = ViewAt<AidbMeshObject>(object);
    if (!mesh) return Error("a mesh is cut short");
    uint64_t at = kMeshBaseBytes;
    for (uint32_t i = 0; i < mesh->vertexCount; ++i) {
        const auto* vertex = ViewAt<AidbMeshVertex>(object, at);
        if (!vertex || vertex->size < sizeof *vertex || vertex->size > object.size() - at)
            return Error("a corner of a mesh is cut short");
        CheckColor(vertex->color);
        uint64_t edgeAt = at + sizeof *vertex;
        const uint64_t end = at + vertex->size;
        for (uint32_t j = 0; j < vertex->edgeCount; ++j) {
            const auto* edge = ViewAt<AidbMeshEdge>(object.first(end), edgeAt);
            if (!edge || edge->size != sizeof *edge + 8 * (uint64_t{edge->firstCount} + edge->secondCount))
                return Error("an edge of a mesh doesn't agree with its size");
            edgeAt += edge->size;
        }
        if (edgeAt != end) return Error("the edges of a mesh don't agree with their size");
        at = end;
    }
    if (at != object.size()) Error("the corners of a mesh don't agree with its size");
}

/// "GroupArt /" opens, "/ GroupArt" closes what was opened last; of patterns the number counts too.
void ObjectChecks::CheckBracket(std::string_view text) {
    for (const std::string_view word : {"GroupArt", "CompoundPathArt", "PatternArt", "PluginArt"}) {
        const bool pattern = word == "PatternArt";
        if (text.starts_with(word)) {
            const std::string_view rest = text.substr(word.size());
            const std::string_view digits = pattern ? rest.substr(0, rest.find(' ')) : std::string_view();
            if (!rest.substr(digits.size()).starts_with(" /")) return;
            open_.push_back(std::string(word) + std::string(digits));
            if (pattern) patterns_.insert(DecimalInteger(digits));
            return;
        }
        if (!text.starts_with("/ ") || !text.substr(2).starts_with(word)) continue;
        const std::string_view closed = pattern ? text.substr(2) : word;
        if (open_.empty() || open_.back() != closed)
            Error("the end of a group stands where none was begun: art may land in the wrong group");
        else
            open_.pop_back();
        return;
    }
}

void ObjectChecks::TakeLinkedFile(std::string_view text) {
    LineReader reader(text, kTagNoteGrammar);
    std::string line;
    while (reader.Next(line)) {
        const auto tokens = SplitTokens(line, 2);
        if (tokens[0] != "PlacedFile") continue;
        const std::string name(TokenAt(tokens, 1));
        if (name.empty()) return Warn("a linked picture without a name");
        report_.linkedFiles.push_back(name);
    }
}

void ObjectChecks::CheckEnd() {
    if (!open_.empty()) Error("a group is begun and not ended: art may land in the wrong group");
    for (const int32_t number : usedPatterns_) {
        if (!patterns_.contains(number))
            Warn("pattern " + std::to_string(number) + " is used and not stored");
    }
    for (const int32_t row : usedColors_) {
        if (!colors_.contains(row)) Warn("custom colour " + std::to_string(row) + " is used and not stored");
    }
}

RecordStart StartOf(std::span<const uint8_t> image) {
    RecordStart start;
    std::memcpy(&start, image.data(), sizeof start);
    start.header.size = SwapLong(start.header.size);
    start.packedPreview = SwapLong(start.packedPreview);
    start.packedObjects = SwapLong(start.packedObjects);
    return start;
}

template <size_t kBytes>
void CheckText(const char (&field)[kBytes], const char* what, RecordReport* report) {
    if (!std::memchr(field, '\0', kBytes))
        report->faults.push_back(
            {Severity::kWarning, -1, std::string("the ") + what + " has no end within its field"});
}

/// The record expanded and in host order; null if memory ran out.
MemoryHandle Expand(std::span<const uint8_t> image, const RecordStart& start) {
    HandleOwner record(NewHandle(image.size(), kRecordGrain));
    if (!record.bytes()) return nullptr;
    std::memcpy(record.bytes(), image.data(), image.size());
    std::memcpy(record.bytes(), &start, sizeof start);
    if (!UnpackRecord(record.get(), true)) return nullptr;
    auto* header = reinterpret_cast<RecordHeader*>(record.bytes());
    header->size = SwapLong(header->size);
    SwapRecordFromStore(record.get(), true);
    return record.Release();
}

} // namespace

bool RecordReport::HasErrors() const {
    return std::any_of(faults.begin(), faults.end(),
                       [](const RecordFault& fault) { return fault.severity == Severity::kError; });
}

uint64_t BytesByBodies(std::span<const uint8_t> start) {
    const RecordStart words = StartOf(start);
    return uint64_t{kSmallestRecordBytes} + words.packedPreview + words.packedObjects;
}

RecordReport CheckRecordImage(std::span<const uint8_t> image) {
    RecordReport report;
    const auto error = [&](std::string what) {
        report.faults.push_back({Severity::kError, -1, std::move(what)});
    };
    RecordStart start = StartOf(image);
    start.header.size = static_cast<uint32_t>(image.size()); // the caller knows better than a damaged word
    CheckText(start.header.name, "name", &report);
    CheckText(start.header.kind, "kind", &report);
    CheckText(start.header.comment, "comment", &report);
    if (start.header.boundsLeft != 0 || start.header.boundsBottom != 0)
        report.faults.push_back({Severity::kWarning, -1, "the art's bounds don't begin at 0"});
    if (BytesByBodies(image) != image.size()) {
        error("the lengths of the picture and of the art don't agree with the record's size");
        return report;
    }
    const auto preview = image.subspan(kPreviewOffset, start.packedPreview);
    const auto objects = image.subspan(kPreviewOffset + preview.size(), start.packedObjects);
    if (UnpackedLzssBytes(preview) != kPreviewBytes) error("the stored picture is damaged");
    if (UnpackedLzssBytes(objects) > kMostGroupBytes) {
        error("the stored art is damaged: it would unpack to more than memory holds");
        return report;
    }
    HandleOwner record(Expand(image, start));
    if (record.bytes())
        ObjectChecks(record.get(), report).Run();
    else
        error("the art can't be checked: memory ran out");
    return report;
}
