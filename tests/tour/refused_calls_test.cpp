// The host refuses one call of a whole tour, then the next, and so on to the last: registering, browsing,
// a drag with snaps, the place action, handing over tags, undoing.
//
// VELQUORNE_REFUSAL_STRIDE is the step from one refused call to the next; scripts/soak tries them all.

#include <cstdlib>

#include "plugin/host/suite_table.h"
#include "plugin/objects/object_stream.h"
#include "plugin/panel/panel_lists.h"
#include "plugin/store/record.h"
#include "plugin/store/record_layout.h"
#include "plugin/store/store_names.h"
#include "tests/tour/placement_tour.h"
#include "win32/object_counts.h"
#include "workbench/document/undo_history.h"

namespace {

using workbench::Art;

constexpr uint64_t kUsualStride = 13;
constexpr uint64_t kPlainTours = 8; ///< tours with a refusal to one without
constexpr int kEntryName = 7;       ///< control of the Entry dialog

/// What undoing must bring back: the tree with its tags and where its paths lie.
std::string Describe(const Art& art, bool withTags = true) {
    std::string text = std::to_string(art.kind);
    if (const workbench::PathData* path = art.path()) {
        for (const auto& segment : path->segments)
            text += " " + std::to_string(segment.anchor.x) + "," + std::to_string(segment.anchor.y);
    }
    for (const workbench::Tag& tag : art.tags)
        if (withTags) text += " " + tag.name + "=" + tag.value;
    for (const Art* child = art.firstChild; child; child = child->below)
        text += "(" + Describe(*child, withTags) + ")";
    return text;
}

class RefusedCalls : public PlacementTour {
public:
    void SetUp() override {
        PlacementTour::SetUp();
        Begin();
    }

    /// A page with two pairs of squares: one has tags and is selected, the other may get them.  No record.
    void StartOver() {
        host().RefuseNone();
        host().ClearAlerts();
        std::filesystem::remove_all(rootOnDisk());
        std::filesystem::create_directory(rootOnDisk());
        HoldSuites();
        SelectGroup("UNTITLED");
        FreeHandle(globals->rihList);
        RebuildFolderList(panel());
        RebuildGroupCombo(panel());
        RebuildRecordList(panel(), true);
        ReleaseSuites();
        globals->toolMode = 1;
        globals->browseMode = 1;
        TakeFreshPage();
        AddPair(300, false);
        AddPair(100, true);
        start_ = Page();
        pairs_ = Pairs();
    }
    void AddPair(double left, bool tagged) {
        Art& group = *document().AppendArt(kArtGroup, document().LayerAt(0).root);
        for (const double place : {left, left + 130}) {
            Art& square = AddSquare(place, left, 100);
            if (tagged) square.tags.push_back({"price", "string", "12"});
            document().ReorderArt(&square, kPlaceInsideAtBottom, &group);
            document().Select(square, tagged);
        }
    }
    /// The art that stood there first, without its tags: it is at the bottom, and stays as it is.
    std::string Pairs() {
        const Art* bottom = document().LayerAt(0).root->lastChild;
        return Describe(*bottom->above, false) + Describe(*bottom, false);
    }
    std::string Page() { return Describe(*document().LayerAt(0).root); }

    /// Whatever dialog or menu is open then is answered; a refused call may have kept it away.
    void CloseWhatIsOpen() {
        Do([] {
            const HWND dialog = TopDialog();
            if (!dialog || !GetDlgItem(dialog, kEntryName) || !GetDlgItem(dialog, IDOK)) return;
            SetDlgItemTextA(dialog, kEntryName, "one");
            SendMessageA(dialog, WM_COMMAND, IDOK, 0);
        });
    }

    void PlayTour() {
        ClickControl(kNewButton);
        CloseWhatIsOpen();
        WaitTicks().Play();
        // Browse: another view, the folder list away and back, the pointer rests on a record.
        const auto pick = [this](int32_t entry) {
            Do([this, entry] {
                const workbench::HostPanel& shown = *host().panels().front();
                shown.onFlyout(shown.handle, entry);
            });
        };
        pick(3);
        ClickRow(kRecordList, 0).ClickControl(kFolderListButton).ClickControl(kFolderListButton);
        pick(1);
        PointAt([this] { return RowPoint(kRecordList, 0); }).WaitTicks().Play();
        Do([this] { frame().Resize({540, 460}); }).Play();
        Do([this] { frame().Resize({560, 480}); }).Play();

        globals->flUseGrid = globals->flUseFcur = globals->flUseFcrs = globals->flUseFops = 1;
        hands().Pause(600);
        DragRowTo(0, {299, 301});
        MoveTo({350, 301});
        Drop();
        Do([this] {
            SelectListRow(control(kRecordList), 0);
            host().PlayAction("VELQUORNE_PLACE", {{0x706C6378, 500.0},
                                                  {0x706C6379, 600.0},
                                                  {0x73636C77, 80.0},
                                                  {0x73636C68, 20.0},
                                                  {0x616E676C, 0.5}});
        }).Play();
        hands().Pause(600);
        DragRowTo(0, {330, 330});
        Do([] { InputKey(VK_CONTROL, true); });
        MoveTo({370, 370});
        Drop();
        Do([] { InputKey(VK_CONTROL, false); }).WaitTicks().Play();
    }

