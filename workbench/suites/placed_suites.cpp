// The tables for linked files and for moving art of suites/art.h over the front document.

#include <algorithm>
#include <cmath>

#include "suites/art.h"
#include "workbench/suites/finite.h"
#include "workbench/suites/picture_paths.h"
#include "workbench/suites/suite_call.h"

namespace workbench {

HostError PutFile(const std::string& file, HostText& path) {
    const bool unclear = file.find('/') != std::string::npos && file.find('\\') != std::string::npos;
    if (file.empty() || unclear) return kHostNotFound;
    path.utf8 = file;
    std::replace(path.utf8.begin(), path.utf8.end(), '/', '\\');
    return kHostNoError;
}

namespace {

// AI Placed Suite

HostError GetPlacedFile(SuiteCall&, Of<PlacedData> placed, HostText& path) {
    return PutFile(placed.data.file, path);
}

HostError GetPlacedMatrix(SuiteCall&, Of<PlacedData> placed, HostMatrix& matrix) {
    matrix = placed.data.matrix;
    return kHostNoError;
}

HostError GetPlaceOptions(SuiteCall&, Of<PlacedData> placed, int32_t& method, int32_t& alignment,
                          int32_t& clip) {
    method = placed.data.method;
    alignment = placed.data.alignment;
    clip = placed.data.clip;
    return kHostNoError;
}

/// The picture's centre comes onto the page's.
HostMatrix PlaceOnPage(const Document& document, const PictureSize& size) {
    const HostRect& page = document.page;
    return {
        1, 0, 0, 1, (page.left + page.right - size.width) / 2, (page.top + page.bottom - size.height) / 2};
}

HostError ExecutePlaceRequest(SuiteCall& call, HostPlaceRequest& request) {
    if (const HostError error = NeedDocument(call)) return error;
    if (request.mode != kPlaceNewArt) return call.Fault(kHostBadParameter, "no such mode of placing");
    if (request.oldArt || request.newArt)
        return call.Fault(kHostBadParameter, "art in a request for new art");
    HostFilePath* path = LookUp<HostFilePath>(call, request.file, false);
    if (!path) return call.error();
    std::string file = path->utf8;
    std::replace(file.begin(), file.end(), '\\', '/');
    const auto size = call.host().pictures ? call.host().pictures->SizeOf(file) : std::nullopt;
    if (!size) return kHostRefused;
    Document& document = call.document();
    Art* art = nullptr;
    if (const HostError error = document.NewArt(kArtPlaced, kPlaceAboveAll, nullptr, &art)) return error;
    auto& placed = std::get<PlacedData>(art->data);
    placed.file = std::move(file);
    placed.width = size->width;
    placed.height = size->height;
    placed.matrix = PlaceOnPage(document, *size);
    request.newArt = art->handle;
    return kHostNoError;
}

HostError SetPlacedMatrix(SuiteCall&, Of<PlacedData> placed, const HostMatrix& matrix) {
    if (!IsFinite(matrix)) return kHostBadParameter;
    placed.data.matrix = matrix;
    return kHostNoError;
}

HostError SetPlaceOptions(SuiteCall&, Of<PlacedData> placed, int32_t method, int32_t alignment,
                          int32_t clip) {
    placed.data.method = method;
    placed.data.alignment = alignment;
    placed.data.clip = clip ? 1 : 0;
    return kHostNoError;
}

// AI Transform Art Suite

constexpr uint32_t kTransformAll = 0x6F;
constexpr uint32_t kTransformAction = 0x7F; ///< the same, as actions ask for it
constexpr uint32_t kTransformArtAlone = 1;  ///< without gradients and patterns

HostError TransformArt(SuiteCall& call, Art& art, const HostMatrix& matrix, double lineScale,
                       uint32_t flags) {
    const bool all = flags == kTransformAll || flags == kTransformAction;
    if (!all && flags != kTransformArtAlone)
        return call.Fault(kHostBadParameter, "a transform of parts of the art");
    if (!IsFinite(matrix) || !std::isfinite(lineScale)) return kHostBadParameter;
    const Layer* layer = call.document().LayerOf(art);
    if (!layer) return call.Fault(kHostBadPlace, "art that is no part of the tree");
    if (!Document::CanChange(layer)) return kHostBadPlace;
    call.document().Transform(art, matrix, lineScale, all);
    return kHostNoError;
}

} // namespace

const void* PlacedSuiteTable() {
    static constexpr AIPlacedSuite table{
        Entry<"AI Placed Suite", "GetPlacedFile", GetPlacedFile>::Run,
        Entry<"AI Placed Suite", "GetPlacedMatrix", GetPlacedMatrix>::Run,
        Entry<"AI Placed Suite", "GetPlaceOptions", GetPlaceOptions>::Run,
        Entry<"AI Placed Suite", "ExecutePlaceRequest", ExecutePlaceRequest>::Run,
        Entry<"AI Placed Suite", "SetPlacedMatrix", SetPlacedMatrix>::Run,
        Entry<"AI Placed Suite", "SetPlaceOptions", SetPlaceOptions>::Run,
    };
    return &table;
}

const void* TransformArtSuiteTable() {
    static constexpr AITransformArtSuite table{
        Entry<"AI Transform Art Suite", "TransformArt", TransformArt>::Run,
    };
    return &table;
}

} // namespace workbench
