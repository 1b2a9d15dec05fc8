#include "plugin/objects/byte_order.h"
#include "plugin/objects/object_stream.h"
#include "tests/plugin/capture/capture_fixture.h"
#include "tests/plugin/objects/object_bytes.h"

using workbench::Art;
using workbench::MeshData;

namespace {

constexpr size_t kVertexBytes = 164; // with two edges of two points

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
    document().AppendArt(kArtMesh, &root()); // a net without vertices
    MeshData& mesh = AddSquare();
    mesh.vertices[0].color = PaintOf(document().NewCustomColor("Ink", {kCustomThree, {1, 0, 0, 0}, 0}), 0.25);
    mesh.vertices[1].color = PaintOf(AddPattern());
    CaptureAll();
    EXPECT_EQ(Stream(), (Strings{"object 11", "object 11", "CustomColor001 = \"Ink\", 3, 0, 100, 0, 0"}));
    auto objects = ObjectsOf(globals->curRecord);
    EXPECT_EQ(objects[0].size(), kMeshBaseBytes);
    ASSERT_EQ(objects[1].size(), kMeshBaseBytes + 4 * kVertexBytes);
    EXPECT_EQ(ViewAt<AidbMeshVertex>(objects[1], kMeshBaseBytes)->color.reference, 1 << 8 | 50);
    const AidbColor& white = ViewAt<AidbMeshVertex>(objects[1], kMeshBaseBytes + kVertexBytes)->color;
    EXPECT_EQ(white.kind, kStoredGray);
    EXPECT_EQ(white.u.gray, 0);
}

} // namespace
