// Images of three colour spaces and gradient meshes of both types.

#include <cmath>
#include <functional>
#include <numbers>

#include "app/sample_cells.h"

using workbench::Art;
using workbench::Document;

namespace sample {

namespace {

/// `channel(x, y, n)` gives channel n of a pixel, 0 to 255.
workbench::RasterData& AddRaster(Document& document, Art* layer, const HostRect& cell, int32_t width,
                                 int32_t height, int32_t space,
                                 const std::function<int(int, int, int)>& channel) {
    auto& raster = std::get<workbench::RasterData>(document.PrependArt(kArtRaster, layer)->data);
    raster.record = workbench::NewRasterRecord(width, height, space);
    raster.box = {0, static_cast<double>(height), static_cast<double>(width), 0};
    const double scale = std::min((cell.right - cell.left) / width, (cell.top - cell.bottom) / height);
    raster.matrix = {scale, 0, 0, scale, cell.left, cell.top};
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            for (int n = 0; n < raster.Channels(); ++n)
                raster.pixels.push_back(static_cast<uint8_t>(channel(x, y, n)));
    return raster;
}

} // namespace

void AddImages(Document& document, Art* layer) {
    // A pixel wider and higher than a tile of 32.
    AddRaster(document, layer, Cell(2, 2), 33, 33, workbench::kSpaceThreeAlpha, [](int x, int y, int n) {
        return n == 0 ? 7 * x : n == 1 ? 7 * y : n == 2 ? ((x ^ y) & 8 ? 220 : 60) : x + y < 60 ? 255 : 110;
    });
    // Four inks and alpha.
    AddRaster(document, layer, Cell(3, 2), 48, 36, workbench::kSpaceFourAlpha, [](int x, int y, int n) {
        const double away = std::hypot(x - 24.0, y - 18.0);
        const int inks[] = {5 * x, 7 * y, 255 - 5 * x, 0, away < 18 ? 255 : 60};
        return inks[n];
    });
    // Gray that takes its colour from its style.
    workbench::RasterData& colorized = AddRaster(
        document, layer, Cell(0, 3), 40, 30, workbench::kSpaceGray,
        [](int x, int y, int) { return static_cast<int>(127 + 120 * std::sin(x / 4.0 + y / 7.0)); });
    colorized.record.flags |= workbench::kRasterColorized;
    HostPathStyle style = workbench::DefaultPathStyle();
    style.strokePaint = 0;
    style.fillPaint = 1;
    style.fill = workbench::FourColor(0.9, 0.2, 0, 0.1);
    layer->firstChild->artStyle = document.NewArtStyle(style).handle;
}

void AddMeshes(Document& document, Art* layer) {
    const HostRect cells[] = {Cell(1, 3), Cell(2, 3)};
    for (const int32_t type : {workbench::kMeshGrid, workbench::kMeshRing}) {
        const HostRect& cell = cells[type == workbench::kMeshRing];
        auto& mesh = std::get<workbench::MeshData>(document.PrependArt(kArtMesh, layer)->data);
        const int32_t i = type == workbench::kMeshRing ? 6 : 3, j = 2;
        if (!workbench::InitMesh(mesh, type, i, j)) continue;
        const double x = (cell.left + cell.right) / 2, y = (cell.top + cell.bottom) / 2;
        const double width = cell.right - cell.left, height = cell.top - cell.bottom;
        for (size_t at = 0; at < mesh.vertices.size(); ++at) {
            const int a = static_cast<int>(at) / (j + 1), b = static_cast<int>(at) % (j + 1);
            workbench::MeshVertex& vertex = mesh.vertices[at];
            if (type == workbench::kMeshRing) {
                const double turn = 2 * std::numbers::pi * a / i, radius = height / 2 * (0.2 + 0.4 * b);
                vertex.position = {x + radius * std::cos(turn), y + radius * std::sin(turn)};
            } else {
                vertex.position = {cell.left + width * a / i,
                                   cell.bottom + height * (b + 0.1 * (a % 2)) / (j + 0.2)};
            }
            vertex.color = (a + b) % 3 == 0   ? workbench::ThreeColor(1, 0.2 * a, 0.3)
                           : (a + b) % 3 == 1 ? workbench::FourColor(0.8, 0.2 * b, 0, 0)
                                              : workbench::GrayColor(0.1);
        }
        workbench::StraightenMesh(mesh);
        for (workbench::MeshEdge& edge : mesh.edgesI) edge[0].y += 5;
        for (workbench::MeshVertex& vertex : mesh.vertices) vertex.spokes[workbench::kForwardI].smooth = true;
    }
}

} // namespace sample
