#include "tests/support/random_mesh.h"

using workbench::MeshData;

void MakeRandomMesh(MeshData& mesh, bool recordable, std::mt19937& random,
                    const std::function<HostPoint()>& point, const std::function<HostColor()>& color) {
    const auto below = [&random](int bound) { return std::uniform_int_distribution<>(0, bound - 1)(random); };
    InitMesh(mesh, below(2), 1 + below(3), 1 + below(3));
    for (workbench::MeshVertex& vertex : mesh.vertices) vertex.color = color();
    for (size_t i = 0; i < mesh.vertices.size(); ++i) {
        for (int number = 0;; ++number) {
            const workbench::MeshDirection direction = NthMeshDirection(mesh, i, number);
            if (direction == workbench::kMeshDirections) break;
            mesh.vertices[i].spokes[direction] = {point(), below(2) == 1};
        }
    }
    for (auto* edges : {&mesh.edgesI, &mesh.edgesJ}) {
        for (workbench::MeshEdge& edge : *edges) edge.resize(static_cast<size_t>(recordable ? 2 : below(5)));
    }
    ForEachMeshPoint(mesh, [&](HostPoint& each) { each = point(); });
}
