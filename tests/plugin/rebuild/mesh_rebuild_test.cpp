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
    void Mesh(uint32_t type, uint32_t gridI, uint32_t gridJ, uint32_t vertices, uint32_t edges = 4) {
        constexpr uint32_t kEdgeBytes = sizeof(AidbMeshEdge) + 3 * sizeof(FixedPoint);
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

    /// Numbers of the calls of an operation that a load makes.
    std::vector<uint64_t> CallsOf(const std::string& operation) {
        std::vector<uint64_t> calls;
        const uint64_t before = host().callCount();
        uint64_t last = before;
        host().SetTrace([&](const std::string& line) {
            last = std::stoull(line);
            if (line.find(operation) != std::string::npos) calls.push_back(last - before);
        });
        Load();
        host().SetTrace({});
        return calls;
    }

    void ExpectNoFaults() { ASSERT_EQ(host().faults(), std::vector<std::string>()); }
};

TEST_F(MeshRebuildTest, PlacesMoveAndTangentsDont) {
    Mesh(0, 1, 1, 4, 2);
    globals->placePoint = {1000, 500};
    Load();
    const MeshData& mesh = NetOf(First());
    EXPECT_EQ(First().blend.opacity, 0.5);
    EXPECT_EQ(Places(First()), (std::vector<double>{1000, 1001, 1002, 1003}));
    EXPECT_EQ(mesh.vertices[2].position.y, 510);
    EXPECT_NEAR(mesh.vertices[2].color.u.gray.gray, 0.02, 1e-4);
    // The third vertex' edges lead up and to the left; of a shared edge, the later vertex has the last word.
    EXPECT_EQ(mesh.vertices[2].spokes[workbench::kForwardJ].smooth, false);
    EXPECT_EQ(mesh.vertices[2].spokes[workbench::kBackI].smooth, true);
    EXPECT_EQ(mesh.vertices[2].spokes[workbench::kBackI].tangent.x, 5);
    EXPECT_EQ(mesh.vertices[2].spokes[workbench::kBackI].tangent.y, 1);
    ASSERT_EQ(mesh.edgesI[0].size(), 2u);
    EXPECT_EQ(mesh.edgesI[0][1].x, 1002);
    EXPECT_EQ(mesh.edgesI[0][1].y, 501);
    EXPECT_EQ(mesh.edgesI[0][0].y, 499);
}

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
        ExpectNoFaults();
    }
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

TEST_F(MeshRebuildTest, ANodeThatCantBeHadEndsItsRowAndNoMore) {
    Mesh(0, 1, 2, 6);
    const auto nodes = CallsOf("GetNode");
    ASSERT_EQ(nodes.size(), 6u);
    OpenEmptyDocument();
    host().RefuseCall(nodes[1]);
    Load();
    host().RefuseNone();
    // Node (0, 1) is refused: (0, 2) isn't asked for, and (1, 0) gets the vertex that was meant for (0, 1).
    EXPECT_EQ(Places(First()), (std::vector<double>{0, 0, 0, 1, 2, 3}));
}

TEST_F(MeshRebuildTest, ASegmentThatCantBeHadEndsTheEdgesOfItsVertex) {
    Mesh(0, 1, 1, 4, 2);
    const auto segments = CallsOf("GetSegment");
    ASSERT_EQ(segments.size(), 8u);
    OpenEmptyDocument();
    host().RefuseCall(segments[0]);
    Load();
    host().RefuseNone();
    EXPECT_EQ(NetOf(First()).vertices[0].spokes[workbench::kForwardJ].tangent.x, 0);
    EXPECT_EQ(NetOf(First()).vertices[1].spokes[workbench::kForwardI].tangent.x, 5);
}

TEST_F(MeshRebuildTest, AnyRefusedCallLeavesTheHostUsedWell) {
    Mesh(1, 2, 1, 6);
    Mesh(0, 1, 1, 4);
    CallsOf("-"); // stores the record
    const uint64_t before = host().callCount();
    Load();
    const uint64_t calls = host().callCount() - before;
    for (const bool all : {false, true}) {
        for (uint64_t n = 1; n <= calls; ++n) {
            OpenEmptyDocument();
            all ? host().RefuseFrom(n) : host().RefuseCall(n);
            Load();
            host().RefuseNone();
            ExpectNoFaults();
        }
    }
}

// Each word of the object in turn says what can't be.
TEST_F(MeshRebuildTest, DamageStaysWithinTheObject) {
    NewRecordOf(100, 50);
    Path(1);
    Mesh(0, 1, 1, 2, 2);
    const auto object = ObjectOffsets(globals->curRecord).Object(globals->curRecord, 1);
    const std::vector<uint8_t> whole(object.begin(), object.end());
    for (size_t at = kMeshBaseBytes - 16; at + 4 <= whole.size(); at += 4) {
        for (const uint32_t value : {0u, 1u, 23u, 83u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
            SCOPED_TRACE(testing::Message() << "word at " << at << ": " << value);
            OpenEmptyDocument();
            const auto place = ObjectOffsets(globals->curRecord).Object(globals->curRecord, 1);
            std::memcpy(place.data(), whole.data(), whole.size());
            std::memcpy(place.data() + at, &value, sizeof value);
            RebuildCurrentRecord({});
            ASSERT_NE(Root().firstChild, nullptr);
            const bool otherType = at == offsetof(AidbMeshObject, meshType) && value > 1;
            EXPECT_EQ(Page(), otherType ? "x()" : "p1 x()");
            ExpectNoFaults();
        }
    }
}

} // namespace
