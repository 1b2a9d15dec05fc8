#include "plugin/capture/text_capture.h"

#include <cstddef>
#include <cstring>

#include "plugin/capture/art_paint.h"
#include "plugin/capture/character_capture.h"
#include "plugin/capture/text_path_capture.h"
#include "plugin/objects/object_stream.h"
#include "plugin/store/trace.h"

namespace {

constexpr uint32_t kRunLimit = 255;    ///< bytes of text that a run doesn't reach
constexpr char kEndOfText[] = "\r";    ///< stands in a run that only carries the kerning at the end
constexpr int32_t kCharacterBytes = 4; ///< of a buffer for one character, with the NUL

/// What tells runs apart.  The block behind it is 0 in every run.
constexpr size_t kComparedBytes = offsetof(AidbTextRun, block);

/// A text object in the making.
struct TextBuild {
    MemoryHandle& object;
    uint64_t used = kTextBaseBytes;
    uint32_t runCount = 0;
    AidbTextRun open{};          ///< the run that characters are added to
    uint32_t openBytes = 0;      ///< of its text
    uint32_t openCharacters = 0; ///< 0: no run is open
};

void FlushRun(TextBuild& build) {
    if (build.runCount == UINT16_MAX) throw ATE::Exception(kHostBadParameter);
    uint8_t* place = GrowObject(build.object, build.used, sizeof(AidbTextRun), kSmallGrain);
    if (!place) throw ATE::Exception(kHostOutOfMemory);
    std::memcpy(place, &build.open, sizeof build.open);
    ++build.runCount;
    std::memset(build.open.text, 0, sizeof build.open.text);
    build.openBytes = build.openCharacters = 0;
}

void AddCharacter(TextBuild& build, const AidbTextRun& attributes, const char* text, uint32_t bytes) {
    const bool goesOn =
        std::memcmp(&build.open, &attributes, kComparedBytes) == 0 && build.openBytes + bytes < kRunLimit;
    if (build.openCharacters > 0 && !goesOn) FlushRun(build);
    if (build.openCharacters == 0) std::memcpy(&build.open, &attributes, kComparedBytes);
    std::memcpy(build.open.text + build.openBytes, text, bytes);
    build.openBytes += bytes;
    ++build.openCharacters;
}

/// Gives the bytes of the range's one character.
uint32_t ReadCharacter(const ATE::ITextRange& range, char* text) {
    const int32_t length = range.GetContents(text, kCharacterBytes);
    if (length == 0) return 0; // the second half of a character that the first half stands for
    if (length > 0 && length < kCharacterBytes && !std::memchr(text, 0, static_cast<size_t>(length)))
        return static_cast<uint32_t>(length);
    text[0] = '?';
    return 1;
}

void CaptureRuns(TextBuild& build, ATE::ITextRange& range, const ATE::IStory& story, int32_t length) {
    AidbTextRun attributes{};
    for (int32_t at = 0; at < length; ++at) {
        range.SetRange(at, at + 1);
        char text[kCharacterBytes];
        const uint32_t bytes = ReadCharacter(range, text);
        CaptureCharacter(range, &attributes);
        range.SetRange(at, at);
        attributes.kerning = static_cast<uint32_t>(story.GetKerning(range));
        AddCharacter(build, attributes, text, bytes);
    }
    if (length <= 0) return;
    if (build.openBytes > 0) FlushRun(build);
    range.SetRange(length, length);
    build.open.kerning = static_cast<uint32_t>(story.GetKerning(range));
    if (build.open.kerning == 0) return;
    std::memcpy(build.open.text, kEndOfText, sizeof kEndOfText);
    FlushRun(build);
}

CapturedFrame ReadFrame(ArtHandle art) {
    CapturedFrame frame;
    frame.art = art;
    frame.kind = ATE::Got(TextFrameSuite().GetKind, art);
    frame.orientation = ATE::Got(TextFrameSuite().GetOrientation, art);
    if (frame.kind == kTextFramePoint) frame.anchor = ATE::Got(TextFrameSuite().GetPointTextAnchor, art);
    return frame;
}

void WriteHeader(const TextBuild& build, const CapturedFrame& frame, uint64_t pathsOffset) {
    auto* text = reinterpret_cast<AidbTextObject*>(BlockBytes(build.object));
    text->frameKind = static_cast<uint16_t>(frame.kind);
    text->orientation = static_cast<uint16_t>(frame.orientation);
    text->pathsOffset = static_cast<uint32_t>(pathsOffset);
    text->pathsSize = static_cast<uint32_t>(build.used - pathsOffset);
    text->pathCount = text->pathsSize > 0 ? 1 : 0;
    text->runCount = static_cast<uint16_t>(build.runCount);
    text->header.type = kTextObject;
    text->header.size = static_cast<uint32_t>(build.used);
    CaptureBlend(frame.art, &text->header);
}

void CaptureText(ArtHandle art, MemoryHandle& object, const HostPoint& origin) {
    CapturedFrame frame = ReadFrame(art);
    ATE::ITextRange range = ATE::ITextRange::OfFrame(art);
    frame.matrix = ATE::ITextFrame::OfFrame(art).GetMatrix();
    const ATE::IStory story = range.GetStory();
    const bool linked = ATE::Got(TextFrameSuite().IsPartOfLinkedText, art) != 0;
    TextBuild build{object};
    CaptureRuns(build, range, story, linked ? story.GetSize() : range.GetSize());
    const uint64_t pathsOffset = build.used;
    CaptureTextPath(frame, origin, build.object, build.used);
    WriteHeader(build, frame, pathsOffset);
}

} // namespace

HostError PostArtTextProcess(ArtHandle frame, MemoryHandle& object, const HostPoint* origin) {
    const TraceScope trace("PostArtTextProcess");
    try {
        CaptureText(frame, object, *origin);
        return kHostNoError;
    } catch (const ATE::Exception& exception) {
        return exception.error();
    }
}
