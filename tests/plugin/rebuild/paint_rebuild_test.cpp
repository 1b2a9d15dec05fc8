#include <gmock/gmock.h>

#include <limits>

#include "tests/plugin/rebuild/load_fixture.h"

namespace {

class PaintTest : public LoadFixture {
protected:
    /// A path filled with a gradient of `stops` gray stops, stop i at location i and of gray i / 64.
    AidbPathObject* GradientPath(int id, uint16_t stops) {
        AidbPathObject* path = Path(id);
        path->style.fillFlag = 1;
        path->style.fill.kind = kStoredGradient;
        auto& use = path->style.fill.u.gradient;
        use.origin = {Stored(3), Stored(4)};
        use.angle = Stored(30);
        use.length = Stored(20);
        use.matrix = {Stored(1), 0, 0, Stored(1), 0, 0};
        use.translation = {kAbsentFixed, kAbsentFixed};
        path->block.ramp.type = kGradientRadial;
        path->block.ramp.stopCount = stops;
        for (int i = 0; i < kMaxStops; ++i) {
            path->block.ramp.stops[i].location = Stored(i);
            path->block.ramp.stops[i].midpoint = Stored(50);
            path->block.ramp.stops[i].color.u.gray = Stored(i / 64.0);
        }
        return path;
    }
    const HostGradientUse& Use(const workbench::Art& art) { return art.path()->style.fill.u.gradient; }
    const workbench::Gradient& GradientOf(const workbench::Art& art) {
        const workbench::Gradient* gradient = document().Find(Use(art).gradient);
        EXPECT_NE(gradient, nullptr);
        return *gradient;
    }
    std::vector<double> Locations(const workbench::Art& art) {
        std::vector<double> locations;
        for (const HostGradientStop& stop : GradientOf(art).stops) locations.push_back(stop.location);
        return locations;
    }
};

TEST_F(PaintTest, StrangeStopCountsStayWithinTheTable) {
    GradientPath(1, 0);
    GradientPath(2, 1);
    GradientPath(3, 2);
    GradientPath(4, 60000);
    EXPECT_EQ(Load(), kHostNoError);
    ASSERT_EQ(Page(), "p1 p2 p3 p4");
    const workbench::Art* art = &First();
    EXPECT_EQ(Locations(*art), (std::vector<double>{0, 100})); // the host's own two stops
    EXPECT_EQ(Locations(*(art = art->below)), (std::vector<double>{0, 0}));
    EXPECT_EQ(Locations(*(art = art->below)), (std::vector<double>{0, 1}));
    const auto all = Locations(*(art = art->below));
    ASSERT_EQ(all.size(), 32u);
    EXPECT_EQ(all.back(), 31);
}

TEST_F(PaintTest, TheOriginMovesWithTheArtAsSeenThroughTheMatrix) {
    document().hardOrigin = {10, 20};
    AidbPathObject* path = GradientPath(1, 2);
    path->style.fill.u.gradient.matrix = {0, Stored(2), Stored(-2), 0, Stored(7), Stored(9)};
    path->style.fill.u.gradient.translation = {Stored(5), Stored(6)};
    path = GradientPath(2, 2);
    path->style.fill.u.gradient.matrix.tx = Stored(13);
    path->style.fill.u.gradient.matrix.ty = Stored(4);
    path->style.fill.u.gradient.translation = {Stored(77), kAbsentFixed};
    GradientPath(3, 2)->style.fill.u.gradient.matrix = {};
    globals->placePoint = {100, 200};
    EXPECT_EQ(Load(), kHostNoError);
    const HostGradientUse* use = &Use(First());
    // The matrix turns by 90 degrees, doubles, and stands where it was stored; (100, 200) on the page is
    // (100, -50) in a space that is turned back and halved.
    EXPECT_DOUBLE_EQ(use->matrix.tx, 5);
    EXPECT_DOUBLE_EQ(use->matrix.ty, 6);
    EXPECT_DOUBLE_EQ(use->matrix.b, 2);
    EXPECT_DOUBLE_EQ(use->origin.x, 3 + 100);
    EXPECT_DOUBLE_EQ(use->origin.y, 4 - 50);
    // Without a stored translation the hard origin is taken out of the matrix.
    use = &Use(*First().below);
    EXPECT_DOUBLE_EQ(use->matrix.tx, 3);
    EXPECT_DOUBLE_EQ(use->matrix.ty, 24);
    EXPECT_DOUBLE_EQ(use->origin.x, 3 + 100);
    // A matrix without an inverse leaves the origin alone.
    use = &Use(*First().below->below);
    EXPECT_DOUBLE_EQ(use->origin.x, 3);
    EXPECT_DOUBLE_EQ(use->origin.y, 4);
}

// A damaged or foreign record can hold colours that nothing resolves; the path is worth keeping.
TEST_F(PaintTest, WhatCantBeBecomesGray) {
    AidbPathObject* path = GradientPath(1, 2);
    path->style.fillFlag = 0;
    path->style.stroke = path->style.fill;
    path->style.stroke.u.gradient.number = 0x12345;
    path = GradientPath(2, 2);
    path->block.ramp.stops[0].color.kind = kStoredCustom;
    path->block.ramp.stops[1].color.kind = kStoredPattern;
    path->block.ramp.stops[1].color.u.pattern.number = 0xFFFFFFFF;
    path->style.stroke.kind = kStoredCustom;
    path = Path(3);
    path->style.fillFlag = 1;
    path->style.fill.kind = 99;
    EXPECT_EQ(Load(), kHostNoError);
    ASSERT_EQ(Page(), "p1 p2 p3");
    const HostPathStyle& style = First().path()->style;
    EXPECT_TRUE(style.strokePaint);
    EXPECT_FALSE(style.fillPaint);
    EXPECT_EQ(style.stroke.kind, kColorGray);
    EXPECT_DOUBLE_EQ(style.stroke.u.gray.gray, 0);
    const workbench::Art& second = *First().below;
    EXPECT_EQ(second.path()->style.stroke.kind, kColorGray);
    for (const HostGradientStop& stop : GradientOf(second).stops) EXPECT_EQ(stop.color.kind, kColorGray);
    EXPECT_EQ(second.below->path()->style.fill.kind, kColorGray);
}

// ---- Patterns ----

} // namespace
