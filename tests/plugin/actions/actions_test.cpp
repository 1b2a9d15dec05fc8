// What actions work out, against numbers worked out by hand.
#include <cmath>
#include <limits>
#include <numbers>

#include "plugin/actions/find_art.h"
#include "plugin/actions/place_action.h"
#include "plugin/actions/view_map.h"
#include "plugin/placement/action_names.h"
#include "tests/support/plugin_fixture.h"

using workbench::Art;

namespace {

constexpr double kQuarterTurn = std::numbers::pi / 2;

class ActionsTest : public PluginFixture {
protected:
    Art& AddSquare(Art* parent, double left, double bottom, double side) {
        Art& art = *document().AppendArt(kArtPath, parent);
        for (const HostPoint p : {HostPoint{left, bottom}, HostPoint{left + side, bottom},
                                  HostPoint{left + side, bottom + side}, HostPoint{left, bottom + side}})
            art.path()->segments.push_back({p, p, p, 1});
        return art; // open: its outline counts as closed
    }
    Art* Root() { return document().LayerAt(0).root; }
};

// 400 by 400 points at 1.5 pixels in a window of 640 by 620: 40 and 20 pixels lie left and above.
TEST_F(ActionsTest, PixelsAreCutTowardZero) {
    const ViewMap map = MapOfView({100, 700, 500, 300}, 1.5, 640, 620);
    EXPECT_EQ(map.offsetX, 40);
    EXPECT_EQ(map.offsetY, 20);
    EXPECT_EQ(MapOfView({0, 401, 400.5, 0}, 1.5, 600, 600).offsetX, 0);  // -0.75
    EXPECT_EQ(MapOfView({0, 401, 400.5, 0}, 1.5, 600, 600).offsetY, -1); // -1.5
    const HostPoint art = PixelToArt(map, {340, -10});
    EXPECT_EQ(art.x, 300);
    EXPECT_EQ(art.y, 720);
    struct Case {
        HostPoint art;
        POINT pixel;
    };
    const Case cases[] = {{{100, 700}, {40, 20}},
                          {{100.5, 699.5}, {40, 20}}, // 40.75 and 20.75
                          {{72.5, 714.5}, {-1, -1}},  // -1.25 and -1.75
                          {{73, 713.5}, {0, 0}},      // -0.5 and -0.25
                          {{1e300, -1e300}, {536870911, 536870911}}};
    for (const Case& each : cases) {
        EXPECT_EQ(ArtToPixel(map, each.art).x, each.pixel.x) << each.art.x;
        EXPECT_EQ(ArtToPixel(map, each.art).y, each.pixel.y) << each.art.y;
    }
}

TEST_F(ActionsTest, TheOriginLiesUnderThePointer) {
    constexpr FixedRect record{10 << 16, 60 << 16, 30 << 16, 20 << 16}; // 20 wide, 40 high
    constexpr double left[] = {100, 90, 80}, top[] = {200, 220, 240};
    for (int16_t mode = -1; mode <= 9; ++mode) {
        const int known = mode < 0 || mode > 8 ? 0 : mode;
        const HostRect outline = OutlineOfRecord(record, mode, {100, 200});
        EXPECT_EQ(outline.left, left[known / 3]) << mode;
        EXPECT_EQ(outline.right, left[known / 3] + 20) << mode;
        EXPECT_EQ(outline.top, top[known % 3]) << mode;
        EXPECT_EQ(outline.bottom, top[known % 3] - 40) << mode;
    }
}

// The ray runs away from the line y = 0: to the left of a chord's first x it doesn't count, on its last it
// does, and a point on the line meets chords on both sides of it.
TEST_F(ActionsTest, APathHoldsAPointByTheRayAwayFromTheBaseLine) {
    struct Case {
        double bottom;
        HostPoint point;
        bool held;
    };
    const Case cases[] = {
        {10, {5, 15}, true},    {10, {0, 15}, false}, {10, {10, 15}, true},  {10, {5, 20}, true},
        {10, {5, 10}, false},   {10, {5, 21}, false}, {-20, {5, -15}, true}, {-20, {5, -20}, true},
        {-20, {5, -10}, false}, {-5, {5, 0.5}, true}, {-5, {5, -0.5}, true}, {-5, {5, 0}, false},
    };
    for (const Case& each : cases) {
        OpenEmptyDocument();
        const Art& square = AddSquare(Root(), 0, each.bottom, 10);
        EXPECT_EQ(FindArtAtPoint(each.point), each.held ? square.handle : nullptr)
            << each.bottom << ": " << each.point.x << ", " << each.point.y;
    }
    // A circle's curves count as chords; its control points reach out to the corners.
    Art& circle = *document().AppendArt(kArtPath, Root());
    for (int i = 0; i < 4; ++i) {
        const double c = std::round(std::cos(i * kQuarterTurn)), s = std::round(std::sin(i * kQuarterTurn));
        const HostPoint anchor{50 + 10 * c, 50 + 10 * s};
        circle.path()->segments.push_back({anchor,
                                           {anchor.x + 5.523 * s, anchor.y - 5.523 * c},
                                           {anchor.x - 5.523 * s, anchor.y + 5.523 * c},
                                           0});
    }
    EXPECT_EQ(FindArtAtPoint({57, 57}), circle.handle);
    EXPECT_EQ(FindArtAtPoint({57.2, 57.2}), nullptr);
}

TEST_F(ActionsTest, TheTopmostPathIsFound) {
    Art* group = document().AppendArt(kArtGroup, Root());
    const Art& hole = AddSquare(document().AppendArt(kArtCompoundPath, group), 10, 10, 5);
    const Art& below = AddSquare(Root(), 0, 0, 40);
    Art* point = document().AppendArt(kArtPath, group);
    point->path()->segments.push_back({{30, 30}, {30, 30}, {30, 30}, 1});
    document().LayerAt(0).visible = false;
    document().LayerAt(0).locked = true;
    workbench::Layer& preview = document().InsertLayer(0, "<<Sorvenna Preview>>");
    AddSquare(preview.root, 0, 0, 100);
    EXPECT_EQ(FindArtAtPoint({12, 12}), hole.handle);
    EXPECT_EQ(FindArtAtPoint({30, 30}), below.handle);
    EXPECT_EQ(FindArtAtPoint({60, 60}), nullptr);
    const Art& above = AddSquare(document().InsertLayer(1, "above").root, 0, 0, 100);
    EXPECT_EQ(FindArtAtPoint({12, 12}), above.handle);
}

HostPoint Mapped(const HostMatrix& m, const HostPoint& p) {
    return {m.a * p.x + m.c * p.y + m.tx, m.b * p.x + m.d * p.y + m.ty};
}

// Art of 50 by 100 about (25, 50), whose right top corner goes to (25, 50), turned to (-50, 25), mirrored to
// (50, 25), stretched to (100, 12.5), and on to its place.
TEST_F(ActionsTest, PlacedArtIsTurnedMirroredScaledTurnedMoved) {
    globals->rotationAngle = 90;
    globals->reflectMode = 1;
    globals->fixedAspect = 0;
    constexpr HostRect bounds{0, 100, 50, 0};
    double lineScale = 0;
    const PlaceSize size{10, 20, 200, 25, 0}; // against the height and the width
    const HostPoint corner = Mapped(PlaceMatrix(bounds, size, &lineScale), {50, 100});
    EXPECT_NEAR(corner.x, 110, 1e-4);
    EXPECT_NEAR(corner.y, 32.5, 1e-4);
    EXPECT_EQ(lineScale, 1.25);
    // Half a turn is 3.141593, and the quarter misses by 1.732051e-7, which is then doubled.
    EXPECT_NEAR(PlaceMatrix(bounds, size, &lineScale).a, 3.464102e-7, 1e-12);
    // The last turn comes behind the stretching: (100, 12.5) by a quarter is (-12.5, 100).
    const HostPoint turned =
        Mapped(PlaceMatrix(bounds, {10, 20, 200, 25, kQuarterTurn}, &lineScale), {50, 100});
    EXPECT_NEAR(turned.x, -2.5, 1e-4);
    EXPECT_NEAR(turned.y, 120, 1e-4);
}

TEST_F(ActionsTest, SidesThatAreNoMeasureTakeTheOthersFactor) {
    constexpr double kInfinite = std::numeric_limits<double>::infinity(),
                     kNone = std::numeric_limits<double>::quiet_NaN();
    struct Case {
        double right, top, width, height;
        bool fixedAspect;
        double sx, sy;
    };
    const Case cases[] = {
        {100, 100, 100, 50, true, 0.5, 0.5},   {100, 100, 100, 50, false, 1, 0.5},
        {100, 50, 100, 50, true, 1, 1},        {50, 0, 100, 7, false, 2, 2},
        {0, 50, 7, 25, false, 0.5, 0.5},       {0, 0, 7, 7, false, 1, 1},
        {kInfinite, 50, 7, 25, false, .5, .5}, {50, 100, 0, 50, false, 1, 0.5},
        {50, 100, 100, kNone, false, 2, 1},    {50, 100, kInfinite, 200, false, 1, 2},
    };
    for (const Case& each : cases) {
        globals->fixedAspect = each.fixedAspect;
        double lineScale = 0;
        const HostMatrix matrix =
            PlaceMatrix({0, each.top, each.right, 0}, {0, 0, each.width, each.height, 0}, &lineScale);
        EXPECT_EQ(matrix.a, each.sx) << &each - cases;
        EXPECT_EQ(matrix.d, each.sy) << &each - cases;
        EXPECT_EQ(lineScale, (each.sx + each.sy) / 2) << &each - cases;
    }
}

TEST_F(ActionsTest, EveryInternalActionEndsWhatIsPendingAndThePlaceActionNothing) {
    ReleaseSuites();
    for (const int32_t command : {0, 77, kPlaceCommand, kRegisterCommand}) {
        globals->commandPending = command;
        EXPECT_EQ(host().PlayAction(kPlaceAction, {}), kHostNoError);
        EXPECT_EQ(globals->commandPending, command);
        EXPECT_EQ(host().PlayAction(kInternalAction, {}), kHostNoError);
        EXPECT_EQ(globals->commandPending, 0);
    }
    EXPECT_EQ(document().LayerAt(0).root->firstChild, nullptr);
}

} // namespace
