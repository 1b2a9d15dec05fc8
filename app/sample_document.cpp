#include "app/sample_document.h"

#include "app/sample_cells.h"

using workbench::Art;
using workbench::Document;

namespace sample {

namespace {

HostPathSegment Corner(double x, double y) {
    return {{x, y}, {x, y}, {x, y}, 1};
}

Art& AddPath(Document& document, Art* parent, std::vector<HostPathSegment> segments, bool closed) {
    Art& art = *document.PrependArt(kArtPath, parent);
    workbench::PathData& path = *art.path();
    path.segments = std::move(segments);
    path.closed = closed;
    path.style.strokePaint = 0;
    return art;
}

} // namespace

Art& AddRectangle(Document& document, Art* parent, const HostRect& r) {
    return AddPath(
        document, parent,
        {Corner(r.left, r.bottom), Corner(r.right, r.bottom), Corner(r.right, r.top), Corner(r.left, r.top)},
        true);
}

Art& AddEllipse(Document& document, Art* parent, const HostRect& r) {
    constexpr double kHandle = 0.5522847498; // of a quarter circle, in radii
    const double x = (r.left + r.right) / 2, y = (r.bottom + r.top) / 2;
    const double dx = (r.right - r.left) / 2 * kHandle, dy = (r.top - r.bottom) / 2 * kHandle;
    return AddPath(document, parent,
                   {{{r.right, y}, {r.right, y - dy}, {r.right, y + dy}, 0},
                    {{x, r.top}, {x + dx, r.top}, {x - dx, r.top}, 0},
                    {{r.left, y}, {r.left, y + dy}, {r.left, y - dy}, 0},
                    {{x, r.bottom}, {x - dx, r.bottom}, {x + dx, r.bottom}, 0}},
                   true);
}

Art& AddLine(Document& document, Art* parent, std::initializer_list<HostPoint> points) {
    std::vector<HostPathSegment> segments;
    for (const HostPoint& point : points) segments.push_back(Corner(point.x, point.y));
    return AddPath(document, parent, std::move(segments), false);
}

void SetFill(Art& path, const HostColor& color) {
    path.path()->style.fillPaint = 1;
    path.path()->style.fill = color;
}

void SetStroke(Art& path, const HostColor& color, double width) {
    path.path()->style.strokePaint = 1;
    path.path()->style.stroke = color;
    path.path()->style.lineWidth = width;
}

namespace {

void AddPlaced(Document& document, Art* layer, const HostRect& cell, const std::string& file, double turn) {
    Art& art = *document.PrependArt(kArtPlaced, layer);
    auto& placed = std::get<workbench::PlacedData>(art.data);
    placed.file = file;
    placed.width = kSamplePictureWidth;
    placed.height = kSamplePictureHeight;
    placed.method = 1;
    placed.alignment = 4;
    placed.matrix = {1, turn, -turn, 1, cell.left + 12, cell.bottom + 8};
}

} // namespace

} // namespace sample

std::unique_ptr<Document> MakeSampleDocument(const SamplePictures& pictures) {
    auto document = std::make_unique<Document>();
    document->title = "Sample";
    document->subject = "Every kind of art";
    document->description = "One of each kind of art and attribute that a record keeps.";
    document->page = {0, sample::kPageHeight, sample::kPageWidth, 0};
    document->LayerAt(0).title = "Words and pictures";
    workbench::Layer& below =
        document->InsertLayer(1, "\xE7\xB7\x9A\xE3\x81\xA8\xE8\x89\xB2"); // lines, colours
    sample::AddPaint(*document, below.root);
    sample::AddGroups(*document, below.root);
    Art* top = document->LayerAt(0).root;
    sample::AddImages(*document, top);
    sample::AddPlaced(*document, top, sample::Cell(2, 4), pictures.png, 0);
    sample::AddPlaced(*document, top, sample::Cell(3, 4), pictures.jpeg, 0.2);
    sample::AddMeshes(*document, top);
    sample::AddTexts(*document, top);
    document->SetCurrentLayer(0);
    return document;
}
