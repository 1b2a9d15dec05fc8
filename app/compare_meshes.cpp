#include "app/compare_meshes.h"

using workbench::MeshData;
using workbench::MeshVertex;

namespace {

/// Places, and what a load adds to them, are stored each by itself, and the sum is narrowed again.
void ComparePoints(HostPoint expected, HostPoint actual, const MeshFrame& frame, const std::string& place,
                   const char* what, DifferenceList* differences) {
    const auto near = [&](double from, double to, double origin, double offset, const char* axis) {
        const double room =
            ToleranceOf(from - origin) + ToleranceOf(offset) + ToleranceOf(from - origin + offset);
        differences->Near(from - origin + offset, to, room, place, (std::string(what) + axis).c_str());
    };
    near(expected.x, actual.x, frame.origin.x, frame.offset.x, " x");
    near(expected.y, actual.y, frame.origin.y, frame.offset.y, " y");
}

void CompareEdges(const std::vector<workbench::MeshEdge>& expected,
                  const std::vector<workbench::MeshEdge>& actual, const MeshFrame& frame,
                  const std::string& place, DifferenceList* differences) {
    for (size_t i = 0; i < expected.size(); ++i) {
        const std::string edge = place + " " + std::to_string(i);
        if (expected[i].size() != actual[i].size()) {
            differences->Report(edge, "points", static_cast<double>(expected[i].size()),
                                static_cast<double>(actual[i].size()));
            continue;
        }
        for (size_t n = 0; n < expected[i].size(); ++n)
            ComparePoints(expected[i][n], actual[i][n], frame, edge, "point", differences);
    }
}

} // namespace

void CompareMeshes(
    const MeshData& expected, const MeshData& actual, const MeshFrame& frame, const std::string& place,
    DifferenceList* differences,
    const std::function<void(const HostColor&, const HostColor&, const std::string&)>& compareColors) {
    differences->Same(expected.type, actual.type, place, "mesh type");
    differences->Same(expected.gridI, actual.gridI, place, "patches across");
    differences->Same(expected.gridJ, actual.gridJ, place, "patches up");
    // Equal sizes and type make equal nets.
    if (expected.type != actual.type || expected.gridI != actual.gridI || expected.gridJ != actual.gridJ)
        return;
    for (size_t i = 0; i < expected.vertices.size(); ++i) {
        const MeshVertex &a = expected.vertices[i], &b = actual.vertices[i];
        const std::string vertex = place + " corner " + std::to_string(i);
        ComparePoints(a.position, b.position, frame, vertex, "place", differences);
        compareColors(a.color, b.color, vertex);
        for (int32_t number = 0;; ++number) {
            const workbench::MeshDirection direction = NthMeshDirection(expected, i, number);
            if (direction == workbench::kMeshDirections) break;
            const workbench::MeshSpoke &from = a.spokes[direction], &to = b.spokes[direction];
            differences->Near(from.tangent.x, to.tangent.x, vertex, "tangent x");
            differences->Near(from.tangent.y, to.tangent.y, vertex, "tangent y");
            differences->Same(from.smooth, to.smooth, vertex, "smooth");
        }
    }
    CompareEdges(expected.edgesI, actual.edgesI, frame, place + " edge across", differences);
    CompareEdges(expected.edgesJ, actual.edgesJ, frame, place + " edge up", differences);
}
