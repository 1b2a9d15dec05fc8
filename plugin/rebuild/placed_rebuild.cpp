#include "plugin/rebuild/placed_rebuild.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "plugin/frame/globals.h"
#include "plugin/frame/line_grammar.h"
#include "plugin/host/host_string.h"
#include "plugin/host/suites.h"
#include "plugin/objects/conversions.h"
#include "plugin/objects/object_stream.h"
#include "plugin/rebuild/art_paint.h"
#include "plugin/store/linked_files.h"
#include "plugin/store/store_names.h"

namespace {

constexpr size_t kNumberToken = 31; ///< bytes of a token behind the first one
constexpr size_t kTokens = 7;       ///< a keyword and six values
constexpr int32_t kRequestType = 3, kRequestFlag = 1, kRequestExtra = 0; ///< the host's words
constexpr uint32_t kTransformAll = 0x6F;
constexpr HostError kNoPlace = -1;

// ---- Where the file is ----

std::string DataDirectory(const RecordSource& source) {
    std::array<char, kNameBytes> root{};
    std::array<uint8_t, kPascalPathBytes> group{};
    std::array<char, kFullPathBytes> path{};
    GetDatabaseRoot(root.data());
    MakeGroupPath(source.groupPath, group.data(), true);
    if (group[0] == 0) return {};
    JoinRootAndPath(root.data(), reinterpret_cast<const char*>(group.data() + 1), path.data());
    if (!path[0]) return {};
    return std::string(path.data()) + "\\" + std::to_string(source.number);
}

std::string ImageFolder() {
    std::array<char, kNameBytes> root{};
    std::array<char, kFullPathBytes> path{};
    GetDatabaseRoot(root.data());
    JoinRootAndPath(root.data(), kImageFolder, path.data());
    return path.data();
}

int32_t PutPath(const std::string& path, char* outPath) {
    if (path.size() >= kFullPathBytes) return -1;
    std::memcpy(outPath, path.c_str(), path.size() + 1);
    return 0;
}

/// As ResolveLinkedFile finds a file, without its move.
int32_t LookForFile(const RecordSource& source, const std::string& name, char* outPath) {
    if (!IsPlainComponent(name)) return -1;
    const std::string directory = DataDirectory(source);
    if (directory.empty()) return -1;
    const std::string notePath = directory + "\\" + NameOfLinkNote(name);
    LinkNote note;
    if (!ReadLinkNote(notePath.c_str(), &note)) return PutPath(directory + "\\" + name, outPath);
    if (note.storedName.compare(0, name.size(), name) != 0 || !IsPlainComponent(note.pooledName)) return -1;
    return PutPath(ImageFolder() + "\\" + note.pooledName, outPath);
}

// ---- Making the art ----

ArtHandle TopOfCurrentLayer() {
    LayerHandle layer = nullptr;
    ArtHandle root = nullptr, top = nullptr;
    if (LayerSuite().GetCurrentLayer(&layer) != kHostNoError || !layer) return nullptr;
    if (ArtSuite().GetFirstArtOfLayer(layer, &root) != kHostNoError || !root) return nullptr;
    return ArtSuite().GetFirstChild(root, &top) == kHostNoError ? top : nullptr;
}

/// A refused request may leave half-made art on top; it is taken away before the second try.
HostError RequestArt(FilePathHandle file, ArtHandle* art) {
    const HostPlaceRequest asked = {kPlaceNewArt, nullptr,      nullptr,      file,
                                    kRequestType, kRequestFlag, kRequestExtra};
    const ArtHandle before = TopOfCurrentLayer();
    HostPlaceRequest request = asked;
    HostError error = PlacedSuite().ExecutePlaceRequest(&request);
    if (error != kHostNoError) {
        const ArtHandle left = TopOfCurrentLayer();
        if (left && left != before) ArtSuite().DisposeArt(left);
        request = asked;
        error = PlacedSuite().ExecutePlaceRequest(&request);
    }
    *art = error == kHostNoError ? request.newArt : nullptr;
    return error;
}

void SetMatrixAndOptions(ArtHandle art, const PlacedNote& note) {
    HostMatrix matrix = note.matrix;
    matrix.tx = matrix.ty = 0;
    int32_t kind = 0;
    if (ArtSuite().GetArtKind(art, &kind) == kHostNoError && kind == kArtRaster) {
        RasterSuite().SetRasterMatrix(art, &matrix);
        return;
    }
    PlacedSuite().SetPlacedMatrix(art, &matrix);
    PlacedSuite().SetPlaceOptions(art, note.method, note.alignment, note.clip);
}

void MoveCentreTo(ArtHandle art, double x, double y) {
    HostRect bounds{};
    if (ArtSuite().GetArtBounds(art, &bounds) != kHostNoError) return;
    HostMatrix move{};
    RealMathSuite().SetTranslationMatrix(&move, x - (bounds.left + bounds.right) / 2,
                                         y - (bounds.top + bounds.bottom) / 2);
    TransformArtSuite().TransformArt(art, &move, 1.0, kTransformAll);
}

HostError PlaceFile(const char* path, const PlacedNote& note, ArtHandle* art) {
    const HostString text(path, std::strlen(path), kEncodingPlatform);
    if (!text.get()) return kHostOutOfMemory;
    const HostFilePath file(text.get());
    if (!file.get()) return kHostOutOfMemory;
    const HostError error = RequestArt(file.get(), art);
    if (*art) SetMatrixAndOptions(*art, note);
    return error;
}

} // namespace

