// From the page to the panel and back: registering, dragging with snaps.

#include "tests/tour/placement_tour.h"
#include "plugin/store/record.h"

namespace {

TEST_P(PlacementTour, RegisterDragAndSnap) {
    Begin();
    // Nothing selected: a beep and no dialog.
    ClickControl(kNewButton).Play();
    EXPECT_EQ(CountRecords("UNTITLED"), 0u);
    AddSquare(100, 100, 40);
    RegisterPageAs("square");
    EXPECT_EQ(Records(), (std::vector<std::string>{"square"}));

    // Without snaps the left top corner (origin 0) lands under the pointer.
    SnapToNothing();
    DragRowTo(0, {200, 300});
    Drop();
    ASSERT_EQ(ArtOnPage(), 1u);
    const double pixel = 1 / document().view().zoom;
    const HostRect first = BoundsOfTop();
    ExpectRect(first, 200, 300, 240, 260, pixel);

    // A pixel beside a corner of what stands there: the anchor pulls, and the cursor says so.
    globals->flUseFcur = 1;
    DragRowTo(0, {first.right + pixel, first.bottom + pixel}).Do([this] {
        EXPECT_EQ(hands().Cursor(), globals->cursors[5]);
        EXPECT_EQ(globals->snapKind, 2);
    });
    Drop();
    ExpectRect(BoundsOfTop(), first.right, first.bottom, first.right + 40, first.bottom - 40);

    // The grid pulls everywhere.
    globals->flUseGrid = 1;
    globals->flGrWidth = globals->flGrHeight = 50;
    DragRowTo(0, {389, 461});
    Drop();
    ExpectRect(BoundsOfTop(), 400, 450, 440, 410);
}

TEST_P(PlacementTour, OutlineFollowsAndGoes) {
    AddSquare(0, 0, 40);
    Begin();
    RegisterPageAs("square");
    page().Refresh();
    SnapToNothing();
    Play();
    const POINT corner = PixelOfArt({200, 300});
    const auto isInverted = [&] { return hands().Pixel(corner.x + 5, corner.y) != 0xFFFFFFu; };
    EXPECT_FALSE(isInverted());
    DragRowTo(0, {200, 300}).Do([&] { EXPECT_TRUE(isInverted()); });
    MoveTo({300, 200}).Do([&] { EXPECT_FALSE(isInverted()); });
    MoveTo({200, 300}).Do([&] { EXPECT_TRUE(isInverted()); });
    Drop();
    EXPECT_EQ(ArtOnPage(), 1u);
}

INSTANTIATE_TEST_SUITE_P(Languages, PlacementTour, ::testing::Values(0, 1));

} // namespace
