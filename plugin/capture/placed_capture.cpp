#include "plugin/capture/placed_capture.h"

#include <cstring>
#include <string>

#include "plugin/capture/art_paint.h"
#include "plugin/capture/art_walk.h"
#include "plugin/capture/capture_notes.h"
#include "plugin/capture/linked_names.h"
#include "plugin/capture/note_text.h"
#include "plugin/host/host_string.h"
#include "plugin/objects/conversions.h"
#include "plugin/objects/object_stream.h"
#include "plugin/store/trace.h"

static_assert(kLinkPathBytes == kHostStringCapacity);

namespace {

/// AIPlacedSuite's and AIRasterSuite's operations have the same shape.
using ReadFile = HostError (*)(ArtHandle art, UnicodeStringHandle path);
using ReadMatrix = HostError (*)(ArtHandle art, HostMatrix* matrix);

void AppendFileLine(std::string& note, ArtHandle art, ReadFile readFile) {
    const HostString path;
    if (!path.get() || readFile(art, path.get())) return;
    char name[kLinkPathBytes];
    if (HostStringBytes(path.get(), kEncodingPlatform, name) == 0) return;
    RegisterLinkedFile(name);
    note += "PlacedFile = \"" + std::string(name) + "\"\r";
}

void AppendMatrixLine(std::string& note, ArtHandle art, ReadMatrix readMatrix, const HostPoint& origin) {
    HostMatrix matrix{};
    HostRect bounds{};
    if (readMatrix(art, &matrix) || ArtSuite().GetArtBounds(art, &bounds)) return;
    matrix.tx = (bounds.left + bounds.right) / 2 - origin.x;
    matrix.ty = (bounds.top + bounds.bottom) / 2 - origin.y;
    const char* separator = "PlacedMatrix = ";
    for (const double value : {matrix.a, matrix.b, matrix.c, matrix.d, matrix.tx, matrix.ty}) {
        note += separator;
        AppendReal(note, value);
        separator = ", ";
    }
    note += "\r";
}

void AppendOptionsLine(std::string& note, ArtHandle placed) {
    int32_t method = 0, alignment = 0, clip = 0;
    if (PlacedSuite().GetPlaceOptions(placed, &method, &alignment, &clip)) return;
    note += "PlaceOptions = " + std::to_string(method) + ", " + std::to_string(alignment) + ", " +
            std::to_string(clip) + "\r";
}

/// The paint that the art's style gives to art without a path; false if there is none.
bool ReadStyle(ArtHandle art, AidbNoteStyle* stored) {
    HostPathStyle paint{};
    if (!ReadStylePaint(art, &paint) || (!paint.fillPaint && !paint.strokePaint)) return false;
    std::memcpy(stored->marker, kStyleMarker, sizeof stored->marker);
    StoreStylePaint(paint, &stored->style);
    double opacity = 0;
    if (!BlendStyleSuite().GetOpacity(art, &opacity)) stored->opacity = HostRealToFixed(opacity);
    return true;
}

} // namespace

void PostArtPlacedProcess(ArtHandle placed, const HostPoint* origin) {
    const TraceScope trace("PostArtPlacedProcess");
    std::string note;
    AppendFileLine(note, placed, PlacedSuite().GetPlacedFile);
    AppendMatrixLine(note, placed, PlacedSuite().GetPlacedMatrix, *origin);
    AppendOptionsLine(note, placed);
    if (note.empty()) return;
    note.push_back(0);
    AidbNoteStyle style{};
    if (ReadStyle(placed, &style)) note.append(reinterpret_cast<const char*>(&style), sizeof style);
    PutNoteBytes(note.data(), static_cast<uint32_t>(note.size()));
}

void PostArtLinkedRasterProcess(ArtHandle raster, const HostPoint* origin) {
    const TraceScope trace("PostArtLinkedRasterProcess");
    std::string note;
    AppendFileLine(note, raster, RasterSuite().GetRasterFile);
    AppendMatrixLine(note, raster, RasterSuite().GetRasterMatrix, *origin);
    if (!note.empty()) PutNote(note.c_str());
}
