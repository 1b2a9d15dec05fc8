/// Fuzzes whatever reads an object stream: the swap of a whole record, and the load into the stand-in host.
///
/// The input is a stream as it lies on disk, or a recipe for one: objects with sound headers, zero bytes and
/// a few patches, so that short inputs get deep into objects of several thousand bytes.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "plugin/frame/globals.h"
#include "plugin/host/suite_table.h"
#include "plugin/objects/byte_order.h"
#include "plugin/objects/object_stream.h"
#include "plugin/rebuild/load_art.h"
#include "plugin/store/record_layout.h"
#include "tests/support/text_art.h"
#include "workbench/suites/host.h"

namespace {

using Bytes = std::vector<uint8_t>;

/// Takes numbers off the front of an input; zero when it is used up.
class Input {
public:
    Input(const uint8_t* data, size_t size) : rest_(data, size) {}
    bool empty() const { return rest_.empty(); }
    uint8_t Byte() {
        if (rest_.empty()) return 0;
        const uint8_t value = rest_[0];
        rest_ = rest_.subspan(1);
        return value;
    }
    uint16_t Word() {
        const uint16_t high = Byte();
        return static_cast<uint16_t>(high << 8 | Byte());
    }

private:
    std::span<const uint8_t> rest_;
};

void StoreLong(uint8_t* at, uint32_t value) {
    for (int shift = 24; shift >= 0; shift -= 8) *at++ = static_cast<uint8_t>(value >> shift);
}

/// Kind, size, then patches of an offset and up to seven bytes each.
Bytes CookedObject(Input& input) {
    constexpr uint32_t kTypes[] = {kPathObject, kTextObject, kNoteObject, kRasterObject,
                                   kMeshObject, 12,          0,           1};
    const uint8_t control = input.Byte();
    Bytes object(std::max<size_t>(input.Word(), sizeof(AidbObjectHeader)));
    StoreLong(object.data(), kTypes[control % 8]);
    StoreLong(object.data() + 4, static_cast<uint32_t>(object.size()));
    for (int patches = control / 8; patches > 0 && !input.empty(); --patches) {
        const size_t at = input.Word();
        const size_t length = input.Byte() % 8;
        for (size_t i = 0; i < length && at + i < object.size(); ++i) object[at + i] = input.Byte();
    }
    return object;
}

Bytes StreamOf(const uint8_t* data, size_t size) {
    if (size == 0 || data[0] % 2 == 0) return Bytes(data, data + size);
    Input input(data + 1, size - 1);
    Bytes stream;
    for (int objects = 0; objects < 12 && !input.empty(); ++objects) {
        const Bytes object = CookedObject(input);
        stream.insert(stream.end(), object.begin(), object.end());
    }
    return stream;
}

/// A record with that stream, its header as on disk too.  The block ends with the record, so that a step
/// beyond it is seen.
MemoryHandle StoredRecord(const Bytes& stream) {
    const uint64_t bytes = kEmptyRecordBytes + stream.size();
    const MemoryHandle record = NewHandle(bytes, 1);
    if (!record) std::abort();
    StoreLong(BlockBytes(record), 0x00FFFFFF); // more objects than there are: the stream's end decides
    StoreLong(BlockBytes(record) + 4, static_cast<uint32_t>(bytes));
    std::copy(stream.begin(), stream.end(), BlockBytes(record) + kObjectsOffset);
    return record;
}

/// Reads every byte that a view of an object gives, for a sanitizer to watch.
template <typename Structure>
uint32_t Sum(std::span<Structure> structures) {
    uint32_t sum = 0;
    for (const std::byte byte : std::as_bytes(structures)) sum += std::to_integer<uint32_t>(byte);
    return sum;
}

volatile uint32_t sink; ///< keeps the reading from being optimised away

void LookIntoEveryObject(MemoryHandle record) {
    ObjectWalk walk(record);
    uint32_t sum = 0, count = 0;
    for (auto object = walk.Next(); !object.empty(); object = walk.Next(), ++count) {
        sum += Sum(PathSegments(object)) + Sum(TextRuns(object)) + Sum(RasterTiles(object));
        sum += Sum(std::span(NoteText(object)));
        if (AidbNoteStyle* style = FindNoteStyle(object)) sum += Sum(std::span(style, 1));
        if (AidbPluginNote* note = FindPluginNote(object)) sum += Sum(std::span(note, 1));
        if (AidbRasterStyle* style = FindRasterStyle(object)) sum += Sum(std::span(style, 1));
    }
    sink = sum;
    if (ObjectOffsets(record).count() != count) std::abort();
}

/// What is read and written again has to be what was there, whatever it is.
void SwapBothWays(const Bytes& stream) {
    HandleOwner record(StoredRecord(stream));
    const Bytes before(record.bytes(), record.bytes() + BlockSize(record.get()));
    SwapRecordFromStore(record.get(), true);
    LookIntoEveryObject(record.get());
    SwapRecordToStore(record.get());
    if (std::memcmp(before.data(), record.bytes(), before.size()) != 0) std::abort();
    SwapRecordToStore(record.get());
    SwapRecordFromStore(record.get(), true);
    if (std::memcmp(before.data(), record.bytes(), before.size()) != 0) std::abort();
}

workbench::Host* host; ///< for the length of the program, its suites held

/// A damaged stream can nest what doesn't go together, and only the host knows; no call may be wrong in any
/// other way.
bool IsForgiven(const std::string& fault) {
    return fault.ends_with("a wrong place for art") || fault.ends_with("not a group beside the plug-in art");
}

void LoadIntoDocument(const Bytes& stream) {
    FreeHandle(globals->curRecord);
    globals->curRecord = StoredRecord(stream);
    SwapRecordFromStore(globals->curRecord, true);

    host->Open(std::make_unique<workbench::Document>());
    workbench::Art* target = host->front()->PrependArt(kArtPath, host->front()->CurrentLayer().root);
    const bool transfer = stream.size() % 4 == 3;
    globals->trackState = transfer ? 2 : 0;
    globals->trackTarget = target->handle;
    globals->layerOption = transfer ? 0 : 1;
    globals->placePoint = {100, 200};
    RebuildCurrentRecord();

    for (const std::string& fault : host->faults()) {
        if (!IsForgiven(fault)) std::abort();
    }
    host->ClearFaults();
    host->ClearAlerts();
    FreeHandle(globals->curRecord);
    FreeHandle(globals->pendingTags);
    // Nothing temporary stays: a transfer leaves the layer as it was, but for the paths of texts that
    // couldn't be made.
    const workbench::Art& root = *host->front()->CurrentLayer().root;
    for (const workbench::Art* art = root.firstChild; art; art = art->below) {
        if (transfer && art != target && art->kind != kArtPath) std::abort();
    }
    if (transfer && target->below) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    static const auto state = std::make_unique<Globals>();
    globals = state.get();
    globals->swapBytes = 1;
    static const auto standIn = std::make_unique<workbench::Host>();
    host = standIn.get();
    host->AddPluginGroup("Blend");
    static TestFonts fonts = FewFonts();
    host->SetFontList(&fonts);
    moduleBasic = host->basic();
    return AcquireHostSuites(host->basic());
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const Bytes stream = StreamOf(data, size);
    SwapBothWays(stream);
    LoadIntoDocument(stream);
    return 0;
}
