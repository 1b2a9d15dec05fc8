#include <gmock/gmock.h>

#include <cstring>

#include "plugin/objects/object_layout.h"
#include "tests/plugin/rebuild/load_fixture.h"

using workbench::MeshData;

namespace {

class MeshRebuildTest : public LoadFixture {
protected:
    /// Appends a mesh whose n-th vertex lies at (n, 10), in the gray of n hundredths, with edges of two
    /// points at (n, k) and (n, -k), k being the edge's number, and one point in the list that is passed
    /// over.
    void Mesh(uint32_t type, uint32_t gridI, uint32_t gridJ, uint32_t vertices) {
        constexpr uint32_t kEdgeBytes = sizeof(AidbMeshEdge) + 3 * sizeof(FixedPoint), edges = 4;
        const auto vertexBytes = static_cast<uint32_t>(sizeof(AidbMeshVertex)) + edges * kEdgeBytes;
        const uint32_t size = kMeshBaseBytes + vertices * vertexBytes;
        uint8_t* at = AppendObject(globals->curRecord, kMeshObject, size);
        ASSERT_NE(at, nullptr);
        auto* mesh = reinterpret_cast<AidbMeshObject*>(at);
        mesh->header.opacity = Stored(0.5);
        mesh->meshType = type;
        mesh->gridI = gridI;
        mesh->gridJ = gridJ;
        mesh->vertexCount = vertices;
        at += kMeshBaseBytes;
        for (uint32_t n = 0; n < vertices; ++n) {
            auto* vertex = reinterpret_cast<AidbMeshVertex*>(at);
            vertex->size = vertexBytes;
            vertex->color.u.gray = Stored(n / 100.0);
            vertex->position = {Stored(n), Stored(10)};
            vertex->edgeCount = edges;
            at += sizeof *vertex;
            for (uint32_t k = 0; k < edges; ++k, at += kEdgeBytes) {
                auto* edge = reinterpret_cast<AidbMeshEdge*>(at);
                *edge = {kEdgeBytes, {Stored(5), Stored(k)}, static_cast<uint16_t>(k % 2), 0, 1, 2};
                const double height = k;
                const FixedPoint points[] = {
                    {Stored(99), Stored(99)}, {Stored(n), Stored(height)}, {Stored(n), Stored(-height)}};
                std::memcpy(at + sizeof *edge, points, sizeof points);
            }
        }
    }

    static const MeshData& NetOf(const workbench::Art& art) { return std::get<MeshData>(art.data); }

    /// The x of the vertices, by i, then j.
    static std::vector<double> Places(const workbench::Art& art) {
        std::vector<double> places;
        for (const auto& vertex : NetOf(art).vertices) places.push_back(vertex.position.x);
        return places;
    }

    void ExpectNoFaults() { ASSERT_EQ(host().faults(), std::vector<std::string>()); }
};

TEST_F(MeshRebuildTest, VerticesAreUsedInOrderUntilTheyEnd) {
    const struct {
        const char* what;
        uint32_t type, gridI, gridJ, vertices;
        std::vector<double> places;
    } cases[] = {
        {"too few for the net", 0, 1, 2, 4, {0, 1, 2, 3, 0, 0}},
        {"more than the net has", 0, 1, 1, 9, {0, 1, 2, 3}},
        {"none at all", 0, 1, 1, 0, {0, 0, 0, 0}},
        // Node (2, b) is node (0, b) once more.
        {"a ring", 1, 2, 1, 6, {4, 5, 2, 3}},
        {"no net", 0, 0, 0, 4, {}},
        {"a net beyond the host's", 0, 0x7FFFFFFF, 0x7FFFFFFF, 4, {}},
        {"a net beyond its numbers", 1, 0x80000000, 1, 4, {}},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.what);
        NewRecordOf(100, 50);
        OpenEmptyDocument();
        Mesh(each.type, each.gridI, each.gridJ, each.vertices);
        Load();
        EXPECT_EQ(Places(First()), each.places);
        if (each.places.size() == 4 && each.vertices == 9) {
            EXPECT_EQ(NetOf(First()).edgesI[0][1].y, 1); // the third vertex' edge to the left
        }
        ExpectNoFaults();
    }
}

// What a refused call costs: the row behind a node, the edges behind a segment, and no more.
TEST_F(MeshRebuildTest, ARefusedNodeOrSegmentCostsWhatIsBehindIt) {
    Mesh(0, 1, 2, 6);
    std::vector<uint64_t> nodes, segments;
    const uint64_t before = host().callCount();
    host().SetTrace([&](const std::string& line) {
        if (line.find("GetNode") != std::string::npos) nodes.push_back(std::stoull(line) - before);
        if (line.find("GetSegment") != std::string::npos) segments.push_back(std::stoull(line) - before);
    });
    Load();
    host().SetTrace({});
    ASSERT_EQ(nodes.size(), 6u);
    ASSERT_FALSE(segments.empty());
    const auto load = [this](uint64_t refused) {
        OpenEmptyDocument();
        host().RefuseCall(refused);
        Load();
        host().RefuseNone();
    };
    load(nodes[1]); // (0, 2) isn't asked for, and (1, 0) gets the vertex that was meant for (0, 1)
    EXPECT_EQ(Places(First()), (std::vector<double>{0, 0, 0, 1, 2, 3}));
    load(segments[0]);
    EXPECT_EQ(NetOf(First()).vertices[0].spokes[workbench::kForwardJ].tangent.x, 0);
    EXPECT_EQ(NetOf(First()).vertices[1].spokes[workbench::kForwardI].tangent.x, 5);
}

TEST_F(MeshRebuildTest, AnUnknownTypeEndsTheLoadWithoutASound) {
    Path(1);
    Mesh(2, 1, 1, 4);
    Path(3);
    const auto beeps = BeepsSoFar();
    Load();
    EXPECT_EQ(Page(), "x() p3");
    ExpectBeeps(beeps, 0);
}

TEST_F(MeshRebuildTest, AnyRefusedCallLeavesTheHostUsedWell) {
    Mesh(1, 2, 1, 6);
    Mesh(0, 1, 1, 4);
    for (const bool all : {false, true}) RefuseEachCall([](HostError) {}, all);
}

} // namespace