PlacedNote ParsePlacedNote(std::string_view text) {
    PlacedNote note;
    LineReader reader(text, kPlacedNoteGrammar);
    for (std::string line; reader.Next(line);) {
        const std::vector<std::string> tokens = SplitTokens(line, kTokens);
        const std::string_view word = TokenAt(tokens, 0), first = TokenAt(tokens, 1);
        const auto token = [&](size_t index) {
            return index == 1 ? first : TokenAt(tokens, index, kNumberToken);
        };
        if (first.empty()) continue;
        if (word == "PlacedFile") {
            note.storedName = first;
        } else if (word == "PlacedMatrix") {
            size_t index = 1;
            for (double HostMatrix::*member : {&HostMatrix::a, &HostMatrix::b, &HostMatrix::c, &HostMatrix::d,
                                               &HostMatrix::tx, &HostMatrix::ty})
                note.matrix.*member = DecimalReal(token(index++));
        } else if (word == "PlaceOptions") {
            note.method = DecimalInteger(token(1));
            note.alignment = DecimalInteger(token(2));
            note.clip = DecimalInteger(token(3)) != 0 ? 1 : 0;
        }
    }
    return note;
}

int32_t FindPlacedFile(const RecordSource& source, std::string_view storedName, char* outPath) {
    if (!source.groupPath || storedName.size() > 255) return -1;
    if (source.linkedFiles == LinkedFileUse::kLook)
        return LookForFile(source, std::string(storedName), outPath);
    std::array<uint8_t, 256> pascalName{};
    pascalName[0] = static_cast<uint8_t>(storedName.size());
    std::copy(storedName.begin(), storedName.end(), pascalName.begin() + 1);
    return ResolveLinkedFile(source.groupPath, source.number, pascalName.data(), outPath);
}

bool PlacedFileExists(const char* path) {
    const HFILE file = _lopen(path, OF_READ);
    if (file == HFILE_ERROR) return false;
    _lclose(file);
    return true;
}

HostError LoadArtPlacedProcess(const RecordSource& source, std::span<uint8_t> noteObject, int32_t paintOrder,
                               ArtHandle prep, float x, float y) {
    std::array<char, kNameBytes> root{};
    if (GetDatabaseRoot(root.data()) != 0 || !root[0]) return kNoPlace;
    const PlacedNote note = ParsePlacedNote(NoteText(noteObject));
    if (note.storedName.empty()) return kHostNoError;
    std::array<char, kFullPathBytes> path{};
    if (FindPlacedFile(source, note.storedName, path.data()) != 0) return kNoPlace;
    if (!PlacedFileExists(path.data())) return kHostNoError;

    const AidbNoteStyle* const stored = FindNoteStyle(noteObject);
    ArtHandle art = nullptr;
    const HostError error = PlaceFile(path.data(), note, &art);
    if (!art) return error;
    MoveCentreTo(art, 0, 0);
    MoveCentreTo(art, note.matrix.tx + x, note.matrix.ty + y);
    ArtSuite().ReorderArt(art, paintOrder, prep);
    if (stored) {
        SetStylePaint(art, stored->style);
        BlendStyleSuite().SetOpacity(art, FixedToReal(stored->opacity));
    }
    return kHostNoError;
}
