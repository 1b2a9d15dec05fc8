/// Gradient meshes in the art tree.
///
/// A mesh is a net of vertices that have colours, joined by edges that are cubic curves; between four edges
/// lies a patch whose colour runs from corner to corner.  Nodes are counted from (0, 0) to (gridI, gridJ).
/// Of a ring, node (gridI, b) is node (0, b) once more: the net closes on itself as i grows.
///
/// Neighbours share the edge between them, so its points are there once, and seen from its other end they
/// come in the opposite order.  What each vertex has for itself at an edge is the tangent and the flag.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "suites/host_types.h"

namespace workbench {

enum : int32_t { kMeshGrid = 0, kMeshRing = 1 };

/// Where an edge leads, as seen from a vertex; also the order in which a vertex counts its edges, those left
/// out that it doesn't have.
enum MeshDirection : uint8_t { kForwardI, kForwardJ, kBackI, kBackJ, kMeshDirections };

/// What a vertex has at one of its edges.
struct MeshSpoke {
    HostPoint tangent{0, 0}; ///< vector from the vertex in which its maker let the colour leave
    bool smooth = false;
};

struct MeshVertex {
    HostColor color{kColorGray, {{0}}};
    HostPoint position{0, 0};
    MeshSpoke spokes[kMeshDirections];
};

/// Control points between two vertices, in the direction of growing i or j: two for a cubic, none for a
/// straight line.  Further ones are kept but not drawn.
using MeshEdge = std::vector<HostPoint>;

struct MeshData {
    int32_t type = kMeshGrid;
    int32_t gridI = 0, gridJ = 0;     ///< patches in each direction; 0: no net yet
    std::vector<MeshVertex> vertices; ///< by i, then j
    std::vector<MeshEdge> edgesI;     ///< from (a, b) to (a + 1, b), by a, then b
    std::vector<MeshEdge> edgesJ;     ///< from (a, b) to (a, b + 1), by a, then b
};

constexpr int64_t kMostMeshVertices = 1 << 20;

/// Rows of vertices in the direction of i, a ring's only once.
inline int32_t MeshColumns(const MeshData& mesh) {
    return mesh.gridI == 0 ? 0 : mesh.gridI + (mesh.type == kMeshRing ? 0 : 1);
}

/// Begins a net anew: white vertices at (0, 0), edges of two points there.  False, and the mesh untouched, if
/// the type is unknown, a size below 1, or the net larger than kMostMeshVertices.
bool InitMesh(MeshData& mesh, int32_t type, int32_t gridI, int32_t gridJ);

/// The vertex of a node; -1 if there is no such node.
ptrdiff_t MeshVertexAt(const MeshData& mesh, int32_t a, int32_t b);

/// An edge as seen from one of its ends.
struct MeshEdgeView {
    MeshEdge* points = nullptr; ///< null: the vertex has no edge in this direction
    bool reversed = false;      ///< it ends here

    HostPoint& At(size_t index) const { return (*points)[reversed ? points->size() - 1 - index : index]; }
    void Append(HostPoint point) const; ///< at the far end
};
MeshEdgeView MeshEdgeAt(MeshData& mesh, size_t vertex, MeshDirection direction);

/// The direction of the vertex' edge `number`; kMeshDirections if it has fewer.
MeshDirection NthMeshDirection(const MeshData& mesh, size_t vertex, int32_t number);

/// The four curves around a patch, each of four points and in the direction of its index: from (a, b) to
/// (a + 1, b), from (a, b + 1) to (a + 1, b + 1), from (a, b) to (a, b + 1), from (a + 1, b) to
/// (a + 1, b + 1).
struct MeshPatch {
    HostPoint alongI[2][4], alongJ[2][4];
    const MeshVertex* corners[2][2]; ///< by i, then j
};
MeshPatch MeshPatchAt(const MeshData& mesh, int32_t a, int32_t b);

/// The point of a patch's Coons surface; u along i and v along j, 0 to 1.
HostPoint PointOfPatch(const MeshPatch& patch, double u, double v);

/// Gives all edges two points at the thirds of the straight line, and the vertices the tangents to them.
void StraightenMesh(MeshData& mesh);

/// Every point that lies on the page: positions and the points of edges.
template <typename Mesh, typename Visitor>
void ForEachMeshPoint(Mesh& mesh, Visitor&& visit) {
    for (auto& vertex : mesh.vertices) visit(vertex.position);
    for (auto* edges : {&mesh.edgesI, &mesh.edgesJ}) {
        for (auto& edge : *edges) {
            for (auto& point : edge) visit(point);
        }
    }
}

} // namespace workbench
