// Every way through a drag from the panel to the page: the keys, the moves, what goes away meanwhile.

#include <cmath>
#include <fstream>

#include "tests/support/beeps.h"
#include "tests/tour/placement_tour.h"

namespace {

using workbench::Art;

constexpr HostPoint kFree{60, 400}, kTarget{250, 250}, kElsewhere{120, 500};

/// One record, a square of 40 points with a tag, on an empty page without snaps.
class DragStates : public PlacementTour {
public:
    void SetUp() override {
        PlacementTour::SetUp();
        AddSquare(0, 0, 40).tags.push_back({"price", "string", "12"});
        Begin();
        RegisterPageAs("tagged");
        SnapToNothing();
    }

    void PressRow() {
        hands().Pause(600); // no double click
        PointAt([this] { return RowPoint(kRecordList, 0); });
        hands().Press();
    }
    POINT ArtPixel(HostPoint point, int right = 0, int down = 0) {
        const POINT pixel = PixelOfArt(point);
        return {pixel.x + right, pixel.y + down};
    }
    void GoTo(HostPoint point, int right = 0, int down = 0) {
        PointAt([this, point, right, down] { return ArtPixel(point, right, down); });
    }
    /// As tracking maps a place on the screen.
    HostPoint MappedPoint(POINT screen) {
        ScreenToClient(page().canvas().window(), &screen);
        const workbench::View& view = document().view();
        return {view.bounds.left + screen.x / view.zoom, view.bounds.top - screen.y / view.zoom};
    }
    void ExpectTopAt(HostPoint corner) {
        const double pixel = 1.01 / document().view().zoom;
        ExpectRect(BoundsOfTop(), corner.x, corner.y, corner.x + 40, corner.y - 40, pixel);
    }
    void ExpectIdle() {
        EXPECT_EQ(globals->commandPending, 0);
        EXPECT_EQ(globals->trackState, 0);
        EXPECT_EQ(globals->menuBusy, 0);
        EXPECT_EQ(globals->snapIndex, nullptr);
    }
};

/// What a drag comes to by its last move and by Control at that move and at the drop.
enum class Outcome { kNothing, kPlaced, kTagged };

struct Hand {
    bool control = false;
    int trackState = 0;

