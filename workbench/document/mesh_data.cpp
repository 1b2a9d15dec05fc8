#include "workbench/document/mesh_data.h"

#include <algorithm>

namespace workbench {

namespace {

size_t Index(const MeshData& mesh, int32_t a, int32_t b, int32_t rows) {
    const int32_t column = mesh.type == kMeshRing ? a % mesh.gridI : a;
    return static_cast<size_t>(column) * static_cast<size_t>(rows) + static_cast<size_t>(b);
}

HostPoint Between(HostPoint p, HostPoint q, double t) {
    return {p.x + (q.x - p.x) * t, p.y + (q.y - p.y) * t};
}

/// The cubic curve over four points.
HostPoint OnCurve(const HostPoint (&p)[4], double t) {
    const double s = 1 - t;
    const double w[4] = {s * s * s, 3 * s * s * t, 3 * s * t * t, t * t * t};
    return {w[0] * p[0].x + w[1] * p[1].x + w[2] * p[2].x + w[3] * p[3].x,
            w[0] * p[0].y + w[1] * p[1].y + w[2] * p[2].y + w[3] * p[3].y};
}

/// One point makes the quadratic curve over it, none a straight line; of many the outermost count.
void CurveOf(const MeshEdge& edge, HostPoint from, HostPoint to, HostPoint (&curve)[4]) {
    curve[0] = from;
    curve[1] = Between(from, to, 1 / 3.0);
    curve[2] = Between(from, to, 2 / 3.0);
    curve[3] = to;
    if (edge.size() == 1) {
        curve[1] = Between(from, edge[0], 2 / 3.0);
        curve[2] = Between(to, edge[0], 2 / 3.0);
    } else if (edge.size() > 1) {
        curve[1] = edge.front();
        curve[2] = edge.back();
    }
}

} // namespace

bool InitMesh(MeshData& mesh, int32_t type, int32_t gridI, int32_t gridJ) {
    if ((type != kMeshGrid && type != kMeshRing) || gridI < 1 || gridJ < 1) return false;
    const int64_t rows = int64_t{gridJ} + 1;
    const int64_t columns = int64_t{gridI} + (type == kMeshRing ? 0 : 1);
    if (columns > kMostMeshVertices / rows) return false;
    const MeshEdge straight(2, HostPoint{0, 0});
    mesh = {type, gridI, gridJ, {}, {}, {}};
    mesh.vertices.resize(static_cast<size_t>(columns * rows));
    mesh.edgesI.assign(static_cast<size_t>(gridI * rows), straight);
    mesh.edgesJ.assign(static_cast<size_t>(columns * gridJ), straight);
    return true;
}

ptrdiff_t MeshVertexAt(const MeshData& mesh, int32_t a, int32_t b) {
    if (mesh.gridI == 0 || a < 0 || b < 0 || a > mesh.gridI || b > mesh.gridJ) return -1;
    return static_cast<ptrdiff_t>(Index(mesh, a, b, mesh.gridJ + 1));
}

void MeshEdgeView::Append(HostPoint point) const {
    points->insert(reversed ? points->begin() : points->end(), point);
}

MeshEdgeView MeshEdgeAt(MeshData& mesh, size_t vertex, MeshDirection direction) {
    const int32_t rows = mesh.gridJ + 1;
    const auto a = static_cast<int32_t>(vertex / static_cast<size_t>(rows));
    const auto b = static_cast<int32_t>(vertex % static_cast<size_t>(rows));
    const bool ring = mesh.type == kMeshRing;
    switch (direction) {
        case kForwardI:
            if (!ring && a == mesh.gridI) return {};
            return {&mesh.edgesI[Index(mesh, a, b, rows)], false};
        case kForwardJ:
            if (b == mesh.gridJ) return {};
            return {&mesh.edgesJ[Index(mesh, a, b, mesh.gridJ)], false};
        case kBackI:
            if (!ring && a == 0) return {};
            return {&mesh.edgesI[Index(mesh, a == 0 ? mesh.gridI - 1 : a - 1, b, rows)], true};
        case kBackJ:
            if (b == 0) return {};
            return {&mesh.edgesJ[Index(mesh, a, b - 1, mesh.gridJ)], true};
        default:
            return {};
    }
}

MeshDirection NthMeshDirection(const MeshData& mesh, size_t vertex, int32_t number) {
    int32_t left = number;
    for (uint8_t direction = kForwardI; left >= 0 && direction < kMeshDirections; ++direction) {
        const auto each = static_cast<MeshDirection>(direction);
        // Only looked at.
        const bool there = MeshEdgeAt(const_cast<MeshData&>(mesh), vertex, each).points != nullptr;
        if (there && left-- == 0) return each;
    }
    return kMeshDirections;
}

MeshPatch MeshPatchAt(const MeshData& mesh, int32_t a, int32_t b) {
    MeshPatch patch;
    for (int32_t i = 0; i < 2; ++i) {
        for (int32_t j = 0; j < 2; ++j)
            patch.corners[i][j] = &mesh.vertices[Index(mesh, a + i, b + j, mesh.gridJ + 1)];
    }
    for (int32_t k = 0; k < 2; ++k) {
        CurveOf(mesh.edgesI[Index(mesh, a, b + k, mesh.gridJ + 1)], patch.corners[0][k]->position,
                patch.corners[1][k]->position, patch.alongI[k]);
        CurveOf(mesh.edgesJ[Index(mesh, a + k, b, mesh.gridJ)], patch.corners[k][0]->position,
                patch.corners[k][1]->position, patch.alongJ[k]);
    }
    return patch;
}

HostPoint PointOfPatch(const MeshPatch& patch, double u, double v) {
    const HostPoint across = Between(OnCurve(patch.alongI[0], u), OnCurve(patch.alongI[1], u), v);
    const HostPoint up = Between(OnCurve(patch.alongJ[0], v), OnCurve(patch.alongJ[1], v), u);
    const HostPoint corners = Between(Between(patch.alongI[0][0], patch.alongI[0][3], u),
                                      Between(patch.alongI[1][0], patch.alongI[1][3], u), v);
    return {across.x + up.x - corners.x, across.y + up.y - corners.y};
}

void StraightenMesh(MeshData& mesh) {
    const int32_t columns = MeshColumns(mesh);
    for (int32_t a = 0; a < columns; ++a) {
        for (int32_t b = 0; b <= mesh.gridJ; ++b) {
            const auto from = static_cast<size_t>(MeshVertexAt(mesh, a, b));
            for (const MeshDirection direction : {kForwardI, kForwardJ}) {
                const MeshEdgeView edge = MeshEdgeAt(mesh, from, direction);
                if (!edge.points) continue;
                const bool i = direction == kForwardI;
                const auto to = static_cast<size_t>(MeshVertexAt(mesh, a + (i ? 1 : 0), b + (i ? 0 : 1)));
                const HostPoint p = mesh.vertices[from].position, q = mesh.vertices[to].position;
                *edge.points = {Between(p, q, 1 / 3.0), Between(p, q, 2 / 3.0)};
                const HostPoint third{(q.x - p.x) / 3, (q.y - p.y) / 3};
                mesh.vertices[from].spokes[direction].tangent = third;
                mesh.vertices[to].spokes[i ? kBackI : kBackJ].tangent = {-third.x, -third.y};
            }
        }
    }
}

} // namespace workbench
