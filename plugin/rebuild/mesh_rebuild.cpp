#include "plugin/rebuild/mesh_rebuild.h"

#include "plugin/host/suites.h"
#include "plugin/objects/conversions.h"
#include "plugin/objects/object_stream.h"
#include "plugin/rebuild/art_paint.h"

/// What is added to stored points, in their own unit.
static FixedPoint StoredOffset(const LoadState& load) {
    const HostPoint offset = PlacementOffset(load);
    return {HostRealToFixed(offset.x), HostRealToFixed(offset.y)};
}

/// A sum beyond the range goes round, as that of two 32-bit numbers does.
static Fixed Sum(Fixed a, Fixed b) {
    return static_cast<Fixed>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}

static HostPoint MovedPoint(const FixedPoint& stored, const FixedPoint& offset) {
    HostPoint point{};
    PointFromRecord({Sum(stored.x, offset.x), Sum(stored.y, offset.y)}, &point);
    return point;
}

/// The first `size` bytes, `size` being what a part says of itself; empty if it doesn't hold its own start or
/// reaches beyond the rest.
template <typename Start>
static std::span<uint8_t> Part(std::span<uint8_t> rest) {
    const Start* start = ViewAt<Start>(rest);
    if (!start || start->size < sizeof(Start) || start->size > rest.size()) return {};
    return rest.first(start->size);
}

/// False if the host doesn't give the segment.
static bool SetEdge(MeshVertexHandle vertex, int32_t number, std::span<uint8_t> bytes,
                    const FixedPoint& offset) {
    const AidbMeshEdge& stored = *ViewAt<AidbMeshEdge>(bytes);
    HostPoint tangent{};
    PointFromRecord(stored.tangent, &tangent);
    MeshVertexSuite().SetTangent(vertex, number, &tangent);
    MeshVertexSuite().SetSmooth(vertex, number, stored.flag);
    MeshSegmentHandle segment = nullptr;
    if (MeshVertexSuite().GetSegment(vertex, number, &segment) != kHostNoError) return false;

    const uint64_t second = sizeof stored + uint64_t{stored.firstCount} * sizeof(FixedPoint);
    int32_t index = 0;
    for (const FixedPoint& one : ViewsAt<FixedPoint>(bytes, second, stored.secondCount)) {
        const HostPoint point = MovedPoint(one, offset);
        // Points behind one that the host doesn't take would leave a gap.
        if (MeshSegmentSuite().SetPoint(segment, index++, &point) != kHostNoError) break;
    }
    return true;
}

static void SetVertex(MeshVertexHandle vertex, std::span<uint8_t> bytes, const FixedPoint& offset) {
    const AidbMeshVertex& stored = *ViewAt<AidbMeshVertex>(bytes);
    HostColor color{};
    ColorFromRecord(stored.color, &color);
    KeepPlainColor(&color);
    const HostPoint position = MovedPoint(stored.position, offset);
    MeshVertexSuite().SetColor(vertex, &color);
    MeshVertexSuite().SetPoint(vertex, &position);

    auto rest = bytes.subspan(sizeof stored);
    for (uint32_t number = 0; number < stored.edgeCount; ++number) {
        const auto edge = Part<AidbMeshEdge>(rest);
        if (edge.empty() || !SetEdge(vertex, static_cast<int32_t>(number), edge, offset)) return;
        rest = rest.subspan(edge.size());
    }
}

static void SetNet(ArtHandle mesh, std::span<uint8_t> object, const FixedPoint& offset) {
    const AidbMeshObject& stored = *ViewAt<AidbMeshObject>(object);
    auto rest = object.subspan(kMeshBaseBytes);
    uint32_t left = stored.vertexCount;
    for (int64_t a = 0; a <= stored.gridI; ++a) {
        for (int64_t b = 0; b <= stored.gridJ; ++b) {
            const auto bytes = left > 0 ? Part<AidbMeshVertex>(rest) : std::span<uint8_t>();
            if (bytes.empty()) return;
            MeshVertexHandle vertex = nullptr;
            if (MeshSuite().GetNode(mesh, static_cast<int32_t>(a), static_cast<int32_t>(b), &vertex) !=
                kHostNoError)
                break;
            SetVertex(vertex, bytes, offset);
            rest = rest.subspan(bytes.size());
            --left;
        }
    }
}

LoadStep LoadArtMeshProcess(LoadState& load, std::span<uint8_t> object) {
    const AidbMeshObject* stored = ViewAt<AidbMeshObject>(object);
    if (!stored) return LoadStep::kGoOn;
    ArtHandle mesh = nullptr;
    if (NewLoadedArt(load, kArtMesh, &mesh) != kHostNoError) return LoadStep::kGoOn;
    SetBlend(mesh, stored->header);

    if (stored->meshType > 1) return LoadStep::kStop;
    // A size beyond the host's numbers comes as one below 0, which it refuses; and without a net there is no
    // node to ask for.
    const auto init = stored->meshType == 0 ? MeshSuite().InitGridType0 : MeshSuite().InitGridType1;
    load.lastResult = init(mesh, static_cast<int32_t>(stored->gridI), static_cast<int32_t>(stored->gridJ));
    if (load.lastResult == kHostNoError) SetNet(mesh, object, StoredOffset(load));
    return LoadStep::kGoOn;
}
