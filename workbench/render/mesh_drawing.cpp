#include "workbench/render/mesh_drawing.h"

#include <cmath>

#include "workbench/document/color.h"

namespace workbench {

namespace {

/// Patches are drawn in steps as fine as a pixel, so huge ones would take for ever.
constexpr double kFarthest = 1e6;

bool IsNear(const MeshData& mesh) {
    bool near = true;
    ForEachMeshPoint(mesh, [&near](const HostPoint& point) {
        near = near && std::abs(point.x) < kFarthest && std::abs(point.y) < kFarthest;
    });
    return near;
}

void SetCorner(cairo_pattern_t* source, unsigned corner, const Light& light) {
    cairo_mesh_pattern_set_corner_color_rgb(source, corner, light.red, light.green, light.blue);
}

void CurveTo(cairo_pattern_t* source, const HostPoint (&curve)[4], bool back) {
    const HostPoint &first = curve[back ? 2 : 1], &second = curve[back ? 1 : 2], &end = curve[back ? 0 : 3];
    cairo_mesh_pattern_curve_to(source, first.x, first.y, second.x, second.y, end.x, end.y);
}

void AddPatch(cairo_pattern_t* source, const Document& document, const MeshPatch& patch) {
    const HostPoint& start = patch.corners[0][0]->position;
    cairo_mesh_pattern_begin_patch(source);
    cairo_mesh_pattern_move_to(source, start.x, start.y);
    CurveTo(source, patch.alongI[0], false);
    CurveTo(source, patch.alongJ[1], false);
    CurveTo(source, patch.alongI[1], true);
    CurveTo(source, patch.alongJ[0], true);
    SetCorner(source, 0, LightOf(document, patch.corners[0][0]->color));
    SetCorner(source, 1, LightOf(document, patch.corners[1][0]->color));
    SetCorner(source, 2, LightOf(document, patch.corners[1][1]->color));
    SetCorner(source, 3, LightOf(document, patch.corners[0][1]->color));
    cairo_mesh_pattern_end_patch(source);
}

} // namespace

CairoSource MeshSource(const Document& document, const MeshData& mesh) {
    if (mesh.vertices.empty() || !IsNear(mesh)) return nullptr;
    CairoSource source(cairo_pattern_create_mesh());
    for (int32_t a = 0; a < mesh.gridI; ++a) {
        for (int32_t b = 0; b < mesh.gridJ; ++b) AddPatch(source.get(), document, MeshPatchAt(mesh, a, b));
    }
    return source;
}

} // namespace workbench
