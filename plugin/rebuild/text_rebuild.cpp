#include "plugin/rebuild/text_rebuild.h"

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string>
#include <string_view>

#include "plugin/frame/globals.h"
#include "plugin/objects/conversions.h"
#include "plugin/objects/object_stream.h"
#include "plugin/rebuild/art_paint.h"
#include "plugin/rebuild/text_features.h"

namespace {

constexpr HostError kNoSuchFrame = -1;
constexpr UINT kJapanese = 932, kUtf8 = 65001;
constexpr char kEndOfText[] = "\r"; ///< of a last run that only carries the kerning at the end
constexpr size_t kRunTextLimit = 255;
constexpr uint32_t kTransformArtAlone = 1;

// ---- The frame ----

/// The first text path with its segments; no path if the object has none or not the whole of it.
struct StoredPath {
    const AidbTextPath* path = nullptr;
    std::span<AidbSegment> segments;
};

StoredPath FirstPath(std::span<uint8_t> object, const AidbTextObject& text) {
    StoredPath stored;
    if (text.pathCount == 0) return stored;
    stored.path = ViewAt<AidbTextPath>(object, text.pathsOffset);
    if (!stored.path) return stored;
    const uint64_t segments = uint64_t{text.pathsOffset} + sizeof(AidbTextPath);
    stored.segments = ViewsAt<AidbSegment>(object, segments, stored.path->segmentCount);
    return stored;
}

void EmptyPath(ArtHandle path) {
    int32_t count = 0;
    if (PathSuite().GetPathSegmentCount(path, &count) == kHostNoError && count > 0)
        PathSuite().DeletePathSegments(path, 0, count);
}

/// The path as text space sees it: the frame's turning and stretching comes back over path and letters
/// together.
ArtHandle MakeFramePath(const StoredPath& stored) {
    ArtHandle path = nullptr;
    if (ArtSuite().NewArt(kArtPath, kPlaceAboveAll, nullptr, &path) != kHostNoError) return nullptr;
    EmptyPath(path);
    int32_t index = 0;
    for (const AidbSegment& one : stored.segments) {
        HostPathSegment segment{};
        SegmentFromRecord(one, &segment);
        PathSuite().SetPathSegments(path, index++, 1, &segment);
    }
    PathSuite().SetPathClosed(path, stored.path->closed);

    HostMatrix matrix{};
    MatrixFromRecord(stored.path->matrix, &matrix);
    matrix.tx = matrix.ty = 0;
    if (RealMathSuite().InvertMatrix(&matrix) == kHostNoError)
        TransformArtSuite().TransformArt(path, &matrix, 1.0, kTransformArtAlone);
    return path;
}

HostError MakeFrame(LoadState& load, const AidbTextObject& text, const StoredPath& stored, ArtHandle* frame) {
    if (text.frameKind > kTextFrameOnPath) return kNoSuchFrame;
    const ArtHandle path = text.frameKind != kTextFramePoint && stored.path ? MakeFramePath(stored) : nullptr;
    const ArtHandle prep = InnermostContainer(OpenContainers(load));
    const int32_t order = prep ? kPlaceInsideOnTop : kPlaceAboveAll;
    const AITextFrameSuite& suite = TextFrameSuite();
    const HostPoint anchor{0, 0};
    switch (text.frameKind) {
        case kTextFramePoint:
            return suite.NewPointText(order, prep, text.orientation, &anchor, frame);
        case kTextFrameArea:
            return suite.NewAreaText(order, prep, text.orientation, path, nullptr, 0, frame);
        default:
            return suite.NewTextOnPath(order, prep, text.orientation, path, 0.0, 0.0, nullptr, 0, frame);
    }
}

/// Point text is drawn at the origin, other text where its path was stored; both have lost the matrix.
void PlaceFrame(const LoadState& load, ArtHandle frame, const AidbTextObject& text,
                const StoredPath& stored) {
    HostPoint target = PlacementOffset(load);
    HostMatrix matrix{1, 0, 0, 1, 0, 0};
    if (stored.path) MatrixFromRecord(stored.path->matrix, &matrix);
    if (stored.path && text.frameKind == kTextFramePoint) {
        target.x += matrix.tx;
        target.y += matrix.ty;
    }
    matrix.tx = target.x;
    matrix.ty = target.y;
    TransformArtSuite().TransformArt(frame, &matrix, 1.0, kTransformArtAlone);
}

// ---- The text ----

using WideText = std::basic_string<WCHAR>;

WideText WideOfCp932(const char* text, int bytes) {
    const int units = MultiByteToWideChar(kJapanese, 0, text, bytes, nullptr, 0);
    WideText wide(static_cast<size_t>(units > 0 ? units : 0), WCHAR{0});
    if (!wide.empty()) MultiByteToWideChar(kJapanese, 0, text, bytes, wide.data(), units);
    return wide;
}

std::string Utf8OfWide(const WideText& wide) {
    const auto units = static_cast<int>(wide.size());
    const int bytes = WideCharToMultiByte(kUtf8, 0, wide.data(), units, nullptr, 0, nullptr, nullptr);
    std::string utf8(static_cast<size_t>(bytes > 0 ? bytes : 0), '\0');
    if (!utf8.empty())
        WideCharToMultiByte(kUtf8, 0, wide.data(), units, utf8.data(), bytes, nullptr, nullptr);
    return utf8;
}

/// Takes the first character off well-formed UTF-8.
char32_t TakeCharacter(std::string_view& utf8) {
    const auto lead = static_cast<uint8_t>(utf8[0]);
    const size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    char32_t character = length == 1 ? lead : lead & (0xFFu >> (length + 1));
    for (size_t i = 1; i < length && i < utf8.size(); ++i)
        character = character << 6 | (static_cast<uint8_t>(utf8[i]) & 0x3Fu);
    utf8.remove_prefix(std::min(length, utf8.size()));
    return character;
}

std::u16string Utf16OfUtf8(std::string_view utf8) {
    constexpr char32_t kFirstPair = 0x10000;
    std::u16string units;
    while (!utf8.empty()) {
        char32_t character = TakeCharacter(utf8);
        if (character >= kFirstPair) {
            character -= kFirstPair;
            units += static_cast<char16_t>(0xD800 | character >> 10);
            character = 0xDC00 | (character & 0x3FF);
        }
        units += static_cast<char16_t>(character);
    }
    return units;
}

bool OnlyCarriesKerning(const AidbTextRun& run) {
    return run.kerning != 0 && std::memcmp(run.text, kEndOfText, sizeof kEndOfText) == 0;
}

/// One that the host refuses is passed over, like any other feature.
void SetKerning(const ATE::ITextRange& range, const AidbTextRun& run) {
    if (run.kerning == 0) return;
    try {
        range.GetStory().SetKerning(range.GetStart(), static_cast<int32_t>(run.kerning));
    } catch (const ATE::Exception&) {
    }
}

void FillFrame(LoadState& load, ArtHandle frame, std::span<const AidbTextRun> runs) {
    ATE::ITextRange range = ATE::ITextRange::OfFrame(frame);
    ATE::ICharFeatures characters = range.GetLocalCharFeatures();
    ATE::IParaFeatures paragraphs = range.GetLocalParaFeatures();
    range.Remove();
    FoundFonts fonts;
    int32_t position = 0;
    for (const AidbTextRun& run : runs) {
        if (&run == &runs.back() && OnlyCarriesKerning(run)) return SetKerning(range, run);
        SetParagraphFeatures(paragraphs, run.para);
        range.SetLocalParaFeatures(paragraphs);
        SetCharacterFeatures(load, characters, run, fonts);
        range.SetLocalCharFeatures(characters);
        InsertRunText(range, run.text, kRunTextLimit);
        SetKerning(range, run);
        position += range.GetSize();
        range.SetRange(position, position);
    }
}

} // namespace

void InsertRunText(ATE::ITextRange& range, const char* text, size_t bytes) {
    const void* end = std::memchr(text, 0, bytes);
    if (end) bytes = static_cast<size_t>(static_cast<const char*>(end) - text);
    const std::u16string units = Utf16OfUtf8(Utf8OfWide(WideOfCp932(text, static_cast<int>(bytes))));
    range.InsertAfter(units.c_str(), static_cast<int32_t>(units.size()));
}

HostError LoadArtTextProcess(LoadState& load, std::span<uint8_t> object) {
    const auto* text = ViewAt<AidbTextObject>(object);
    if (!text) return kNoSuchFrame;
    const StoredPath stored = FirstPath(object, *text);
    ArtHandle frame = nullptr;
    const HostError result = MakeFrame(load, *text, stored, &frame);
    if (result != kHostNoError) return result;
    SetBlend(frame, text->header);
    try {
        FillFrame(load, frame, TextRuns(object));
    } catch (const ATE::Exception&) {
        // What is there stays, and goes to its place.
    }
    PlaceFrame(load, frame, *text, stored);
    return result;
}
