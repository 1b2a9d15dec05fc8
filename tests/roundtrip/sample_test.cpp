// Every kind of art at once, where the host refuses a call.

#include "app/sample_document.h"
#include "plugin/capture/post_art.h"
#include "plugin/rebuild/load_art.h"
#include "plugin/store/record.h"
#include "tests/support/plugin_fixture.h"
#include "workbench/text/font_config_list.h"

namespace {

constexpr char kSampleGroup[] = "\\Group";
constexpr uint64_t kTries = 400; ///< of the calls, spread over all of them

class SampleRecordTest : public PluginFixture {
protected:
    void SetUp() override {
        PluginFixture::SetUp();
        host().SetFontList(&workbench::TextFonts());
        globals->layerOption = 1;
        OpenSample();
    }

    void OpenSample() {
        auto sample = MakeSampleDocument({"/pictures/a.png", "/pictures/b.jpg"});
        sample->SelectAll();
        host().Close();
        host().Open(std::move(sample));
    }

    /// The sample as record 0; an empty document is the front one then.
    void StoreSample() {
        ASSERT_EQ(AidbPostArt(), kHostNoError);
        ASSERT_EQ(WriteRecord(kSampleGroup, -1), 0);
        host().Close();
        OpenEmptyDocument();
    }

    template <typename Work>
    void RefuseInTurn(const Work& work) {
        uint64_t calls = host().callCount();
        work();
        calls = host().callCount() - calls;
        ASSERT_GT(calls, 2 * kTries);
        for (uint64_t n = 1 + calls % 7; n <= calls; n += calls / kTries) {
            SCOPED_TRACE("call " + std::to_string(n));
            host().RefuseCall(n);
            work();
            host().RefuseNone();
            ASSERT_TRUE(host().faults().empty()) << host().faults().front();
        }
    }
};

TEST_F(SampleRecordTest, ARefusedCallOfACaptureCostsOnlyArt) {
    RefuseInTurn([&] {
        AidbPostArt();
        ASSERT_NE(globals->curRecord, nullptr);
        EXPECT_EQ(globals->captureAll, 0);
        EXPECT_EQ(globals->sideObjects, nullptr);
    });
}

TEST_F(SampleRecordTest, ARefusedCallOfALoadLeavesNothingTemporary) {
    StoreSample();
    size_t whole = 0;
    RefuseInTurn([&] {
        OpenEmptyDocument();
        AidbLoadArt(kSampleGroup, 0);
        size_t pieces = 0;
        for (size_t i = 0; i < document().LayerCount(); ++i) pieces += document().LayerAt(i).root->childCount;
        if (whole == 0) whole = pieces;
        // The path of a text that can't be made stays.
        EXPECT_LE(pieces, whole + 1);
    });
}

} // namespace
