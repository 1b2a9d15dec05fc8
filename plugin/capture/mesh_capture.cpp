#include "plugin/capture/mesh_capture.h"

#include "plugin/capture/art_paint.h"
#include "plugin/capture/custom_colors.h"
#include "plugin/host/suites.h"
#include "plugin/objects/conversions.h"
#include "plugin/objects/object_stream.h"
#include "plugin/store/trace.h"

namespace {

/// A net grows to many small pieces, so its block grows in large steps.
constexpr uint64_t kMeshGrain = 0x20000;

/// The object in the making.
struct MeshWriter {
    MemoryHandle& object;
    HostPoint origin;
    uint64_t used = 0;
    bool outOfMemory = false;

    /// Room for one more structure, all 0; null if memory ran out.
    template <typename Structure>
    Structure* Add() {
        uint8_t* place = GrowObject(object, used, sizeof(Structure), kMeshGrain);
        outOfMemory = outOfMemory || !place;
        return reinterpret_cast<Structure*>(place);
    }

    /// A structure that was added before; the block may have moved since.
    template <typename Structure>
    Structure* At(uint64_t offset) const {
        return reinterpret_cast<Structure*>(BlockBytes(object) + offset);
    }
};

HostPoint Relative(const MeshWriter& writer, HostPoint point) {
    return {point.x - writer.origin.x, point.y - writer.origin.y};
}

HostError AddPoints(MeshWriter& writer, MeshSegmentHandle segment, uint64_t edge) {
    int32_t count = 0;
    HostError error = MeshSegmentSuite().GetPointCount(segment, &count);
    for (int32_t index = 0; !error && index < count; ++index) {
        HostPoint point{};
        error = MeshSegmentSuite().GetPoint(segment, index, &point);
        if (error) break;
        auto* stored = writer.Add<FixedPoint>();
        if (!stored) return kHostOutOfMemory;
        PointToRecord(Relative(writer, point), stored);
        ++writer.At<AidbMeshEdge>(edge)->secondCount;
    }
    return error;
}

/// Adds edge `number`.  One that the host gives in part leaves nothing.
HostError AddEdge(MeshWriter& writer, MeshVertexHandle vertex, int32_t number) {
    HostPoint tangent{};
    int32_t smooth = 0;
    MeshSegmentHandle segment = nullptr;
    HostError error = MeshVertexSuite().GetTangent(vertex, number, &tangent);
    if (!error) error = MeshVertexSuite().GetSmooth(vertex, number, &smooth);
    if (!error) error = MeshVertexSuite().GetSegment(vertex, number, &segment);
    if (error) return error;

    const uint64_t edge = writer.used;
    auto* stored = writer.Add<AidbMeshEdge>();
    if (!stored) return kHostOutOfMemory;
    PointToRecord(tangent, &stored->tangent);
    stored->flag = static_cast<uint16_t>(smooth);
    error = AddPoints(writer, segment, edge);
    if (error)
        writer.used = edge;
    else
        writer.At<AidbMeshEdge>(edge)->size = static_cast<uint32_t>(writer.used - edge);
    return error;
}

HostColor ReadColor(MeshVertexHandle vertex) {
    HostColor color{};
    if (MeshVertexSuite().GetColor(vertex, &color)) color = HostColor{};
    const bool plain = color.kind == kColorGray || color.kind == kColorFour || color.kind == kColorThree;
    if (color.kind == kColorCustom) {
        RegisterCustomColor(color.u.custom.color);
    } else if (!plain) {
        color = HostColor{};
        color.kind = kColorGray;
    }
    return color;
}

HostError AddVertex(MeshWriter& writer, ArtHandle mesh, int32_t i, int32_t j) {
    MeshVertexHandle vertex = nullptr;
    int32_t edges = 0;
    HostError error = MeshSuite().GetNode(mesh, i, j, &vertex);
    if (!error) error = MeshVertexSuite().GetEdgeCount(vertex, &edges);
    if (error || edges < 1) return error;

    const uint64_t start = writer.used;
    HostPoint position = writer.origin;
    if (MeshVertexSuite().GetPoint(vertex, &position)) position = writer.origin;
    const HostColor color = ReadColor(vertex);
    auto* stored = writer.Add<AidbMeshVertex>();
    if (!stored) return kHostOutOfMemory;
    ColorToRecord(color, &stored->color);
    PointToRecord(Relative(writer, position), &stored->position);

    uint32_t kept = 0;
    for (; !error && kept < static_cast<uint32_t>(edges); kept += error ? 0 : 1) {
        error = AddEdge(writer, vertex, static_cast<int32_t>(kept));
    }
    auto* done = writer.At<AidbMeshVertex>(start);
    done->edgeCount = kept;
    done->size = static_cast<uint32_t>(writer.used - start);
    ++writer.At<AidbMeshObject>(0)->vertexCount;
    return error;
}

HostError AddNet(MeshWriter& writer, ArtHandle mesh) {
    int32_t type = 0, gridI = 0, gridJ = 0;
    HostError error = MeshSuite().GetMeshType(mesh, &type);
    if (!error) error = MeshSuite().GetGridSize(mesh, &gridI, &gridJ);
    if (error) return error;
    auto* stored = writer.Add<AidbMeshObject>();
    if (!stored) return kHostOutOfMemory;
    stored->header.type = kMeshObject;
    stored->meshType = static_cast<uint32_t>(type);
    stored->gridI = static_cast<uint32_t>(gridI);
    stored->gridJ = static_cast<uint32_t>(gridJ);
    CaptureBlend(mesh, &stored->header);

    for (int64_t i = 0; i <= gridI && !writer.outOfMemory; ++i) {
        for (int64_t j = 0; j <= gridJ && !writer.outOfMemory; ++j)
            error = AddVertex(writer, mesh, static_cast<int32_t>(i), static_cast<int32_t>(j));
    }
    writer.At<AidbMeshObject>(0)->header.size = static_cast<uint32_t>(writer.used);
    return error;
}

} // namespace

HostError PostArtMeshProcess(ArtHandle mesh, MemoryHandle& object, const HostPoint& origin) {
    const TraceScope trace("PostArtMeshProcess");
    MeshWriter writer{object, origin};
    const HostError error = AddNet(writer, mesh);
    if (writer.outOfMemory || writer.used == 0) FreeHandle(object);
    return writer.outOfMemory ? kHostOutOfMemory : error;
}
