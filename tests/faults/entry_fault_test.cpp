// Whole calls while memory runs out: nothing is thrown at the host, nothing of a call is still under way when
// it has returned, and a capture gives the whole record or none.
#include <cstring>
#include <functional>

#include "app/sample_document.h"
#include "plugin/capture/post_art.h"
#include "plugin/frame/plugin_main.h"
#include "plugin/panel/list_table.h"
#include "plugin/panel/panel_controls.h"
#include "plugin/placement/action_names.h"
#include "plugin/store/record.h"
#include "plugin/store/store_names.h"
#include "tests/faults/failing_allocations.h"
#include "tests/support/panel_fixture.h"
#include "tests/support/store_fixture.h"
#include "win32/memory_hook.h"

namespace {

unsigned blocks = 0, refusedBlock = 0;

class EntryFaultTest : public PanelFixture {
protected:
    void SetUp() override {
        PanelFixture::SetUp();
        const std::string file = (folder().path() / "picture.png").string();
        WriteFileBytes(file, Bytes(10));
        host().Open(MakeSampleDocument({file, file}));
        document().SelectAll();
    }

    /// The objects of the current record; empty if there is none.  Its preview may be missing.
    static std::string Captured() {
        if (!globals->curRecord) return {};
        const auto* bytes = reinterpret_cast<const char*>(BlockBytes(globals->curRecord));
        const auto* start = reinterpret_cast<const RecordStart*>(bytes);
        return std::string(bytes + kObjectsOffset, start->header.size - kObjectsOffset);
    }

    /// Fails the nth allocation of `call`, the host's and ours; the numbers lie closely at first, and end
    /// when it needs no more.
    static void FailEach(const std::function<void()>& call) {
        unsigned counted = 0, n = 0;
        do {
            n += 1 + n / 16;
            SCOPED_TRACE(n);
            FailAllocations(n, n);
            EXPECT_NO_THROW(call());
            counted = StopFailingAllocations();
            EXPECT_EQ(globals->commandPending, 0);
            EXPECT_EQ(globals->trackState, 0);
            EXPECT_EQ(globals->menuBusy, 0);
        } while (counted >= n && !HasFailure());
        EXPECT_GT(n, 5u);
    }
};

TEST_F(EntryFaultTest, ACaptureIsWholeOrNone) {
    ASSERT_EQ(AidbPostArt(), kHostNoError);
    const std::string whole = Captured();
    ASSERT_GT(whole.size(), 100000u);
    refusedBlock = 0;
    do {
        ++refusedBlock;
        blocks = 0;
        refusesBlock = [] { return ++blocks == refusedBlock; };
        const HostError error = AidbPostArt();
        refusesBlock = nullptr;
        const std::string captured = Captured();
        ASSERT_TRUE(captured.empty() ? error == kHostOutOfMemory : captured == whole) << refusedBlock;
    } while (blocks >= refusedBlock);
    EXPECT_GT(refusedBlock, 20u);
}

TEST_F(EntryFaultTest, NothingIsThrownFromACapture) {
    FailEach([] { AidbPostArt(); });
}

TEST_F(EntryFaultTest, NothingIsThrownFromAnAction) {
    workbench::Art& path = *OpenEmptyDocument().AppendArt(kArtPath, document().LayerAt(0).root);
    path.path()->segments = {Corner(0, 0), Corner(50, 0), Corner(50, 50)};
    document().SelectAll();
    ASSERT_EQ(AidbPostArt(), kHostNoError);
    ASSERT_EQ(WriteRecord("G", -1), 0);
    SelectGroup("G");
    OpenEmptyDocument();
    BuildThePanel();
    SelectListRow(control(kRecordList), 0);
    HostActionMessage message{};
    message.head.self = plugin().self();
    message.head.globals = globals;
    message.head.basic = host().basic();
    message.typeWord = kPlaceWord;
    FailEach([&] { PluginMain(HOST_CALLER_ACTION, HOST_SELECTOR_DO_ACTION, &message.head); });
    host().ClearFaults(); // of calls behind one of its own failures, such as segments behind missing ones
}

} // namespace