    void Move(bool overArt) { trackState = !control ? 1 : overArt ? 2 : 0; }
    Outcome Drop() const {
        if (trackState == 2) return Outcome::kTagged;
        return control ? Outcome::kNothing : Outcome::kPlaced;
    }
};

// Control changes, or doesn't, at each of six moments: before the press, while the button is down in the
// panel, when the drag has begun, between two moves, before the button goes up, and in the same moment.
TEST_P(DragStates, ControlAtEveryMoment) {
    constexpr int kMoments = 6;
    for (const bool endsOverArt : {false, true}) {
        for (int changes = 0; changes < 1 << kMoments; ++changes) {
            SCOPED_TRACE(changes + (endsOverArt ? 100 : 0));
            TakeFreshPage();
            AddSquare(200, 200, 100);
            Hand hand;
            const auto moment = [&](int number) {
                if (!(changes >> number & 1)) return;
                hand.control = !hand.control;
                Do([down = hand.control] { InputKey(VK_CONTROL, down); });
            };
            const HostPoint first = endsOverArt ? kFree : kTarget, last = endsOverArt ? kTarget : kFree;
            moment(0);
            PressRow();
            moment(1);
            GoTo(kElsewhere);
            moment(2);
            GoTo(first);
            hand.Move(!endsOverArt);
            moment(3);
            GoTo(last);
            hand.Move(endsOverArt);
            Do([state = hand.trackState] { EXPECT_EQ(globals->trackState, state); });
            moment(4);
            const bool atOnce = (changes >> 5 & 1) != 0;
            if (atOnce) hand.control = !hand.control;
            Do([down = hand.control, atOnce] {
                if (atOnce) InputKey(VK_CONTROL, down);
                InputButton(VK_LBUTTON, false);
            });
            Play();
            const Outcome outcome = hand.Drop();
            const Art* bottom = document().LayerAt(0).root->firstChild;
            while (bottom->below) bottom = bottom->below;
            EXPECT_EQ(ArtOnPage(), outcome == Outcome::kPlaced ? 2u : 1u);
            EXPECT_EQ(bottom->tags.size(), outcome == Outcome::kTagged ? 1u : 0u);
            if (outcome == Outcome::kPlaced) ExpectTopAt(last);
            ExpectIdle();
            Do([] { InputKey(VK_CONTROL, false); }).Play();
        }
    }
}

// There is no test of where the pointer is: every place is mapped through the view.
TEST_P(DragStates, DropsAnywhereOnTheScreenAtAnyZoom) {
    const POINT panelMiddle = Middle(panel());
    for (const double zoom : {1.0, 0.3, 3.7}) {
        for (const POINT place :
             {POINT{0, 0}, POINT{300, 30}, POINT{222, 333}, POINT{1279, 799}, panelMiddle}) {
            SCOPED_TRACE(testing::Message() << zoom << ": " << place.x << ", " << place.y);
            TakeFreshPage();
            page().canvas().ZoomTo(zoom);
            page().canvas().ScrollBy(place.x - 300, place.y / 2);
            WaitTicks().Play();
            PressRow();
            PointAt([] { return POINT{400, 400}; });
            PointAt([place] { return place; });
            Drop();
            ASSERT_EQ(ArtOnPage(), 1u);
            ExpectTopAt(MappedPoint(place));
            ExpectIdle();
        }
    }
}

struct LastMove {
    int right, down;
    bool counts;
};

// Two pixels in both directions are no move: the record lands where the drag began.
TEST_P(DragStates, SmallMovesAreNone) {
    for (const LastMove& move : {LastMove{2, 2, false}, {-2, -2, false}, {3, 0, true}, {0, -3, true}}) {
        SCOPED_TRACE(testing::Message() << move.right << ", " << move.down);
        TakeFreshPage();
        PressRow();
        GoTo(kFree);
        GoTo(kFree, move.right, move.down);
        Do([&move] { EXPECT_EQ(globals->trackState, move.counts ? 1 : 0); });
        // What was ignored moved nothing: two more pixels are counted from the place before.
        GoTo(kFree, move.counts ? move.right + 2 : move.right, move.counts ? move.down : move.down);
        const POINT origin = ArtPixel(kFree);
        Drop();
        ASSERT_EQ(ArtOnPage(), 1u);
        ExpectTopAt(MappedPoint(
            {origin.x + (move.counts ? move.right : 0), origin.y + (move.counts ? move.down : 0)}));
    }
}

/// Another machine on the same share is at work.
const std::pair<const char*, std::function<void(const std::filesystem::path&)>> kLosses[] = {
    {"deleted", [](const auto& file) { std::filesystem::remove(file); }},
    {"renamed", [](const auto& file) { std::filesystem::rename(file, file.parent_path() / "Other.AID"); }},
    {"record deleted", [](const auto& file) { std::ofstream(file, std::ios::binary).write("\0\0\0", 4); }},
    {"cut", [](const auto& file) { std::filesystem::resize_file(file, 100); }},
    {"cut in the drawing",
     [](const auto& file) { std::filesystem::resize_file(file, std::filesystem::file_size(file) - 8); }},
    {"cleared",
     [](const auto& file) {
         const auto size = std::filesystem::file_size(file);
         std::filesystem::resize_file(file, 0);
         std::filesystem::resize_file(file, size);
     }},
};

TEST_P(DragStates, TheRecordGoesBetweenPressAndDrop) {
    const auto file = rootOnDisk() / "UNTITLED.AID", copy = folder().path() / "copy";
    std::filesystem::copy_file(file, copy);
    for (const auto& [name, lose] : kLosses) {
        for (int moment = 0; moment < 3; ++moment) {
            SCOPED_TRACE(testing::Message() << name << " at " << moment);
            TakeFreshPage();
            const POINT corner = ArtPixel(kFree, 5);
            const auto white = [&] { return hands().Pixel(corner.x, corner.y) == 0xFFFFFFu; };
            const auto at = [&, lose = lose](int now) {
                if (now == moment) Do([&file, lose] { lose(file); });
            };
            PressRow();
            at(0);
            GoTo(kTarget);
            at(1);
            GoTo(kFree);
            at(2);
            // The header alone is read before the drop.
            Do([&, header = moment > 0] {
                EXPECT_EQ(white(), !header);
                EXPECT_EQ(globals->trackState, header ? 1 : 0);
            });
            Drop();
            EXPECT_EQ(ArtOnPage(), 0u);
            EXPECT_TRUE(white());
            ExpectIdle();
            std::filesystem::remove(rootOnDisk() / "Other.AID");
            std::filesystem::copy_file(copy, file, std::filesystem::copy_options::overwrite_existing);
        }
    }
    // The panel has lost nothing.
    TakeFreshPage();
    DragRowTo(0, kFree);
    Drop();
    ExpectTopAt(kFree);
}

// What the last tick saw is gone, or another document has come: a beep, and nothing is tracked.
TEST_P(DragStates, TheDocumentGoesWhileTheButtonIsDown) {
    for (const bool another : {false, true}) {
        TakeFreshPage();
        const auto beeps = BeepsSoFar();
        PressRow();
        Do([this, another] {
            host().Close();
            if (another) OpenEmptyDocument();
            page().ShowFront();
        });
        hands().Move(150, 150).Move(200, 200);
        Do([] { EXPECT_EQ(globals->trackState, 0); });
        Drop();
        EXPECT_EQ(*BeepsSoFar(), *beeps + 1);
        ExpectIdle();
        if (another) {
            EXPECT_EQ(ArtOnPage(), 0u);
        }
        OpenEmptyDocument();
        page().ShowFront();
    }
}

// A press is refused while a command waits; five pixels are a click; the host may refuse to play.
TEST_P(DragStates, NothingIsQueuedThatIsNoDrag) {
    TakeFreshPage();
    globals->commandPending = 1;
    PressRow();
    GoTo(kFree);
    Drop();
    EXPECT_EQ(globals->commandPending, 1);
    globals->commandPending = 0;
    PressRow();
    PointAt([this] {
        POINT row = RowPoint(kRecordList, 0);
        return POINT{row.x - 5, row.y + 5};
    });
    Drop();
    host().FailAcquire("AI Action Manager Suite");
    PressRow();
    GoTo(kFree);
    Drop();
    host().FailAcquire("");
    EXPECT_EQ(ArtOnPage(), 0u);
    ExpectIdle();
}

INSTANTIATE_TEST_SUITE_P(Languages, DragStates, ::testing::Values(1));

} // namespace
