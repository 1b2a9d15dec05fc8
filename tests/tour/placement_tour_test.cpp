// From the panel to the page and back: registering, dragging with snaps and tags, the place action, undo.

#include <cmath>

#include "plugin/store/record.h"
#include "tests/tour/placement_tour.h"

namespace {

using workbench::Art;

TEST_P(PlacementTour, RegisterDragAndSnap) {
    Begin();
    // Nothing selected: a beep and no dialog.
    ClickControl(kNewButton).Play();
    EXPECT_EQ(CountRecords("UNTITLED"), 0u);
    EXPECT_EQ(globals->commandPending, 0);
    AddSquare(100, 100, 40);
    RegisterPageAs("square");
    EXPECT_EQ(Records(), (std::vector<std::string>{"square"}));
    EXPECT_EQ(Selected(kRecordList), 0);
    EXPECT_EQ(ArtOnPage(), 0u);

    // Without snaps the left top corner (origin 0) lands under the pointer.
    SnapToNothing();
    DragRowTo(0, {200, 300});
    Drop();
    ASSERT_EQ(ArtOnPage(), 1u);
    const double pixel = 1 / document().view().zoom;
    const HostRect first = BoundsOfTop();
    ExpectRect(first, 200, 300, 240, 260, pixel);
    EXPECT_EQ(globals->trackState, 0);
    EXPECT_EQ(globals->commandPending, 0);
    EXPECT_EQ(document().undoText, Utf8(Either("Undo Placement", "配置の取り消し")));

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

TEST_P(PlacementTour, ControlHandsOverTags) {
    Art& tagged = AddSquare(0, 0, 40);
    tagged.tags.push_back({"price", "string", "12"});
    Begin();
    RegisterPageAs("tagged");
    AddSquare(200, 200, 100);
    SnapToNothing();
    DragRowTo(0, {220, 320});
    hands().KeyDown(VK_CONTROL);
    MoveTo({250, 250}).Do([] { EXPECT_EQ(globals->trackState, 2); });
    Drop();
    hands().KeyUp(VK_CONTROL);
    Play();
    ASSERT_EQ(ArtOnPage(), 1u);
    const Art& target = *document().LayerAt(0).root->firstChild;
    ASSERT_EQ(target.tags.size(), 1u);
    EXPECT_EQ(target.tags.front().value, "12");

    // With Control over free page nothing comes of it.
    hands().KeyDown(VK_CONTROL);
    DragRowTo(0, {50, 50});
    Drop();
    hands().KeyUp(VK_CONTROL);
    Play();
    EXPECT_EQ(ArtOnPage(), 1u);
    EXPECT_EQ(globals->trackState, 0);
}

TEST_P(PlacementTour, DropsThatHaveNoUsualPlace) {
    AddSquare(0, 0, 40);
    Begin();
    RegisterPageAs("square");
    SnapToNothing();
    // Six pixels and no more: placed where the drag began, below the panel, without an outline.
    const POINT row = RowPoint(kRecordList, 0);
    hands().Move(row.x, row.y).Press().Move(row.x + 6, row.y).Release();
    Play();
    ASSERT_EQ(ArtOnPage(), 1u);
    POINT origin = row;
    ScreenToClient(page().canvas().window(), &origin);
    const workbench::View& view = document().view();
    EXPECT_NEAR(BoundsOfTop().left, view.bounds.left + (origin.x + 6) / view.zoom, 1.01 / view.zoom);
    // Five pixels are a click.
    hands().Pause(600).Move(row.x, row.y).Press().Move(row.x + 5, row.y).Release();
    Play();
    EXPECT_EQ(ArtOnPage(), 1u);
    // The record goes while it is dragged.
    DragRowTo(0, {100, 100}).Do([this] { std::filesystem::remove(rootOnDisk() / "UNTITLED.AID"); });
    Drop();
    EXPECT_EQ(ArtOnPage(), 1u);
    // No document: a beep.
    MakeGroup("More", {"x"});
    Do([this] {
        host().Close();
        page().ShowFront();
    });
    WaitTicks().Play();
    Do([this] { host().PlayAction(kInternalAction, std::map<uint32_t, double>{}); }).Play();
    globals->commandPending = kPlaceCommand;
    EXPECT_EQ(host().PlayAction(kInternalAction, std::map<uint32_t, double>{}), kHostNoError);
    EXPECT_EQ(globals->commandPending, 0);
}

TEST_P(PlacementTour, PlaceActionBringsArtToSize) {
    AddSquare(0, 0, 40);
    Begin();
    RegisterPageAs("square");
    const std::map<uint32_t, double> place{
        {0x706C6378, 300}, {0x706C6379, 200}, {0x73636C77, 80}, {0x73636C68, 20}};
    const auto play = [&](const std::map<uint32_t, double>& reals) {
        EXPECT_EQ(host().PlayAction("VELQUORNE_PLACE", reals), kHostNoError);
    };
    play(place); // the smaller factor of the two counts
    ExpectRect(BoundsOfTop(), 290, 210, 310, 190);
    globals->fixedAspect = 0;
    play(place);
    ExpectRect(BoundsOfTop(), 260, 210, 340, 190);
    globals->rotationAngle = 90;
    play(place);
    ExpectRect(BoundsOfTop(), 260, 210, 340, 190);
    play({{0x706C6378, 10}, {0x706C6379, 20}, {0x616E676C, std::acos(-1) / 4}});
    const double half = 20 * std::sqrt(2);
    ExpectRect(BoundsOfTop(), 10 - half, 20 + half, 10 + half, 20 - half);
    EXPECT_EQ(ArtOnPage(), 4u);

    SelectListRow(control(kRecordList), -1);
    play(place);
    EXPECT_EQ(ArtOnPage(), 4u);
    EXPECT_EQ(host().alerts().back().text, Utf8(Either("Placement record has not been selected.",
                                                       "配置するレコードが選択されていません。")));
}

INSTANTIATE_TEST_SUITE_P(Languages, PlacementTour, ::testing::Values(0, 1));

} // namespace