    void ExpectOrder() {
        EXPECT_EQ(host().faults(), std::vector<std::string>());
        EXPECT_EQ(host().Uses(), 0);
        EXPECT_EQ(suiteUseCount, 0);
        EXPECT_EQ(globals->commandPending, 0);
        EXPECT_EQ(globals->trackState, 0);
        EXPECT_EQ(globals->menuBusy, 0);
        EXPECT_EQ(globals->timerBusy, 0);
        EXPECT_EQ(globals->storeLockDepth, 0);
        EXPECT_EQ(globals->snapIndex, nullptr);
    }

    /// What was written can be read to its last object.
    void ExpectWholeRecords(uint32_t most) {
        HoldSuites();
        const uint32_t count = CountRecords("UNTITLED");
        EXPECT_LE(count, most);
        for (uint32_t number = 0; number < count; ++number) {
            HandleOwner record;
            MemoryHandle handle = nullptr;
            EXPECT_EQ(AidbReadRecord("UNTITLED", static_cast<int32_t>(number), &handle, kReadWhole, true), 0);
            ASSERT_NE(handle, nullptr);
            ObjectWalk walk(handle);
            while (!walk.Next().empty()) {
            }
            EXPECT_FALSE(walk.damaged());
            FreeHandle(handle);
        }
        // Not a byte behind the last record.
        MemoryHandle none = nullptr;
        AidbReadRecord("UNTITLED", static_cast<int32_t>(count), &none, kReadHeader, true);
        EXPECT_EQ(none, nullptr);
        ReleaseSuites();
    }

    void UndoAll() {
        EXPECT_EQ(Pairs(), pairs_);
        while (document().history()->CanUndo()) document().history()->Undo();
        EXPECT_EQ(Page(), start_);
    }

    /// All of it came about.
    void ExpectWholeTour() {
        EXPECT_EQ(Records(), std::vector<std::string>{"one"});
        ASSERT_EQ(ArtOnPage(), 4u);
        const Art* acted = document().LayerAt(0).root->firstChild;
        EXPECT_EQ(acted->kind, kArtGroup);
        const Art* target = document().LayerAt(0).root->firstChild;
        while (target->below->below) target = target->below;
        EXPECT_EQ(target->firstChild->tags.size(), 1u);
        EXPECT_EQ(target->lastChild->tags.size(), 1u);
        EXPECT_EQ(CountRecords("UNTITLED"), 1u);
    }

    /// What was refused before has left nothing behind that is in the way; the calls of the tour.
    uint64_t PlainTour() {
        StartOver();
        const uint64_t before = host().callCount();
        PlayTour();
        const uint64_t calls = host().callCount() - before;
        ExpectOrder();
        ExpectWholeTour();
        ExpectWholeRecords(1);
        UndoAll();
        return calls;
    }

private:
    std::string start_, pairs_;
};

TEST_P(RefusedCalls, EachOfAWholeTourInTurn) {
    const char* wanted = std::getenv("VELQUORNE_REFUSAL_STRIDE");
    const uint64_t stride = wanted ? std::max(1ull, std::strtoull(wanted, nullptr, 10)) : kUsualStride;
    const uint64_t calls = PlainTour();
    const ObjectCounts objects = CountObjects();
    std::printf("%llu calls\n", static_cast<unsigned long long>(calls));

    uint64_t tried = 0;
    for (const bool all : {false, true}) {
        for (uint64_t n = 1; n <= calls; n += all ? 4 * stride : stride) {
            SCOPED_TRACE(testing::Message() << (all ? "all calls from " : "call ") << n);
            StartOver();
            all ? host().RefuseFrom(n) : host().RefuseCall(n);
            PlayTour();
            host().RefuseNone();
            ExpectOrder();
            ExpectWholeRecords(1);
            UndoAll();
            EXPECT_EQ(CountObjects(), objects);
            if (++tried % kPlainTours == 0) PlainTour();
            if (::testing::Test::HasFailure()) return;
        }
        PlainTour();
    }
    std::printf("%llu of them refused\n", static_cast<unsigned long long>(tried));
}

INSTANTIATE_TEST_SUITE_P(Languages, RefusedCalls, ::testing::Values(1));

} // namespace
