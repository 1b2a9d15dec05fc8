/// Fuzzes the load of a text object into the stand-in host, and the capture of what came of it.
///
/// The input is what stands behind a text object's header, as in memory.  Runs are long, so an input may
/// leave most of their bytes out: its first byte says at which distances its pieces lie.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "plugin/capture/text_capture.h"
#include "plugin/frame/globals.h"
#include "plugin/host/suite_table.h"
#include "plugin/objects/object_stream.h"
#include "plugin/rebuild/load_art.h"
#include "plugin/store/record.h"
#include "tests/support/text_art.h"
#include "workbench/suites/host.h"

namespace {

using Bytes = std::vector<uint8_t>;

workbench::Host* host; ///< for the length of the program, its suites held

/// The places of an object where something stands that a load looks at, from the end of the header on.
Bytes Spread(const uint8_t* data, size_t size, uint8_t control) {
    constexpr size_t kFixedPart = sizeof(AidbTextObject) - sizeof(AidbObjectHeader);
    const Bytes input(data, data + size);
    if (control % 4 == 0) return input;
    // The object's own numbers, then 96 bytes of input for each run: paint, paragraph, font, text.
    Bytes body(input.begin(), input.begin() + static_cast<ptrdiff_t>(std::min(size, kFixedPart)));
    body.resize(kFixedPart);
    constexpr struct {
        size_t offset, bytes;
    } kPieces[] = {{0, 12},  {152, 4}, {184, 4}, {204 + 40, 12}, {204 + 64, 14}, {285, 20},
                   {540, 6}, {568, 8}, {620, 8}, {756, 4},       {5632, 16}};
    size_t at = kFixedPart;
    for (int run = 0; run < control / 32 && at < size; ++run) {
        const size_t start = body.size();
        body.resize(start + sizeof(AidbTextRun));
        for (const auto& piece : kPieces) {
            const size_t bytes = std::min(piece.bytes, size - at);
            std::copy_n(input.begin() + static_cast<ptrdiff_t>(at), bytes,
                        body.begin() + static_cast<ptrdiff_t>(start + piece.offset));
            at += bytes;
        }
    }
    body.insert(body.end(), input.begin() + static_cast<ptrdiff_t>(std::min(at, size)), input.end());
    return body;
}

/// Whatever text there is now can be told again, in objects as long as they say.
void CaptureFrames() {
    const HostPoint origin{0, 0};
    const workbench::Art* art = host->front()->CurrentLayer().root->firstChild;
    for (; art; art = art->below) {
        if (art->kind != kArtTextFrame) continue;
        HandleOwner object(NewHandle(sizeof(AidbTextObject), 1));
        if (PostArtTextProcess(art->handle, object.get(), &origin) != kHostNoError) std::abort();
        const uint32_t bytes = HeaderOf({object.bytes(), sizeof(AidbTextObject)})->size;
        if (bytes < sizeof(AidbTextObject) || bytes > BlockSize(object.get())) std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    static const auto state = std::make_unique<Globals>();
    globals = state.get();
    static const auto standIn = std::make_unique<workbench::Host>();
    static TestFonts fonts = FewFonts();
    host = standIn.get();
    host->SetFontList(&fonts);
    moduleBasic = host->basic();
    return AcquireHostSuites(host->basic());
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    const Bytes body = Spread(data + 1, size - 1, data[0]);
    FreeHandle(globals->curRecord);
    globals->curRecord = NewRecord();
    const auto bytes = static_cast<uint32_t>(sizeof(AidbObjectHeader) + body.size());
    uint8_t* object = AppendObject(globals->curRecord, kTextObject, bytes);
    if (!object) std::abort();
    std::copy(body.begin(), body.end(), object + sizeof(AidbObjectHeader));
    HeaderOf({object, bytes})->opacity = 0x10000;

    host->Open(std::make_unique<workbench::Document>());
    globals->placePoint = {100, 200};
    RebuildCurrentRecord();
    CaptureFrames();
    if (host->faultCount() != 0) std::abort();
    host->ClearAlerts();
    FreeHandle(globals->curRecord);
    return 0;
}
