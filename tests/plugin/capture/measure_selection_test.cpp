#include "plugin/capture/measure_selection.h"

#include "tests/plugin/capture/capture_fixture.h"

using workbench::Art;

namespace {

class MeasureTest : public CaptureTest {
protected:
    static void ExpectRect(const HostRect& rect, const HostRect& expected) {
        EXPECT_EQ(rect.left, expected.left);
        EXPECT_EQ(rect.top, expected.top);
        EXPECT_EQ(rect.right, expected.right);
        EXPECT_EQ(rect.bottom, expected.bottom);
    }
    static HostRect Measure(bool hostBounds) {
        HostRect rect{};
        MeasureSelection(&rect, hostBounds);
        return rect;
    }

    /// A wave over and under the x axis; each of its two pieces swings out by 0.75 of its handles.
    Art& AddWave(bool closed) {
        Art& path = *document().AppendArt(kArtPath, &root());
        path.path()->segments = {{{0, 0}, {0, -100}, {0, 100}, 0}, {{80, 0}, {80, 100}, {80, -100}, 0}};
        path.path()->closed = closed;
        return path;
    }
};

TEST_F(MeasureTest, CurvesCountByTheirPointsOrByTheirHandles) {
    AddWave(false);
    document().SelectAll();
    // An open end isn't sampled: the last step before it lies at t = 63/64.
    const double t = 63 / 64.0;
    const HostRect exact = Measure(false);
    EXPECT_EQ(exact.left, 0);
    EXPECT_EQ(exact.top, 75);
    EXPECT_EQ(exact.right, static_cast<float>(80 * (3 * t * t * (1 - t) + t * t * t)));
    EXPECT_EQ(exact.bottom, 0);
    EXPECT_EQ(Measure(true).top, 100);

    OpenEmptyDocument();
    AddWave(true); // the closing piece counts
    document().SelectAll();
    ExpectRect(Measure(false), {0, 75, 80, -75});
}

TEST_F(MeasureTest, PointsAndStraightPieces) {
    AddPath(root(), {{-3, 4}});
    ExpectRect(Measure(false), {65535, 65535, 65535, 65535}); // the mark of nothing selected
    AddPath(root(), {{7, 1}, {5, 9}, {6, -2}});
    document().SelectAll();
    ExpectRect(Measure(false), {-3, 9, 7, -2});
    AddPath(root(), {{-9.1, 0}}); // coordinates pass through a 32-bit float
    document().SelectAll();
    EXPECT_EQ(Measure(false).left, static_cast<double>(-9.1f));
    EXPECT_EQ(Measure(true).left, -9.1);
}

// Selected members count though the groups around them aren't selected, other kinds by the host's bounds.
TEST_F(MeasureTest, MembersAndOtherKinds) {
    Art& group = AddGroup(root());
    document().Select(AddPath(AddCompoundPath(group), {{1, 1}, {2, 2}}), true);
    AddPath(group, {{-50, -50}});
    Art& mesh = *document().AppendArt(kArtMesh, &group);
    auto& net = std::get<workbench::MeshData>(mesh.data);
    ASSERT_TRUE(InitMesh(net, workbench::kMeshGrid, 1, 1));
    ForEachMeshPoint(net, [](HostPoint& point) { point = {0, 10}; });
    net.vertices[0].position = {40, 10};
    net.edgesJ[0][1] = {7, 30};
    document().Select(mesh, true);
    ExpectRect(Measure(false), {0, 30, 40, 1});
    ExpectRect(Measure(true), {0, 30, 40, 1});
}

} // namespace
