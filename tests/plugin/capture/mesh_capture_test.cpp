#include <cstring>

#include "plugin/objects/byte_order.h"
#include "plugin/objects/object_stream.h"
#include "tests/plugin/capture/capture_fixture.h"
#include "tests/plugin/objects/object_bytes.h"

using workbench::Art;
using workbench::MeshData;

namespace {

class MeshCaptureTest : public CaptureTest {
protected:
    /// A square net of one patch from (10, 20) to (13, 26), its edges straight.
    MeshData& AddSquare() {
        Art& art = *document().AppendArt(kArtMesh, &root());
        auto& mesh = std::get<MeshData>(art.data);
        InitMesh(mesh, workbench::kMeshGrid, 1, 1);
        mesh.vertices[0].position = {10, 20};
        mesh.vertices[1].position = {10, 26};
        mesh.vertices[2].position = {13, 20};
        mesh.vertices[3].position = {13, 26};
        StraightenMesh(mesh);
        return mesh;
    }

    static std::vector<uint8_t> MeshObject() {
        for (auto& object : ObjectsOf(globals->curRecord))
            if (HeaderOf(object)->type == kMeshObject) return object;
        return {};
    }

    /// The vertices of a mesh object with their edges; fails the test if sizes and counts disagree.
    static std::vector<Bytes> VerticesOf(std::vector<uint8_t> object) {
        const auto* mesh = ViewAt<AidbMeshObject>(object);
        std::vector<Bytes> vertices;
        size_t at = kMeshBaseBytes;
        for (uint32_t i = 0; i < mesh->vertexCount; ++i) {
            const auto* vertex = ViewAt<AidbMeshVertex>(object, at);
            if (!vertex || vertex->size > object.size() - at) {
                ADD_FAILURE() << "vertex " << i << " isn't whole";
                return vertices;
            }
            size_t inside = at + sizeof *vertex;
            for (uint32_t k = 0; k < vertex->edgeCount; ++k) {
                const auto* edge = ViewAt<AidbMeshEdge>(object, inside);
                EXPECT_EQ(edge->size, 24 + 8 * (edge->firstCount + edge->secondCount));
                EXPECT_EQ(edge->firstCount, 0u);
                inside += edge->size;
            }
            EXPECT_EQ(inside, at + vertex->size);
            vertices.emplace_back(object.begin() + static_cast<std::ptrdiff_t>(at),
                                  object.begin() + static_cast<std::ptrdiff_t>(inside));
            at = inside;
        }
        EXPECT_EQ(at, object.size());
        return vertices;
    }
};

TEST_F(MeshCaptureTest, ASquareIsStoredByteForByte) {
    MeshData& mesh = AddSquare();
    mesh.vertices[0].color = workbench::ThreeColor(1, 0.5, 0);
    mesh.vertices[1].color = workbench::FourColor(0, 1, 0, 0.25);
    mesh.vertices[2].color = workbench::GrayColor(0.5);
    mesh.vertices[1].spokes[workbench::kBackJ] = {{7, -8}, true};
    root().firstChild->blend = {workbench::kBlendScreen, 0.5, 1, 2, 1};
    CaptureAll();
    SwapRecordToStore(globals->curRecord);
    StoredBytes expected;
    expected
        .Hex("0000000B 000002B8 00000002 00008000 0001 0002 0001 0000") // 40 + 4 x 164 bytes
        .Hex("00000000 00000001 00000001 00000004")                     // a grid of 1 by 1, four vertices
        // (0, 0), three-colour, two edges: to the right, up
        .Hex("000000A4 0005 0000 00010000 00008000 00000000")
        .Fill(52)
        .Hex("00000000 00000000 00000002")
        .Hex("00000028 00010000 00000000 0000 0000 00000000 00000002 00010000 00000000 00020000 00000000")
        .Hex("00000028 00000000 00020000 0000 0000 00000000 00000002 00000000 00020000 00000000 00040000")
        // (0, 6), four-colour: to the right, down with a tangent that is stored as it came and a flag
        .Hex("000000A4 0001 0000 00000000 00010000 00000000 00004000")
        .Fill(48)
        .Hex("00000000 00060000 00000002")
        .Hex("00000028 00010000 00000000 0000 0000 00000000 00000002 00010000 00060000 00020000 00060000")
        .Hex("00000028 00070000 FFF80000 0001 0000 00000000 00000002 00000000 00040000 00000000 00020000")
        // (3, 0), gray: up, to the left
        .Hex("000000A4 0000 0000 00008000")
        .Fill(60)
        .Hex("00030000 00000000 00000002")
        .Hex("00000028 00000000 00020000 0000 0000 00000000 00000002 00030000 00020000 00030000 00040000")
        .Hex("00000028 FFFF0000 00000000 0000 0000 00000000 00000002 00020000 00000000 00010000 00000000")
        // (3, 6), white: to the left, down
        .Hex("000000A4 0000 0000 00000000")
        .Fill(60)
        .Hex("00030000 00060000 00000002")
        .Hex("00000028 FFFF0000 00000000 0000 0000 00000000 00000002 00020000 00060000 00010000 00060000")
        .Hex("00000028 00000000 FFFE0000 0000 0000 00000000 00000002 00030000 00040000 00030000 00020000");
    const auto* record = BlockBytes(globals->curRecord);
    EXPECT_EQ(Bytes(record + kObjectsOffset, record + kObjectsOffset + expected.bytes().size()),
              expected.bytes());
}

TEST_F(MeshCaptureTest, CustomColoursAreEnteredAndPaintsWithoutAValueBecomeWhite) {
    MeshData& mesh = AddSquare();
    mesh.vertices[0].color = PaintOf(document().NewCustomColor("Ink", {kCustomThree, {1, 0, 0, 0}, 0}), 0.25);
    mesh.vertices[1].color = PaintOf(AddPattern());
    CaptureAll();
    EXPECT_EQ(Stream(), (Strings{"object 11", "CustomColor001 = \"Ink\", 3, 0, 100, 0, 0"}));
    const auto vertices = VerticesOf(MeshObject());
    ASSERT_EQ(vertices.size(), 4u);
    AidbMeshVertex vertex;
    std::memcpy(&vertex, vertices[0].data(), sizeof vertex);
    EXPECT_EQ(vertex.color.reference, 1 << 8 | 50);
    std::memcpy(&vertex, vertices[1].data(), sizeof vertex);
    EXPECT_EQ(vertex.color.kind, kStoredGray);
    EXPECT_EQ(vertex.color.u.gray, 0);
}

// A net without vertices, and an object that the walk has no business with.
TEST_F(MeshCaptureTest, OnlyWhatIsSelectedIsStoredAndAMeshWithoutANetIsEmpty) {
    document().AppendArt(kArtMesh, &root());
    AddSquare();
    document().Select(*root().firstChild, true);
    Capture();
    EXPECT_EQ(Stream(), Strings{"object 11"});
    EXPECT_EQ(MeshObject().size(), kMeshBaseBytes);
}

// Whatever call is refused, the object is whole, and each vertex in it is one of the mesh, at most with fewer
// edges or without its colour or place.
TEST_F(MeshCaptureTest, ARefusedCallCostsAVertexOrTheEdgesBehindIt) {
    AddSquare().vertices[0].color =
        PaintOf(document().NewCustomColor("Ink", {kCustomThree, {1, 0, 0, 0}, 0}));
    const uint64_t before = host().callCount();
    CaptureAll();
    const uint64_t calls = host().callCount() - before;
    const size_t whole = MeshObject().size();
    size_t shorter = 0, missing = 0;
    for (uint64_t n = 1; n <= calls; ++n) {
        SCOPED_TRACE(n);
        host().RefuseCall(n);
        AidbPostArt();
        host().RefuseNone();
        ASSERT_NE(globals->curRecord, nullptr);
        const auto object = MeshObject();
        if (object.empty()) continue;
        const size_t vertices = VerticesOf(object).size();
        EXPECT_GE(vertices, 3u);
        missing += vertices == 3;
        shorter += object.size() < whole;
        ASSERT_TRUE(host().faults().empty()) << host().faults().front();
    }
    EXPECT_EQ(missing, 8u);                   // four nodes, and how many edges each has
    EXPECT_EQ(shorter, missing + 4 * 2 * 6u); // tangent, flag, segment, count and two points of eight edges
}

} // namespace
