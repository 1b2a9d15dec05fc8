// The tables of suites/mesh.h over the front document.

#include "suites/mesh.h"

#include <cmath>
#include <utility>

#include "workbench/suites/color_check.h"
#include "workbench/suites/finite.h"
#include "workbench/suites/suite_call.h"

namespace workbench {

namespace {

// References.  One vertex and one segment are out at a time, so a plug-in that keeps an older one is found
// out at once.

template <typename Reference>
void TakeBack(HostState& host, std::unique_ptr<Reference>& reference) {
    if (reference) host.handles.Remove(reinterpret_cast<uintptr_t>(reference->handle));
    reference = nullptr;
}

template <typename Handle, typename Reference>
Handle GiveOut(HostState& host, HandleType type, std::unique_ptr<Reference>& place, Reference reference) {
    TakeBack(host, place);
    place = std::make_unique<Reference>(reference);
    place->handle = reinterpret_cast<Handle>(host.handles.Add(type, place.get()));
    return place->handle;
}

/// The mesh of a reference; null, with the fault told, if it is gone.
template <typename Reference>
MeshData* MeshOf(SuiteCall& call, const Reference& reference, const char* what) {
    Document* document = call.host().document.get();
    Art* art = document ? document->Find(reference.mesh) : nullptr;
    if (art) return &std::get<MeshData>(art->data);
    call.Fault(kHostBadHandle, BadHandleText(what, reference.handle));
    return nullptr;
}

MeshVertex* VertexOf(SuiteCall& call, const HostMeshVertex& reference) {
    MeshData* mesh = MeshOf(call, reference, "mesh vertex");
    return mesh ? &mesh->vertices[reference.vertex] : nullptr;
}

// AI Mesh Suite

HostError GetMeshType(SuiteCall&, Of<MeshData> mesh, int32_t& type) {
    type = mesh.data.type;
    return kHostNoError;
}

HostError GetGridSize(SuiteCall&, Of<MeshData> mesh, int32_t& i, int32_t& j) {
    i = mesh.data.gridI;
    j = mesh.data.gridJ;
    return kHostNoError;
}

template <int32_t type>
HostError InitGrid(SuiteCall& call, Of<MeshData> mesh, int32_t i, int32_t j) {
    if (!InitMesh(mesh.data, type, i, j)) return kHostBadParameter;
    HostState& host = call.host();
    if (host.meshVertex && host.meshVertex->mesh == mesh.art.handle) TakeBack(host, host.meshVertex);
    if (host.meshSegment && host.meshSegment->mesh == mesh.art.handle) TakeBack(host, host.meshSegment);
    return kHostNoError;
}

HostError GetNode(SuiteCall& call, Of<MeshData> mesh, int32_t i, int32_t j, MeshVertexHandle& vertex) {
    const ptrdiff_t found = MeshVertexAt(mesh.data, i, j);
    if (found < 0) return kHostNotFound;
    HostState& host = call.host();
    vertex = GiveOut<MeshVertexHandle>(host, HandleType::kMeshVertex, host.meshVertex,
                                       HostMeshVertex{nullptr, mesh.art.handle, static_cast<size_t>(found)});
    return kHostNoError;
}

// AI Mesh Vertex Suite

HostError GetEdgeCount(SuiteCall& call, HostMeshVertex& vertex, int32_t& count) {
    const MeshData* mesh = MeshOf(call, vertex, "mesh vertex");
    if (!mesh) return kHostBadHandle;
    count = 0;
    while (NthMeshDirection(*mesh, vertex.vertex, count) != kMeshDirections) ++count;
    return kHostNoError;
}

HostError GetVertexColor(SuiteCall& call, HostMeshVertex& vertex, HostColor& color) {
    const MeshVertex* own = VertexOf(call, vertex);
    if (!own) return kHostBadHandle;
    color = own->color;
    return kHostNoError;
}

HostError SetColor(SuiteCall& call, HostMeshVertex& vertex, const HostColor& color) {
    MeshVertex* own = VertexOf(call, vertex);
    if (!own) return kHostBadHandle;
    if (const HostError error = CheckColor(call, color)) return error;
    if (color.kind == kColorPattern || color.kind == kColorGradient) return kHostBadParameter;
    own->color = color;
    return kHostNoError;
}

HostError GetVertexPoint(SuiteCall& call, HostMeshVertex& vertex, HostPoint& point) {
    const MeshVertex* own = VertexOf(call, vertex);
    if (!own) return kHostBadHandle;
    point = own->position;
    return kHostNoError;
}

HostError SetVertexPoint(SuiteCall& call, HostMeshVertex& vertex, const HostPoint& point) {
    MeshVertex* own = VertexOf(call, vertex);
    if (!own) return kHostBadHandle;
    if (!IsFinite(point)) return kHostBadParameter;
    own->position = point;
    return kHostNoError;
}

/// Stored data may name an edge that isn't there, so that is no fault.
HostError SpokeOf(SuiteCall& call, const HostMeshVertex& vertex, int32_t edge, MeshDirection* direction,
                  MeshSpoke** spoke) {
    MeshData* mesh = MeshOf(call, vertex, "mesh vertex");
    if (!mesh) return kHostBadHandle;
    *direction = NthMeshDirection(*mesh, vertex.vertex, edge);
    if (*direction == kMeshDirections) return kHostBadParameter;
    *spoke = &mesh->vertices[vertex.vertex].spokes[*direction];
    return kHostNoError;
}

HostError GetTangent(SuiteCall& call, HostMeshVertex& vertex, int32_t edge, HostPoint& tangent) {
    MeshDirection direction{};
    MeshSpoke* spoke = nullptr;
    if (const HostError error = SpokeOf(call, vertex, edge, &direction, &spoke)) return error;
    tangent = spoke->tangent;
    return kHostNoError;
}

HostError SetTangent(SuiteCall& call, HostMeshVertex& vertex, int32_t edge, const HostPoint& tangent) {
    MeshDirection direction{};
    MeshSpoke* spoke = nullptr;
    if (const HostError error = SpokeOf(call, vertex, edge, &direction, &spoke)) return error;
    if (!IsFinite(tangent)) return kHostBadParameter;
    spoke->tangent = tangent;
    return kHostNoError;
}

HostError GetSmooth(SuiteCall& call, HostMeshVertex& vertex, int32_t edge, int32_t& smooth) {
    MeshDirection direction{};
    MeshSpoke* spoke = nullptr;
    if (const HostError error = SpokeOf(call, vertex, edge, &direction, &spoke)) return error;
    smooth = spoke->smooth ? 1 : 0;
    return kHostNoError;
}

HostError SetSmooth(SuiteCall& call, HostMeshVertex& vertex, int32_t edge, int32_t smooth) {
    MeshDirection direction{};
    MeshSpoke* spoke = nullptr;
    if (const HostError error = SpokeOf(call, vertex, edge, &direction, &spoke)) return error;
    spoke->smooth = smooth != 0;
    return kHostNoError;
}

HostError GetSegment(SuiteCall& call, HostMeshVertex& vertex, int32_t edge, MeshSegmentHandle& segment) {
    MeshDirection direction{};
    MeshSpoke* spoke = nullptr;
    if (const HostError error = SpokeOf(call, vertex, edge, &direction, &spoke)) return error;
    HostState& host = call.host();
    segment = GiveOut<MeshSegmentHandle>(host, HandleType::kMeshSegment, host.meshSegment,
                                         HostMeshSegment{nullptr, vertex.mesh, vertex.vertex, direction});
    return kHostNoError;
}

// AI Mesh Segment Suite

MeshEdgeView EdgeOf(SuiteCall& call, const HostMeshSegment& segment) {
    MeshData* mesh = MeshOf(call, segment, "mesh segment");
    return mesh ? MeshEdgeAt(*mesh, segment.vertex, segment.direction) : MeshEdgeView{};
}

HostError GetPointCount(SuiteCall& call, HostMeshSegment& segment, int32_t& count) {
    const MeshEdgeView edge = EdgeOf(call, segment);
    if (!edge.points) return kHostBadHandle;
    count = static_cast<int32_t>(edge.points->size());
    return kHostNoError;
}

HostError GetSegmentPoint(SuiteCall& call, HostMeshSegment& segment, int32_t index, HostPoint& point) {
    const MeshEdgeView edge = EdgeOf(call, segment);
    if (!edge.points) return kHostBadHandle;
    if (index < 0 || static_cast<size_t>(index) >= edge.points->size()) {
        return call.FaultUnlessRefused(kHostBadParameter, "a point beyond the segment");
    }
    point = edge.At(static_cast<size_t>(index));
    return kHostNoError;
}

HostError SetSegmentPoint(SuiteCall& call, HostMeshSegment& segment, int32_t index, const HostPoint& point) {
    const MeshEdgeView edge = EdgeOf(call, segment);
    if (!edge.points) return kHostBadHandle;
    if (index < 0 || static_cast<size_t>(index) > edge.points->size()) {
        return call.FaultUnlessRefused(kHostBadParameter, "points that leave a gap in the segment");
    }
    if (!IsFinite(point)) return kHostBadParameter;
    if (static_cast<size_t>(index) == edge.points->size())
        edge.Append(point);
    else
        edge.At(static_cast<size_t>(index)) = point;
    return kHostNoError;
}

} // namespace

const void* MeshSuiteTable() {
    static constexpr AIMeshSuite table{
        Entry<"AI Mesh Suite", "GetMeshType", GetMeshType>::Run,
        Entry<"AI Mesh Suite", "GetGridSize", GetGridSize>::Run,
        Entry<"AI Mesh Suite", "InitGridType0", InitGrid<kMeshGrid>>::Run,
        Entry<"AI Mesh Suite", "InitGridType1", InitGrid<kMeshRing>>::Run,
        Entry<"AI Mesh Suite", "GetNode", GetNode>::Run,
    };
    return &table;
}

const void* MeshVertexSuiteTable() {
    static constexpr AIMeshVertexSuite table{
        Entry<"AI Mesh Vertex Suite", "GetEdgeCount", GetEdgeCount>::Run,
        Entry<"AI Mesh Vertex Suite", "GetColor", GetVertexColor>::Run,
        Entry<"AI Mesh Vertex Suite", "SetColor", SetColor>::Run,
        Entry<"AI Mesh Vertex Suite", "GetPoint", GetVertexPoint>::Run,
        Entry<"AI Mesh Vertex Suite", "SetPoint", SetVertexPoint>::Run,
        Entry<"AI Mesh Vertex Suite", "GetTangent", GetTangent>::Run,
        Entry<"AI Mesh Vertex Suite", "SetTangent", SetTangent>::Run,
        Entry<"AI Mesh Vertex Suite", "GetSmooth", GetSmooth>::Run,
        Entry<"AI Mesh Vertex Suite", "SetSmooth", SetSmooth>::Run,
        Entry<"AI Mesh Vertex Suite", "GetSegment", GetSegment>::Run,
    };
    return &table;
}

const void* MeshSegmentSuiteTable() {
    static constexpr AIMeshSegmentSuite table{
        Entry<"AI Mesh Segment Suite", "GetPointCount", GetPointCount>::Run,
        Entry<"AI Mesh Segment Suite", "GetPoint", GetSegmentPoint>::Run,
        Entry<"AI Mesh Segment Suite", "SetPoint", SetSegmentPoint>::Run,
    };
    return &table;
}

} // namespace workbench
